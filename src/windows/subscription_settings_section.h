#pragma once

#include "settings_section.h"

class QLabel;
class QProgressBar;

namespace nivora {

class BillingStore;
class NoteLabel;
class PanelButton;

// The plan and how much of it is used, with the ways to the server's pages.
class SubscriptionSettingsSection : public SettingsSection
{
    Q_OBJECT

public:
    // `billing` outlives the section.
    SubscriptionSettingsSection(BillingStore &billing, QWidget *parent);

protected:
    void showEvent(QShowEvent *event) override;

private:
    QWidget *makePlan();
    QWidget *makeButtons();
    void render();

    BillingStore &m_billing;
    QLabel *m_plan = nullptr;
    NoteLabel *m_figures = nullptr;
    QProgressBar *m_share = nullptr;
    NoteLabel *m_reset = nullptr;
    PanelButton *m_page = nullptr;
    PanelButton *m_refresh = nullptr;
    QLabel *m_nothing = nullptr;
    QWidget *m_planRow = nullptr;
    QWidget *m_nothingRow = nullptr;
    NoteLabel *m_error = nullptr;
    QWidget *m_errorRow = nullptr;
};

} // namespace nivora
