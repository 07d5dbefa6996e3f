#include "platform_linux/x11_desktop.h"

#include "platform_linux/gtk_scale.h"
#include "x11_clipboard.h"
#include "x11_hot_key.h"
#include "x11_idle_monitor.h"
#include "x11_key_synthesizer.h"
#include "x11_key_tap.h"
#include "x11_primary_selection.h"
#include "x11_tray_manager.h"
#include "x11_window_system.h"

namespace nivora::linuxdesktop {

struct X11Desktop::Parts
{
    explicit Parts(const QByteArray &displayName)
        : selections(displayName)
        , connection(displayName)
        , chordConnection(displayName)
    {
    }

    X11SelectionThread selections;
    X11Connection connection;
    X11Connection chordConnection; // see X11HotKey

    X11Keyboard keyboard{connection};
    std::shared_ptr<X11InputRecency> recency =
        std::make_shared<X11InputRecency>(connection, keyboard);
    X11OwnInput ownInput;
    X11KeyTap keyTap{connection, keyboard, ownInput};
    X11KeySynthesizer keySynthesizer{connection, keyboard, ownInput};
    X11WindowSystem windowSystem{connection};
    X11TrayManager trayManager{connection};
    X11HotKey hotKey{chordConnection, [this](xcb_timestamp_t press) { recency->disregard(press); }};
    X11IdleMonitor idleMonitor{connection};
    X11Clipboard clipboard{selections};
    X11PrimarySelection primarySelection{selections, recency};
};

X11Desktop::X11Desktop(const QByteArray &displayName)
    : m_parts(std::make_unique<Parts>(displayName))
{
}

X11Desktop::~X11Desktop() = default;

bool X11Desktop::isValid() const
{
    return m_parts->connection.isValid() && m_parts->chordConnection.isValid() &&
           m_parts->selections.isValid();
}

platform::KeyEventTap &X11Desktop::keyEventTap()
{
    return m_parts->keyTap;
}

platform::GlobalHotKey &X11Desktop::hotKey()
{
    return m_parts->hotKey;
}

platform::KeySynthesizer &X11Desktop::keySynthesizer()
{
    return m_parts->keySynthesizer;
}

platform::WindowSystem &X11Desktop::windowSystem()
{
    return m_parts->windowSystem;
}

platform::IdleMonitor &X11Desktop::idleMonitor()
{
    return m_parts->idleMonitor;
}

platform::Clipboard &X11Desktop::clipboard()
{
    return m_parts->clipboard;
}

platform::PrimarySelectionReader &X11Desktop::primarySelection()
{
    return m_parts->primarySelection;
}

X11TrayManager &X11Desktop::trayManager()
{
    return m_parts->trayManager;
}

int X11Desktop::gtkScale(qint64 process)
{
    return linuxdesktop::gtkScale(m_parts->connection, process);
}

} // namespace nivora::linuxdesktop
