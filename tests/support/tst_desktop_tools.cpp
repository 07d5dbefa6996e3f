#include "support/accessibility_tree.h"
#include "support/clipboard_peer.h"
#include "support/desktop_session.h"
#include "support/wait.h"
#include "support/x11_driver.h"

#include <QTest>

#include <X11/keysym.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora::test;

// The tools that drive a desktop, tried on a program that is known to work.
class TestDesktopTools : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void driveAnEditor()
    {
        DesktopSession session;
        QVERIFY2(session.start({}), qPrintable(session.error()));
        X11Driver user(session.displayName());
        AccessibilityTree tree(session.accessibilityBusAddress());
        QVERIFY(user.isValid() && tree.isValid());

        auto *editor = session.launch(u"mousepad"_s, {u"--disable-server"_s});
        QVERIFY(editor);
        const auto window = user.waitForMapped(X11Driver::ofClass(u"Mousepad"_s), 20s);
        QVERIFY(window);
        QVERIFY(user.waitForActive(window->id, 5s));
        QVERIFY(QRect(0, 0, 1280, 800).contains(window->geometry));

        const auto area = tree.waitFor(editor->processId(), AccessibilityTree::isFocused(), 10s);
        QVERIFY2(area, qPrintable(tree.dump(editor->processId())));
        QCOMPARE(area->role(), u"text"_s);
        QVERIFY(window->geometry.contains(area->frame()));

        user.press({XK_a});
        user.press({XK_Shift_L, XK_b});
        QVERIFY(waitUntil([&] { return area->text() == u"aB"_s; }, 5s));
        QVERIFY(area->setText(u"汉字 🎈"_s));
        user.press({XK_Control_L, XK_a});
        QVERIFY(waitUntil([&] { return area->selectedText() == u"汉字 🎈"_s; }, 5s));

        ClipboardPeer clipboard(session);
        QCOMPARE(clipboard.text(), std::nullopt);
        QVERIFY(clipboard.offer({{"UTF8_STRING", "plain"}, {"text/html", "<b>rich</b>"}}));
        QCOMPARE(clipboard.read("text/html"), "<b>rich</b>");
        QCOMPARE(clipboard.formats(), QByteArrayList({"TARGETS", "UTF8_STRING", "text/html"}));
        user.press({XK_Control_L, XK_v});
        QVERIFY(waitUntil([&] { return area->text() == u"plain"_s; }, 5s));
        user.press({XK_Control_L, XK_a});
        user.press({XK_Control_L, XK_c});
        QVERIFY(waitUntil([&] { return !clipboard.owns(); }, 5s));
        QCOMPARE(clipboard.text(), u"plain"_s);

        session.end(editor);
        QVERIFY(user.waitForGone(X11Driver::ofClass(u"Mousepad"_s), 5s));
    }
};

QTEST_GUILESS_MAIN(TestDesktopTools)
#include "tst_desktop_tools.moc"
