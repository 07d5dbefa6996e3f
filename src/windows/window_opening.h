#pragma once

class QSize;
class QWidget;

namespace nivora {

// Gives a window that was not shown yet this size, in logical pixels, in the middle
// of the screen that the user works on.
void placeInTheMiddle(QWidget &window, const QSize &size);

// Shows the window, out of the task bar too, above the others and with the keyboard.
void bringToFront(QWidget &window);

} // namespace nivora
