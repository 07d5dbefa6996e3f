#pragma once

#include <QImage>
#include <QRect>

namespace nivora::screencapture {

// What all screens show at one moment, pixel by pixel, without the pointer.
struct FrozenScreens
{
    QRect area; // around all screens
    QImage picture;

    // As they are now. The picture is null where the X server does not hand it
    // out.
    static FrozenScreens take();
};

} // namespace nivora::screencapture
