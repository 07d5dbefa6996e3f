#pragma once

#include "settings_section.h"

#include "platform/task.h"

class QLineEdit;

namespace nivora {

class GlossaryStore;
class GlossaryTable;
class NoteLabel;
class PanelButton;

// The glossary: its table, a filter, and its exchange with other programs.
class GlossarySettingsSection : public SettingsSection
{
    Q_OBJECT

public:
    // `store` outlives the section.
    GlossarySettingsSection(GlossaryStore &store, QWidget *parent);

private:
    QWidget *makeTable();
    QWidget *makeButtons();
    PanelButton *makeButton(const QString &label, const QString &symbol, QWidget *parent);
    void render();
    void addTerm();
    void revealTable();
    void importFile();
    void exportFile();
    void tell(const QString &note);

    GlossaryStore &m_store;
    QLineEdit *m_filter = nullptr;
    GlossaryTable *m_table = nullptr;
    PanelButton *m_export = nullptr;
    QWidget *m_filterRow = nullptr;
    NoteLabel *m_note = nullptr;
    QWidget *m_noteRow = nullptr;
    platform::Task m_reveal;
};

} // namespace nivora
