#include "web_auth_flow.h"

#include "platform/web_browser.h"

using namespace std::chrono_literals;

namespace nivora {

WebAuthFlow::WebAuthFlow(platform::WebBrowser &browser, const QUrl &page, Done done)
    : m_done(std::move(done))
    , m_opening(browser.open(page, [this](bool opened) {
        if (!opened)
            end(AuthFlowError::CannotStart);
    }))
{
}

void WebAuthFlow::deliver(const QUrl &link)
{
    end(link);
}

void WebAuthFlow::giveUp()
{
    if (isWaiting())
        m_givenUp = platform::delay(0ms, [this] { end(AuthFlowError::Cancelled); });
}

void WebAuthFlow::end(const std::variant<QUrl, AuthFlowError> &result)
{
    finish([&] { m_done(result); });
}

void WebAuthFlow::stop()
{
    m_opening.cancel();
    m_givenUp.cancel();
}

} // namespace nivora
