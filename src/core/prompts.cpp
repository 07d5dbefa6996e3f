#include "core/prompts.h"

#include "core/language_detector.h"

#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

QString PromptTemplate::defaultTranslate()
{
    return u"请将以下文本翻译为{{target}}，只输出译文：\n\n{{text}}"_s;
}

QHash<QString, QString> PromptTemplate::translateVariables(const QString &text, Language target,
                                                           const TranslationOptions &options)
{
    return {
        {u"text"_s, text},
        {u"target"_s, promptName(target)},
        {u"source"_s, promptName(LanguageDetector::detect(text))},
        {u"style"_s, options.style},
        {u"background"_s, options.background},
        {u"glossary"_s, renderTerms(options.matchedTerms(text, target))},
    };
}

QString PromptTemplate::render(const QString &promptTemplate,
                               const QHash<QString, QString> &variables)
{
    QString rendered = promptTemplate;
    const auto put = [&](const QString &key, const QString &value) {
        rendered.replace(u"{{"_s + key + u"}}"_s, value);
    };
    // The text comes last: it may be long, and is then not searched for the others.
    const QString longest = u"text"_s;
    for (const auto &[key, value] : variables.asKeyValueRange()) {
        if (key != longest)
            put(key, value);
    }
    if (const auto text = variables.constFind(longest); text != variables.cend())
        put(longest, *text);
    static const QRegularExpression leftOver(u"\\{\\{[^}]*\\}\\}"_s);
    rendered.remove(leftOver);
    return rendered;
}

QString SimplePrompt::variants(const QString &text, Language target, std::optional<int> count)
{
    // Joined by hand: a text may itself hold what looks like an argument mark.
    return u"请将以下文本翻译为"_s + promptName(target) + u"，给出"_s +
           QString::number(count.value_or(3)) + u"种不同语气的说法，每行一种，只输出结果：\n\n"_s +
           text;
}

} // namespace nivora
