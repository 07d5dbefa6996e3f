#include "localcloud/account_service.h"
#include "localcloud/accounts.h"
#include "localcloud/cloud_service.h"
#include "localcloud/router.h"
#include "localcloud/server.h"
#include "localcloud/update_service.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>

#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
namespace localcloud = nivora::localcloud;

namespace {

// Turns SIGTERM and SIGINT into an ordinary quit. To be made before any other
// thread, so that all of them leave the signals alone.
class QuitOnSignal
{
public:
    QuitOnSignal()
    {
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, SIGTERM);
        sigaddset(&set, SIGINT);
        sigprocmask(SIG_BLOCK, &set, nullptr);
        m_descriptor = signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
        m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, qApp,
                         &QCoreApplication::quit);
    }
    ~QuitOnSignal()
    {
        m_notifier.reset();
        close(m_descriptor);
    }
    Q_DISABLE_COPY_MOVE(QuitOnSignal)

private:
    int m_descriptor = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

int fail(const QString &what)
{
    std::fprintf(stderr, "localcloud: %s\n", qUtf8Printable(what));
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QuitOnSignal quitOnSignal;

    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"A translation service on this machine alone, with a phrase book in it."_s);
    parser.addHelpOption();
    parser.addOption({u"port"_s, u"Listen on this port of 127.0.0.1; any free one by default."_s,
                      u"N"_s, u"0"_s});
    parser.addOption(
        {u"delay"_s, u"Pause between streamed pieces, in milliseconds."_s, u"MS"_s, u"15"_s});
    parser.addOption({u"upstream"_s,
                      u"Let this OpenAI-compatible server translate. Its API key is taken from "
                      "the environment variable NIVORA_UPSTREAM_KEY."_s,
                      u"URL"_s});
    parser.addOption({u"model"_s, u"The upstream server's model."_s, u"NAME"_s});
    parser.addOption({u"token"_s,
                      u"Somebody is signed in with this token already; without it, only those "
                      "who sign in here."_s,
                      u"TOKEN"_s});
    parser.process(application);

    bool isPort = false;
    bool isDelay = false;
    const quint16 port = parser.value(u"port"_s).toUShort(&isPort);
    const uint delay = parser.value(u"delay"_s).toUInt(&isDelay);
    if (!isPort || !isDelay || delay > 60'000)
        return fail(u"--port and --delay want numbers, the delay at most 60000"_s);
    if (parser.isSet(u"upstream"_s) != parser.isSet(u"model"_s))
        return fail(u"--upstream and --model belong together"_s);

    localcloud::CloudService::Options options;
    options.pieceDelay = std::chrono::milliseconds(delay);
    if (parser.isSet(u"upstream"_s)) {
        const QUrl url(parser.value(u"upstream"_s), QUrl::StrictMode);
        if (!url.isValid() || url.host().isEmpty() ||
            (url.scheme() != u"http" && url.scheme() != u"https"))
            return fail(u"--upstream wants an http or https address"_s);
        options.upstream = std::make_unique<localcloud::Upstream>(url, parser.value(u"model"_s),
                                                                  qgetenv("NIVORA_UPSTREAM_KEY"));
    }

    localcloud::Accounts accounts;
    if (parser.isSet(u"token"_s))
        accounts.addToken(parser.value(u"token"_s).toUtf8(), u"somebody@example.com"_s);
    options.accounts = &accounts;
    localcloud::CloudService service(std::move(options));
    localcloud::AccountService accountService(
        accounts, [](const localcloud::AccountService::Mail &mail) {
            std::printf("code for %s: %s\n", qUtf8Printable(mail.email), qUtf8Printable(mail.code));
            std::fflush(stdout);
        });
    localcloud::UpdateService updates;
    localcloud::Router router;
    service.addRoutes(router);
    accountService.addRoutes(router);
    updates.addRoutes(router);

    localcloud::Server server;
    server.setRecording(false); // what people translate is not kept
    server.setHandler(
        [&router](const localcloud::Request &request) { return router.handle(request); });
    if (!server.listen(port))
        return fail(server.errorString());
    std::printf("listening on %s\n", server.url().toEncoded().constData());
    std::fflush(stdout);
    return QCoreApplication::exec();
}
