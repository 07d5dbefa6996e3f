#include "road.h"

#include "support/status_notifier_host.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <X11/keysym.h>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace nivora::test;

namespace {

enum class Tray { OnBus, Embedding };

// An entry, and the way to it by the keyboard.
struct Entry
{
    QString label;
    std::vector<int> place;
};

} // namespace

// The menu of the tray icon, entry by entry, on trays that appear after the
// program, die and come back.
class TestMenu : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder; // of the browser, and of the addresses it was given

    bool hasBeenOpened(const QByteArray &page) const
    {
        QFile file(m_folder.filePath(u"opened"_s));
        return file.open(QIODevice::ReadOnly) && file.readAll().contains(page);
    }

    static X11Driver::Condition embeddingTray()
    {
        return [](const X11Driver::Window &window) {
            return window.instanceName == u"panel" && window.className == u"trayer" &&
                   window.geometry.width() > 16;
        };
    }
    bool press(Road &road, const StatusNotifierHost &host, Tray kind, const Entry &entry) const;

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

    void everyEntryWorks_data()
    {
        QTest::addColumn<Tray>("kind");
        QTest::newRow("on the session bus") << Tray::OnBus;
        QTest::newRow("embedded by the X server") << Tray::Embedding;
    }
    void everyEntryWorks()
    {
        QFETCH(const Tray, kind);
        QFile::remove(m_folder.filePath(u"opened"_s));
        Road road;
        QVERIFY2(road.begin({{u"appLanguage"_s, u"zh-Hans"_s}}), qUtf8Printable(road.problem()));
        StatusNotifierHost host(road.session.busAddress());
        QProcess *tray = nullptr;
        for (int life = 0; life < 2; ++life) { // dies once, and comes back
            if (kind == Tray::OnBus) {
                host.vanish();
                QVERIFY(host.appear());
                QTRY_COMPARE(host.items().size(), 1);
            } else {
                if (tray)
                    road.session.end(tray);
                tray = road.session.launch(u"trayer"_s, {u"--widthtype"_s, u"request"_s});
                // As wide as the icon, once it has one.
                QVERIFY(tray && road.user->waitForMapped(embeddingTray(), patience));
            }
        }
        if (kind == Tray::OnBus)
            QVERIFY(std::ranges::count(host.iconSizes(), QSize(44, 44)) == 1);

        const std::pair<Entry, QString> windows[] = {
            {{u"翻译面板"_s, {1}}, u"panel"_s},
            {{u"翻译历史…"_s, {2}}, u"history"_s},
            {{u"设置…"_s, {3}}, u"settings"_s},
            {{u"检查更新…"_s, {4}}, u"update"_s},
            {{u"版本历史…"_s, {5, 1}}, u"versionHistory"_s},
            {{u"登录…"_s, {6}}, u"login"_s},
        };
        for (const auto &[entry, role] : windows) {
            QVERIFY2(press(road, host, kind, entry), qUtf8Printable(entry.label + road.problem()));
            const auto opened = X11Driver::ofClass(u"Nivora"_s, role);
            const auto window = road.user->waitForMapped(opened, patience);
            QVERIFY2(window && road.user->waitForActive(window->id, patience),
                     qUtf8Printable(entry.label + road.problem()));
            road.user->press({XK_Escape});
            QVERIFY2(road.user->waitForGone(opened, patience), qUtf8Printable(entry.label));
        }
        QVERIFY2(press(road, host, kind, {u"访问官网"_s, {5, 2}}), qUtf8Printable(road.problem()));
        QTRY_VERIFY(hasBeenOpened(NIVORA_WEBSITE "\n"));
        QVERIFY2(press(road, host, kind, {u"退出 Nivora"_s, {7}}), qUtf8Printable(road.problem()));
        QTRY_VERIFY_WITH_TIMEOUT(!road.product->isRunning(), 10000);
    }
};

bool TestMenu::press(Road &road, const StatusNotifierHost &host, Tray kind,
                     const Entry &entry) const
{
    if (kind == Tray::OnBus)
        return host.press(entry.label);
    const auto tray = road.user->find(embeddingTray());
    if (!tray)
        return false;
    road.user->movePointer(tray->geometry.center());
    road.user->click();
    return road.choose(entry.place);
}

QTEST_GUILESS_MAIN(TestMenu)
#include "tst_menu.moc"
