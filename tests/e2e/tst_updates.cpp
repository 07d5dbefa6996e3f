#include "road.h"

#include "localcloud/router.h"
#include "localcloud/update_service.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <X11/keysym.h>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using namespace nivora::test;

namespace {

const auto update = X11Driver::ofClass(u"Nivora"_s, u"update"_s);
const auto history = X11Driver::ofClass(u"Nivora"_s, u"versionHistory"_s);

void ask(const Road &road, const QString &action)
{
    const auto bus = QDBusConnection::connectToBus(road.session.busAddress(), u"updates"_s);
    auto call = QDBusMessage::createMethodCall(
        u"app.nivora"_s, u"/app/nivora"_s, u"org.freedesktop.Application"_s, u"ActivateAction"_s);
    call.setArguments({action, QVariant(QVariantList()), QVariantMap()});
    bus.call(call, QDBus::Block, int(std::chrono::milliseconds(patience).count()));
    QDBusConnection::disconnectFromBus(u"updates"_s);
}

bool press(const Road &road, const QString &name)
{
    const auto control = road.product->waitForControl(name, patience);
    return control && control->press();
}

} // namespace

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
        QVERIFY2(road.begin({{u"AppleLanguages"_s, QJsonArray{u"zh-Hans"_s}}}), qUtf8Printable(road.problem()));
        ask(road, u"check-updates"_s);
        QVERIFY2(road.product->waitForControl(u"有新版本：Nivora 0.2.0"_s, patience),
                 qUtf8Printable(road.problem()));
        QVERIFY2(press(road, u"版本历史"_s), qUtf8Printable(road.problem()));
        const auto window = road.user->waitForMapped(history, patience);
        QVERIFY2(window && road.user->waitForActive(window->id, patience),
                 qUtf8Printable(road.problem()));
        const auto notes = road.product->waitForControl(u"更新说明"_s, patience);
        QVERIFY2(notes && waitUntil([&] { return notes->text().contains(u"面板打开得更快。"); },
                                    patience),
                 qUtf8Printable(road.problem()));
        road.user->press({XK_Tab}); // from the list into the page
        road.user->press({XK_Tab});
        road.user->press({XK_Return});
        QVERIFY(opened(u"/releases/0.2.0"_s));
        road.user->press({XK_Escape});
        QVERIFY(road.user->waitForGone(history, patience));

        QVERIFY2(press(road, u"跳过此版本"_s), qUtf8Printable(road.problem()));
        QVERIFY(road.user->waitForGone(update, patience));
        ask(road, u"check-updates"_s);
        QVERIFY2(press(road, u"打开下载页"_s), qUtf8Printable(road.problem()));
        QVERIFY(road.user->waitForGone(update, patience));
    }

    void withoutAServerTheUserIsTold()
    {
        Road road;
        QVERIFY2(road.begin(), qUtf8Printable(road.problem()));
        m_cloud.stopListening();
        ask(road, u"check-updates"_s);
        QVERIFY2(road.product->waitForControl(u"无法检查更新"_s, patience),
                 qUtf8Printable(road.problem()));
        ask(road, u"version-history"_s);
        QVERIFY2(road.product->waitForControl(u"无法加载版本历史"_s, patience),
                 qUtf8Printable(road.problem()));
    }
};

QTEST_GUILESS_MAIN(TestUpdates)

#include "tst_updates.moc"
