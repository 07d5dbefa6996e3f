// What the triggers cost: the wait for the selection, the work while somebody
// types, the wake-ups of a program at rest and what many triggers leave behind.
// On a desktop of its own. The argument is the number of triggers (default 1000).

#include "desktop/hot_key_monitor.h"
#include "desktop/selection_service.h"
#include "platform/selection.h"
#include "platform/services.h"
#include "platform_linux/linux_backend.h"
#include "support/accessibility_tree.h"
#include "support/desktop_session.h"
#include "support/editor.h"
#include "support/product.h"
#include "support/wait.h"
#include "support/x11_driver.h"

#include "process_state.h"

#include <QCoreApplication>
#include <QDir>
#include <QTcpServer>

#include <X11/keysym.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using namespace nivora::test;

namespace {

constexpr auto patience = 20s;
constexpr int captures = 25;
constexpr auto typing = 20s;
constexpr auto betweenKeys = 100ms;
constexpr auto rest = 10s;

void pause(std::chrono::milliseconds span)
{
    waitUntil([] { return false; }, span, 1ms);
}

// Of every thread: its name, how often it woke and its processor time.
struct Thread
{
    QByteArray name;
    qint64 wakeUps = 0;
    qint64 nanoseconds = 0;
};

std::map<QString, Thread> threadsOf(qint64 process)
{
    std::map<QString, Thread> threads;
    const QString folder = u"/proc/%1/task/"_s.arg(process);
    for (const QString &id : QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QByteArray status = bench::contents(folder + id + u"/status"_s);
        threads[id] = {
            bench::contents(folder + id + u"/comm"_s).trimmed(),
            bench::valueOf(status, "voluntary_ctxt_switches:"),
            bench::contents(folder + id + u"/schedstat"_s).split(' ').first().toLongLong()};
    }
    return threads;
}

void reportThreads(const char *what, qint64 process, std::chrono::milliseconds span,
                   const std::map<QString, Thread> &before)
{
    qint64 wakeUps = 0;
    qint64 nanoseconds = 0;
    QByteArray details;
    for (const auto &[id, now] : threadsOf(process)) {
        const auto old = before.find(id);
        const Thread start = old == before.end() ? Thread{} : old->second;
        wakeUps += now.wakeUps - start.wakeUps;
        nanoseconds += now.nanoseconds - start.nanoseconds;
        if (now.wakeUps != start.wakeUps)
            details += ' ' + now.name + ' ' + QByteArray::number(now.wakeUps - start.wakeUps);
    }
    const double share = double(nanoseconds) / 1e6 / double(span.count());
    std::printf("%s, %lld s: %.3f %% of one core, %lld wake-ups (%s )\n", what,
                static_cast<long long>(span.count() / 1000), 100 * share,
                static_cast<long long>(wakeUps), details.constData());
}

// From the second press of Shift to the end of the capture, in this process.
void measureCaptures(X11Driver &user, const Editor &editor)
{
    linuxdesktop::LinuxBackend backend;
    const platform::Services services = backend.services();
    const SelectionService selections(services);
    HotKeyMonitor monitor(services.keyEventTap);
    std::vector<double> times;
    int right = 0;
    Clock::time_point pressed;
    bool done = false;
    monitor.onDoubleShift = [&] {
        const auto captured = selections.capture();
        times.push_back(millisecondsBetween(pressed, Clock::now()));
        right += captured.text == editor.selectedText();
        done = true;
    };
    monitor.start();
    for (int round = 0; round < captures; ++round) {
        pause(400ms);
        user.hold(XK_Shift_L);
        user.release(XK_Shift_L);
        pause(100ms);
        done = false;
        pressed = Clock::now();
        user.hold(XK_Shift_L);
        user.release(XK_Shift_L);
        waitUntil([&] { return done; }, patience, 100us);
    }
    if (times.empty())
        return;
    std::ranges::sort(times);
    std::printf("second Shift to the end of the capture: median %.1f ms, %.1f to %.1f ms of %zu, "
                "%d right\n",
                times[times.size() / 2], times.front(), times.back(), times.size(), right);
}

void measureTyping(X11Driver &user, qint64 process)
{
    user.press({XK_Control_L, XK_End});
    pause(1s);
    const auto before = threadsOf(process);
    const auto start = Clock::now();
    constexpr X11Driver::Symbol letters[] = {XK_t, XK_h, XK_e, XK_space, XK_q, XK_u, XK_i, XK_c};
    for (int key = 0; Clock::now() - start < typing; ++key) {
        user.hold(letters[std::size_t(key) % std::size(letters)]);
        pause(40ms);
        user.release(letters[std::size_t(key) % std::size(letters)]);
        waitUntil([&] { return Clock::now() >= start + (key + 1) * betweenKeys; }, 1s, 1ms);
    }
    reportThreads("typing 10 keys a second", process,
                  std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start),
                  before);
}

// Looks at one window: to look for it among all takes longer than a trigger does.
bool isMapped(xcb_connection_t *c, X11Driver::WindowId window)
{
    const std::unique_ptr<xcb_get_window_attributes_reply_t, decltype(&std::free)> attributes(
        xcb_get_window_attributes_reply(c, xcb_get_window_attributes(c, window), nullptr),
        &std::free);
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

void measureTriggers(X11Driver &user, const Product &product, const Editor &editor,
                     const QByteArray &display, int count)
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(display.constData(), nullptr), &xcb_disconnect);
    const qint64 process = product.processId();
    const auto report = [&](int done) {
        std::printf("after %5d triggers: %s\n", done,
                    qUtf8Printable(bench::ProcessState::of(process, connection.get()).text()));
        std::fflush(stdout);
    };
    X11Driver::WindowId panel = 0;
    const auto isOpen = [&] {
        if (panel == 0) {
            const auto found = user.find(Product::panel());
            panel = found ? found->id : 0;
        }
        return panel != 0 && isMapped(connection.get(), panel) && user.activeWindow() == panel;
    };
    const auto isClosed = [&] {
        return !isMapped(connection.get(), panel) && user.activeWindow() == editor.window();
    };
    const auto closes = [&] {
        user.press({XK_Escape});
        return waitUntil(isClosed, 1s, 1ms);
    };
    const auto start = Clock::now();
    for (int done = 1; done <= count; ++done) {
        if (done % 2 == 0)
            user.tapShiftTwice(40ms);
        else
            user.press({XK_Control_L, XK_Alt_L, XK_o});
        if (!waitUntil(isOpen, patience, 1ms) || !waitUntil(closes, patience)) {
            std::printf("the panel does not %s at trigger %d\n",
                        panel != 0 && isMapped(connection.get(), panel) ? "close" : "open", done);
            return;
        }
        // The first ones fill caches.
        if (done == 20 || done == 100 || done % 1000 == 0 || done == count)
            report(done);
    }
    std::printf("%.0f ms from one trigger to the next\n",
                millisecondsBetween(start, Clock::now()) / count);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const int triggers = argc > 1 ? QByteArray(argv[1]).toInt() : 1000;
    DesktopSession session;
    if (!session.start({})) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(session.error()));
        return 1;
    }
    X11Driver user(session.displayName());
    const AccessibilityTree tree(session.accessibilityBusAddress());
    Editor editor(session, user, tree);
    if (!editor.open(Editor::Toolkit::Gtk, u"a few words in a field"_s) || !editor.selectAll()) {
        std::fprintf(stderr, "no editor\n");
        return 1;
    }
    for (const char *name : {"DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_CONFIG_HOME",
                             "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "HOME"})
        qputenv(name, session.environment().value(QLatin1StringView(name)).toUtf8());
    measureCaptures(user, editor);

    // Nobody listens there: each translation fails at once.
    QTcpServer placeholder;
    placeholder.listen(QHostAddress::LocalHost);
    const QString nobody = u"http://127.0.0.1:%1"_s.arg(placeholder.serverPort());
    placeholder.close();
    Product product(session, user, tree);
    if (!product.start({{u"hasCompletedOnboarding"_s, true},
                        {u"hasToldOfMissingTray"_s, true},
                        {u"useCustomBackend"_s, true},
                        {u"apiBaseURL"_s, nobody}})) {
        std::fprintf(stderr, "the product does not start\n%s\n", qUtf8Printable(product.log()));
        return 1;
    }
    pause(3s);
    const auto before = threadsOf(product.processId());
    pause(rest);
    reportThreads("at rest", product.processId(), rest, before);
    measureTyping(user, product.processId());
    // With nothing selected, each would wait for a program that has nothing to copy.
    editor.selectAll();
    measureTriggers(user, product, editor, session.displayName(), triggers);
    return 0;
}
