#include "support/desktop_session.h"
#include "support/product.h"
#include "support/x11_driver.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDir>
#include <QFileInfo>
#include <QTest>
#include <QUrl>

#include <X11/keysym.h>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora::test;

namespace {
constexpr auto patience = 10s;

const X11Driver::Condition overlay = [](const X11Driver::Window &window) {
    return window.instanceName == u"nivora-screencapture";
};

// The desktop's portal, as far as it takes pictures.
class Portal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Screenshot")

public:
    uint status = 0;
    QString file;

public Q_SLOTS:
    QDBusObjectPath Screenshot(const QString &, const QVariantMap &options)
    {
        const QString request = u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(
            message().service().mid(1).replace(u'.', u'_'), options[u"handle_token"_s].toString());
        auto response =
            QDBusMessage::createSignal(request, u"org.freedesktop.portal.Request"_s, u"Response"_s);
        response << status << QVariantMap{{u"uri"_s, QUrl::fromLocalFile(file).toString()}};
        connection().send(response); // ahead of the answer, as may happen
        return QDBusObjectPath(request);
    }
};

} // namespace

// The program that lets the user mark a region, by itself.
class TestCaptureTool : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesExactlyWhatTheScreensShow_data()
    {
        QTest::addColumn<double>("scale");
        QTest::addColumn<QRect>("region");
        // Of the screens the second is left of and above the first.
        QTest::newRow("first screen") << 1.0 << QRect(1700, 950, 300, 120);
        QTest::newRow("second screen, enlarged") << 2.0 << QRect(20, 30, 300, 120);
        QTest::newRow("across both, and what is on neither") << 1.0 << QRect(300, 200, 1500, 900);
    }

    void takesExactlyWhatTheScreensShow()
    {
        QFETCH(const double, scale);
        QFETCH(const QRect, region);
        Stage stage({.screenSize = {1280, 800}, .secondScreen = {1600, 900}, .scale = scale});
        const auto xterm = X11Driver::ofClass(u"XTerm"_s);
        stage.session.launch(u"xterm"_s, {u"-geometry"_s, u"80x24+0+0"_s});
        QVERIFY(stage.user->waitForMapped(xterm, patience));
        stage.session.launch(u"xterm"_s, {u"-geometry"_s, u"80x24+1620+930"_s});
        QVERIFY(waitUntil([&] { return std::ranges::count_if(stage.user->windows(), xterm) == 2; },
                          patience));
        stage.user->movePointer(region.topLeft() + QPoint(7, 7)); // it is not in the picture
        QImage shown;
        const auto isStill = [&] {
            return std::exchange(shown, stage.session.screenshot()) == shown;
        };
        QVERIFY(waitUntil(isStill, patience, 500ms));
        QVERIFY(stage.begin());
        stage.user->drag(region.topLeft(), region.bottomRight());
        QCOMPARE(stage.end(), 0);
        QCOMPARE(QFileInfo(stage.path).permissions() & 0x77,
                 QFile::Permissions()); // nobody else's
        const QImage taken(stage.path);
        QCOMPARE(taken.size(), region.size());
        QCOMPARE(taken.convertToFormat(QImage::Format_RGB32),
                 shown.copy(region).convertToFormat(QImage::Format_RGB32));
    }

    void givesUpWhereAMenuKeepsTheMouse()
    {
        Stage stage({});
        QVERIFY(stage.begin());
        // The first one stands for the menu.
        const QProcess *menu = stage.tool;
        QVERIFY(stage.start());
        QCOMPARE(stage.end(), 2);
        QVERIFY(stage.session.errorOutput(stage.tool).contains("keeps the mouse"));
        QCOMPARE(menu->state(), QProcess::Running);

        // One that closes in good time is waited for.
        QVERIFY(stage.start());
        QVERIFY(stage.user->waitForMapped(
            [&](const auto &window) {
                return overlay(window) && window.id != stage.user->find(overlay)->id;
            },
            patience));
        stage.user->press({XK_Escape});
        QVERIFY(waitUntil([&] { return menu->state() == QProcess::NotRunning; }, patience));
        const auto isCancelled = [&] {
            stage.user->press({XK_Escape});
            return stage.tool->state() == QProcess::NotRunning;
        };
        QVERIFY(waitUntil(isCancelled, patience));
        QCOMPARE(stage.end(), 1);
    }

    void thePortalTakesThePictureWithinWayland_data()
    {
        QTest::addColumn<bool>("installed");
        QTest::addColumn<uint>("status");
        QTest::addColumn<int>("exitCode");
        QTest::newRow("taken") << true << 0u << 0;
        QTest::newRow("cancelled") << true << 1u << 1;
        QTest::newRow("refused") << true << 2u << 2;
        QTest::newRow("no portal") << false << 0u << 2;
    }

    void thePortalTakesThePictureWithinWayland()
    {
        QFETCH(const bool, installed);
        QFETCH(const uint, status);
        QFETCH(const int, exitCode);
        Stage stage({});
        stage.environment.insert(u"WAYLAND_DISPLAY"_s, u"wayland-0"_s);
        Portal portal;
        portal.status = status;
        portal.file = stage.session.folder() + u"/picture of the portal.png"_s;
        QFile file(portal.file);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("a picture") > 0);
        file.close();
        auto bus = QDBusConnection::connectToBus(stage.session.busAddress(), u"portal"_s);
        const auto disconnect =
            qScopeGuard([] { QDBusConnection::disconnectFromBus(u"portal"_s); });
        if (installed) {
            QVERIFY(bus.registerObject(u"/org/freedesktop/portal/desktop"_s, &portal,
                                       QDBusConnection::ExportAllSlots));
            QVERIFY(bus.registerService(u"org.freedesktop.portal.Desktop"_s));
        }
        QVERIFY(stage.start());
        QCOMPARE(stage.end(), exitCode);
        QCOMPARE(QFile::exists(stage.path), exitCode == 0);
        QCOMPARE(QFile::exists(portal.file), exitCode != 0);
        QCOMPARE(stage.session.errorOutput(stage.tool).isEmpty(), exitCode < 2);
    }

private:
    // A desktop, its user and one run of the program.
    struct Stage
    {
        explicit Stage(const DesktopSession::Options &options)
        {
            auto bare = options;
            bare.accessibility = false;
            started = session.start(bare);
            environment = session.environment();
            path = session.folder() + u"/picture.png"_s;
            user.emplace(session.displayName());
        }

        bool start()
        {
            const QString program = QFileInfo(Product::program())
                                        .dir()
                                        .filePath(u"../libexec/nivora/nivora-screencapture"_s);
            tool =
                started ? session.launch(program, {u"-i"_s, u"-x"_s, path}, environment) : nullptr;
            return tool;
        }
        // Until it has drawn something, which it does once it has the keyboard.
        bool begin()
        {
            const QImage before = session.screenshot();
            return start() && user->waitForMapped(overlay, patience) &&
                   waitUntil([&] { return session.screenshot() != before; }, patience);
        }
        // Its exit status, -1 if it does not end.
        int end() const
        {
            const auto hasEnded = [&] { return tool->state() == QProcess::NotRunning; };
            return waitUntil(hasEnded, patience) && tool->exitStatus() == QProcess::NormalExit
                       ? tool->exitCode()
                       : -1;
        }

        DesktopSession session;
        bool started = false;
        QProcessEnvironment environment;
        std::optional<X11Driver> user;
        QString path;
        QProcess *tool = nullptr;
    };
};

QTEST_GUILESS_MAIN(TestCaptureTool)
#include "tst_capture_tool.moc"
