#include "localcloud/account_service.h"
#include "localcloud/accounts.h"
#include "localcloud/cloud_service.h"
#include "localcloud/router.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace nivora::localcloud;

class TestAccountService : public QObject
{
    Q_OBJECT

    Accounts m_accounts;
    int m_mails = 0;
    AccountService m_service{m_accounts, [this](const auto &) { ++m_mails; }};
    CloudService m_translations{{.upstream = {}, .accounts = &m_accounts}};
    Router m_router;

    Answer ask(const QByteArray &method, const QByteArray &target, const QJsonObject &body = {},
               const QByteArray &token = {})
    {
        Request request;
        request.method = method;
        request.path = target.split('?').first();
        request.query = target.mid(request.path.size() + 1);
        request.body = QJsonDocument(body).toJson();
        request.headers = {{"Host", "127.0.0.1:8"}, {"Authorization", "Bearer " + token}};
        return m_router.handle(request);
    }
    static QByteArray bodyOf(const Answer &answer)
    {
        return std::get<step::Send>(answer.steps.front()).bytes;
    }
    static QJsonObject jsonOf(const Answer &answer)
    {
        return QJsonDocument::fromJson(bodyOf(answer)).object();
    }
    // Has a code mailed.
    QString code()
    {
        ask("POST", "/auth/email/start", {{u"email"_s, u"<me>@x"_s}, {u"lang"_s, u"ja"_s}});
        return m_service.outgoingMail().last().code;
    }
    Answer verify(const QString &code)
    {
        return ask("POST", "/auth/email/verify", {{u"email"_s, u"<me>@x"_s}, {u"code"_s, code}});
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_service.addRoutes(m_router);
        m_translations.addRoutes(m_router);
    }

    void theLastCodeCountsOnceAndNotForGuessing()
    {
        QCOMPARE(ask("POST", "/auth/email/start", {{u"email"_s, u"me"_s}}).status, 400);
        QCOMPARE(m_mails, 0);
        const QString first = code();
        const QString second = code();
        QCOMPARE(m_mails, 2);
        const QByteArray page = bodyOf(ask("GET", "/mail"));
        QVERIFY(page.indexOf(second.toUtf8()) < page.indexOf(first.toUtf8()));
        QVERIFY(page.contains("&lt;me&gt;@x") && !page.contains("<me>"));

        QCOMPARE(jsonOf(verify(u"no"_s)), (QJsonObject{{u"error"_s, u"验证码错误"_s}}));
        const QJsonObject session = jsonOf(verify(second));
        QCOMPARE(session[u"email"], QJsonValue(u"<me>@x"_s));
        QCOMPARE(session[u"token"].toString().size(), 64);
        QCOMPARE(verify(second).status, 400);
        const QString third = code();
        for (int i = 0; i < 5; ++i)
            verify(u"guess"_s);
        QCOMPARE(verify(third).status, 400);
    }
};

QTEST_GUILESS_MAIN(TestAccountService)
#include "tst_account_service.moc"
