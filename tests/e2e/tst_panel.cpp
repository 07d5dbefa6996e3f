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
        QVERIFY(road.begin());
        road.server.enqueue(failure);
        road.server.enqueue(localcloud::eventStream({u"見積もり"_s}));
        QVERIFY(road.open(Editor::Toolkit::Gtk, u"请发一下报价"_s));

        road.pull(Trigger::DoubleShift);
        QVERIFY(road.product->waitForControl(message, patience));
        QVERIFY(!road.product->control(u"Ctrl+↩ 替换原文"_s));
        const auto retry = road.product->waitForControl(u"重试"_s, patience);
        QVERIFY(retry && retry->press());
        QVERIFY(road.product->waitForTranslation(u"見積もり"_s, patience));
        QVERIFY(!road.product->control(message));
        QCOMPARE(road.server.requests().size(), 2);
        QCOMPARE(road.prompt(1), road.prompt(0));
    }

    void closesWhenAnotherWindowIsClicked()
    {
        Road road;
        QVERIFY(road.begin());
        QVERIFY(road.translate(u"请发一下报价"_s, u"見積もり"_s));
        road.user->movePointer(road.editor->textArea().bottomRight() - QPoint(20, 20));
        road.user->click();
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
        QVERIFY(road.begin());
        road.server.enqueue(localcloud::eventStream({u"見積もり"_s}));
        QVERIFY(road.open(Editor::Toolkit::Gtk, u"请发一下报价"_s));
        road.pull(Trigger::DoubleShift);
        const auto panel = road.product->waitForPanel(patience);
        QVERIFY(panel);
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
};

QTEST_GUILESS_MAIN(TestPanel)
#include "tst_panel.moc"
