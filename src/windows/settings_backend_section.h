#pragma once

#include "settings_section.h"

#include "core/connection_test.h"

#include "platform/task.h"

class QComboBox;
class QLineEdit;

namespace nivora {

class NoteLabel;
class PanelButton;
class SettingsStore;
class Spinner;

// Who translates: the cloud, or an endpoint of the user's own with its address,
// model and key, and a way to try it out.
class SettingsBackendSection : public SettingsSection
{
    Q_OBJECT

public:
    // Both outlive the section.
    SettingsBackendSection(SettingsStore &settings, const ConnectionTest &connectionTest,
                           QWidget *parent);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void addBackend();
    void addAddress();
    void addModel();
    void addKey();
    void renderBackend();
    void renderAddress();
    void testConnection();
    void showReport(const ConnectionReport &report);
    void forgetReport();

    SettingsStore &m_settings;
    const ConnectionTest &m_connectionTest;
    QComboBox *m_backend = nullptr;
    QWidget *m_cloudNote = nullptr;
    QList<QWidget *> m_ownRows; // shown for the user's own endpoint
    QLineEdit *m_address = nullptr;
    PanelButton *m_test = nullptr;
    NoteLabel *m_hint = nullptr;
    QWidget *m_hintRow = nullptr;
    Spinner *m_spinner = nullptr;
    NoteLabel *m_report = nullptr;
    QWidget *m_reportRow = nullptr;
    QComboBox *m_model = nullptr;
    QLineEdit *m_key = nullptr;
    platform::Task m_testing;
};

} // namespace nivora
