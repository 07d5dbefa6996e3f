#include "onboarding_view.h"

#include "accessibility_page.h"
#include "motion.h"
#include "page_fade.h"
#include "progress_pips.h"
#include "ready_page.h"
#include "sign_in_page.h"
#include "welcome_page.h"

#include <QStackedWidget>
#include <QVBoxLayout>

namespace nivora {

namespace {

constexpr int stepCount = 4;

// Logical pixels.
constexpr QMargins padding(36, 28, 36, 22);
constexpr int gapAbovePips = 20;

OnboardingView::Step following(OnboardingView::Step step)
{
    using enum OnboardingView::Step;
    switch (step) {
    case Welcome:
        return SignIn;
    case SignIn:
        return Accessibility;
    case Accessibility:
    case Ready:
        break;
    }
    return Ready;
}

} // namespace

OnboardingView::OnboardingView(const AuthStore &auth, SignIn &signIn,
                               const platform::Accessibility &accessibility, QWidget *parent)
    : QWidget(parent)
    , m_pages(new QStackedWidget(this))
    , m_fade(new PageFade(m_pages))
    , m_pips(new ProgressPips(stepCount, this))
{
    auto *permission = new AccessibilityPage(accessibility, m_pages);
    auto *ready = new ReadyPage(m_pages);
    addPage(new WelcomePage(m_pages));
    addPage(new SignInPage(auth, signIn, m_pages));
    addPage(permission);
    addPage(ready);
    connect(permission, &AccessibilityPage::accessibilityRequested, this,
            &OnboardingView::accessibilityRequested);
    connect(ready, &ReadyPage::done, this, &OnboardingView::done);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(padding);
    column->setSpacing(0);
    column->addWidget(m_pages, 1);
    column->addSpacing(gapAbovePips);
    column->addWidget(m_pips, 0, Qt::AlignHCenter);
    m_pips->setCurrent(int(m_step));
}

void OnboardingView::addPage(OnboardingPage *page)
{
    m_steps.append(page);
    m_pages->addWidget(page);
    connect(page, &OnboardingPage::advanceRequested, this, [this, page] {
        // A sign-in may end when its step is over.
        if (page == m_steps[int(m_step)])
            advance();
    });
}

void OnboardingView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_steps[int(m_step)]->begin();
}

void OnboardingView::advance()
{
    m_step = following(m_step);
    const bool moves = wantsMotion(*this) && isVisible();
    const QPixmap before = moves ? m_pages->grab() : QPixmap();
    m_pages->setCurrentIndex(int(m_step));
    if (moves)
        m_fade->begin(before);
    m_pips->setCurrent(int(m_step));
    m_steps[int(m_step)]->begin();
}

} // namespace nivora
