#pragma once

#include <QWidget>

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
    // A row with nothing in it takes no space.
    void renderEmptiness();
    QString primaryText() const;

    TranslationViewModel &m_session;
    PanelButton *m_primary;
    PanelButton *m_copy;
    NoteLabel *m_tokens;
    QWidget *m_historyMark;
};

} // namespace nivora
