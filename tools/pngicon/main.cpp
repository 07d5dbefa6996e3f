// Draws an SVG as a square PNG of the given side in pixels: pngicon in.svg 48 out.png
// Run by the build.

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char *argv[])
{
    const int side = argc == 4 ? QByteArray(argv[2]).toInt() : 0;
    if (side <= 0) {
        std::fputs("usage: pngicon in.svg side out.png\n", stderr);
        return 2;
    }
    QSvgRenderer drawing(QFile::decodeName(argv[1]));
    if (!drawing.isValid()) {
        std::fprintf(stderr, "%s is no SVG\n", argv[1]);
        return 1;
    }
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter);
    painter.end();
    if (!image.save(QFile::decodeName(argv[3]))) {
        std::fprintf(stderr, "%s cannot be written\n", argv[3]);
        return 1;
    }
    return 0;
}
