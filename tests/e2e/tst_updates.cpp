#include "road.h"

#include "localcloud/router.h"
#include "localcloud/update_service.h"

#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <X11/keysym.h>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using namespace nivora::test;

// A newer release in the feed, from the word of it to its page in the browser.
class TestUpdates : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder; // of the browser, and of the addresses it was given
    localcloud::UpdateService m_releases;
    localcloud::Router m_router;
    localcloud::Server m_cloud;

    bool opened(const QString &path) const
    {
        const QByteArray line = QUrl(QStringLiteral(NIVORA_UPDATE_ENDPOINT) + path).toEncoded();
        return waitUntil(
            [&] {
                QFile file(m_folder.filePath(u"opened"_s));
                return file.open(QIODevice::ReadOnly) && file.readAll().contains(line + '\n');
            },
            patience);
    }

private Q_SLOTS:
    void initTestCase()
    {
        const QUrl endpoint(QStringLiteral(NIVORA_UPDATE_ENDPOINT));
        if (endpoint.host() != "localhost"_L1)
            QSKIP("The product is built for an update server that is not on this machine.");
        QVERIFY2(waitUntil([&] { return m_cloud.listen(quint16(endpoint.port())); }, patience),
                 qUtf8Printable(m_cloud.errorString()));
        m_releases.addRoutes(m_router);
        m_cloud.setHandler([this](const auto &request) { return m_router.handle(request); });

        QFile browser(m_folder.filePath(u"xdg-open"_s));
        QVERIFY(browser.open(QIODevice::WriteOnly));
        browser.write("#!/bin/sh\necho \"$1\" >> '" + m_folder.filePath(u"opened"_s).toUtf8() +
                      "'\n");
        browser.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", m_folder.path().toUtf8() + ':' + qgetenv("PATH"));
    }

    void aNewReleaseLeadsToItsNotesAndItsPage()
    {
        Road road;
        QVERIFY(road.begin({{u"AppleLanguages"_s, QJsonArray{u"zh-Hans"_s}}}));
        QVERIFY(road.ask(u"check-updates"_s));
        QVERIFY(road.product->waitForControl(u"有新版本：Nivora 0.2.0"_s, patience));
        QVERIFY(road.press(u"版本历史"_s));
        QVERIFY(road.waitForWindow(u"versionHistory"_s));
        const auto notes = road.product->waitForControl(u"更新说明"_s, patience);
        QVERIFY(notes &&
                waitUntil([&] { return notes->text().contains(u"面板打开得更快。"); }, patience));
        road.user->press({XK_Tab}); // from the list into the page
        road.user->press({XK_Tab});
        road.user->press({XK_Return});
        QVERIFY(opened(u"/releases/0.2.0"_s));
        road.user->press({XK_Escape});
        QVERIFY(road.waitForGone(u"versionHistory"_s));

        QVERIFY(road.press(u"跳过此版本"_s));
        QVERIFY(road.waitForGone(u"update"_s));
        QVERIFY(road.ask(u"check-updates"_s));
        QVERIFY(road.press(u"打开下载页"_s));
        QVERIFY(road.waitForGone(u"update"_s));
    }
};

QTEST_GUILESS_MAIN(TestUpdates)

#include "tst_updates.moc"
