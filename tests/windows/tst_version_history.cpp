#include "windows/version_history_window.h"

#include "updates/release_notes.h"
#include "updates/update_server.h"
#include "updates/version_history.h"

#include "localcloud/router.h"
#include "localcloud/server.h"
#include "localcloud/update_service.h"
#include "platform_linux_network/qt_http_client.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QListWidget>
#include <QSignalSpy>
#include <QTest>
#include <QTextBrowser>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using localcloud::Answer;

// The window over a real server.
class TestVersionHistory : public QObject
{
    Q_OBJECT

    localcloud::UpdateService m_releases;
    localcloud::Router m_router;
    QByteArray m_page; // in place of the notes, if any
    std::unique_ptr<localcloud::Server> m_cloud;
    linuxdesktop::QtHttpClient m_network;
    std::unique_ptr<UpdateServer> m_server;
    std::unique_ptr<ReleaseNotes> m_notes;
    std::unique_ptr<VersionHistory> m_history;
    QList<QUrl> m_links;
    std::unique_ptr<VersionHistoryWindowController> m_controller;
    QWidget *m_window = nullptr;

    QTextBrowser &page() const { return *m_window->findChild<QTextBrowser *>(); }
    qsizetype requests(const QByteArray &part) const
    {
        return std::ranges::count_if(
            m_cloud->requests(), [&](const auto &request) { return request.path.contains(part); });
    }

    void show()
    {
        m_controller->show();
        const auto windows = QApplication::topLevelWidgets();
        m_window = *std::ranges::find_if(
            windows, [](const QWidget *each) { return each->windowRole() == u"versionHistory"; });
    }

private Q_SLOTS:
    void initTestCase() { m_releases.addRoutes(m_router); }

    void init()
    {
        m_controller.reset();
        m_page.clear();
        m_cloud = std::make_unique<localcloud::Server>();
        QVERIFY(m_cloud->listen());
        m_cloud->setHandler([this](const localcloud::Request &request) {
            return request.path.endsWith(".html") && !m_page.isEmpty()
                       ? Answer::plain(200, m_page, "text/html")
                       : m_router.handle(request);
        });
        m_server = std::make_unique<UpdateServer>(m_network, m_cloud->url());
        m_notes = std::make_unique<ReleaseNotes>(*m_server);
        m_history =
            std::make_unique<VersionHistory>(*m_server, [] { return QStringList{u"zh-TW"_s}; });
        m_links.clear();
        m_controller = std::make_unique<VersionHistoryWindowController>(
            *m_history, *m_notes, [this](const QUrl &link) { m_links.append(link); });
    }

    void notesFollowTheListAndLoadOnce()
    {
        show();
        QTRY_VERIFY(page().toPlainText().contains(u"面板開啟得更快"));
        QTRY_COMPARE(requests("picture.png"), 1);
        auto *list = m_window->findChild<QListWidget *>();
        QCOMPARE(list->count(), 3);
        QTest::keyClick(list, Qt::Key_Down);
        QTRY_VERIFY(page().toPlainText().startsWith(u"Nivora 0.1.0"));
        m_history->load(); // chooses the first again
        QTRY_VERIFY(page().toPlainText().startsWith(u"Nivora 0.2.0"));
        const auto before = requests("zh-Hant");
        m_history->load();
        QSignalSpy entries(m_history.get(), &VersionHistory::entriesChanged);
        QTRY_COMPARE(entries.count(), 1);
        QTest::qWait(50);
        QCOMPARE(requests("zh-Hant"), before);
        QTest::keyClick(&page(), Qt::Key_Tab);
        QTest::keyClick(&page(), Qt::Key_Return);
        QCOMPARE(m_links, QList{m_cloud->url().resolved(QUrl(u"/releases/0.2.0"_s))});
    }

    void aPageReachesNothingElse()
    {
        localcloud::Server elsewhere;
        QVERIFY(elsewhere.listen());
        m_page = "<p>text<img src='" + elsewhere.url().toEncoded() +
                 "/x.png'><img src='file:///etc/hostname'><img src='/dist/notes/picture.png'>"
                 "<link rel=stylesheet href='/dist/style.css'><iframe src='/dist/frame'>";
        show();
        QTRY_COMPARE(requests("picture.png"), 1);
        QTest::qWait(100);
        QCOMPARE(elsewhere.acceptedConnections(), 0);
        QCOMPARE(m_cloud->requests().size(), 3);
    }

    void aBombIsShownInTime_data()
    {
        QTest::addColumn<QByteArray>("piece");
        QTest::newRow("elements") << "<div>"_ba;
        QTest::newRow("a table") << "<tr><td>x<td>x<td>x<td>x"_ba;
        QTest::newRow("one row") << "<td>x"_ba;
        QTest::newRow("lists") << "<ul><li>x"_ba;
        QTest::newRow("a word") << "x"_ba;
        QTest::newRow("ideographs") << "好"_ba;
        QTest::newRow("words") << "<p>all work and no play"_ba;
        QTest::newRow("one paragraph") << "all work and no play "_ba;
    }

    void aBombIsShownInTime()
    {
        QFETCH(const QByteArray, piece);
        m_page = "<table><tr>" + piece.repeated(10'000'000 / piece.size());
        if (!piece.contains("<t"))
            m_page.remove(0, 11);
        show();
        QElapsedTimer time;
        time.start();
        QTRY_VERIFY_WITH_TIMEOUT(page().isVisible(), 20'000);
        qInfo("%lld ms", time.elapsed());
        QVERIFY(time.elapsed() < 10'000);
    }
};

QTEST_MAIN(TestVersionHistory)

#include "tst_version_history.moc"
