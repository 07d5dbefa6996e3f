#pragma once

#include <QWidget>

class QLabel;
class QPlainTextEdit;

namespace nivora {

class PanelButton;
class TranslationViewModel;

// Where the user types or dictates, in the modes that take typing.
class ComposeInput : public QWidget
{
    Q_OBJECT

public:
    explicit ComposeInput(TranslationViewModel &session, QWidget *parent = nullptr);

    void focusEditor();
    // Starts the translation by hand; false where it is not offered now.
    bool triggerTranslate();

private:
    QWidget *makeVoiceError();
    void renderSource();
    void renderVoice();
    void renderButton();

    TranslationViewModel &m_session;
    QPlainTextEdit *m_editor;
    PanelButton *m_microphone;
    // Made along with what holds them, which comes next.
    QLabel *m_voiceMessage = nullptr;
    PanelButton *m_voiceSettings = nullptr;
    QWidget *m_voiceError;
    PanelButton *m_translate;
    bool m_isTyping = false; // what the session is told comes from the editor
};

} // namespace nivora
