#pragma once

#include "core/language.h"

#include <QColor>
#include <QFont>
#include <QPalette>

namespace nivora {

// The product's two palettes. Every widget takes its colours from its palette,
// so a change of the application's palette changes all that is on show.
QPalette themePalette(bool dark);

bool isDark(const QPalette &palette);

// Text of lesser weight or bad news, hairlines, and the tint below the pointer.
QColor secondaryText(const QPalette &palette);
QColor faintText(const QPalette &palette);
QColor errorText(const QPalette &palette);
QColor hairline(const QPalette &palette);
QColor hoverTint(const QPalette &palette);

// A font of this size, in logical pixels, for text in this language. The same
// ideograph is drawn differently in Chinese, Japanese and Korean print.
QFont textFont(int pixelSize, Language language = Language::Auto);

// The same for a heading.
QFont titleFont(int pixelSize);

} // namespace nivora
