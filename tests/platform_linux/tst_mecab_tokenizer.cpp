// The tokenizer against the real dictionary.

#include "platform_linux/mecab_tokenizer.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

using namespace nivora;
using namespace nivora::linuxdesktop;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto always = [] { return true; };

QString surfaces(const std::vector<platform::JapaneseToken> &tokens)
{
    QString text;
    for (const auto &token : tokens)
        text += token.surface;
    return text;
}

// "東京[トウキョウ] は[ハ/ワ]": the pronunciation only where it differs.
QString shown(const std::vector<platform::JapaneseToken> &tokens)
{
    QStringList words;
    for (const auto &[surface, reading, pronunciation] : tokens) {
        QString word = surface;
        if (reading != surface && !reading.isEmpty())
            word += u'[' + reading + u']';
        words.append(word.replace(u' ', u'_').replace(u'\n', u'|'));
    }
    return words.join(u' ');
}

} // namespace

class TestMecabTokenizer : public QObject
{
    Q_OBJECT

    MecabTokenizer m_tokenizer;

private Q_SLOTS:
    void initTestCase() { QVERIFY2(m_tokenizer.prepare(), "mecab-ipadic-utf8 is not installed"); }

    void cutsIntoWords_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("words");
        const auto row = [](const QString &text, const QString &words) {
            QTest::newRow(qPrintable(text)) << text << words;
        };
        row(u"東京は今日も雨。"_s, u"東京[トウキョウ] は[ハ] 今日[キョウ] も[モ] 雨[アメ] 。"_s);
        row(u"お見積もりを金曜日までに送ってください"_s,
            u"お見積もり[オミツモリ] を[ヲ] 金曜日[キンヨウビ] まで[マデ] に[ニ] 送って[オクッテ] "
            "ください[クダサイ]"_s);
        row(u"行きませんでした"_s, u"行きません[イキマセン] でした[デシタ]"_s);
        row(u"食べられなかった"_s, u"食べられなかった[タベラレナカッタ]"_s);
        row(u"高かったら飲んで"_s, u"高かったら[タカカッタラ] 飲んで[ノンデ]"_s);
        row(u"静かです"_s, u"静か[シズカ] です[デス]"_s);
        row(u"２０２４年と2024年"_s, u"２０２４ 年[ネン] と[ト] 2024 年[ネン]"_s);
        row(u"don't https://a.b/c?d=1"_s, u"don't _ https://a.b/c?d=1"_s);
        row(u"Qtで書く👍🏽👍"_s, u"Qt で[デ] 書く[カク] 👍🏽👍"_s);
        row(u"a \t b\n\n\u3000雨"_s, u"a _\t_ b || \u3000 雨[アメ]"_s);
        row(u"\n 雨\n"_s, u"|_ 雨[アメ] |"_s);
        row(u"づつ"_s, u"づつ[ヅツ]"_s);
        row(u"ﾊﾟｿｺﾝ"_s, u"ﾊﾟｿｺﾝ[パソコン]"_s);
        row(u"コーヒー１００％"_s, u"コーヒー １００ ％"_s);
        row(u"龘が"_s, u"龘 が[ガ]"_s);
        row(u""_s, u""_s);
    }
    void cutsIntoWords()
    {
        QFETCH(QString, text);
        const auto tokens = m_tokenizer.tokenize(text, always);
        QVERIFY(tokens);
        QTEST(shown(*tokens), "words");
        QCOMPARE(surfaces(*tokens), text);
    }

    void tellsParticlesFromTheirSpelling()
    {
        const auto tokens = m_tokenizer.tokenize(u"私は家へ"_s, always);
        QVERIFY(tokens && tokens->size() == 4);
        QCOMPARE(tokens->at(1).pronunciation, u"ワ"_s);
        QCOMPARE(tokens->at(3).pronunciation, u"エ"_s);
    }

    void takesTextsOfAnyLength_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("tokens"); // 0: not fixed
        QTest::newRow("one Latin word") << QString(200'000, u'a') << 1;
        QTest::newRow("one blank") << QString(200'000, u' ') << 1;
        QTest::newRow("sentences") << u"これは本です。"_s.repeated(10'000) << 50'000;
        QTest::newRow("no end of a sentence") << u"東京タワー"_s.repeated(20'000) << 0;
        QTest::newRow("emoji") << u"a👍"_s.repeated(20'000) << 40'000;
        QTest::newRow("a zero") << u"雨\0雨"_s << 0;
    }
    void takesTextsOfAnyLength()
    {
        QFETCH(QString, text);
        QFETCH(int, tokens);
        const auto found = m_tokenizer.tokenize(text, always);
        QVERIFY(found);
        QVERIFY(surfaces(*found) == text);
        if (tokens > 0)
            QCOMPARE(int(found->size()), tokens);
    }

    void stopsBetweenSentences()
    {
        int asked = 0;
        QVERIFY(!m_tokenizer.tokenize(u"雨。"_s.repeated(1000), [&] { return ++asked < 3; }));
        QCOMPARE(asked, 3);
    }

    void servesSeveralThreads()
    {
        MecabTokenizer fresh; // they load it together, too
        const QString text = u"今日は東京へ行きます。"_s.repeated(50);
        const auto expected = m_tokenizer.tokenize(text, always);
        std::atomic<int> right = 0;
        {
            std::vector<std::jthread> threads;
            for (int i = 0; i < 4; ++i) {
                threads.emplace_back([&] {
                    for (int run = 0; run < 20; ++run)
                        right += fresh.tokenize(text, always) == expected;
                });
            }
        }
        QCOMPARE(right, 80);
    }

    void logsAnUnusableDictionaryOnce()
    {
        QTemporaryDir folder;
        for (const auto name :
             {"/sys.dic"_L1, "/unk.dic"_L1, "/matrix.bin"_L1, "/char.bin"_L1, "/dicrc"_L1}) {
            QFile file(folder.path() + name);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(QByteArray(5000, 'x'));
        }
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^No usable Japanese dictionary"_s));
        QTest::failOnWarning(QRegularExpression(u"."_s));
        MecabTokenizer without(folder.path());
        QVERIFY(!without.prepare());
        QVERIFY(!without.tokenize(u"雨"_s, always));
    }
};

QTEST_GUILESS_MAIN(TestMecabTokenizer)
#include "tst_mecab_tokenizer.moc"
