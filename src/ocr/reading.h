#pragma once

#include "picture.h"

#include <QByteArray>
#include <QList>
#include <QRect>
#include <QString>

#include <memory>

namespace tesseract {
class TessBaseAPI;
}

namespace nivora::ocr {

// How sure a model is goes from 0 to 100; places are pixels of the picture.

struct Symbol
{
    QString text;
    double confidence = 0;
    QRect box;
};

struct Line
{
    QString text;
    double confidence = 0;
    QRect box;
    QList<Symbol> symbols;
};

// What one model made of the picture.
struct Reading
{
    QByteArray model;
    QList<Line> lines;

    double confidence() const; // mean over the lines, by their length
};

// One model that reads one picture.
struct Job
{
    QByteArray model; // "jpn", "jpn_vert"
    bool vertical = false;
};

// A model in memory, which takes some 100 ms to get there.
class Reader
{
public:
    explicit Reader(const Job &job);
    ~Reader();

    bool isLoaded() const { return m_isLoaded; }

    // Takes some 100 ms. No lines where the picture shows no text.
    QList<Line> read(Pix *picture);

private:
    std::unique_ptr<tesseract::TessBaseAPI> m_engine;
    bool m_isLoaded = false;
    bool m_isVertical = false;
};

} // namespace nivora::ocr
