#pragma once

#include <QImage>
#include <QString>

namespace nivora::screencapture {

// Writes a new PNG file that its owner alone can read. False, with no file left
// behind, where there is one already or it cannot be written.
bool writePicture(const QImage &picture, const QString &path);

// The same with a picture's file, which is gone afterwards.
bool movePicture(const QString &from, const QString &path);

} // namespace nivora::screencapture
