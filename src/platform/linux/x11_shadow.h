#pragma once

#include "x11_connection.h"

#include <QSize>

namespace nivora::linuxdesktop {

// See WindowSystem::setShadow().
void setX11Shadow(X11Connection &connection, xcb_window_t window, const QSize &size, int margin);

} // namespace nivora::linuxdesktop
