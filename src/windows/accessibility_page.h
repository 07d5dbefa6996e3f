#pragma once

#include "onboarding_page.h"

#include <QBasicTimer>

namespace nivora {

namespace platform {
class Accessibility;
}

// The third step: goes on by itself as soon as accessibility is on, for which it
// looks once a second while it is on show.
class AccessibilityPage : public OnboardingPage
{
    Q_OBJECT

public:
    // `accessibility` outlives the page.
    AccessibilityPage(const platform::Accessibility &accessibility, QWidget *parent);

    void begin() override;

Q_SIGNALS:
    void accessibilityRequested();

protected:
    void hideEvent(QHideEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    QWidget *makeMissing();
    void render(bool trusted);

    const platform::Accessibility &m_accessibility;
    PanelButton *m_open = nullptr; // made along with what holds it, which comes next
    QWidget *m_missing;
    PanelButton *m_next;
    QWidget *m_trusted;
    QBasicTimer m_poll;
};

} // namespace nivora
