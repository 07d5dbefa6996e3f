#pragma once

#include "platform/idle_monitor.h"
#include "x11_connection.h"

namespace nivora::linuxdesktop {

// By the server's own idle counter, which wakes nobody before its time.
// https://www.x.org/releases/current/doc/xextproto/sync.html
class X11IdleMonitor final : public platform::IdleMonitor
{
public:
    explicit X11IdleMonitor(X11Connection &connection)
        : m_connection(connection)
    {
    }

    platform::Task whenIdle(std::chrono::milliseconds span, std::function<void()> done) override;

private:
    X11Connection &m_connection;
};

} // namespace nivora::linuxdesktop
