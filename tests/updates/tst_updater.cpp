#include "updates/updater.h"

#include "updates/sparkle_gentle_reminders.h"

#include "localcloud/router.h"
#include "localcloud/server.h"
#include "localcloud/update_service.h"
#include "platform_linux_network/qt_http_client.h"
#include "platform_memory/memory_idle_monitor.h"
#include "platform_memory/memory_preferences.h"
#include "platform_memory/memory_web_browser.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using localcloud::Answer;
using Phase = Updater::Phase;

// The schedule, the user's checks, and what servers do to both.
class TestUpdater : public QObject
{
    Q_OBJECT

    localcloud::UpdateService m_releases; // up to 0.2.0
    localcloud::Router m_router;
    std::unique_ptr<localcloud::Server> m_cloud;
    linuxdesktop::QtHttpClient m_network;
    std::unique_ptr<UpdateServer> m_server;
    std::unique_ptr<memory::MemoryPreferences> m_preferences;
    std::unique_ptr<memory::MemoryIdleMonitor> m_idleMonitor;
    memory::MemoryWebBrowser m_browser;
    int m_activations = 0;
    SparkleGentleReminders m_reminders{[this] { ++m_activations; }};
    std::unique_ptr<Updater> m_updater;

    void start(const QString &version, std::chrono::milliseconds period = 1h)
    {
        m_updater = std::make_unique<Updater>(
            Updater::Parts{*m_server, *m_preferences, *m_idleMonitor, m_browser, m_reminders},
            Updater::Versions{version, u"6.1.0"_s},
            Updater::Schedule{.first = 5ms, .period = period, .jitter = 2ms, .idle = 1min});
    }
    qsizetype checks() const { return m_cloud->requests().size(); }

private Q_SLOTS:
    void initTestCase() { m_releases.addRoutes(m_router); }

    void init()
    {
        m_updater.reset();
        m_cloud = std::make_unique<localcloud::Server>();
        QVERIFY(m_cloud->listen());
        m_cloud->setHandler([this](const auto &request) { return m_router.handle(request); });
        m_server = std::make_unique<UpdateServer>(m_network, m_cloud->url(), 300ms);
        m_preferences = std::make_unique<memory::MemoryPreferences>();
        m_idleMonitor = std::make_unique<memory::MemoryIdleMonitor>();
        m_browser.setInstalled(true);
        m_activations = 0;
    }

    void aReminderWaitsUntilNobodyIsThere()
    {
        start(u"0.1.0"_s, 20ms);
        QSignalSpy presented(m_updater.get(), &Updater::presented);
        m_updater->start();
        QTRY_VERIFY(checks() >= 3); // each replaces the wait of the last
        QCOMPARE(m_updater->phase(), Phase::Quiet);
        m_idleMonitor->leave();
        QTRY_COMPARE(m_updater->phase(), Phase::Found);
        QCOMPARE(presented, QList<QVariantList>{{false}});
        QCOMPARE(m_activations, 1);
        QCOMPARE(m_updater->release()->version, u"0.2.0"_s);
    }

    void aSkippedVersionIsShownOnlyToWhoAsks()
    {
        m_idleMonitor->leave();
        start(u"0.1.0"_s);
        m_updater->start();
        QTRY_COMPARE(m_updater->phase(), Phase::Found);
        m_updater->skip();
        QCOMPARE(m_updater->phase(), Phase::Quiet);
        start(u"0.1.0"_s, 5ms);
        m_updater->start();
        QTRY_VERIFY(checks() >= 4);
        QCOMPARE(m_updater->phase(), Phase::Quiet);
        m_updater->checkForUpdates();
        QTRY_COMPARE(m_updater->phase(), Phase::Found);
        m_preferences->set(u"skippedUpdateVersion"_s, u"0.1.9"_s);
        start(u"0.1.0"_s);
        m_updater->start();
        QTRY_COMPARE(m_updater->phase(), Phase::Found);
    }

    void aCheckOfTheUsersAlwaysAnswers_data()
    {
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<Phase>("phase");
        QTest::newRow("nothing newer")
            << Answer::plain(200, "<x><item><title/><sparkle:version>0.1</sparkle:version></item>",
                             "application/xml")
            << Phase::UpToDate;
        QTest::newRow("no feed") << Answer::html(502) << Phase::Failed;
        QTest::newRow("no answer") << Answer::silence() << Phase::Failed;
        QTest::newRow("another origin")
            << Answer::redirect(QUrl(u"http://localhost:9/dist/appcast.xml"_s), 302)
            << Phase::Failed;
        QTest::newRow("a file") << Answer::redirect(QUrl(u"file:///etc/passwd"_s), 302)
                                << Phase::Failed;
        QTest::newRow("the same origin")
            << Answer::redirect(QUrl(u"/dist/appcast.xml"_s), 302) << Phase::Found;
    }

    void aCheckOfTheUsersAlwaysAnswers()
    {
        QFETCH(const Answer, answer);
        m_cloud->enqueue(answer);
        start(u"0.1.0"_s);
        QSignalSpy presented(m_updater.get(), &Updater::presented);
        m_updater->checkForUpdates();
        QCOMPARE(presented, QList<QVariantList>{{true}});
        QTRY_VERIFY(m_updater->phase() != Phase::Checking);
        QTEST(m_updater->phase(), "phase");
        QCOMPARE(m_updater->error().isEmpty(), m_updater->phase() != Phase::Failed);
        QCOMPARE(m_activations, 0);
    }

    void checksOfItsOwnFailInSilence()
    {
        m_idleMonitor->leave();
        m_cloud->enqueue(Answer::silence());
        m_cloud->enqueue(Answer::html(502));
        start(u"0.2.0"_s, 350ms); // there is nothing newer
        QSignalSpy changed(m_updater.get(), &Updater::changed);
        m_updater->start();
        QTRY_COMPARE(checks(), 4);
        QCOMPARE(changed.count(), 0);
    }

    void aReleaseOpensInTheBrowser()
    {
        start(u"0.1.0"_s);
        m_updater->checkForUpdates();
        QTRY_COMPARE(m_updater->phase(), Phase::Found);
        QVERIFY(m_updater->release()->package && !m_updater->release()->package->isSigned);
        m_updater->openPage();
        QTRY_COMPARE(m_updater->phase(), Phase::Quiet);
        QCOMPARE(m_browser.opened().last(), m_cloud->url().resolved(QUrl(u"/releases/0.2.0"_s)));
        m_browser.setInstalled(false);
        m_updater->checkForUpdates();
        QTRY_COMPARE(m_updater->phase(), Phase::Found);
        m_updater->openPage();
        QTRY_COMPARE(m_updater->phase(), Phase::NoBrowser);
        QCOMPARE(m_updater->page().path(), u"/releases/0.2.0"_s);
    }
};

QTEST_GUILESS_MAIN(TestUpdater)

#include "tst_updater.moc"
