#include "core/language.h"
#include "core/language_detector.h"

#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;

using Verdict = std::optional<RecognizedLanguage>;

class TestLanguage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rawValuesGoBothWays()
    {
        for (const Language language : allLanguages)
            QCOMPARE(languageFromRawValue(rawValue(language)), language);
        QCOMPARE(rawValue(Language::TraditionalChinese), u"traditionalChinese"_s);
        QCOMPARE(languageFromRawValue(u"Chinese"_s), std::nullopt);
        QCOMPARE(languageFromRawValue({}), std::nullopt);
        // The two spellings of Japanese: to people, and to the model.
        QCOMPARE(displayName(Language::Japanese), u"日本語"_s);
        QCOMPARE(promptName(Language::Japanese), u"日语"_s);
        QCOMPARE(promptName(Language::Romaji), u"中文"_s);
        QCOMPARE(dictationLocale(Language::Cantonese), u"zh-HK"_s);
    }

    void targetsLeaveOutTheSource()
    {
        using enum Language;
        const auto targets = [](Language source) {
            const auto offered = selectableTargets(source);
            return QList<Language>(offered.begin(), offered.end());
        };
        const QList all{Chinese, TraditionalChinese, Cantonese, Japanese, Korean, English};
        QCOMPARE(targets(Auto), all);
        QCOMPARE(targets(Chinese), all.sliced(1));
        QCOMPARE(targets(Japanese),
                 (QList{Chinese, TraditionalChinese, Cantonese, Korean, English, Romaji}));
    }

    void scriptsAndMarkersDecide_data()
    {
        using enum Language;
        using R = RecognizedLanguage;
        QTest::addColumn<QString>("text");
        QTest::addColumn<Verdict>("verdict");
        QTest::addColumn<Language>("expected");
        const Verdict none;

        QTest::newRow("nothing") << u""_s << none << Chinese;
        QTest::newRow("blanks") << u"  \n\u3000\t"_s << Verdict(R::English) << Chinese;
        QTest::newRow("digits without a verdict") << u"12345"_s << none << Chinese;
        QTest::newRow("digits with a foreign verdict")
            << u"12345"_s << Verdict(R::Other) << Chinese;
        QTest::newRow("another language in Latin letters")
            << u"Bonjour"_s << Verdict(R::Other) << English;
        QTest::newRow("latin without a verdict") << u"ok"_s << none << English;
        QTest::newRow("accented letters count as nothing") << u"éé"_s << none << Chinese;
        QTest::newRow("hiragana wins over han")
            << u"こんにちは世界"_s << Verdict(R::TraditionalChinese) << Japanese;
        QTest::newRow("katakana alone") << u"カタカナ"_s << none << Japanese;
        QTest::newRow("half-width katakana") << u"ｶﾀｶﾅ"_s << none << Japanese;
        QTest::newRow("katakana with han goes on")
            << u"東京タワー"_s << Verdict(R::Japanese) << TraditionalChinese;
        QTest::newRow("katakana with shared han")
            << u"人口グラフ"_s << Verdict(R::Japanese) << Chinese;
        QTest::newRow("hangul wins over han") << u"안녕 世界"_s << none << Korean;
        QTest::newRow("conjoining hangul") << u"\u1112\u1161"_s << none << Korean;
        QTest::newRow("one cantonese marker is not enough") << u"佢走"_s << none << Chinese;
        QTest::newRow("two cantonese markers") << u"佢哋"_s << none << Cantonese;
        QTest::newRow("the same marker twice") << u"佢佢"_s << none << Cantonese;
        QTest::newRow("cantonese before traditional") << u"佢哋這個"_s << none << Cantonese;
        QTest::newRow("one traditional marker") << u"這"_s << none << TraditionalChinese;
        QTest::newRow("a marker inside a longer character") << u"這\u0301"_s << none << Chinese;
        QTest::newRow("a marker with a variation selector") << u"這\U000E0100"_s << none << Chinese;
        QTest::newRow("seven ideographs, said to be traditional")
            << u"人山人海口口口"_s << Verdict(R::TraditionalChinese) << Chinese;
        QTest::newRow("eight ideographs, said to be traditional")
            << u"人山人海口口口口"_s << Verdict(R::TraditionalChinese) << TraditionalChinese;
        QTest::newRow("han, said to be Japanese")
            << u"人山人海口口口口"_s << Verdict(R::Japanese) << Chinese;
        QTest::newRow("compatibility ideographs are han")
            << u"\uF900"_s << Verdict(R::English) << Chinese;
    }

    void scriptsAndMarkersDecide()
    {
        QFETCH(QString, text);
        QFETCH(Verdict, verdict);
        QTEST(LanguageDetector::detect(text, verdict), "expected");
    }

    void realTextsAreRecognized_data()
    {
        using enum Language;
        QTest::addColumn<QString>("text");
        QTest::addColumn<Language>("expected");
        QTest::newRow("simplified") << u"请发一下报价"_s << Chinese;
        QTest::newRow("simplified, short") << u"银行"_s << Chinese;
        QTest::newRow("simplified, long")
            << u"我们明天上午十点在会议室讨论下一季度的预算安排，请准时参加。"_s << Chinese;
        // No marker among these; only the shapes tell.
        QTest::newRow("traditional without a marker")
            << u"請準備報價單並寄給顧客"_s << TraditionalChinese;
        QTest::newRow("shared shapes only") << u"人山人海水火土木"_s << Chinese;
        QTest::newRow("english") << u"Could you send me the quotation by Friday, please?"_s
                                 << English;
        QTest::newRow("japanese") << u"見積書を送ってください"_s << Japanese;
        QTest::newRow("korean") << u"견적서를 보내 주세요"_s << Korean;
        QTest::newRow("french has letters")
            << u"Pourriez-vous m'envoyer le devis avant vendredi ?"_s << English;
        QTest::newRow("emoji") << u"🎉🎉"_s << Chinese;
        QTest::newRow("a lone surrogate") << QString(QChar(0xD800)) << Chinese;
    }

    void realTextsAreRecognized()
    {
        QFETCH(QString, text);
        QTEST(LanguageDetector::detect(text), "expected");
    }

    void directionFollowsTheUsersLanguage_data()
    {
        using enum Language;
        QTest::addColumn<Language>("detected");
        QTest::addColumn<Language>("primary");
        QTest::addColumn<Language>("secondary");
        QTest::addColumn<Language>("target");
        QTest::newRow("foreign comes in") << English << Chinese << Japanese << Chinese;
        QTest::newRow("own goes out") << Chinese << Chinese << Japanese << Japanese;
        QTest::newRow("chinese three times") << Chinese << Chinese << Chinese << English;
        QTest::newRow("japanese three times") << Japanese << Japanese << Japanese << Chinese;
    }

    void directionFollowsTheUsersLanguage()
    {
        QFETCH(Language, detected);
        QFETCH(Language, primary);
        QFETCH(Language, secondary);
        QTEST(LanguageDetector::target(detected, primary, secondary), "target");
    }
};

QTEST_GUILESS_MAIN(TestLanguage)
#include "tst_language.moc"
