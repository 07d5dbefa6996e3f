// Reads pictures of text as screens show it and prints how many characters were
// read wrongly, in all and by kind, and how long it took: of sentences that nothing
// was tuned with, or of those that it was.
//
//   QT_QPA_PLATFORM=offscreen bench_ocr [--tuning | --time] [--verbose]
//
// --time leaves the mistakes out; --verbose shows them.

#include "ocr_sentences.h"

#include "platform_linux/tesseract_recognizer.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QImage>
#include <QMap>
#include <QPainter>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <sys/resource.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using bench::OcrKind;

namespace {

struct Theme
{
    const char *name;
    QColor ground, text;
};
const std::vector<Theme> themes{{"light", QColor(0xFF, 0xFF, 0xFF), QColor(0x1C, 0x1D, 0x21)},
                                {"dark", QColor(0x1E, 0x1E, 0x22), QColor(0xEC, 0xED, 0xEF)},
                                {"faint", QColor(0xF2, 0xF2, 0xF2), QColor(0x8A, 0x8A, 0x8A)},
                                {"coloured", QColor(0x0B, 0x57, 0xD0), QColor(0xFF, 0xFF, 0xFF)}};
const std::vector<int> tuningSizes{12, 14, 16, 20, 24};
const std::vector<int> heldOutSizes{12, 15, 18, 22};

struct Sample
{
    const char *kind;
    QString name;
    QString text;
    QImage picture;
};

QImage drawn(const OcrKind &kind, const QStringList &lines, const QFont &font, const Theme &theme)
{
    const QFontMetrics metrics(font);
    const int size = font.pixelSize();
    const int step = size * 3 / 2;
    int length = 0;
    for (const QString &line : lines)
        length = std::max(length, kind.vertical ? int(line.size()) * size
                                                : metrics.horizontalAdvance(line));
    const QSize extent(length + 2 * size, int(lines.size()) * step + size);
    QImage picture(kind.vertical ? extent.transposed() : extent, QImage::Format_RGB32);
    picture.fill(theme.ground);
    QPainter painter(&picture);
    painter.setFont(font);
    painter.setPen(theme.text);
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (!kind.vertical) {
            painter.drawText(size, size / 2 + int(i) * step + metrics.ascent(), lines[i]);
            continue;
        }
        // From the right to the left, character below character.
        const int x = picture.width() - size / 2 - int(i + 1) * step + (step - size) / 2;
        for (qsizetype c = 0; c < lines[i].size(); ++c)
            painter.drawText(QRect(x, size + int(c) * size, size, size), Qt::AlignCenter,
                             QString(lines[i][c]));
    }
    return picture;
}

std::vector<Sample> samples(const QList<OcrKind> &kinds, const std::vector<int> &sizes)
{
    std::vector<Sample> all;
    for (const OcrKind &kind : kinds) {
        qsizetype round = 0;
        for (const int size : sizes) {
            for (const Theme &theme : themes) {
                if (kind.vertical && size < 16)
                    continue;
                const QString family =
                    kind.fonts[(round + round / qsizetype(themes.size())) % kind.fonts.size()];
                const QStringList &lines = kind.texts[round % kind.texts.size()];
                ++round;
                QFont font(family);
                font.setPixelSize(size);
                all.push_back({kind.name,
                               u"%1, %2 px, %3"_s.arg(family, QString::number(size),
                                                      QLatin1StringView(theme.name)),
                               lines.join(u'\n'), drawn(kind, lines, font, theme)});
            }
        }
    }
    return all;
}

// How many characters have to be put in, taken out or replaced.
int editDistance(const QString &a, const QString &b)
{
    std::vector<int> row(b.size() + 1);
    for (qsizetype j = 0; j <= b.size(); ++j)
        row[j] = int(j);
    for (qsizetype i = 1; i <= a.size(); ++i) {
        int diagonal = row[0];
        row[0] = int(i);
        for (qsizetype j = 1; j <= b.size(); ++j) {
            const int replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row.back();
}

QByteArray png(const QImage &picture)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return data;
}

struct Measured
{
    QString text;
    double milliseconds = 0;
    double processor = 0; // milliseconds of all cores, whatever else runs
};

// Of the programs that have ended.
double processorTime()
{
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    const auto milliseconds = [](const timeval &time) {
        return double(time.tv_sec) * 1e3 + double(time.tv_usec) / 1e3;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

const QStringList languages{u"ja-JP"_s, u"zh-Hans"_s, u"zh-Hant"_s, u"en-US"_s};

Measured read(platform::TextRecognizer &recognizer, const QImage &picture)
{
    const QByteArray data = png(picture);
    Measured measured;
    QEventLoop loop;
    QElapsedTimer timer;
    const double before = processorTime();
    timer.start();
    const platform::Task task =
        recognizer.recognize(data, languages, [&](const QStringList &lines) {
            measured = {lines.join(u'\n'), double(timer.nsecsElapsed()) / 1e6,
                        processorTime() - before};
            loop.quit();
        });
    loop.exec();
    return measured;
}

struct Sum
{
    int pictures = 0;
    int characters = 0;
    int errors = 0;
    double milliseconds = 0;
    double longest = 0;
    double processor = 0;
};

void print(const char *name, const Sum &sum)
{
    const int pictures = std::max(1, sum.pictures);
    std::printf("%-22s %4d pictures %6d characters %5d wrong %6.2f %%  mean %4.0f ms, longest "
                "%4.0f, of all cores %4.0f\n",
                name, sum.pictures, sum.characters, sum.errors,
                100.0 * sum.errors / std::max(1, sum.characters), sum.milliseconds / pictures,
                sum.longest, sum.processor / pictures);
    std::fflush(stdout);
}

constexpr int markingTime = 2; // seconds

// As many lines as 800 x 200 pixels hold.
QStringList paragraphOf(const OcrKind &kind, const QFontMetrics &metrics)
{
    const bool hasBlanks = qstrcmp(kind.name, "English") == 0;
    QStringList lines(1);
    QStringList texts;
    for (const QStringList &each : kind.texts)
        texts += each;
    for (const QString &text : texts) {
        const QStringList pieces =
            hasBlanks ? text.split(u' ') : text.split(QString(), Qt::SkipEmptyParts);
        for (const QString &piece : pieces) {
            const QString longer =
                lines.last() + (hasBlanks && !lines.last().isEmpty() ? u" "_s : QString()) + piece;
            if (metrics.horizontalAdvance(longer) < 780)
                lines.last() = longer;
            else if (lines.size() < 7)
                lines.append(piece);
            else
                return lines;
        }
    }
    return lines;
}

// 800 x 200: the size that the time is meant for, with the models in memory, as
// they are when a user has marked a region.
void timeParagraph(platform::TextRecognizer &recognizer)
{
    for (const OcrKind &kind : bench::tuningKinds()) {
        if (kind.vertical)
            continue;
        QImage picture(800, 200, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        QFont font(kind.fonts.first());
        font.setPixelSize(16);
        painter.setFont(font);
        const QStringList lines = paragraphOf(kind, QFontMetrics(font));
        for (qsizetype i = 0; i < lines.size(); ++i)
            painter.drawText(10, 24 + int(i) * 26, lines[i]);
        painter.end();
        std::vector<double> times;
        double processor = 0;
        int errors = 0;
        constexpr int rounds = 5;
        for (int i = 0; i < rounds; ++i) {
            const platform::Task preparation = recognizer.prepare(languages);
            QThread::sleep(markingTime);
            const Measured measured = read(recognizer, picture);
            times.push_back(measured.milliseconds);
            processor += measured.processor / rounds;
            errors = editDistance(lines.join(u'\n'), measured.text);
        }
        std::ranges::sort(times);
        std::printf("800 x 200, %-22s %3d characters %3d wrong  median %4.0f ms, longest %4.0f, of "
                    "all cores %4.0f\n",
                    kind.name, int(lines.join(u'\n').size()), errors, times[times.size() / 2],
                    times.back(), processor);
        std::fflush(stdout);
    }
}

void countMistakes(platform::TextRecognizer &recognizer, const std::vector<Sample> &samples,
                   bool verbose)
{
    QMap<QByteArray, Sum> sums;
    Sum all;
    for (const Sample &sample : samples) {
        const Measured measured = read(recognizer, sample.picture);
        const int errors = editDistance(sample.text, measured.text);
        for (Sum *sum : {&sums[sample.kind], &all}) {
            ++sum->pictures;
            sum->characters += int(sample.text.size());
            sum->errors += errors;
            sum->milliseconds += measured.milliseconds;
            sum->processor += measured.processor;
            sum->longest = std::max(sum->longest, measured.milliseconds);
        }
        if (verbose && errors > 0)
            std::printf("%s, %s: %d\n<<%s\n>>%s\n", sample.kind, qUtf8Printable(sample.name),
                        errors, qUtf8Printable(sample.text), qUtf8Printable(measured.text));
    }
    for (auto sum = sums.constBegin(); sum != sums.constEnd(); ++sum)
        print(sum.key().constData(), *sum);
    print("all", all);
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    linuxdesktop::TesseractRecognizer recognizer;
    if (!arguments.contains(u"--time"_s)) {
        countMistakes(recognizer,
                      arguments.contains(u"--tuning"_s)
                          ? samples(bench::tuningKinds(), tuningSizes)
                          : samples(bench::heldOutKinds(), heldOutSizes),
                      arguments.contains(u"--verbose"_s));
    }
    timeParagraph(recognizer);
    return 0;
}
