#include "windows/onboarding_window_controller.h"

#include "dialog_card.h"
#include "onboarding_view.h"

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr QSize windowSize(420, 400); // logical pixels

} // namespace

OnboardingWindowController::OnboardingWindowController(const AuthStore &auth, SignIn &signIn,
                                                       const platform::Accessibility &accessibility,
                                                       platform::WindowSystem &windowSystem)
    : m_auth(auth)
    , m_signIn(signIn)
    , m_accessibility(accessibility)
    , m_windowSystem(windowSystem)
{
}

OnboardingWindowController::~OnboardingWindowController() = default;

void OnboardingWindowController::show()
{
    if (!m_window)
        makeWindow();
    m_window->open();
}

bool OnboardingWindowController::isVisible() const
{
    return m_window && m_window->isVisible();
}

void OnboardingWindowController::makeWindow()
{
    m_window = std::make_unique<DialogCard>(m_windowSystem, u"onboarding"_s,
                                            DialogCard::Level::Floating, tr("跳过"));
    auto *view = new OnboardingView(m_auth, m_signIn, m_accessibility, m_window.get());
    m_window->setWindowTitle(tr("欢迎使用 Nivora"));
    m_window->setContent(view, windowSize);
    connect(view, &OnboardingView::accessibilityRequested, this,
            &OnboardingWindowController::accessibilityRequested);
    // However it ends, it counts as done.
    connect(view, &OnboardingView::done, this, &OnboardingWindowController::finish);
    connect(m_window.get(), &CardWindow::cancelled, this, &OnboardingWindowController::finish);
}

void OnboardingWindowController::finish()
{
    m_window->hide();
    Q_EMIT finished();
}

} // namespace nivora
