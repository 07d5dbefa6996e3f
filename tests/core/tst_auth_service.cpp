#include "core/auth_service.h"

#include "localcloud/server.h"
#include "platform_linux_network/qt_http_client.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using localcloud::Answer;
namespace step = localcloud::step;

namespace {

const auto invalid = u"登录服务响应异常，请重试。"_s;

Answer session(const QString &token, const QJsonValue &email = u"me@x.org"_s)
{
    return Answer::json(200, {{u"token"_s, token}, {u"email"_s, email}});
}

Answer text(int status, const QByteArray &body)
{
    return Answer::plain(status, body, "application/json");
}

} // namespace

class TestAuthService : public QObject
{
    Q_OBJECT

    linuxdesktop::QtHttpClient m_network;
    localcloud::Server m_server;

    AuthService service(const QString &path = {}, const QString &language = u"ja"_s)
    {
        QUrl base = m_server.url();
        base.setPath(path);
        return {{m_network, base, 300ms}, language};
    }

    // The error's text, or the token.
    QString verify(const AuthService &from)
    {
        QString outcome;
        const platform::Task task =
            from.verify(u"me@x.org"_s, u" 12"_s, [&](const AuthResult<AuthSession> &result) {
                const auto *error = std::get_if<AuthError>(&result);
                outcome = error ? error->errorDescription() : std::get<AuthSession>(result).token;
            });
        if (!outcome.isEmpty())
            return u"before the event loop"_s;
        [[maybe_unused]] const bool ended =
            QTest::qWaitFor([&] { return !outcome.isEmpty(); }, 10'000);
        return outcome;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_server.listen()); }
    void init() { m_server.dropAnswers(); }

    void theRequestsGoOutAsAgreed()
    {
        for (const auto &[language, sent] :
             {std::pair{u"zh-Hans"_s, "zh-Hans"_L1}, {QString(), "en"_L1}}) {
            m_server.enqueue(Answer::html(200)); // what it holds does not matter
            QString outcome;
            const platform::Task task =
                service(u"/api/"_s, language).startEmail(u"me@x.org"_s, [&](const auto &error) {
                    outcome = error ? error->errorDescription() : u"sent"_s;
                });
            QTRY_COMPARE(outcome, u"sent"_s);
            const localcloud::Request start = m_server.requests().last();
            QCOMPARE(start.method + ' ' + start.path, "POST /api/auth/email/start"_ba);
            QCOMPARE(start.header("Content-Type"), "application/json"_ba);
            QVERIFY(!start.hasHeader("Authorization"));
            QCOMPARE(start.body, R"({"email":"me@x.org","lang":"%1"})"_ba.replace("%1", sent));
        }
        m_server.enqueue(session(u"t-1"_s));
        QCOMPARE(verify(service()), u"t-1"_s);
        QCOMPARE(m_server.requests().last().path, "/auth/email/verify"_ba);
        QCOMPARE(m_server.requests().last().body, R"({"code":" 12","email":"me@x.org"})"_ba);
    }

    void everyAnswerHasItsOutcomeAndNothingGoesOutTwice_data()
    {
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<QString>("outcome");
        const auto row = [](const char *name, const Answer &answer, const QString &outcome) {
            QTest::newRow(name) << answer << outcome;
        };
        const auto status = [](int code) { return u"登录服务返回错误 (HTTP %1)。"_s.arg(code); };
        const auto network = [](const QString &text) { return QString(u"网络错误："_s + text); };
        const auto refused = R"({"error":"验证码错误"})"_ba;
        row("299", session(u"t"_s).withStatus(299), u"t"_s);
        row("in packets", session(u"t"_s).inPackets(7, 5ms), u"t"_s);
        row("until the end of the connection",
            session(u"t"_s).withFraming(Answer::Framing::UntilClose), u"t"_s);
        row("longest token", session(QString(8192, u'x')), QString(8192, u'x'));
        row("no email", text(200, R"({"token":"t"})"), invalid);
        row("email is a number", session(u"t"_s, 1), invalid);
        row("no token", text(200, R"({"email":"me@x.org"})"), invalid);
        row("empty token", session({}), invalid);
        row("token of 100 KB", session(QString(100'000, u'x')), invalid);
        row("token with line ends", session(u"a\r\nX-Other: b"_s), invalid);
        row("token beyond ASCII", session(u"tö"_s), invalid);
        row("cut JSON", text(200, R"({"token":"t","email":)"), invalid);
        row("HTML", Answer::html(200), invalid);
        row("204", Answer::plain(204, {}, "text/plain"), invalid);
        row("endless", text(200, QByteArray(300'000, ' ')), invalid);
        row("server's text", text(400, refused), u"验证码错误"_s);
        row("server's text with a challenge",
            text(401, refused).withHeader("WWW-Authenticate", "Bearer realm=x"), u"验证码错误"_s);
        row("text beside a number", text(400, R"({"error":"x","code":5})"), status(400));
        row("empty text", text(400, R"({"error":""})"), status(400));
        row("nested error", Answer::error(401, u"x"_s), status(401));
        row("HTML error", Answer::html(500), status(500));
        row("endless error", text(503, QByteArray(300'000, ' ')), status(503));
        row("cut error", text(502, refused).cutAfter(0, step::Close{}), status(502));
        const QUrl elsewhere = m_server.refusedUrl();
        for (const int code : {301, 302, 303, 307, 308})
            row(qPrintable(u"redirect %1"_s.arg(code)), Answer::redirect(elsewhere, code),
                status(code));
        row("redirect within", Answer::redirect(QUrl(u"/auth/email/verify"_s)), status(307));
        row("truncated", session(u"t"_s).cutAfter(0, step::Close{}), network(u"连接已中断"_s));
        row("reset", Answer::reset(), network(u"连接已中断"_s));
        row("closed", Answer::close(), network(u"连接已中断"_s));
        row("silent", Answer::silence(), network(u"请求超时"_s));
        row("stuck", session(u"t"_s).cutAfter(0, step::Silence{}), network(u"请求超时"_s));
    }
    void everyAnswerHasItsOutcomeAndNothingGoesOutTwice()
    {
        QFETCH(const Answer, answer);
        QFETCH(const QString, outcome);
        const auto before = m_server.requests().size();
        m_server.enqueue(answer);
        QCOMPARE(verify(service()), outcome);
        QTest::qWait(30); // long enough for one more request to arrive on this machine
        QCOMPARE(m_server.requests().size(), before + 1);
    }

    void aServerThatIsNotThereIsANetworkError()
    {
        const AuthService nowhere({m_network, m_server.refusedUrl()}, {});
        QCOMPARE(verify(nowhere), u"网络错误：无法连接服务器"_s);
    }
};

QTEST_GUILESS_MAIN(TestAuthService)
#include "tst_auth_service.moc"
