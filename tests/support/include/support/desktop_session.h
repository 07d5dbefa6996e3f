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
class DesktopSession
{
public:
    struct Options
    {
        QSize screenSize{1280, 800};
        bool windowManager = true;  // openbox
        bool accessibility = true;  // at-spi, switched on
        bool keyring = false;       // gnome-keyring, unlocked
    };

    DesktopSession();
    ~DesktopSession();

    // Starts everything and waits until it answers. False with `error` set when
    // something could not be started.
    bool start(const Options &options);
    QString error() const { return m_error; }

    QByteArray displayName() const { return m_displayName; } // ":17"
    QString busAddress() const { return m_busAddress; }

    // For programs that shall run inside: DISPLAY, DBUS_SESSION_BUS_ADDRESS and
    // the XDG folders, all inside a temporary folder.
    QProcessEnvironment environment() const { return m_environment; }
    QString folder() const { return m_folder.path(); }

    // Starts a program inside. It is ended with the session.
    QProcess *launch(const QString &program, const QStringList &arguments);

    // What the screen shows now.
    QImage screenshot() const;

private:
    bool startServer(const Options &options);
    bool startBus();
    bool fail(const QString &what);

    QTemporaryDir m_folder;
    QProcessEnvironment m_environment;
    QByteArray m_displayName;
    QString m_busAddress;
    QString m_error;
    std::vector<std::unique_ptr<QProcess>> m_processes; // in order of their start
};

} // namespace nivora::test
