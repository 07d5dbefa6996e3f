#include "platform_linux/xdg_web_browser.h"

#include <QFile>
#include <QSocketNotifier>
#include <QStandardPaths>

#include <csignal>
#include <fcntl.h>
#include <optional>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

// The header of glibc 2.36 does not say that its functions are C.
extern "C" {
#include <sys/pidfd.h>
}

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora::linuxdesktop {

namespace {

// On some desktops xdg-open becomes the browser, and ends when the user closes it.
constexpr auto longEnough = 3s;

struct SpawnSettings
{
    SpawnSettings()
    {
        posix_spawn_file_actions_init(&files);
        posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_adddup2(&files, STDOUT_FILENO, STDERR_FILENO);
        posix_spawnattr_init(&attributes);
        // In a session of its own: what ends this program leaves the browser.
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK |
                                                  POSIX_SPAWN_SETSIGDEF);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes, &signals);
        // A signal that this program ignores would stay ignored in the browser.
        sigaddset(&signals, SIGPIPE);
        posix_spawnattr_setsigdefault(&attributes, &signals);
    }
    ~SpawnSettings()
    {
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&files);
    }
    Q_DISABLE_COPY_MOVE(SpawnSettings)

    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
};

// The process that runs the program with this argument; absent when it cannot be
// started.
std::optional<pid_t> spawn(const QString &program, const QByteArray &argument)
{
    const SpawnSettings settings;
    QByteArray path = QFile::encodeName(program);
    QByteArray copy = argument;
    char *const arguments[] = {path.data(), copy.data(), nullptr};
    pid_t process = 0;
    if (posix_spawn(&process, path.constData(), &settings.files, &settings.attributes, arguments,
                    environ) != 0)
        return std::nullopt;
    return process;
}

} // namespace

// One xdg-open that runs, until it has ended and left nothing in the process table.
class XdgWebBrowser::Opener : public QObject
{
    Q_OBJECT

public:
    explicit Opener(pid_t process)
        : m_descriptor(pidfd_open(process, 0))
        , m_notifier(m_descriptor, QSocketNotifier::Read)
    {
        connect(&m_notifier, &QSocketNotifier::activated, this, [this] {
            m_notifier.setEnabled(false);
            siginfo_t info = {};
            const int waited = waitid(P_PIDFD, id_t(m_descriptor), &info, WEXITED | WNOHANG);
            Q_EMIT ended(waited == 0 && info.si_code == CLD_EXITED && info.si_status == 0);
        });
    }
    ~Opener() override
    {
        m_notifier.setEnabled(false);
        if (m_descriptor >= 0)
            close(m_descriptor);
    }

Q_SIGNALS:
    void ended(bool opened);

private:
    int m_descriptor;
    QSocketNotifier m_notifier;
};

class XdgWebBrowser::Opening final : public platform::Operation
{
public:
    // Without an opener there is nothing to wait for.
    Opening(const Opener *opener, std::function<void(bool)> done)
        : m_done(std::move(done))
        , m_time(platform::delay(opener ? longEnough : 0s,
                                 [this, taken = opener != nullptr] { end(taken); }))
    {
        if (opener)
            connect(opener, &Opener::ended, this, &Opening::end);
    }

private:
    void end(bool taken)
    {
        finish([&] { m_done(taken); });
    }
    void stop() override { m_time.cancel(); }

    std::function<void(bool)> m_done;
    platform::Task m_time;
};

XdgWebBrowser::XdgWebBrowser() = default;
XdgWebBrowser::~XdgWebBrowser() = default;

platform::Task XdgWebBrowser::open(const QUrl &page, std::function<void(bool)> done)
{
    const QString program = QStandardPaths::findExecutable(u"xdg-open"_s);
    const bool isPage = page.scheme() == u"https" || page.scheme() == u"http";
    const auto process = isPage && !program.isEmpty()
                             ? spawn(program, page.toEncoded(QUrl::FullyEncoded))
                             : std::nullopt;
    if (!process)
        return platform::Task(new Opening(nullptr, std::move(done)));
    Opener *opener = m_openers.emplace_back(std::make_unique<Opener>(*process)).get();
    platform::Task opening(new Opening(opener, std::move(done)));
    // Removed after everybody has heard of the end, from the event loop.
    QObject::connect(
        opener, &Opener::ended, opener,
        [this, opener] {
            m_openers.remove_if([&](const auto &each) { return each.get() == opener; });
        },
        Qt::QueuedConnection);
    return opening;
}

} // namespace nivora::linuxdesktop

#include "xdg_web_browser.moc"
