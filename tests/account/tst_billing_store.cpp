#include "account/billing_store.h"
#include "account/billing_summary.h"

#include "localcloud/server.h"
#include "platform_linux_network/qt_http_client.h"
#include "platform_memory/memory_secret_store.h"
#include "platform_memory/memory_web_browser.h"
#include "stores/keychain_store.h"

#include <QLocale>
#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using localcloud::Answer;

namespace {

Answer usage(int used)
{
    return Answer::json(
        200, {{u"plan"_s, u"pro"_s}, {u"status"_s, u"x"_s}, {u"used"_s, used}, {u"quota"_s, 9}});
}

} // namespace

class TestBillingStore : public QObject
{
    Q_OBJECT

    void signIn(bool in)
    {
        m_keychain.write(KeychainStore::sessionTokenAccount(), in ? u"t-1"_s : QString());
    }
    qint64 used() const { return m_store->status() ? m_store->status()->used : -1; }

    linuxdesktop::QtHttpClient m_network;
    memory::MemorySecretStore m_secrets;
    KeychainStore m_keychain{m_secrets};
    memory::MemoryWebBrowser m_browser;
    std::unique_ptr<localcloud::Server> m_server;
    std::unique_ptr<BillingStore> m_store;

private Q_SLOTS:
    void init()
    {
        m_server = std::make_unique<localcloud::Server>();
        QVERIFY(m_server->listen());
        m_browser = {};
        signIn(true);
        m_store = std::make_unique<BillingStore>(AuthEndpoint{m_network, m_server->url()},
                                                 m_keychain, m_browser);
    }

    void theLastFiguresStayThroughFaultsUntilTheSignOut()
    {
        m_server->enqueue(usage(1));
        m_store->refresh();
        QVERIFY(m_store->isLoading());
        QTRY_COMPARE(used(), 1);
        m_server->enqueue(Answer::html(502));
        m_store->refresh();
        QTRY_COMPARE(m_store->errorText(), u"登录服务返回错误 (HTTP 502)。"_s);
        QVERIFY(!m_store->isLoading());
        QCOMPARE(used(), 1);
        signIn(false);
        m_store->refresh();
        QCOMPARE(used(), -1);
        QCOMPARE(m_store->errorText(), u"登录服务返回错误 (HTTP 502)。"_s);
        signIn(true);
        m_server->enqueue(usage(2));
        m_store->refresh();
        QVERIFY(m_store->errorText().isEmpty());
        QTRY_COMPARE(used(), 2);
    }

    void theLastRefreshToFinishCounts()
    {
        m_server->enqueue(usage(1).delayedBy(100ms));
        m_store->refresh();
        QTRY_COMPARE(m_server->requests().size(), 1);
        m_server->enqueue(usage(2));
        m_store->refresh();
        QTRY_COMPARE(used(), 2);
        QVERIFY(m_store->isLoading());
        QTRY_COMPARE(used(), 1);
        QVERIFY(!m_store->isLoading());
    }

    void anAnswerAboutSomebodyWhoLeftIsDropped()
    {
        m_server->enqueue(usage(1).delayedBy(50ms));
        m_store->refresh();
        signIn(false);
        m_store->refresh();
        QTRY_VERIFY(!m_store->isLoading());
        QCOMPARE(used(), -1);
    }

    void pagesOpenInTheBrowser()
    {
        const auto page = [](const QString &url) { return Answer::json(200, {{u"url"_s, url}}); };
        m_server->enqueue(page(u"https://pay.x/1"_s));
        m_store->openCheckout();
        QTRY_COMPARE(m_browser.opened(), QList<QUrl>{QUrl(u"https://pay.x/1"_s)});
        m_server->enqueue(page(u""_s));
        m_store->openPortal();
        QTRY_COMPARE(m_store->errorText(), u"登录服务响应异常，请重试。"_s);
        m_browser.setInstalled(false);
        m_server->enqueue(page(u"https://pay.x/2"_s));
        m_store->openPortal();
        QVERIFY(m_store->errorText().isEmpty());
        QTRY_COMPARE(m_store->errorText(), u"无法打开浏览器。"_s);
        signIn(false);
        m_store->openCheckout();
        QTest::qWait(30); // long enough for a request to arrive on this machine
        QCOMPARE(m_server->requests().size(), 3);
        QCOMPARE(m_store->errorText(), u"无法打开浏览器。"_s);
    }

    void theSummaryIsOneLine_data()
    {
        QTest::addColumn<BillingStatus>("status");
        QTest::addColumn<QString>("line");
        const auto row = [](const QString &plan, qint64 used, qint64 quota, const QString &line) {
            QTest::newRow(qPrintable(line)) << BillingStatus{plan, {}, used, quota, {}} << line;
        };
        row(u"pro"_s, 1200, 10'000, u"Pro · 1,200/10,000 (12%)"_s);
        row(u"Pro"_s, 5, 1000, u"免费档 · 5/1,000 (1%)"_s);
        row(u""_s, 4, 1000, u"免费档 · 4/1,000 (0%)"_s);
        row(u"pro"_s, 20, 10, u"Pro · 20/10 (100%)"_s);
        row(u"pro"_s, 20, 0, u"Pro · 20/0 (0%)"_s);
    }
    void theSummaryIsOneLine()
    {
        QFETCH(const BillingStatus, status);
        QTEST(billingSummary(status, QLocale(QLocale::English)), "line");
    }
};

QTEST_GUILESS_MAIN(TestBillingStore)
#include "tst_billing_store.moc"
