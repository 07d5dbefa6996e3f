// How long it takes from starting the product to its icon in the tray, and what
// the resting program costs, beside a bare tray program. On a desktop of its own. The
// argument is the number of starts of each (default 7).

#include "support/desktop_session.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <xcb/xcb.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <poll.h>
#include <string_view>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int patience = 5000; // milliseconds
constexpr int restSeconds = 10;

// A tray of the XEmbed kind that takes note of icons and shows none.
class Tray
{
public:
    explicit Tray(const QByteArray &display)
        : m_connection(xcb_connect(display.constData(), nullptr), &xcb_disconnect)
    {
        xcb_connection_t *c = m_connection.get();
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
        const xcb_window_t window = xcb_generate_id(c);
        xcb_create_window(c, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        xcb_set_selection_owner(c, window, atom("_NET_SYSTEM_TRAY_S0"), XCB_CURRENT_TIME);
        m_opcode = atom("_NET_SYSTEM_TRAY_OPCODE");
        xcb_flush(c);
    }

    bool waitForIcon(int milliseconds)
    {
        QElapsedTimer elapsed;
        elapsed.start();
        while (elapsed.elapsed() < milliseconds) {
            const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event(
                xcb_poll_for_event(m_connection.get()), &std::free);
            if (!event) {
                pollfd descriptor{xcb_get_file_descriptor(m_connection.get()), POLLIN, 0};
                poll(&descriptor, 1, 10);
                continue;
            }
            const auto *message = reinterpret_cast<const xcb_client_message_event_t *>(event.get());
            if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE && message->type == m_opcode)
                return true;
        }
        return false;
    }

private:
    xcb_atom_t atom(std::string_view name)
    {
        xcb_connection_t *c = m_connection.get();
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
            xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, uint16_t(name.size()), name.data()),
                                  nullptr),
            &std::free);
        return reply->atom;
    }

    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> m_connection;
    xcb_atom_t m_opcode = XCB_NONE;
};

qint64 sumOfLines(const QString &path, const QByteArrayList &names)
{
    QFile file(path);
    qint64 sum = 0;
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : file.readAll().split('\n')) {
            for (const QByteArray &name : names) {
                if (line.startsWith(name))
                    sum += line.sliced(name.size()).simplified().split(' ').first().toLongLong();
            }
        }
    }
    return sum;
}

qint64 wakeUps(qint64 process)
{
    return sumOfLines(u"/proc/%1/status"_s.arg(process),
                      {"voluntary_ctxt_switches:", "nonvoluntary_ctxt_switches:"});
}

struct Program
{
    QString name;
    std::vector<double> starts{}; // milliseconds to the icon
};

void printCostAtRest(const QString &program, qint64 process)
{
    // What comes after the start is over by then.
    QThread::sleep(2);
    const QString memory = u"/proc/%1/smaps_rollup"_s.arg(process);
    const qint64 before = wakeUps(process);
    QThread::sleep(restSeconds);
    std::printf("%-10s  %5.1f MiB proportional, %5.1f MiB private, %lld wake-ups of "
                "the main thread in %d s\n",
                qPrintable(program), double(sumOfLines(memory, {"Pss:"})) / 1024,
                double(sumOfLines(memory, {"Private_Clean:", "Private_Dirty:"})) / 1024,
                wakeUps(process) - before, restSeconds);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const std::size_t rounds = argc > 1 ? QByteArray(argv[1]).toUInt() : 7;
    nivora::test::DesktopSession session;
    if (!session.start({.keyring = true})) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(session.error()));
        return 1;
    }
    // A user who has set it up: no window shows.
    const QDir config(session.folder() + u"/config/app.nivora"_s);
    QFile preferences(config.filePath(u"defaults.json"_s));
    if (!config.mkpath(u"."_s) || !preferences.open(QIODevice::WriteOnly)) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(preferences.errorString()));
        return 1;
    }
    preferences.write(R"({"hasCompletedOnboarding": true, "useCustomBackend": true,
        "apiBaseURL": "http://127.0.0.1:9", "modelName": "none"})");
    preferences.close();
    Tray tray(session.displayName());
    // By turns: what else the machine does falls on both alike.
    std::array<Program, 2> programs{Program{u"bare_tray"_s}, Program{u"nivora"_s}};
    for (std::size_t round = 0; round < rounds; ++round) {
        for (Program &program : programs) {
            QProcess process;
            process.setProcessEnvironment(session.environment());
            process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            QElapsedTimer elapsed;
            elapsed.start();
            process.start(QCoreApplication::applicationDirPath() + u'/' + program.name,
                          QStringList{});
            if (!tray.waitForIcon(patience)) {
                std::fprintf(stderr, "%s shows no icon\n", qUtf8Printable(program.name));
                return 1;
            }
            program.starts.push_back(double(elapsed.nsecsElapsed()) / 1e6);
            if (round == rounds - 1)
                printCostAtRest(program.name, process.processId());
            process.terminate();
            process.waitForFinished(patience);
        }
    }
    for (Program &program : programs) {
        std::ranges::sort(program.starts);
        std::printf("%-10s  icon after %.1f ms (median), %.1f to %.1f ms of %zu\n",
                    qPrintable(program.name), program.starts[rounds / 2], program.starts.front(),
                    program.starts.back(), rounds);
    }
    return 0;
}
