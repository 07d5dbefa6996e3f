#include "road.h"

#include "support/settings_portal.h"

#include "localcloud/event_stream.h"

#include <QTest>

#include <X11/keysym.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using namespace nivora::test;

// How the panel opens, closes and tells of failures, beside a real editor.
class TestPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensForTypingWhenNothingIsSelected()
    {
        Road road;
        QVERIFY2(road.begin(), qUtf8Printable(road.problem()));
        road.server.enqueue(localcloud::eventStream({u"你好"_s}));
        QVERIFY2(road.open(Editor::Toolkit::Gtk, u"甲乙"_s, false), qUtf8Printable(road.problem()));
        road.user->press({XK_Control_L, XK_End});

        road.pull(Trigger::DoubleShift);
        QVERIFY2(road.product->waitForPanel(patience), qUtf8Printable(road.problem()));
        const auto source = road.product->waitForControl(u"原文"_s, patience);
        QVERIFY2(source, qUtf8Printable(road.problem()));
        QVERIFY(waitUntil([&] { return source->isFocused(); }, patience));
        QCOMPARE(source->text(), QString());

        for (const auto key : {XK_h, XK_e, XK_l, XK_l, XK_o})
            road.user->press({X11Driver::Symbol(key)});
        QVERIFY(waitUntil([&] { return source->text() == u"hello"_s; }, patience));
        QVERIFY(road.server.requests().isEmpty());
        road.user->press({XK_Control_L, XK_Return});
        QVERIFY2(road.product->waitForTranslation(u"你好"_s, patience),
                 qUtf8Printable(road.problem()));
        QVERIFY2(road.prompt(0).endsWith(u"\n\nhello"_s), qUtf8Printable(road.prompt(0)));

        QVERIFY(road.product->waitForControl(u"Ctrl+↩ 插入到输入框"_s, patience));
        road.user->press({XK_Control_L, XK_Return});
        QVERIFY(road.product->waitForPanelGone(patience));
        QVERIFY2(road.editor->waitForText(u"甲乙你好"_s, patience),
                 qUtf8Printable(road.editor->text()));
    }

    void showsAnErrorAndTriesAgain_data()
    {
        QTest::addColumn<localcloud::Answer>("failure");
        QTest::addColumn<QString>("message");
        QTest::newRow("the service fails")
            << localcloud::Answer::error(503, u"overloaded"_s) << u"服务返回错误 (HTTP 503)。"_s;
        QTest::newRow("a page instead of a translation")
            << localcloud::Answer::html(200) << u"未收到译文，请重试。"_s;
    }

    void showsAnErrorAndTriesAgain()
    {
        QFETCH(const localcloud::Answer, failure);
        QFETCH(const QString, message);
        Road road;
        QVERIFY2(road.begin(), qUtf8Printable(road.problem()));
        road.server.enqueue(failure);
        road.server.enqueue(localcloud::eventStream({u"見積もり"_s}));
        QVERIFY2(road.open(Editor::Toolkit::Gtk, u"请发一下报价"_s),
                 qUtf8Printable(road.problem()));

        road.pull(Trigger::DoubleShift);
        QVERIFY2(road.product->waitForControl(message, patience), qUtf8Printable(road.problem()));
        QVERIFY(!road.product->control(u"Ctrl+↩ 替换原文"_s));
        const auto retry = road.product->waitForControl(u"重试"_s, patience);
        QVERIFY2(retry && retry->press(), qUtf8Printable(road.problem()));
        QVERIFY2(road.product->waitForTranslation(u"見積もり"_s, patience),
                 qUtf8Printable(road.problem()));
        QVERIFY(!road.product->control(message));
        QCOMPARE(road.server.requests().size(), 2);
        QCOMPARE(road.prompt(1), road.prompt(0));
    }

    void closesAndGivesTheKeyboardBack_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("on Escape") << true;
        QTest::newRow("when another window is clicked") << false;
    }

    void closesAndGivesTheKeyboardBack()
    {
        QFETCH(const bool, byKey);
        Road road;
        QVERIFY2(road.begin(), qUtf8Printable(road.problem()));
        road.server.enqueue(localcloud::eventStream({u"見積もり"_s}));
        QVERIFY2(road.open(Editor::Toolkit::Gtk, u"请发一下报价"_s),
                 qUtf8Printable(road.problem()));

        road.pull(Trigger::DoubleShift);
        QVERIFY2(road.product->waitForPanel(patience), qUtf8Printable(road.problem()));
        QVERIFY2(road.product->waitForTranslation(u"見積もり"_s, patience),
                 qUtf8Printable(road.problem()));
        if (byKey) {
            road.user->press({XK_Escape});
        } else {
            road.user->movePointer(road.editor->textArea().bottomRight() - QPoint(20, 20));
            road.user->click();
        }
        QVERIFY(road.product->waitForPanelGone(patience));
        QVERIFY(road.user->waitForActive(road.editor->window(), patience));
        QCOMPARE(road.editor->text(), u"请发一下报价"_s);
        road.user->press({XK_Control_L, XK_End});
        road.user->press({XK_x});
        QVERIFY2(road.editor->waitForText(u"请发一下报价x"_s, patience),
                 qUtf8Printable(road.editor->text()));
    }

    void followsTheDesktopsColours()
    {
        Road road;
        QVERIFY2(road.begin(), qUtf8Printable(road.problem()));
        road.server.enqueue(localcloud::eventStream({u"見積もり"_s}));
        QVERIFY2(road.open(Editor::Toolkit::Gtk, u"请发一下报价"_s),
                 qUtf8Printable(road.problem()));
        road.pull(Trigger::DoubleShift);
        const auto panel = road.product->waitForPanel(patience);
        QVERIFY2(panel, qUtf8Printable(road.problem()));
        const auto isDark = [&] {
            const QPoint ground = panel->geometry.topLeft() + QPoint(200, 15);
            return road.user->picture({ground, QSize(1, 1)}).pixelColor(0, 0).lightness() < 128;
        };
        QVERIFY(waitUntil([&] { return !isDark(); }, patience));
        SettingsPortal portal(road.session.busAddress());
        QVERIFY(portal.isValid());
        for (const uint scheme : {1U, 2U, 1U}) {
            portal.set(u"org.freedesktop.appearance"_s, u"color-scheme"_s, scheme);
            QVERIFY(waitUntil([&] { return isDark() == (scheme == 1); }, patience));
        }
    }

    void staysOnTheScreen()
    {
        Road road({.screenSize = {640, 480}});
        QVERIFY2(road.begin(), qUtf8Printable(road.problem()));
        road.server.enqueue(localcloud::eventStream({u"見積もり"_s}));
        QVERIFY2(road.open(Editor::Toolkit::Gtk, u"\n"_s.repeated(60) + u"请发一下报价"_s, false),
                 qUtf8Printable(road.problem()));
        road.user->press({XK_Control_L, XK_End});
        road.user->press({XK_Shift_L, XK_Home});
        QVERIFY(
            waitUntil([&] { return road.editor->selectedText() == u"请发一下报价"_s; }, patience));

        road.pull(Trigger::DoubleShift);
        const auto panel = road.product->waitForPanel(patience);
        QVERIFY2(panel, qUtf8Printable(road.problem()));
        const QRect allowed = QRect(0, 0, 640, 480).marginsRemoved({8, 8, 8, 8});
        QVERIFY2(allowed.contains(panel->geometry) && panel->geometry.bottom() == allowed.bottom(),
                 qUtf8Printable(QDebug::toString(panel->geometry)));
    }

    void staysAwayUntilSomebodyIsSignedIn()
    {
        Road road({.keyring = true});
        QVERIFY2(road.begin({{u"useCustomBackend"_s, false}}), qUtf8Printable(road.problem()));
        QVERIFY2(road.open(Editor::Toolkit::Gtk, u"请发一下报价"_s),
                 qUtf8Printable(road.problem()));
        for (const auto trigger : {Trigger::DoubleShift, Trigger::Chord}) {
            road.pull(trigger);
            QVERIFY(!road.product->waitForPanel(1s));
        }
        QVERIFY(road.product->isRunning());
        QVERIFY(road.server.requests().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestPanel)
#include "tst_panel.moc"
