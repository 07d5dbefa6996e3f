#pragma once

#include <QWidget>

class QLabel;
class QPlainTextEdit;

namespace nivora {

class EditorBinding;
class PanelButton;
class Announcer;
class TranslationViewModel;

// Where the user types or dictates, in the modes that take typing.
class ComposeInput : public QWidget
{
    Q_OBJECT

public:
    explicit ComposeInput(TranslationViewModel &session, QWidget *parent = nullptr);

    void focusEditor(Qt::FocusReason reason);
    // Starts the translation by hand; false where it is not offered now.
    bool triggerTranslate();

private:
    QWidget *makeVoiceError();
    void renderSource();
    void renderVoice();
    void renderButton();

    TranslationViewModel &m_session;
    QPlainTextEdit *m_editor;
    EditorBinding *m_source; // owned by the editor
    PanelButton *m_microphone;
    // Made along with what holds them, which comes next.
    QLabel *m_voiceMessage = nullptr;
    PanelButton *m_voiceSettings = nullptr;
    QWidget *m_voiceError;
    PanelButton *m_translate;
    Announcer *m_announcer;
};

} // namespace nivora
