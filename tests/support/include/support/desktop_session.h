#pragma once

#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSize>
#include <QString>
#include <QTemporaryDir>

#include <memory>
#include <vector>

namespace nivora::test {

// A whole desktop session of its own, made for one test program and gone with
// it: an X server without a screen, a session bus, the accessibility bus, a
// keyring and a window manager. Nothing of the session that the test was started
// from is touched or seen.
//
// Everything in it ends with this object; if the test program crashes, it ends
// with the program. Used on the thread that made it, which needs a
// QCoreApplication.
class DesktopSession
{
public:
    struct Options
    {
        QSize screenSize{1280, 800}; // pixels
        // A second screen left of and above the first, where it has a size. Both
        // sizes are then among the usual ones of monitors.
        QSize secondScreen{};
        double scale = 1;          // of what toolkits draw
        bool windowManager = true; // openbox
        bool accessibility = true; // at-spi, switched on
        bool keyring = false;      // gnome-keyring, unlocked
    };

    DesktopSession();
    ~DesktopSession();

    // Starts everything and waits until it answers, usually within a second.
    // False with `error` set when something could not be started. Call it once.
    bool start(const Options &options);
    QString error() const { return m_error; }

    QByteArray displayName() const { return m_displayName; } // ":17"
    // The X server and the window manager, which now and then keeps all others off it.
    std::vector<qint64> serverProcessIds() const;
    QString busAddress() const { return m_busAddress; }
    // Empty without accessibility.
    QString accessibilityBusAddress() const { return m_accessibilityBusAddress; }

    // For programs that shall run inside: DISPLAY, DBUS_SESSION_BUS_ADDRESS and
    // the XDG folders, all inside a temporary folder.
    QProcessEnvironment environment() const { return m_environment; }
    QString folder() const { return m_folder.path(); }

    // Starts a program inside and waits until it runs. Null when it cannot be
    // started. It is owned by the session and ended with it.
    //
    // Its standard output can be read from the process; what it writes to
    // standard error is kept in a file.
    QProcess *launch(const QString &program, const QStringList &arguments = {});
    QProcess *launch(const QString &program, const QStringList &arguments,
                     const QProcessEnvironment &environment);
    QByteArray errorOutput(const QProcess *process) const;

    // Ends a program that launch() started: asks first, then insists.
    void end(QProcess *process);

    // Ends these as if they had crashed, and starts them anew; what they keep on the
    // disk stays. The accessibility bus comes back at another address, which only
    // programs that are started afterwards know.
    void endKeyring();
    bool startKeyring();
    bool endAccessibilityRegistry();
    bool endAccessibility();
    bool startAccessibility();

    // What the screen shows now; a null image when it cannot be read.
    QImage screenshot() const;

private:
    void prepareEnvironment();
    bool startServer(const Options &options);
    bool awaitServer(QProcess *server);
    bool arrangeScreens(const Options &options);
    bool setScale(double scale);
    bool run(const QString &program, const QStringList &arguments);
    bool startBus();
    bool startWindowManager();
    bool fail(const QString &what);
    void endStragglers();

    QTemporaryDir m_folder;
    QProcessEnvironment m_environment;
    QByteArray m_displayName;
    QString m_busAddress;
    QString m_accessibilityBusAddress;
    QString m_error;
    std::vector<std::unique_ptr<QProcess>> m_processes; // in order of their start
    QProcess *m_windowManager = nullptr;                // one of them
    QProcess *m_keyring = nullptr;                      // one of them
    int m_launches = 0;
};

} // namespace nivora::test
