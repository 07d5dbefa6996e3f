#include "platform_linux/tesseract_recognizer.h"

#include "support/wait.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;

namespace {

constexpr auto patience = 30s;
const QStringList languages{u"ja-JP"_s, u"zh-Hans"_s, u"zh-Hant"_s, u"en-US"_s};

QByteArray png(const QImage &picture)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return data;
}

QImage page(const QStringList &lines, const QColor &ground = Qt::white,
            const QColor &ink = Qt::black)
{
    QImage picture(600, 20 + 32 * int(lines.size()), QImage::Format_RGB32);
    picture.fill(ground);
    QPainter painter(&picture);
    QFont font(u"Noto Sans CJK JP"_s);
    font.setPixelSize(18);
    painter.setFont(font);
    painter.setPen(ink);
    for (int i = 0; i < lines.size(); ++i)
        painter.drawText(20, 34 + 32 * i, lines[i]);
    return picture;
}

QImage columns(const QStringList &texts)
{
    QImage picture(40 * int(texts.size()), 40 + 22 * int(texts.first().size() + 1),
                   QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    QFont font(u"Noto Sans CJK JP"_s);
    font.setPixelSize(22);
    painter.setFont(font);
    int x = picture.width();
    for (const QString &text : texts) {
        x -= 36;
        for (int i = 0; i < text.size(); ++i)
            painter.drawText(QRect(x, 20 + 22 * i, 24, 22), Qt::AlignCenter, QString(text[i]));
    }
    return picture;
}

// As terminals have it, with a bit of the cursor below.
QImage apart(const QString &text)
{
    QImage picture(40 + 36 * int(text.size()), 44, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    QFont font(u"Noto Sans CJK JP"_s);
    font.setPixelSize(18);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 18);
    painter.setFont(font);
    painter.drawText(10, 24, text);
    painter.fillRect(10, 28, 2, 8, Qt::black);
    return picture;
}

QImage framed(QImage picture)
{
    QPainter(&picture).drawRect(picture.rect().adjusted(0, 0, -1, -1));
    return picture;
}

} // namespace

class TestTesseractRecognizer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsPictures_data()
    {
        QTest::addColumn<QByteArray>("picture");
        QTest::addColumn<QStringList>("lines");
        const QStringList japanese{u"来週の月曜日に見積書を"_s, u"お送りします。"_s};
        const QStringList mixed{u"エラーが表示されました。"_s, u"The file could not be found."_s};
        const QStringList changing{u"The file could not be found."_s,
                                   u"Check the path and try again."_s,
                                   u"If the problem remains,"_s,
                                   u"please contact support."_s,
                                   u"ご不明な点はお問い合わせください。"_s,
                                   u"Thank you for your patience."_s};
        const QStringList simplified{u"这个问题已经解决，谢谢。"_s};
        QTest::newRow("lines stay lines") << png(page(japanese)) << japanese;
        QTest::newRow("light on dark")
            << png(page(japanese, QColor(0x1E, 0x1E, 0x22), Qt::white)) << japanese;
        QTest::newRow("faint") << png(page(japanese, QColor(0xF0, 0xF0, 0xF0), Qt::gray))
                               << japanese;
        QTest::newRow("the edge of a window") << png(framed(page(japanese))) << japanese;
        QTest::newRow("English among Japanese") << png(page(mixed)) << mixed;
        QTest::newRow("Japanese after English") << png(page(changing)) << changing;
        QTest::newRow("simplified, not traditional") << png(page(simplified)) << simplified;
        QTest::newRow("downwards") << png(columns({u"春の朝早く起きて庭に出る"_s}))
                                   << QStringList{u"春の朝早く起きて庭に出る"_s};
        const QStringList poem{u"庭の桜が咲いていた"_s, u"母は茶をいれている"_s,
                               u"猫はまだ眠っている"_s};
        QTest::newRow("downwards, in rows as well") << png(columns(poem)) << poem;

        QTest::newRow("across, though apart")
            << png(apart(japanese.first())) << QStringList{japanese.first()};
        QTest::newRow("no text") << png(page({})) << QStringList();
        QTest::newRow("nothing") << QByteArray() << QStringList();
        QTest::newRow("no picture") << "no picture"_ba << QStringList();
        QTest::newRow("cut off") << png(page(japanese)).first(300) << QStringList();
        QImage huge(10000, 10000, QImage::Format_Mono);
        huge.fill(1);
        QTest::newRow("a hundred megapixels") << png(huge) << QStringList();
    }

    void readsPictures()
    {
        QFETCH(const QByteArray, picture);
        linuxdesktop::TesseractRecognizer recognizer;
        const platform::Task preparation = recognizer.prepare(languages);
        std::optional<QStringList> read;
        const platform::Task task = recognizer.recognize(
            picture, languages, [&](const QStringList &lines) { read = lines; });
        QVERIFY(test::waitUntil([&] { return read.has_value(); }, patience));
        QTEST(*read, "lines");
    }

    void aDroppedTaskLeavesNoProcess()
    {
        linuxdesktop::TesseractRecognizer recognizer;
        platform::Task task = recognizer.prepare(languages);
        QVERIFY(test::waitUntil([] { return !children().isEmpty(); }, patience));
        task.cancel();
        QVERIFY(test::waitUntil([] { return children().isEmpty(); }, 1s));
        task = recognizer.recognize(png(page(QStringList(20, u"見積書"_s))), languages,
                                    [](const QStringList &) {});
        QVERIFY(test::waitUntil([] { return !children().isEmpty(); }, patience));
        task.cancel();
        QVERIFY(test::waitUntil([] { return children().isEmpty(); }, 1s));
    }

private:
    static QByteArray children()
    {
        QFile file(u"/proc/self/task/%1/children"_s.arg(QCoreApplication::applicationPid()));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};

QTEST_MAIN(TestTesseractRecognizer)
#include "tst_tesseract_recognizer.moc"
