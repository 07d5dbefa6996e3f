#pragma once

#include <QWidget>

class QShortcut;

namespace nivora {

class NoteLabel;
class PanelButton;
class TranslationViewModel;

// The panel's bottom row: what can be done with the translation.
class PanelFooter : public QWidget
{
    Q_OBJECT

public:
    explicit PanelFooter(TranslationViewModel &session, QWidget *parent = nullptr);

    // Does what the main button does now; nothing while there is none.
    void triggerPrimaryAction();

private:
    void renderActions();
    void renderNotes();
    QString primaryText() const;

    TranslationViewModel &m_session;
    PanelButton *m_primary;
    PanelButton *m_copy;
    NoteLabel *m_tokens;
    QWidget *m_historyMark;
};

} // namespace nivora
