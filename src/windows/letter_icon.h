#pragma once

#include <QIcon>

namespace nivora {

// The product's letter on a tile, drawn anew for every size so that its edges lie
// on pixels. Trays are dark or light whatever the theme of windows: the tile
// shows on both. `marked`: with a small mark that something is amiss.
QIcon letterIcon(bool marked = false);

} // namespace nivora
