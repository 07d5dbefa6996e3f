// Reads pictures of text as screens show it and prints how many characters were
// read wrongly, in all and by kind, and how long it took.
//
//   QT_QPA_PLATFORM=offscreen bench_ocr [--verbose]

#include "platform_linux/tesseract_recognizer.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QImage>
#include <QMap>
#include <QPainter>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;

namespace {

struct Kind
{
    const char *name;
    QStringList fonts;
    QList<QStringList> texts; // lines
    bool vertical = false;
};

// Sentences as mails, documents and programs have them.
QList<Kind> kinds()
{
    const QStringList japaneseFonts{u"Noto Sans CJK JP"_s, u"Noto Serif CJK JP"_s};
    const QStringList simplifiedFonts{u"Noto Sans CJK SC"_s, u"WenQuanYi Zen Hei"_s,
                                      u"Noto Serif CJK SC"_s};
    const QStringList traditionalFonts{u"Noto Sans CJK TC"_s, u"Noto Serif CJK TC"_s};
    const QStringList latinFonts{u"DejaVu Sans"_s, u"Liberation Sans"_s, u"Noto Sans"_s,
                                 u"Liberation Serif"_s};
    return {
        {"Japanese",
         japaneseFonts,
         {{u"お世話になっております。先日お送りした"_s,
           u"見積書をご確認いただけましたでしょうか。"_s,
           u"ご不明な点がございましたらお知らせください。"_s},
          {u"この機能を使うには、設定を開いて"_s, u"「詳細」を選んでください。"_s,
           u"変更は再起動の後に有効になります。"_s},
          {u"明日の会議は午後三時からに変更されました。"_s,
           u"資料は前日までに共有してください。"_s}}},
        {"simplified Chinese",
         simplifiedFonts,
         {{u"您好，附件是我们更新后的报价单，"_s, u"请您确认交货日期和付款方式。"_s,
           u"如有任何问题，请随时与我们联系。"_s},
          {u"系统将在今晚进行维护，届时服务会暂停。"_s, u"请提前保存您的工作，感谢您的理解。"_s},
          {u"这个周末天气很好，我们打算去爬山。"_s, u"你要不要和我们一起去？"_s}}},
        {"traditional Chinese",
         traditionalFonts,
         {{u"您好，附件是我們更新後的報價單，"_s, u"請您確認交貨日期與付款方式。"_s,
           u"如有任何問題，歡迎隨時與我們聯絡。"_s},
          {u"系統將於今晚進行維護，屆時服務會暫停。"_s, u"請提前儲存您的工作，感謝您的體諒。"_s},
          {u"這個週末天氣很好，我們打算去爬山。"_s, u"你要不要跟我們一起去？"_s}}},
        {"English",
         latinFonts,
         {{u"Thank you for sending the revised contract."_s,
           u"We will review it and reply by Thursday."_s,
           u"Please let us know if anything changes."_s},
          {u"The requested file could not be found."_s,
           u"Check the path and try again, or contact support."_s},
          {u"Our office will be closed on Monday, May 6."_s,
           u"Orders placed before noon ship the same day."_s}}},
        {"Japanese with Latin",
         japaneseFonts,
         {{u"来週の月曜日にLinuxのサーバーを更新します。"_s, u"作業は約30分で終わる予定です。"_s},
          {u"エラーが出たらGitHubで報告してください。"_s, u"バージョンは2.15以降が必要です。"_s}}},
        {"Chinese with digits",
         simplifiedFonts,
         {{u"订单编号为20458，预计3月15日发货。"_s, u"总金额为1280元，已优惠5%。"_s},
          {u"会议时间：2024年6月18日下午2点"_s, u"地点：三楼302会议室"_s}}},
        {"Japanese, vertical",
         {u"Noto Serif CJK JP"_s, u"Noto Sans CJK JP"_s},
         {{u"春の朝早く起きて窓を開けると"_s, u"庭の桜がもう咲いていた"_s,
           u"母は台所で茶をいれている"_s}},
         true},
    };
}

struct Theme
{
    const char *name;
    QColor ground, text;
};
const std::vector<Theme> themes{{"light", QColor(0xFF, 0xFF, 0xFF), QColor(0x1C, 0x1D, 0x21)},
                                {"dark", QColor(0x1E, 0x1E, 0x22), QColor(0xEC, 0xED, 0xEF)},
                                {"faint", QColor(0xF2, 0xF2, 0xF2), QColor(0x8A, 0x8A, 0x8A)},
                                {"coloured", QColor(0x0B, 0x57, 0xD0), QColor(0xFF, 0xFF, 0xFF)}};
const std::vector<int> sizes{12, 14, 16, 20, 24};

struct Sample
{
    const char *kind;
    QString name;
    QString text;
    QImage picture;
};

QImage drawn(const Kind &kind, const QStringList &lines, const QFont &font, const Theme &theme)
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

std::vector<Sample> samples()
{
    std::vector<Sample> all;
    for (const Kind &kind : kinds()) {
        qsizetype round = 0;
        for (const int size : sizes) {
            for (const Theme &theme : themes) {
                if (kind.vertical && size < 16)
                    continue;
                const QString family = kind.fonts[round % kind.fonts.size()];
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
};

Measured read(platform::TextRecognizer &recognizer, const QImage &picture)
{
    const QByteArray data = png(picture);
    Measured measured;
    QEventLoop loop;
    QElapsedTimer timer;
    timer.start();
    const platform::Task task = recognizer.recognize(
        data, {u"ja-JP"_s, u"zh-Hans"_s, u"zh-Hant"_s, u"en-US"_s}, [&](const QStringList &lines) {
            measured = {lines.join(u'\n'), double(timer.nsecsElapsed()) / 1e6};
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
};

void print(const char *name, const Sum &sum)
{
    std::printf(
        "%-22s %4d pictures %6d characters %5d wrong %6.2f %%  mean %4.0f ms, longest %4.0f\n",
        name, sum.pictures, sum.characters, sum.errors,
        100.0 * sum.errors / std::max(1, sum.characters),
        sum.milliseconds / std::max(1, sum.pictures), sum.longest);
}

// 800 x 200: the size that the time is meant for.
void timeParagraph(platform::TextRecognizer &recognizer)
{
    for (const Kind &kind : kinds()) {
        if (kind.vertical)
            continue;
        QImage picture(800, 200, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        QFont font(kind.fonts.first());
        font.setPixelSize(16);
        painter.setFont(font);
        int y = 24;
        for (int i = 0; i < 7; ++i, y += 26)
            painter.drawText(16, y, kind.texts[i % kind.texts.size()].join(u' '));
        painter.end();
        std::vector<double> times;
        for (int i = 0; i < 7; ++i)
            times.push_back(read(recognizer, picture).milliseconds);
        std::ranges::sort(times);
        std::printf("800 x 200, %-22s median %4.0f ms, longest %4.0f\n", kind.name,
                    times[times.size() / 2], times.back());
    }
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    const bool verbose = application.arguments().contains(u"--verbose"_s);
    linuxdesktop::TesseractRecognizer recognizer;
    QMap<QByteArray, Sum> sums;
    Sum horizontal;
    for (const Sample &sample : samples()) {
        const Measured measured = read(recognizer, sample.picture);
        const int errors = editDistance(sample.text, measured.text);
        const bool vertical = qstrcmp(sample.kind, "Japanese, vertical") == 0;
        std::vector<Sum *> counted{&sums[sample.kind]};
        if (!vertical)
            counted.push_back(&horizontal);
        for (Sum *sum : counted) {
            ++sum->pictures;
            sum->characters += int(sample.text.size());
            sum->errors += errors;
            sum->milliseconds += measured.milliseconds;
            sum->longest = std::max(sum->longest, measured.milliseconds);
        }
        if (verbose && errors > 0)
            std::printf("%s, %s: %d\n<<%s\n>>%s\n", sample.kind, qUtf8Printable(sample.name),
                        errors, qUtf8Printable(sample.text), qUtf8Printable(measured.text));
    }
    for (auto sum = sums.constBegin(); sum != sums.constEnd(); ++sum)
        print(sum.key().constData(), *sum);
    print("all that is horizontal", horizontal);
    timeParagraph(recognizer);
    return 0;
}
