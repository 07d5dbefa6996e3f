#include "onboarding_view.h"

#include <QLabel>
#include <QVBoxLayout>

namespace nivora {

OnboardingView::OnboardingView(const AuthStore &auth, SignIn &signIn,
                               const platform::Accessibility &accessibility, QWidget *parent)
    : QWidget(parent)
{
    Q_UNUSED(auth)
    Q_UNUSED(signIn)
    Q_UNUSED(accessibility)
    auto *column = new QVBoxLayout(this);
    column->addWidget(new QLabel(tr("欢迎使用 Nivora"), this));
}

} // namespace nivora
