#pragma once

#include "picture.h"

#include <QByteArray>
#include <QList>
#include <QRect>
#include <QString>

#include <optional>

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

// Takes some 100 ms. Absent when the model cannot be loaded.
std::optional<Reading> read(Pix *picture, const Job &job);

} // namespace nivora::ocr
