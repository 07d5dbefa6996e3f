#pragma once

#include <QList>
#include <QWidget>

class QStackedWidget;

namespace nivora {

class AuthStore;
class OnboardingPage;
class PageFade;
class ProgressPips;
class SignIn;

namespace platform {
class Accessibility;
}

// What the onboarding window shows: four steps, one way only.
class OnboardingView : public QWidget
{
    Q_OBJECT

public:
    enum class Step { Welcome, SignIn, Accessibility, Ready };

    // The borrowed objects outlive the view.
    OnboardingView(const AuthStore &auth, SignIn &signIn,
                   const platform::Accessibility &accessibility, QWidget *parent);

Q_SIGNALS:
    void accessibilityRequested();
    void done();

protected:
    void showEvent(QShowEvent *event) override;

private:
    void addPage(OnboardingPage *page);
    void advance();

    Step m_step = Step::Welcome;
    QStackedWidget *m_pages;
    QList<OnboardingPage *> m_steps; // in the order of Step
    PageFade *m_fade;
    ProgressPips *m_pips;
};

} // namespace nivora
