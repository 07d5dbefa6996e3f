#pragma once

#include "onboarding_page.h"

namespace nivora {

// The last step: names the triggers.
class ReadyPage : public OnboardingPage
{
    Q_OBJECT

public:
    explicit ReadyPage(QWidget *parent);

Q_SIGNALS:
    void done();
};

} // namespace nivora
