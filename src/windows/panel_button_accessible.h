#pragma once

namespace nivora {

// Tells assistive tools what every PanelButton does. Once a program; more does no
// harm.
void makePanelButtonsAccessible();

} // namespace nivora
