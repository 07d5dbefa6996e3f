#include "fuzz.h"

#include "core/auth_service.h"
#include "core/billing_service.h"
#include "core/feedback_service.h"
#include "platform_memory/memory_http_client.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;

// Whatever the cloud answers to the account's requests: one result each, and
// nothing in it that could do harm where it is used.
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static QCoreApplication application(argc, argv);

    fuzz::Input input(data, size);
    memory::MemoryHttpClient web;
    const int client = input.number(5);
    constexpr int statuses[] = {200, 201, 204, 302, 400, 401, 403, 429, 500};
    const int status = statuses[input.number(int(std::size(statuses)))];
    web.setAnswer(status, input.rest());
    const AuthEndpoint endpoint{web, QUrl(u"https://cloud.invalid/base"_s)};

    int results = 0;
    platform::Task task;
    const auto onPage = [&](const AuthResult<QUrl> &page) {
        ++results;
        if (const auto *url = std::get_if<QUrl>(&page))
            fuzz::check(url->scheme().startsWith("http"_L1) && !url->host().isEmpty(),
                        "a page is one of the web");
    };
    switch (client) {
    case 0:
        task = AuthService(endpoint, {}).startEmail(u"a@b.c"_s, [&](const auto &) { ++results; });
        break;
    case 1:
        task = AuthService(endpoint, {})
                   .verify(u"a@b.c"_s, u"123456"_s, [&](const AuthResult<AuthSession> &session) {
                       ++results;
                       if (const auto *opened = std::get_if<AuthSession>(&session))
                           fuzz::check(isSessionToken(opened->token), "a token fits a header");
                   });
        break;
    case 2:
        task = BillingService(endpoint).status(u"token"_s, [&](const auto &) { ++results; });
        break;
    case 3:
        task = BillingService(endpoint).portalURL(u"token"_s, onPage);
        break;
    default:
        task =
            FeedbackService(web, endpoint.baseURL, "token"_ba).submit({}, [&](bool) { ++results; });
    }
    const QDeadlineTimer patience(2000);
    while (results == 0 && !patience.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    fuzz::check(results == 1, "one result");
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    fuzz::check(results == 1, "and no second one");
    return 0;
}
