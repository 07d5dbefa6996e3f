#pragma once

#include "account/sign_in_error.h"

#include "platform/task.h"

#include <QUrl>

#include <functional>
#include <variant>

namespace nivora {

namespace platform {
class WebBrowser;
}

// One visit to the browser, from the opening of a page to the link of the
// program's own scheme that it leads to.
class WebAuthFlow final : public platform::Operation
{
    Q_OBJECT

public:
    using Done = std::function<void(std::variant<QUrl, AuthFlowError>)>;

    WebAuthFlow(platform::WebBrowser &browser, const QUrl &page, Done done);

    // Whether a link can still end it.
    bool isWaiting() const { return isRunning() && !m_givenUp.isRunning(); }

    // The link that ends it. To be called only while it waits.
    void deliver(const QUrl &link);

    // Ends it as cancelled, from the event loop: whoever begins anew has not
    // finished beginning yet.
    void giveUp();

private:
    void end(const std::variant<QUrl, AuthFlowError> &result);
    void stop() override;

    Done m_done;
    platform::Task m_opening;
    platform::Task m_givenUp;
};

} // namespace nivora
