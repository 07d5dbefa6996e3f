#pragma once

#include <QByteArray>

#include <memory>

namespace nivora::platform {
class Clipboard;
class GlobalHotKey;
class IdleMonitor;
class KeyEventTap;
class KeySynthesizer;
class PrimarySelectionReader;
class WindowSystem;
} // namespace nivora::platform

namespace nivora::linuxdesktop {

class X11TrayManager;

// The parts of the desktop that an X server provides. Main thread only, and the
// thread needs an event loop.
//
// Calls that ask the server wait for it at most X11Connection::waitLimit (250 ms)
// for each of their few questions. Other programs are never waited for on this
// thread. Once the server is gone, everything here answers as if nothing were
// there.
class X11Desktop final
{
public:
    // An empty name stands for $DISPLAY.
    explicit X11Desktop(const QByteArray &displayName = {});
    // Ends within a second. What the clipboard held of ours goes with it.
    ~X11Desktop();
    X11Desktop(const X11Desktop &) = delete;
    X11Desktop &operator=(const X11Desktop &) = delete;

    // Whether there is a server, and still is.
    bool isValid() const;

    platform::KeyEventTap &keyEventTap();
    platform::GlobalHotKey &hotKey();
    platform::KeySynthesizer &keySynthesizer();
    platform::WindowSystem &windowSystem();
    platform::IdleMonitor &idleMonitor();
    platform::Clipboard &clipboard();
    platform::PrimarySelectionReader &primarySelection();

    X11TrayManager &trayManager();

    // The pixels of one unit in which this process, if it is a GTK program, tells
    // places.
    int gtkScale(qint64 process);

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace nivora::linuxdesktop
