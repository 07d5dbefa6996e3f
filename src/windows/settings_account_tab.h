#pragma once

#include "settings_form.h"

#include "windows/settings_window_controller.h"

#include <QList>

class QLabel;

namespace nivora {

// The account: a form to sign in with, or who is signed in, the plan and the
// counters.
class SettingsAccountTab : public SettingsForm
{
    Q_OBJECT

public:
    SettingsAccountTab(const SettingsWindowController::Parts &parts, QWidget *parent);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void addSignIn();
    void addAccount();
    void render();

    SettingsWindowController::Parts m_parts;
    QLabel *m_email = nullptr;
    QWidget *m_signedOut = nullptr;
    QList<QWidget *> m_signedIn;
};

} // namespace nivora
