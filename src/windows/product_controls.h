#pragma once

class QPainter;
class QStyleOption;
class QStyleOptionComboBox;
class QStyleOptionProgressBar;
class QStyleOptionSlider;

namespace nivora {

// How the style draws what forms are made of.

// The frame of something to write in or to choose from, and its ground.
void drawField(QPainter &painter, const QStyleOption &field, bool inUse);

// A combo box without its text.
void drawPicker(QPainter &painter, const QStyleOptionComboBox &picker);

// From one end to the handle the groove is in the accent's colour. `handle`: where
// the handle is.
void drawSlider(QPainter &painter, const QStyleOptionSlider &slider, const QRectF &handle);

void drawProgress(QPainter &painter, const QStyleOptionProgressBar &bar);

} // namespace nivora
