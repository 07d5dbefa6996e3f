#include "core/japanese_kana.h"
#include "core/reading_service.h"
#include "platform_memory/memory_japanese_tokenizer.h"

#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;
using platform::JapaneseToken;

class TestReadingService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesKana_data()
    {
        QTest::addColumn<QString>("katakana");
        QTest::addColumn<QString>("hiragana");
        QTest::addColumn<QString>("romaji");
        const auto row = [](const QString &katakana, const QString &hiragana,
                            const QString &romaji) {
            QTest::newRow(qPrintable(romaji)) << katakana << hiragana << romaji;
        };
        row(u"トウキョウ"_s, u"とうきょう"_s, u"toukyou"_s);
        row(u"オオキイ"_s, u"おおきい"_s, u"ookii"_s);
        row(u"コーヒー"_s, u"こーひー"_s, u"kōhī"_s);
        row(u"エーテルー"_s, u"えーてるー"_s, u"ēterū"_s);
        row(u"ンー"_s, u"んー"_s, u"n-"_s);
        row(u"アーー"_s, u"あーー"_s, u"ā-"_s);
        row(u"シンアイ"_s, u"しんあい"_s, u"shin'ai"_s);
        row(u"コンヤ"_s, u"こんや"_s, u"kon'ya"_s);
        row(u"コンニャク"_s, u"こんにゃく"_s, u"konnyaku"_s);
        row(u"シンブン"_s, u"しんぶん"_s, u"shinbun"_s);
        row(u"キンギョ"_s, u"きんぎょ"_s, u"kingyo"_s);
        row(u"キッテ"_s, u"きって"_s, u"kitte"_s);
        row(u"マッチャ"_s, u"まっちゃ"_s, u"matcha"_s);
        row(u"ザッシ"_s, u"ざっし"_s, u"zasshi"_s);
        row(u"アッ"_s, u"あっ"_s, u"a'"_s);
        row(u"ッア"_s, u"っあ"_s, u"'a"_s);
        row(u"ジャ"_s, u"じゃ"_s, u"ja"_s);
        row(u"シュジュツ"_s, u"しゅじゅつ"_s, u"shujutsu"_s);
        row(u"リャクヒョウ"_s, u"りゃくひょう"_s, u"ryakuhyou"_s);
        row(u"フジサン"_s, u"ふじさん"_s, u"fujisan"_s);
        // Two letters for one sound: romaji keeps the sound.
        row(u"ツヅク"_s, u"つづく"_s, u"tsuzuku"_s);
        row(u"ハナヂ"_s, u"はなぢ"_s, u"hanaji"_s);
        row(u"ヲ"_s, u"を"_s, u"o"_s);
        row(u"ヰヱ"_s, u"ゐゑ"_s, u"ie"_s);
        // Sounds of foreign words.
        row(u"パーティー"_s, u"ぱーてぃー"_s, u"pātī"_s);
        row(u"ファン"_s, u"ふぁん"_s, u"fan"_s);
        row(u"チェック"_s, u"ちぇっく"_s, u"chekku"_s);
        row(u"シェフ"_s, u"しぇふ"_s, u"shefu"_s);
        row(u"ヴァイオリン"_s, u"ゔぁいおりん"_s, u"vaiorin"_s);
        row(u"ウィーク"_s, u"うぃーく"_s, u"wīku"_s);
        row(u"デュエット"_s, u"でゅえっと"_s, u"dyuetto"_s);
        row(u"トゥー"_s, u"とぅー"_s, u"tū"_s);
        row(u"モーツァルト"_s, u"もーつぁると"_s, u"mōtsaruto"_s);
        row(u"クァ"_s, u"くぁ"_s, u"kwa"_s);
        row(u"ネェ"_s, u"ねぇ"_s, u"nee"_s);
        row(u"ッヴ"_s, u"っゔ"_s, u"vvu"_s);
        row(u"ココヽスヾメ"_s, u"ここゝすゞめ"_s, u"kokokosuzume"_s);
        row(u"ヽ"_s, u"ゝ"_s, u"ゝ"_s);
        row(u"ヵヶ"_s, u"ゕゖ"_s, u"kake"_s);
        row(u"ア・Bッ!"_s, u"あ・Bっ!"_s, u"a・B'!"_s);
        row({}, {}, {});
    }
    void writesKana()
    {
        QFETCH(QString, katakana);
        QFETCH(QString, hiragana);
        QFETCH(QString, romaji);
        QCOMPARE(hiraganaFromKatakana(katakana), hiragana);
        QCOMPARE(romajiFromKana(katakana), romaji);
        QCOMPARE(romajiFromKana(hiragana), romaji);
    }

    void readsTokens_data()
    {
        QTest::addColumn<std::vector<JapaneseToken>>("tokens");
        QTest::addColumn<QString>("hiragana");
        QTest::addColumn<QString>("romaji");
        const auto row = [](const char *name, const std::vector<JapaneseToken> &tokens,
                            const QString &hiragana, const QString &romaji) {
            QTest::newRow(name) << tokens << hiragana << romaji;
        };
        const JapaneseToken wa{u"は"_s, u"ハ"_s, u"ワ"_s};
        row("particles as they are said",
            {{u"母"_s, u"ハハ"_s, u"ハハ"_s},
             wa,
             {u"家"_s, u"ウチ"_s, u"ウチ"_s},
             {u"へ"_s, u"ヘ"_s, u"エ"_s}},
            u"はは は うち へ"_s, u"haha wa uchi e"_s);
        row("a long vowel as it is spelt", {{u"東京"_s, u"トウキョウ"_s, u"トーキョー"_s}},
            u"とうきょう"_s, u"toukyou"_s);
        row("said with fewer letters", {{u"ヴァ"_s, u"ヴァ"_s, u"バ"_s}}, u"ゔぁ"_s, u"va"_s);
        row("without reading",
            {{u"Qt"_s, {}, {}},
             {u" "_s, {}, {}},
             {u"は"_s, u"ハ"_s, u"ワ"_s},
             {u"👍"_s, {}, {}},
             {u"。"_s, {}, {}}},
            u"Qt は 👍。"_s, u"Qt wa 👍。"_s);
        const JapaneseToken ame{u"雨"_s, u"アメ"_s, u"アメ"_s};
        row("marks stand close to their words",
            {{u"「"_s, {}, {}},
             ame,
             {u"、"_s, {}, {}},
             ame,
             {u"！」"_s, {}, {}},
             wa,
             {u"（"_s, {}, {}},
             {u"5"_s, {}, {}},
             {u"％"_s, {}, {}},
             {u"）"_s, {}, {}},
             {u"…"_s, {}, {}},
             {u".NET"_s, {}, {}}},
            u"「あめ、あめ！」 は （5％）… .NET"_s, u"「ame、ame！」 wa （5％）… .NET"_s);
    }
    void readsTokens()
    {
        QFETCH(std::vector<JapaneseToken>, tokens);
        QFETCH(QString, hiragana);
        QFETCH(QString, romaji);
        memory::MemoryJapaneseTokenizer tokenizer;
        tokenizer.setTokens(tokens);
        ReadingService service(tokenizer);
        QCOMPARE(service.read(u" \n日本\u3000"_s, ReadingForm::Hiragana), hiragana);
        QCOMPARE(tokenizer.asked(), u"日本"_s);
        QCOMPARE(service.read(u"日本"_s, ReadingForm::Romaji), romaji);
        QCOMPARE(service.read(u" \n"_s, ReadingForm::Romaji), QString());

        QString later = u"none"_s;
        const auto task = service.read(u"日本"_s, ReadingForm::Romaji,
                                       [&](const QString &reading) { later = reading; });
        QCOMPARE(later, u"none"_s);
        QTRY_COMPARE(later, romaji);
    }

    void givesNoReadingWithoutADictionary()
    {
        memory::MemoryJapaneseTokenizer tokenizer;
        tokenizer.setInstalled(false);
        ReadingService service(tokenizer);
        QCOMPARE(service.read(u"日本"_s, ReadingForm::Romaji), QString());
        QString later = u"none"_s;
        const auto task = service.read(u"日本"_s, ReadingForm::Romaji,
                                       [&](const QString &reading) { later = reading; });
        QTRY_COMPARE(later, QString());
    }

    void givesUpWhenDroppedOrAtTheEnd_data()
    {
        QTest::addColumn<bool>("isDropped");
        QTest::newRow("dropped") << true;
        QTest::newRow("the end") << false;
    }
    void givesUpWhenDroppedOrAtTheEnd()
    {
        QFETCH(bool, isDropped);
        memory::MemoryJapaneseTokenizer tokenizer;
        tokenizer.setHolds(true);
        int calls = 0;
        {
            ReadingService service(tokenizer);
            auto task =
                service.read(u"日本"_s, ReadingForm::Romaji, [&](const QString &) { ++calls; });
            QTRY_COMPARE(tokenizer.calls(), 1);
            if (isDropped) {
                task.cancel();
                // Comes only when the only worker is free again.
                service.prepare();
                QTRY_COMPARE(tokenizer.prepared(), 1);
            }
        }
        QCOMPARE(calls, 0);
    }
};

QTEST_GUILESS_MAIN(TestReadingService)
#include "tst_reading_service.moc"
