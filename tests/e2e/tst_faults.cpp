#include "lying_owner.h"
#include "road.h"
#include "scripted_program.h"

#include "localcloud/event_stream.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QTest>

#include <X11/keysym.h>

#include <csignal>
#include <cstring>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using namespace nivora::test;

namespace {

// From the second press of Shift to the panel on the screen.
constexpr double answerBound = 1200; // ms
// For how long the product's main thread may not answer. It takes 3 to 15 ms, the
// opening of the panel; any wait for another program would be 250 or more.
constexpr double silenceBound = 100; // ms
// Reading five megabytes through for their language and putting them into a
// request takes its time, in one go.
constexpr double longTextSilenceBound = 400; // ms

const QByteArray fromBefore("from before");
const QByteArray htmlFromBefore("<i>from before</i>");

struct Scene
{
    Road road;
    bool managed; // there is a window manager, at first
    std::optional<ScriptedProgram> program;
    std::optional<LyingOwner> liar;
    std::vector<pid_t> stopped;

    explicit Scene(const DesktopSession::Options &options)
        : road(options)
        , managed(options.windowManager)
    {
    }
    ~Scene() { wakeAll(); }

    bool openProgram(const QByteArray &copied = "copied")
    {
        program.emplace(road.session);
        program->onCopy = [this, copied] { program->copy(copied); };
        return program->open(*road.user, patience) &&
               (!managed || road.user->waitForActive(program->window(), patience));
    }
    bool openEditor(const QString &text = u"请发一下报价"_s)
    {
        return road.open(Editor::Toolkit::Gtk, text);
    }

    bool stop(qint64 process)
    {
        if (process <= 0 || ::kill(pid_t(process), SIGSTOP) != 0)
            return false;
        stopped.push_back(pid_t(process));
        return true;
    }
    void wakeAll()
    {
        for (const pid_t process : std::exchange(stopped, {}))
            ::kill(process, SIGCONT);
    }

    // Of a program that owns this selection and will say nothing.
    bool stopOwner(const QString &selection)
    {
        auto *owner = road.session.launch(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, selection});
        if (!owner)
            return false;
        owner->write(fromBefore);
        owner->closeWriteChannel();
        const auto isTaken = [&] {
            return (selection == "primary"_L1
                        ? road.clipboard->selection()
                        : road.clipboard->text()) == QString::fromLatin1(fromBefore);
        };
        if (!waitUntil(isTaken, patience))
            return false;
        rememberClipboard();
        return stop(owner->processId());
    }

    bool tell(LyingOwner::Lie lie)
    {
        liar.emplace(road.session.displayName(), lie);
        // Others hang on these until they are ended.
        if (lie != LyingOwner::Lie::NeverDelivers && lie != LyingOwner::Lie::EndlessPieces)
            rememberClipboard();
        return liar->owns();
    }

    pid_t editorProcess() const
    {
        const X11Peer peer(road.session.displayName());
        const auto property = peer.property(road.editor->window(), peer.atom("_NET_WM_PID"));
        quint32 process = 0;
        if (property.size() == sizeof process)
            std::memcpy(&process, property.constData(), sizeof process);
        return pid_t(process);
    }

    bool killEditor() const
    {
        const pid_t process = editorProcess();
        return process > 0 && ::kill(process, SIGKILL) == 0;
    }

    void rememberClipboard()
    {
        text = road.clipboard->read("UTF8_STRING");
        html = road.clipboard->read("text/html");
    }

    bool switchAccessibilityOff() const
    {
        const auto name = u"of the test"_s;
        auto change = QDBusMessage::createMethodCall(
            u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.freedesktop.DBus.Properties"_s, u"Set"_s);
        change << u"org.a11y.Status"_s << u"IsEnabled"_s
               << QVariant::fromValue(QDBusVariant(false));
        const auto answer =
            QDBusConnection::connectToBus(road.session.busAddress(), name).call(change);
        QDBusConnection::disconnectFromBus(name);
        return answer.type() == QDBusMessage::ReplyMessage;
    }

    // Whether the clipboard is what it was before the trigger.
    bool isClipboardKept() const
    {
        if (liar && liar->owns())
            return true;
        const auto isKept = [&] {
            return road.clipboard->read("UTF8_STRING") == text &&
                   road.clipboard->read("text/html") == html;
        };
        return waitUntil(isKept, patience);
    }

    // The clipboard's content, as others read it.
    std::optional<QByteArray> text = fromBefore;
    std::optional<QByteArray> html = htmlFromBefore;
};

struct Fault
{
    DesktopSession::Options options{};
    Trigger trigger = Trigger::DoubleShift;
    // Brings the desktop into the state in which the trigger comes.
    std::function<bool(Scene &)> prepare{};
    // What happens this long after the trigger.
    std::chrono::milliseconds delay{0};
    std::function<bool(Scene &)> strike{};
    QString translated{}; // what is asked of the service; empty: the panel is for typing
    double silence = silenceBound;
    int copies = -1; // how often the program was asked to copy; -1: any number
};

} // namespace

// Programs that hang, die and lie, one at a time. Whatever they do, the trigger
// answers, the product goes on, and the clipboard is the user's afterwards.
class TestFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void watchdogSeesAMainThreadThatStops()
    {
        Scene scene({});
        Road &road = scene.road;
        QVERIFY(road.begin());
        road.product->allowStalls(patience / 1ms);
        road.product->takeLongestStall();
        const auto begin = Clock::now();
        QVERIFY(scene.stop(road.product->processId()));
        waitUntil([&] { return Clock::now() - begin > 300ms; }, patience);
        scene.wakeAll();
        const double silence = road.product->takeLongestStall();
        QVERIFY2(silence > 2 * silenceBound, qPrintable(QString::number(silence)));
    }

    void triggerAnswersAndTheClipboardIsKept_data()
    {
        QTest::addColumn<Fault>("fault");
        const auto row = [](const char *name, Fault fault) {
            QTest::newRow(name) << std::move(fault);
        };
        using Lie = LyingOwner::Lie;
        const DesktopSession::Options usual;
        const DesktopSession::Options withoutAccessibility{.accessibility = false};
        const DesktopSession::Options withoutManager{.windowManager = false};
        const auto openProgram = [](Scene &scene) { return scene.openProgram(); };

        row("none", {.prepare = openProgram, .translated = u"copied"_s, .copies = 1});
        row("the editor with the focus is stopped", {.prepare = [](Scene &scene) {
                return scene.openEditor() && scene.stop(scene.editorProcess());
            }});
        row("the editor is stopped, with the chord",
            {.trigger = Trigger::Chord, .prepare = [](Scene &scene) {
                 return scene.openEditor() && scene.stop(scene.editorProcess());
             }});
        row("the owner of PRIMARY is stopped",
            {.prepare =
                 [](Scene &scene) { return scene.openProgram() && scene.stopOwner(u"primary"_s); },
             .translated = u"copied"_s,
             .copies = 1});
        row("the clipboard's owner is stopped", {.prepare =
                                                     [](Scene &scene) {
                                                         return scene.openProgram() &&
                                                                scene.stopOwner(u"clipboard"_s);
                                                     },
                                                 .copies = 0});
        for (const auto delay : {10ms, 55ms}) {
            row(qPrintable(u"the editor is killed after %1 ms"_s.arg(delay.count())),
                {.prepare = [](Scene &scene) { return scene.openEditor(); },
                 .delay = delay,
                 .strike = [](Scene &scene) { return scene.killEditor(); }});
        }
        row("the program dies of its copy keys", {.prepare = [](Scene &scene) {
                scene.openProgram();
                scene.program->onCopy = [&scene] { scene.program->die(); };
                return true;
            }});
        row("the program dies with the copy it made", {.prepare = [](Scene &scene) {
                scene.openProgram();
                scene.program->onCopy = [&scene] {
                    scene.program->copy("copied");
                    scene.program->die();
                };
                return true;
            }});
        row("no accessibility bus",
            {.options = withoutAccessibility,
             .trigger = Trigger::Chord,
             .prepare =
                 [](Scene &scene) {
                     // The product says what it lacks; the user goes on elsewhere.
                     const auto alert = scene.road.user->waitForMapped(
                         X11Driver::ofClass(u"Nivora"_s, u"alert"_s), patience);
                     return alert && scene.road.user->waitForActive(alert->id, patience) &&
                            scene.openProgram();
                 },
             .translated = u"copied"_s,
             .copies = 1});
        row("accessibility is switched off",
            {.prepare =
                 [](Scene &scene) { return scene.openProgram() && scene.switchAccessibilityOff(); },
             .translated = u"copied"_s,
             .copies = 1});
        row("the accessibility bus dies", {.prepare =
                                               [](Scene &scene) {
                                                   return scene.openProgram() &&
                                                          scene.road.session.endAccessibility();
                                               },
                                           .translated = u"copied"_s,
                                           .copies = 1});
        row("no window manager", {.options = withoutManager,
                                  .prepare = openProgram,
                                  .translated = u"copied"_s,
                                  .copies = 1});
        const auto long5 = u"一二三四五六七八九十\n"_s.repeated(5 * 1024 * 1024 / 31).trimmed();
        row("five megabytes are copied",
            {.prepare = [long5](Scene &scene) { return scene.openProgram(long5.toUtf8()); },
             .translated = long5,
             .silence = longTextSilenceBound});
        row("five megabytes are selected in an editor",
            {.prepare = [long5](Scene &scene) { return scene.openEditor(long5); },
             .translated = long5,
             .silence = longTextSilenceBound});
        for (const auto &[name, lie] :
             {std::pair{"the clipboard delivers nothing", Lie::NeverDelivers},
              std::pair{"the clipboard never ends", Lie::EndlessPieces},
              std::pair{"the clipboard's types are wrong", Lie::WrongTypes},
              std::pair{"the clipboard's sizes are wrong", Lie::WrongSizes},
              std::pair{"the clipboard offers a sentence", Lie::UnreadableOffer}}) {
            const bool readable = lie != Lie::NeverDelivers && lie != Lie::EndlessPieces;
            row(name,
                {.prepare =
                     [lie = lie](Scene &scene) { return scene.openProgram() && scene.tell(lie); },
                 .translated = readable ? u"copied"_s : QString(),
                 .copies = readable});
        }
    }

    void triggerAnswersAndTheClipboardIsKept()
    {
        QFETCH(const Fault, fault);
        // A wait of the product's comes each time; what a busy host does to it does not.
        double silence = fault.silence;
        for (int attempt = 0; attempt < 2 && silence >= fault.silence; ++attempt) {
            play(fault, silence);
            if (QTest::currentTestFailed())
                return;
        }
        QVERIFY2(silence < fault.silence, qPrintable(QString::number(silence)));
    }

    void pasteIsHeldBackFromAWindowThatCannotTakeIt_data()
    {
        QTest::addColumn<bool>("destroyed");
        QTest::newRow("destroyed") << true;
        QTest::newRow("of a stopped program") << false;
    }

    void pasteIsHeldBackFromAWindowThatCannotTakeIt()
    {
        QFETCH(const bool, destroyed);
        const auto source = u"请发一下报价"_s;
        const auto translation = u"見積もり"_s;
        Scene scene({});
        Road &road = scene.road;
        QVERIFY(road.begin());
        road.server.enqueue(localcloud::eventStream({translation}));
        QVERIFY(destroyed ? scene.openProgram(source.toUtf8()) : scene.openEditor(source));
        road.pull(Trigger::DoubleShift);
        QVERIFY(road.product->waitForPanel(patience));
        QVERIFY(road.product->waitForTranslation(translation, patience));

        if (destroyed)
            scene.program->destroyWindow();
        else
            QVERIFY(scene.stop(scene.editorProcess()));
        road.product->takeLongestStall();
        road.user->press({XK_Control_L, XK_Return});
        QVERIFY(road.product->waitForPanelGone(patience));
        // For the user to paste where it is wanted.
        QVERIFY(waitUntil([&] { return road.product->log().contains("stays on the clipboard"_L1); },
                          patience));
        const double silence = road.product->takeLongestStall();
        qInfo("longest silence %.0f ms", silence);
        QCOMPARE(road.clipboard->text(), translation);
        scene.wakeAll();
        if (destroyed)
            QCOMPARE(scene.program->pastes, 0);
        else
            QVERIFY(road.editor->waitForText(source, patience));
        QVERIFY(road.product->isRunning());
        QVERIFY2(silence < silenceBound, qPrintable(QString::number(silence)));
    }

private:
    // One trigger; gives the longest silence of the product's main thread meanwhile.
    static void play(const Fault &fault, double &silence)
    {
        Scene scene(fault.options);
        Road &road = scene.road;
        QVERIFY(road.begin());
        road.server.setHandler(
            [](const localcloud::Request &) { return localcloud::eventStream({u"はい"_s}); });
        QVERIFY(
            road.clipboard->offer({{"UTF8_STRING", fromBefore}, {"text/html", htmlFromBefore}}));
        QVERIFY(fault.prepare(scene));
        road.product->allowStalls(fault.silence);

        road.product->takeLongestStall();
        Clock::time_point pulled = Clock::now();
        if (fault.trigger == Trigger::DoubleShift)
            pulled = road.user->tapShiftTwice();
        else
            road.pull(fault.trigger);
        if (fault.strike) {
            waitUntil([&] { return Clock::now() - pulled >= fault.delay; }, 1s, 200us);
            QVERIFY(fault.strike(scene));
        }
        const auto panel = road.user->waitForMapped(Product::panel(), patience);
        const double answered = millisecondsBetween(pulled, Clock::now());
        QVERIFY(panel);
        if (!fault.translated.isEmpty()) {
            QVERIFY(road.waitForRequests(1));
            QVERIFY(road.prompt(0).endsWith(u"\n\n"_s + fault.translated));
        } else {
            QVERIFY(road.server.requests().isEmpty());
        }
        silence = road.product->takeLongestStall();
        qInfo("answered after %.0f ms, longest silence %.0f ms", answered, silence);

        if (fault.copies >= 0)
            QCOMPARE(scene.program->copies, fault.copies);
        // What a program does that wakes up now belongs to it.
        scene.wakeAll();
        if (road.editor && fault.strike == nullptr)
            QVERIFY(waitUntil([&] { return !road.editor->text().isNull(); }, patience));
        QVERIFY(scene.isClipboardKept());
        QVERIFY(road.product->isRunning());
        QVERIFY2(answered < answerBound, qPrintable(QString::number(answered)));
    }
};

QTEST_GUILESS_MAIN(TestFaults)
#include "tst_faults.moc"
