#pragma once

#include <QWidget>

class QPlainTextEdit;

namespace nivora {

class PanelButton;
class TranslationViewModel;

// Where the user types, in the modes that take typing.
class ComposeInput : public QWidget
{
    Q_OBJECT

public:
    explicit ComposeInput(TranslationViewModel &session, QWidget *parent = nullptr);

    void focusEditor();
    // Starts the translation by hand; false where it is not offered now.
    bool triggerTranslate();

private:
    void renderSource();
    void renderButton();

    TranslationViewModel &m_session;
    QPlainTextEdit *m_editor;
    PanelButton *m_translate;
};

} // namespace nivora
