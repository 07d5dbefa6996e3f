#include "road.h"

#include "support/status_notifier_host.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <X11/keysym.h>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora::test;

namespace {

enum class Tray { OnBus, Embedding };

// An entry, and the way to it by the keyboard.
struct Entry
{
    QString label;
    std::vector<int> place;
};

// One of the program's by its role, or that of its helper.
X11Driver::Condition windowOf(const QString &name)
{
    return [name](const X11Driver::Window &window) {
        return window.role == name ||
               (window.className != u"trayer" && window.instanceName == name);
    };
}

// As wide as the icons in it, once it has some.
bool isEmbeddingTray(const X11Driver::Window &window)
{
    return window.className == u"trayer" && window.instanceName == u"panel" &&
           window.geometry.width() > 16;
}

} // namespace

// The menu of the tray icon, entry by entry, on trays that appear after the
// program, die and come back.
class TestMenu : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder; // of the browser, and of the addresses it was given
    std::unique_ptr<Road> m_road;
    std::unique_ptr<StatusNotifierHost> m_host; // null for the other kind
    QProcess *m_tray = nullptr;

    bool showTray(Tray kind)
    {
        if (kind == Tray::OnBus) {
            m_host = std::make_unique<StatusNotifierHost>(m_road->session.busAddress());
            return m_host->appear() &&
                   waitUntil([this] { return m_host->items().size() == 1; }, patience);
        }
        m_tray = m_road->session.launch(u"trayer"_s, {u"--widthtype"_s, u"request"_s});
        return m_tray && m_road->user->waitForMapped(isEmbeddingTray, patience);
    }
    void hideTray()
    {
        m_host.reset();
        if (m_tray)
            m_road->session.end(std::exchange(m_tray, nullptr));
    }
    bool press(const Entry &entry)
    {
        if (m_host)
            return m_host->press(entry.label);
        const auto tray = m_road->user->find(isEmbeddingTray);
        if (!tray)
            return false;
        m_road->user->movePointer(tray->geometry.center());
        m_road->user->click();
        return m_road->choose(entry.place);
    }
    QByteArray opened() const
    {
        QFile file(m_folder.filePath(u"opened"_s));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
private Q_SLOTS:
    void initTestCase()
    {
        QFile browser(m_folder.filePath(u"xdg-open"_s));
        QVERIFY(browser.open(QIODevice::WriteOnly));
        browser.write("#!/bin/sh\necho \"$1\" >> '" + m_folder.filePath(u"opened"_s).toUtf8() +
                      "'\n");
        browser.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", m_folder.path().toUtf8() + ':' + qgetenv("PATH"));
    }
    void cleanup()
    {
        hideTray();
        m_road.reset();
        QFile::remove(m_folder.filePath(u"opened"_s));
    }

    void everyEntryWorks_data()
    {
        QTest::addColumn<Tray>("kind");
        QTest::newRow("on the session bus") << Tray::OnBus;
        QTest::newRow("embedded by the X server") << Tray::Embedding;
    }
    void everyEntryWorks()
    {
        QFETCH(const Tray, kind);
        m_road = std::make_unique<Road>();
        QVERIFY(m_road->begin({{u"appLanguage"_s, u"zh-Hans"_s}}));
        QVERIFY(showTray(kind));
        hideTray();
        QVERIFY(showTray(kind));
        if (m_host)
            QCOMPARE(std::ranges::count(m_host->iconSizes(), QSize(44, 44)), 1);

        const std::pair<Entry, QString> windows[] = {
            {{u"翻译面板"_s, {1}}, u"panel"_s},
            {{u"截图翻译"_s, {2}}, u"nivora-screencapture"_s},
            {{u"翻译历史…"_s, {3}}, u"history"_s},
            {{u"设置…"_s, {4}}, u"settings"_s},
            {{u"检查更新…"_s, {5}}, u"update"_s},
            {{u"版本历史…"_s, {6, 1}}, u"versionHistory"_s},
            {{u"登录…"_s, {7}}, u"login"_s},
        };
        for (const auto &[entry, name] : windows) {
            QVERIFY2(press(entry), qUtf8Printable(entry.label));
            const auto window = m_road->user->waitForMapped(windowOf(name), patience);
            // The overlay of the capture takes all keys without being active.
            QVERIFY2(window && (window->role.isEmpty() ||
                                m_road->user->waitForActive(window->id, patience)),
                     qUtf8Printable(entry.label));
            if (name == u"update") // which comes again with its answer
                QVERIFY(m_road->product->waitForControl(u"无法检查更新"_s, patience));
            // The overlay is there a moment before it has the keyboard.
            const auto leaves = [&] {
                m_road->user->press({XK_Escape});
                return m_road->user->waitForGone(windowOf(name), 1s);
            };
            QVERIFY2(waitUntil(leaves, patience), qUtf8Printable(entry.label));
        }
        QVERIFY(press({u"访问官网"_s, {6, 2}}));
        QTRY_COMPARE(opened(), NIVORA_WEBSITE "\n"_ba);
        QVERIFY(press({u"退出 Nivora"_s, {8}}));
        QTRY_VERIFY_WITH_TIMEOUT(!m_road->product->isRunning(), 10000);
    }

    void theEntriesOfOtherStatesWork_data() { everyEntryWorks_data(); }
    void theEntriesOfOtherStatesWork()
    {
        QFETCH(const Tray, kind);
        m_road = std::make_unique<Road>(DesktopSession::Options{
            .screenSize{1280, 800}, .accessibility = false, .keyring = true});
        QVERIFY(m_road->prepare());
        m_road->secretTool(u"store"_s, u"session-token"_s, "token"_ba);
        QCOMPARE(m_road->secretTool(u"lookup"_s, u"session-token"_s), "token"_ba);
        QVERIFY(m_road->product->start({{u"appLanguage"_s, u"zh-Hans"_s},
                                        {u"hasCompletedOnboarding"_s, true},
                                        {u"hasToldOfMissingTray"_s, true},
                                        {u"accountEmail"_s, u"me@x.org"_s}}));
        QVERIFY(showTray(kind));
        const auto alert = windowOf(u"alert"_s); // about the permission that is missing
        for (int i = 0; i < 2; ++i) {
            if (i == 1)
                QVERIFY(press({u"打开系统设置授权…"_s, {1}}));
            const auto window = m_road->user->waitForMapped(alert, patience);
            QVERIFY(window && m_road->user->waitForActive(window->id, patience));
            m_road->user->press({XK_Escape});
            QVERIFY(m_road->user->waitForGone(alert, patience));
        }

        QVERIFY(press({u"登出"_s, {8}}));
        QTRY_COMPARE(m_road->secretTool(u"lookup"_s, u"session-token"_s), ""_ba);
        QVERIFY(press({u"登录…"_s, {8}})); // in its place
        QVERIFY(m_road->user->waitForMapped(windowOf(u"login"_s), patience));
    }
};

QTEST_GUILESS_MAIN(TestMenu)
#include "tst_menu.moc"
