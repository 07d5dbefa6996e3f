#include "core/prompts.h"

#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;

namespace {
GlossaryTerm term(const QString &zh, const QString &ja)
{
    return {QUuid::createUuid(), zh, ja};
}

} // namespace

class TestPrompts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void termsApplyByDirection()
    {
        TranslationOptions options;
        options.glossary = {term(u"机器学习"_s, u"機械学習"_s), term(u"报价"_s, u"見積もり"_s),
                            term(u"机器"_s, {}), term(u"报价"_s, u"オファー"_s)};
        const QString chinese = u"机器学习的报价"_s;
        const std::vector<TermPair> intoJapanese{
            {u"机器学习"_s, u"機械学習"_s}, {u"报价"_s, u"見積もり"_s}, {u"报价"_s, u"オファー"_s}};
        QCOMPARE(options.matchedTerms(chinese, Language::Japanese), intoJapanese);
        QCOMPARE(renderTerms(intoJapanese), u"机器学习→機械学習，报价→見積もり，报价→オファー"_s);

        const std::vector<TermPair> intoChinese{{u"見積もり"_s, u"报价"_s}};
        QCOMPARE(options.matchedTerms(u"お見積もりです"_s, Language::Chinese), intoChinese);
        QVERIFY(options.matchedTerms(chinese, Language::TraditionalChinese).empty());
        QVERIFY(options.matchedTerms(chinese, Language::Cantonese).empty());
        QVERIFY(options.matchedTerms(chinese, Language::English).empty());
        QVERIFY(options.matchedTerms({}, Language::Japanese).empty());
    }

    void termsAreFoundWhereverTheyStand_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("zh");
        QTest::addColumn<bool>("found");
        QTest::newRow("one character") << u"甲乙丙"_s << u"丙"_s << true;
        QTest::newRow("one character, absent") << u"甲乙丙"_s << u"丁"_s << false;
        QTest::newRow("at the start") << u"甲乙丙"_s << u"甲乙"_s << true;
        QTest::newRow("at the end") << u"甲乙丙"_s << u"乙丙"_s << true;
        QTest::newRow("the whole text") << u"甲乙丙"_s << u"甲乙丙"_s << true;
        QTest::newRow("longer than the text") << u"甲乙丙"_s << u"甲乙丙丁"_s << false;
        // Every pair of neighbours occurs, the term does not.
        QTest::newRow("pairs without the whole") << u"甲乙丁乙丙"_s << u"甲乙丙"_s << false;
        QTest::newRow("outside the basic plane") << u"我𠮷野家"_s << u"𠮷野"_s << true;
        QTest::newRow("case counts") << u"the API key"_s << u"api"_s << false;
    }

    void termsAreFoundWhereverTheyStand()
    {
        QFETCH(QString, source);
        QFETCH(QString, zh);
        TranslationOptions options;
        options.glossary = {term(zh, u"語"_s)};
        QTEST(!options.matchedTerms(source, Language::Japanese).empty(), "found");
    }

    void templatesAreRendered_data()
    {
        QTest::addColumn<QString>("promptTemplate");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("rendered");
        QTest::newRow("default") << PromptTemplate::defaultTranslate() << u"abc"_s
                                 << u"请将以下文本翻译为日语，只输出译文：\n\nabc"_s;
        QTest::newRow("unknown and empty variables go")
            << u"{{text}}|{{unknown}}|{{glossary}}"_s << u"abc"_s << u"abc||"_s;
        QTest::newRow("a variable twice") << u"{{text}}{{text}}"_s << u"a"_s << u"aa"_s;
        QTest::newRow("open braces stay") << u"{{text}} {{ end"_s << u"a"_s << u"a {{ end"_s;
        QTest::newRow("a brace inside ends the match") << u"{{a}b}}"_s << u"a"_s << u"{{a}b}}"_s;
        QTest::newRow("braces in the text go too") << u"{{text}}"_s << u"x{{y}}z"_s << u"xz"_s;
        QTest::newRow("no text asked for") << u"hello"_s << u"a"_s << u"hello"_s;
    }

    void templatesAreRendered()
    {
        QFETCH(QString, promptTemplate);
        QFETCH(QString, text);
        const auto variables = PromptTemplate::translateVariables(text, Language::Japanese, {});
        QTEST(PromptTemplate::render(promptTemplate, variables), "rendered");
    }

    void variablesDescribeTheRequest()
    {
        TranslationOptions options;
        options.style = u"礼貌、丁寧語"_s;
        options.background = u"前文"_s;
        options.glossary = {term(u"报价"_s, u"見積もり"_s)};
        const QHash<QString, QString> expected{
            {u"text"_s, u"请发一下报价"_s}, {u"target"_s, u"日语"_s},
            {u"source"_s, u"中文"_s},       {u"style"_s, u"礼貌、丁寧語"_s},
            {u"background"_s, u"前文"_s},   {u"glossary"_s, u"报价→見積もり"_s},
        };
        QCOMPARE(PromptTemplate::translateVariables(u"请发一下报价"_s, Language::Japanese, options),
                 expected);
    }
};

QTEST_GUILESS_MAIN(TestPrompts)
#include "tst_prompts.moc"
