#include "picture_file.h"

#include <QFile>
#include <QImageWriter>

namespace nivora::screencapture {

namespace {

// For Qt's PNG writer 100 is no compression; the file is read once and removed.
constexpr int quality = 80;
constexpr qint64 maxFile = 256ll * 1024 * 1024;

bool openNew(QFile &file)
{
    return file.open(QIODevice::WriteOnly | QIODevice::NewOnly,
                     QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

bool kept(QFile &file, bool written)
{
    if (written && file.flush())
        return true;
    file.remove();
    return false;
}

} // namespace

bool writePicture(const QImage &picture, const QString &path)
{
    QFile file(path);
    if (!openNew(file))
        return false;
    QImageWriter writer(&file, "png");
    writer.setQuality(quality);
    return kept(file, writer.write(picture));
}

bool movePicture(const QString &from, const QString &path)
{
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly) || source.size() > maxFile)
        return false;
    const QByteArray data = source.readAll();
    source.remove();
    QFile file(path);
    return openNew(file) && kept(file, file.write(data) == data.size());
}

} // namespace nivora::screencapture
