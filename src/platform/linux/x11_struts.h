#pragma once

#include "x11_connection.h"

#include <QRect>

#include <array>
#include <cstdint>
#include <span>

namespace nivora::linuxdesktop {

// What one window reserves along the edges of the whole desktop, as
// _NET_WM_STRUT_PARTIAL has it: widths at the left, right, top and bottom, and
// the first and the last pixel of each.
using Strut = std::array<uint32_t, 12>;

// What the struts leave of a screen. `desktop` holds all screens. A strut that
// would take all of the screen reserves a place on another one behind it.
QRect withoutStruts(const QRect &screen, const QSize &desktop, std::span<const Strut> struts);

// The same with the struts of all windows that are open now. The desktop's own
// property for work areas knows only one for all screens.
QRect withoutStruts(X11Connection &connection, const QRect &screen);

} // namespace nivora::linuxdesktop
