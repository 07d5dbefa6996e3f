#pragma once

#include "double_shift_practice.h"
#include "onboarding_page.h"

namespace nivora {

// The first step: it goes on by a double Shift.
class WelcomePage : public OnboardingPage
{
    Q_OBJECT

public:
    explicit WelcomePage(QWidget *parent);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    DoubleShiftPractice m_practice;
};

} // namespace nivora
