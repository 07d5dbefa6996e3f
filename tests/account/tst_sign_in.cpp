#include "account/auth_store.h"
#include "account/sign_in.h"

#include "core/auth_service.h"
#include "localcloud/account_service.h"
#include "localcloud/accounts.h"
#include "localcloud/router.h"
#include "localcloud/server.h"
#include "platform_linux_network/qt_http_client.h"
#include "platform_memory/memory_preferences.h"
#include "platform_memory/memory_secret_store.h"
#include "platform_memory/memory_web_browser.h"
#include "stores/keychain_store.h"

#include <QSignalSpy>
#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;
using localcloud::Answer;

namespace {
const auto service = u"app.nivora"_s;
const auto tokenName = u"session-token"_s;
const auto emailKey = u"accountEmail"_s;

} // namespace

// The whole road of a sign-in, over a desktop in memory and a cloud that plays
// the real one.
class TestSignIn : public QObject
{
    Q_OBJECT

    // A program that starts with what the one before has left.
    struct Program
    {
        Program(TestSignIn &test)
            : store(test.m_preferences, keychainOf(test))
            , signIn(store, {test.m_network, test.m_server->url()}, test.m_browser, u"ja"_s)
        {
        }
        KeychainStore &keychainOf(TestSignIn &test) { return keychain.emplace(test.m_secrets); }
        std::optional<KeychainStore> keychain;
        AuthStore store;
        SignIn signIn;
    };
    // What the attempts ended with, in turn.
    SignIn::Done done()
    {
        return [this](const std::optional<SignInError> &error) {
            m_outcomes.append(error ? errorDescription(*error) : u"signed in"_s);
        };
    }
    QByteArray storedToken()
    {
        return *m_secrets.read(service, tokenName).secret.value_or(platform::SecretBytes());
    }

    linuxdesktop::QtHttpClient m_network;
    memory::MemoryPreferences m_preferences;
    memory::MemorySecretStore m_secrets;
    memory::MemoryWebBrowser m_browser;
    localcloud::Accounts m_accounts;
    localcloud::AccountService m_cloud{m_accounts};
    localcloud::Router m_router;
    std::unique_ptr<localcloud::Server> m_server;
    std::optional<Program> m_program;
    QStringList m_outcomes;

private Q_SLOTS:
    void initTestCase() { m_cloud.addRoutes(m_router); }
    void init()
    {
        m_program.reset();
        m_server = std::make_unique<localcloud::Server>();
        QVERIFY(m_server->listen());
        m_server->setHandler([this](const auto &request) { return m_router.handle(request); });
        m_secrets.setAvailable(true);
        m_secrets.remove(service, tokenName);
        m_preferences.remove(emailKey);
        m_browser = {};
        m_outcomes.clear();
        m_program.emplace(*this);
    }

    void theMailedCodeSignsInUntilTheSignOut()
    {
        AuthStore &store = m_program->store;
        const QSignalSpy changed(&store, &AuthStore::changed);
        platform::Task task = m_program->signIn.sendCode(u" me@x.org\t"_s, done());
        QTRY_COMPARE(m_outcomes, QStringList(u"signed in"_s)); // no error, that is
        QVERIFY(!store.isSignedIn());
        QCOMPARE(m_cloud.outgoingMail().last().email, u"me@x.org"_s);
        QCOMPARE(m_cloud.outgoingMail().last().language, u"ja"_s);

        task = m_program->signIn.verify(u"me@x.org "_s, u"wrong!"_s, done());
        QTRY_COMPARE(m_outcomes.value(1), u"验证码错误"_s);
        QVERIFY(!store.isSignedIn() && store.email().isEmpty());
        QCOMPARE(changed.size(), 0);

        task = m_program->signIn.verify(u"me@x.org "_s, m_cloud.outgoingMail().last().code, done());
        QTRY_COMPARE(m_outcomes.value(2), u"signed in"_s);
        QCOMPARE(store.email(), u"me@x.org"_s);
        localcloud::Request request;
        request.headers = {{"Authorization", "Bearer " + storedToken()}};
        QVERIFY(m_accounts.find(request));

        m_program.emplace(*this); // a restart
        QVERIFY(m_program->store.isSignedIn());
        QCOMPARE(m_program->store.email(), u"me@x.org"_s);
        for (int i = 0; i < 2; ++i) {
            m_program->store.signOut();
            QVERIFY(!m_program->store.isSignedIn() && m_program->store.email().isEmpty());
            QVERIFY(m_secrets.count() == 0 && !m_preferences.value(emailKey));
        }
    }

    void theStoredStateIsReadAtTheStart_data()
    {
        QTest::addColumn<QByteArray>("token");
        QTest::addColumn<bool>("remembered");
        QTest::addColumn<QString>("email");
        QTest::newRow("an address without a token") << ""_ba << true << QString();
        QTest::newRow("a token without an address") << "t"_ba << false << QString();
        QTest::newRow("both") << "t"_ba << true << u"me@x.org"_s;
    }
    void theStoredStateIsReadAtTheStart()
    {
        QFETCH(const QByteArray, token);
        QFETCH(const bool, remembered);
        m_secrets.write(service, tokenName, token);
        if (remembered)
            m_preferences.set(emailKey, u"me@x.org"_s);
        m_program.emplace(*this);
        QCOMPARE(m_program->store.isSignedIn(), !token.isEmpty());
        QTEST(m_program->store.email(), "email");
        QCOMPARE(m_preferences.value(emailKey).has_value(), remembered && !token.isEmpty());
        m_secrets.setAvailable(false); // and late later on: what it said last
        QCOMPARE(m_program->store.isSignedIn(), !token.isEmpty());
        m_secrets.setAvailable(true);
        m_secrets.remove(service, tokenName);
        QVERIFY(!m_program->store.isSignedIn());
    }

    void aKeychainWithoutAnAnswerForgetsNobody_data()
    {
        QTest::addColumn<QByteArray>("token");
        QTest::newRow("and knows a token then") << "t"_ba;
        QTest::newRow("and knows none then") << ""_ba;
    }
    void aKeychainWithoutAnAnswerForgetsNobody()
    {
        QFETCH(const QByteArray, token);
        m_secrets.write(service, tokenName, token);
        m_preferences.set(emailKey, u"me@x.org"_s);
        m_secrets.setAvailable(false);
        m_program.emplace(*this);
        AuthStore &store = m_program->store;
        const QSignalSpy changed(&store, &AuthStore::changed);
        QVERIFY(!store.settle() && !store.isSignedIn() && store.email().isEmpty());
        QVERIFY(m_preferences.value(emailKey));

        m_secrets.setAvailable(true);
        QCOMPARE(store.isSignedIn(), !token.isEmpty());
        QVERIFY(store.settle() && !store.settle());
        QCOMPARE(changed.size(), 1);
        QCOMPARE(store.email(), token.isEmpty() ? QString() : u"me@x.org"_s);
        QCOMPARE(m_preferences.value(emailKey).has_value(), !token.isEmpty());
    }

    void everyLinkHasItsOutcome_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("outcome"); // or the address
        const auto invalid = u"登录服务响应异常，请重试。"_s;
        const auto row = [](const char *name, const QString &query, const QString &outcome) {
            QTest::newRow(name) << query << outcome;
        };
        row("address", u"?email=a%2Bb@x.org&token=t&token=u"_s, u"a+b@x.org"_s);
        row("plus sign", u"?email=a+b@x.org&token=t"_s, u"a+b@x.org"_s);
        row("no address", u"?token=t"_s, u"Google"_s);
        row("empty address", u"?token=t&email="_s, u"Google"_s);
        row("error beside a token", u"?token=t&error=%E8%A2%AB%E6%8B%92"_s, u"被拒"_s);
        row("empty error", u"?token=t&error="_s, u"登录服务返回错误 (HTTP 403)。"_s);
        row("error without a value", u"?token=t&error"_s, u"Google"_s);
        row("empty token", u"?token=&email=a@x.org"_s, invalid);
        row("token without a value", u"?token"_s, invalid);
        row("no token", u"?email=a@x.org"_s, invalid);
        row("no query", u""_s, invalid);
        row("line ends", u"?token=a%0D%0AX:%20b"_s, invalid);
        row("100 KB", u"?token="_s + QString(100'000, u'x'), invalid);
    }
    void everyLinkHasItsOutcome()
    {
        QFETCH(const QString, query);
        QFETCH(const QString, outcome);
        const platform::Task task = m_program->signIn.signInWithGoogle(done());
        m_program->signIn.openLink(QUrl(u"NIVORA://x"_s + query));
        if (m_program->store.isSignedIn()) {
            QCOMPARE(storedToken(), "t"_ba);
            QCOMPARE(m_outcomes, QStringList(u"signed in"_s));
            QCOMPARE(m_program->store.email(), outcome);
        } else {
            QCOMPARE(m_outcomes, QStringList(outcome));
            QVERIFY(m_secrets.count() == 0 && !m_preferences.value(emailKey));
        }
    }

    void aLinkCountsOnceAndOnlyWhileItIsWaitedFor()
    {
        SignIn &signIn = m_program->signIn;
        const QUrl link(u"nivora://x?token=secret"_s);
        const auto drop = [&](const QUrl &dropped) {
            QTest::ignoreMessage(QtInfoMsg, "A link that no sign-in waits for was dropped");
            signIn.openLink(dropped);
            QVERIFY(!m_program->store.isSignedIn());
        };
        drop(link); // before
        platform::Task task = signIn.signInWithGoogle(done());
        drop(QUrl(u"https://x?token=secret"_s));
        task.cancel();
        drop(link); // dropped with its form
        task = signIn.signInWithGoogle(done());
        signIn.giveUp();
        drop(link);
        QTRY_COMPARE(m_outcomes, QStringList(u"已取消登录。"_s));
        task = signIn.signInWithGoogle(done());
        signIn.openLink(link);
        QCOMPARE(m_outcomes.value(1), u"signed in"_s);
        m_program->store.signOut();
        drop(link); // again
        QCOMPARE(m_outcomes.size(), 2);
    }

    void ofTwoAttemptsTheLaterOneGoesOn()
    {
        const platform::Task first = m_program->signIn.signInWithGoogle(done());
        const platform::Task second = m_program->signIn.signInWithGoogle(done());
        QTRY_COMPARE(m_outcomes, QStringList(u"已取消登录。"_s));
        m_program->signIn.openLink(QUrl(u"nivora:?token=t"_s));
        QCOMPARE(m_outcomes.value(1), u"signed in"_s);
        QVERIFY(!first.isRunning() && !second.isRunning());
    }

    void whatTheDesktopLacksIsToldOf()
    {
        m_browser.setInstalled(false);
        platform::Task task = m_program->signIn.signInWithGoogle(done());
        QVERIFY(m_outcomes.isEmpty());
        QTRY_COMPARE(m_outcomes, QStringList(u"无法打开登录页面。"_s));
        m_browser.setInstalled(true);
        m_secrets.setAvailable(false);
        task = m_program->signIn.signInWithGoogle(done());
        m_program->signIn.openLink(QUrl(u"nivora:?token=t"_s));
        QCOMPARE(m_outcomes.value(1), u"无法保存登录状态：系统密钥环不可用。"_s);
        QVERIFY(m_program->store.email().isEmpty() && !m_preferences.value(emailKey));
    }
};

QTEST_GUILESS_MAIN(TestSignIn)
#include "tst_sign_in.moc"
