#pragma once

#include <QImage>
#include <QRect>

namespace nivora::test {

class X11Peer;

// What a 24-bit screen shows in this rectangle; null when it lies outside.
QImage grabScreen(const X11Peer &peer, const QRect &rectangle);

} // namespace nivora::test
