#include "windows/login_window_controller.h"

#include "dialog_card.h"
#include "login_view.h"

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr QSize windowSize(360, 320); // logical pixels

} // namespace

LoginWindowController::LoginWindowController(SignIn &signIn, platform::WindowSystem &windowSystem)
    : m_signIn(signIn)
    , m_windowSystem(windowSystem)
{
}

LoginWindowController::~LoginWindowController() = default;

void LoginWindowController::show()
{
    if (!m_window)
        makeWindow();
    m_window->open();
}

void LoginWindowController::close()
{
    if (m_window)
        m_window->hide();
}

bool LoginWindowController::isVisible() const
{
    return m_window && m_window->isVisible();
}

void LoginWindowController::makeWindow()
{
    m_window = std::make_unique<DialogCard>(m_windowSystem, u"login"_s, DialogCard::Level::Normal,
                                            tr("关闭面板"));
    auto *view = new LoginView(m_signIn, m_window.get());
    m_window->setWindowTitle(tr("登录 Nivora"));
    m_window->setContent(view, windowSize);
    view->focusField();
    connect(view, &LoginView::done, this, &LoginWindowController::close);
    connect(m_window.get(), &CardWindow::cancelled, this, &LoginWindowController::close);
}

} // namespace nivora
