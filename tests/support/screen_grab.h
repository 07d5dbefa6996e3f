#pragma once

#include <QImage>
#include <QRect>

#include <xcb/xcb.h>

namespace nivora::test {

// What a 24-bit screen shows in this rectangle; null when it lies outside.
QImage grabScreen(xcb_connection_t *connection, xcb_window_t root, const QRect &rectangle);

} // namespace nivora::test
