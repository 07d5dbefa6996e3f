#include "road.h"

#include "localcloud/event_stream.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <X11/keysym.h>

#include <csignal>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using namespace nivora::test;

namespace {

using Keys = QList<X11Driver::Symbol>;

const auto source = u"请发一下报价"_s;
const auto translation = u"見積もり"_s;

QString fileOf(const QString &process, const QString &name)
{
    QFile file(u"/proc/%1/%2"_s.arg(process, name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// A program of this session; 0 if it does not run.
int processOf(const DesktopSession &session, QLatin1StringView program)
{
    for (const QString &process : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
        if (fileOf(process, u"comm"_s).trimmed() == program &&
            fileOf(process, u"environ"_s).contains(session.folder()))
            return process.toInt();
    }
    return 0;
}

// Ended without a chance to tidy up.
bool killWindowManager(const DesktopSession &session)
{
    const int process = processOf(session, "openbox"_L1);
    return process > 0 && kill(process, SIGKILL) == 0;
}

} // namespace

// Calling the product on keyboards and desktops of every kind.
class TestTriggers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        if (QTest::currentTestFailed())
            m_road.reset();
    }

    void opensThePanel_data()
    {
        QTest::addColumn<QStringList>("layout"); // arguments of setxkbmap
        QTest::addColumn<Keys>("locks");
        QTest::addColumn<Keys>("taps");
        QTest::addColumn<X11Driver::Symbol>("placeOfO"); // by what it gives on the US layout
        const auto row = [](const char *name, const QStringList &layout, const Keys &locks = {},
                            const Keys &taps = {XK_Shift_L, XK_Shift_L},
                            X11Driver::Symbol placeOfO = XK_o) {
            QTest::newRow(name) << layout << locks << taps << placeOfO;
        };
        row("left Shift", {u"us"_s});
        row("right Shift", {u"us"_s}, {}, {XK_Shift_R, XK_Shift_R});
        row("left, then right", {u"us"_s}, {}, {XK_Shift_L, XK_Shift_R});
        row("right, then left", {u"us"_s}, {}, {XK_Shift_R, XK_Shift_L});
        row("CapsLock on", {u"us"_s}, {XK_Caps_Lock});
        row("NumLock on", {u"us"_s}, {XK_Num_Lock});
        row("both on", {u"us"_s}, {XK_Caps_Lock, XK_Num_Lock});
        row("German", {u"de"_s});
        row("Russian", {u"ru"_s});
        row("Japanese", {u"jp"_s});
        row("Greek", {u"gr"_s});
        row("Dvorak", {u"us(dvorak)"_s}, {}, {XK_Shift_L, XK_Shift_L}, XK_s);
        // CapsLock switches to the second layout here.
        row("second layout in use", {u"us,ru"_s, u"-option"_s, u"grp:caps_toggle"_s},
            {XK_Caps_Lock});
    }

    void opensThePanel()
    {
        QFETCH(const QStringList, layout);
        QFETCH(const Keys, locks);
        QFETCH(const Keys, taps);
        QFETCH(const X11Driver::Symbol, placeOfO);
        Road &road = sharedRoad();
        QVERIFY(road.editor);
        // No options of the row before.
        QVERIFY(setLayout(road, {u"-option"_s, QString()}));
        QVERIFY(setLayout(road, layout));
        for (const auto lock : locks)
            road.user->press({lock});

        // In this order twice: neither may leave anything behind that keeps the
        // other from working.
        for (int round = 0; round < 2; ++round) {
            for (const auto key : taps) {
                road.user->press({key});
                waitUntil([] { return false; }, 80ms);
            }
            QVERIFY(opensAndCloses(road));
            road.user->press({XK_Control_L, XK_Alt_L, placeOfO});
            QVERIFY(opensAndCloses(road));
        }
        for (const auto lock : locks)
            road.user->press({lock});
    }

    void aShiftThatIsHeldIsNoDoubleTap()
    {
        Road &road = sharedRoad();
        QVERIFY(road.editor);
        QVERIFY(setLayout(road, {u"us"_s, u"-option"_s, QString()}));
        const auto calls = [&] { return road.product->log().count(u"快捷键唤起"_s); };
        const auto before = calls();
        road.user->hold(XK_Shift_L);
        waitUntil([] { return false; }, 1500ms); // it repeats by then
        road.user->release(XK_Shift_L);
        QVERIFY(!road.user->find(Product::panel()));
        QCOMPARE(calls(), before);
        road.pull(Trigger::DoubleShift);
        QVERIFY(opensAndCloses(road));
        QCOMPARE(calls(), before + 1);
    }

    void opensThePanelOverAMenu()
    {
        Road &road = sharedRoad();
        QVERIFY(road.editor);
        QVERIFY(setLayout(road, {u"us"_s, u"-option"_s, QString()}));
        const auto before = road.user->windows().size();
        const auto menuIsOpen = [&] { return road.user->windows().size() > before; };
        road.user->press({XK_Alt_L, XK_f});
        QVERIFY(waitUntil(menuIsOpen, patience));

        road.pull(Trigger::DoubleShift);
        QVERIFY(road.user->waitForMapped(Product::panel(), patience));
        // The menu has the keys and closes first.
        const auto escapes = [&] {
            road.user->press({XK_Escape});
            return road.product->waitForPanelGone(500ms);
        };
        QVERIFY(waitUntil(escapes, patience));
        QVERIFY(road.user->waitForActive(road.editor->window(), patience));
        for (const auto trigger : {Trigger::Chord, Trigger::DoubleShift}) {
            road.pull(trigger);
            QVERIFY(opensAndCloses(road));
        }
    }

    void replacesWithoutLatinLetters_data()
    {
        QTest::addColumn<Editor::Toolkit>("toolkit");
        QTest::addColumn<QString>("layout");
        QTest::addColumn<Trigger>("trigger");
        QTest::newRow("GTK, none") << Editor::Toolkit::Gtk << u"ru"_s << Trigger::DoubleShift;
        QTest::newRow("GTK, in the third")
            << Editor::Toolkit::Gtk << u"ru,gr,us"_s << Trigger::Chord;
        QTest::newRow("Qt, none") << Editor::Toolkit::Qt << u"ru"_s << Trigger::Chord;
        QTest::newRow("Qt, in the third")
            << Editor::Toolkit::Qt << u"ru,gr,us"_s << Trigger::DoubleShift;
    }

    void replacesWithoutLatinLetters()
    {
        QFETCH(const Editor::Toolkit, toolkit);
        QFETCH(const QString, layout);
        QFETCH(const Trigger, trigger);
        Road road;
        QVERIFY(road.begin());
        answerAlways(road);
        QVERIFY(road.open(toolkit, source));
        QVERIFY(setLayout(road, {layout}));
        road.pull(trigger);
        QVERIFY(road.product->waitForPanel(patience));
        QVERIFY(road.product->waitForTranslation(translation, patience));
        road.user->press({XK_Control_L, XK_Return});
        QVERIFY2(road.editor->waitForText(translation, patience),
                 qUtf8Printable(road.editor->text()));
    }

    void worksWithoutAWindowManager_data()
    {
        QTest::addColumn<bool>("killed");
        QTest::newRow("that never was") << false;
        QTest::newRow("that was killed") << true;
    }

    void worksWithoutAWindowManager()
    {
        QFETCH(const bool, killed);
        Road road({.windowManager = killed});
        QVERIFY(road.begin());
        answerAlways(road);
        road.user->movePointer({300, 200});
        // Without one, the editor waits in vain to be told that it is active.
        QCOMPARE(road.open(Editor::Toolkit::Gtk, source, killed), killed);
        const auto editor = road.user->waitForMapped(X11Driver::ofClass(u"Mousepad"_s), patience);
        QVERIFY(editor);
        road.user->movePointer(editor->geometry.center());
        if (killed) {
            QVERIFY(killWindowManager(road.session));
        } else {
            // The keys go to where the pointer is.
            const auto isSelected = [&] {
                road.user->press({XK_Control_L, XK_a});
                return waitUntil([&] { return road.clipboard->selection() == source; }, 500ms);
            };
            QVERIFY(waitUntil(isSelected, patience));
        }

        road.pull(Trigger::DoubleShift);
        QVERIFY(road.product->waitForTranslation(translation, patience));
        QVERIFY2(road.prompt(0).endsWith(u"\n\n"_s + source), qUtf8Printable(road.prompt(0)));
        const auto replace = road.product->waitForControl(u"Ctrl+↩ 替换原文"_s, patience);
        QVERIFY(replace && replace->press());
        // The translation has taken the selection's place.
        const auto isReplaced = [&] {
            const auto area = road.tree->find(
                processOf(road.session, "mousepad"_L1),
                [](const AccessibleElement &each) { return each.text() == translation; });
            return area.has_value();
        };
        QVERIFY(waitUntil(isReplaced, patience));
    }

    void keepsTheKeysWhenTheWindowManagerDies()
    {
        Road road;
        QVERIFY(road.begin());
        answerAlways(road);
        QVERIFY(road.open(Editor::Toolkit::Gtk, source));
        road.user->movePointer({1000, 700}); // where the keys would go
        road.pull(Trigger::DoubleShift);
        QVERIFY(road.product->waitForPanel(patience));
        QVERIFY(road.product->waitForTranslation(translation, patience));
        QVERIFY(killWindowManager(road.session));
        const auto pin = road.product->waitForControl(u"钉住"_s, patience);
        QVERIFY(pin);
        const auto isReached = [&] { // by Tab, which comes to every control
            road.user->press({XK_Tab});
            return waitUntil([&] { return pin->isFocused(); }, 200ms);
        };
        QVERIFY(waitUntil(isReached, patience));
        road.user->press({XK_Control_L, XK_Return});
        QVERIFY(road.product->waitForPanelGone(patience));
        QVERIFY2(road.editor->waitForText(translation, patience),
                 qUtf8Printable(road.editor->text()));
    }

private:
    static void answerAlways(Road &road)
    {
        road.server.setHandler(
            [](const localcloud::Request &) { return localcloud::eventStream({translation}); });
    }

    // One desktop serves all that changes only the keyboard.
    Road &sharedRoad()
    {
        if (!m_road) {
            m_road.emplace();
            // These tests are not about how fast a busy machine's user is.
            if (m_road->begin({{u"doubleTapThresholdMs"_s, 800.0}})) {
                answerAlways(*m_road);
                if (!m_road->open(Editor::Toolkit::Gtk, source))
                    m_road->editor.reset();
            }
        }
        return *m_road;
    }

    static bool setLayout(Road &road, const QStringList &arguments)
    {
        QProcess *program = road.session.launch(u"setxkbmap"_s, arguments);
        return program &&
               (program->state() == QProcess::NotRunning || program->waitForFinished()) &&
               program->exitCode() == 0;
    }

    static bool opensAndCloses(Road &road)
    {
        if (!road.product->waitForPanel(patience))
            return false;
        road.user->press({XK_Escape});
        return road.product->waitForPanelGone(patience) &&
               road.user->waitForActive(road.editor->window(), patience);
    }

    std::optional<Road> m_road;
};

QTEST_GUILESS_MAIN(TestTriggers)
#include "tst_triggers.moc"
