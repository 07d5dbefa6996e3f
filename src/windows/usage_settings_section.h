#pragma once

#include "settings_section.h"

class QLabel;

namespace nivora {

class NoteLabel;
class UsageStore;

// What translations have cost in tokens, as counted on this machine.
class UsageSettingsSection : public SettingsSection
{
    Q_OBJECT

public:
    // `usage` outlives the section.
    UsageSettingsSection(UsageStore &usage, QWidget *parent);

private:
    NoteLabel *addValue(const QString &label);
    void render();

    UsageStore &m_usage;
    NoteLabel *m_requests;
    NoteLabel *m_input;
    NoteLabel *m_output;
    NoteLabel *m_total;
    NoteLabel *m_since;
};

} // namespace nivora
