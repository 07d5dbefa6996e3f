#pragma once

#include <QWidget>

namespace nivora {

class FeedbackForm;
class NoteLabel;
class PanelButton;
class TranslationViewModel;

namespace platform {
class WindowSystem;
}

// The panel's bottom row: what can be done with the translation.
class PanelFooter : public QWidget
{
    Q_OBJECT

public:
    PanelFooter(TranslationViewModel &session, platform::WindowSystem &windowSystem,
                QWidget *parent = nullptr);

    // Does what the main button does now; nothing while there is none.
    void triggerPrimaryAction();
    void closePopover();

Q_SIGNALS:
    void replyRequested();

private:
    PanelButton *makeButton(const QString &symbol, const QString &hint);
    QWidget *makeHistoryMark();
    void follow();
    void renderActions();
    void renderSpeech();
    void renderNotes();
    // A row with nothing in it takes no space.
    void renderEmptiness();
    QString primaryText() const;
    void toggleSpeech();
    void toggleFeedback();

    TranslationViewModel &m_session;
    platform::WindowSystem &m_windowSystem;
    PanelButton *m_primary;
    PanelButton *m_reply;
    PanelButton *m_speak;
    PanelButton *m_copy;
    PanelButton *m_variants;
    PanelButton *m_feedback;
    NoteLabel *m_tokens;
    QWidget *m_historyMark;
    FeedbackForm *m_form = nullptr; // made at its first use
};

} // namespace nivora
