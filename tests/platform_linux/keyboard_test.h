#pragma once

#include "platform/keys.h"
#include "platform_linux/x11_desktop.h"
#include "support/desktop_session.h"
#include "support/wait.h"
#include "support/x11_driver.h"
#include "support/x11_peer.h"

#include <QTest>

#include <X11/keysym.h>
#include <xcb/xcb_keysyms.h>

namespace nivora::test {

inline constexpr platform::KeyChord chordO{Qt::Key_O, Qt::ControlModifier | Qt::AltModifier};

// A window with the focus that notes what keys it is given.
class Typewriter
{
public:
    explicit Typewriter(const QByteArray &displayName)
        : m_peer(displayName)
    {
        const auto window = m_peer.createWindow(XCB_EVENT_MASK_KEY_PRESS);
        m_peer.onEvent = [this](const xcb_generic_event_t &event) {
            if ((event.response_type & 0x7f) != XCB_KEY_PRESS)
                return;
            const auto &press = reinterpret_cast<const xcb_key_press_event_t &>(event);
            // The rest tells of locks and layouts.
            constexpr int modifiers =
                XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
            typed << QStringLiteral("%1:%2").arg(press.detail).arg(press.state & modifiers);
        };
        xcb_map_window(m_peer.xcb(), window);
        xcb_set_input_focus(m_peer.xcb(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        m_peer.synchronise();
    }

    QString code(X11Driver::Symbol symbol, int state)
    {
        return QStringLiteral("%1:%2").arg(keyCode(symbol)).arg(state);
    }
    xcb_keycode_t keyCode(X11Driver::Symbol symbol)
    {
        auto *symbols = xcb_key_symbols_alloc(m_peer.xcb());
        const auto codes = X11Peer::hold(xcb_key_symbols_get_keycode(symbols, symbol));
        const xcb_keycode_t first = codes.get()[0];
        xcb_key_symbols_free(symbols);
        m_peer.serve(); // what came with the answer
        return first;
    }

    X11Peer &peer() { return m_peer; }

    QStringList typed; // key code and state

private:
    X11Peer m_peer;
};

// A desktop with a window that is typed into, by the user and by the product.
class KeyboardTest : public QObject
{
protected:
    using Symbols = QList<X11Driver::Symbol>;

    bool startSession()
    {
        if (!m_session.start({.windowManager = false, .accessibility = false})) {
            qWarning("%s", qPrintable(m_session.error()));
            return false;
        }
        m_user = std::make_unique<X11Driver>(m_session.displayName());
        return m_user->isValid();
    }
    bool openWindow()
    {
        m_window = std::make_unique<Typewriter>(m_session.displayName());
        m_desktop = std::make_unique<linuxdesktop::X11Desktop>(m_session.displayName());
        return m_desktop->isValid();
    }
    void closeWindow()
    {
        m_desktop.reset();
        m_window.reset();
    }

    bool run(const QString &program, const QStringList &arguments)
    {
        QProcess *process = m_session.launch(program, arguments);
        return process &&
               (process->state() == QProcess::NotRunning || process->waitForFinished()) &&
               process->exitCode() == 0;
    }
    bool setLayouts(const QStringList &arguments)
    {
        return run(QStringLiteral("setxkbmap"), arguments);
    }

    DesktopSession m_session;
    std::unique_ptr<X11Driver> m_user;
    std::unique_ptr<Typewriter> m_window;
    std::unique_ptr<linuxdesktop::X11Desktop> m_desktop;
};

} // namespace nivora::test
