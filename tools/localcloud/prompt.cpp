#include "prompt.h"

#include <QRegularExpression>
#include <QStringList>

namespace nivora::localcloud {

using namespace Qt::Literals::StringLiterals;

namespace {

std::optional<Tongue> tongueOfChineseName(QStringView name)
{
    for (const Tongue each : {Tongue::Chinese, Tongue::TraditionalChinese, Tongue::Cantonese,
                              Tongue::Japanese, Tongue::Romaji, Tongue::Korean, Tongue::English}) {
        if (chineseName(each) == name)
            return each;
    }
    return std::nullopt;
}

} // namespace

QString writePrompt(const Wish &wish)
{
    QStringList lines;
    if (wish.target == Tongue::Romaji)
        lines.append(u"把下面的日语文本写成罗马字。"_s);
    else
        lines.append(u"把下面的文本翻译为%1。"_s.arg(chineseName(wish.target)));
    if (wish.variants)
        lines.append(u"给出%1种语气不同的说法，每种占一行，不编号。"_s.arg(*wish.variants));
    if (!wish.style.isEmpty())
        lines.append(u"文体："_s + wish.style);
    if (!wish.background.isEmpty())
        lines.append(u"上下文，仅供理解，不翻译："_s + wish.background);
    for (const auto &[from, to] : wish.glossary)
        lines.append(u"术语：“%1”译作“%2”"_s.arg(from, to));
    lines.append(u"除了结果什么都不要写。"_s);
    return lines.join(u'\n') + u"\n\n"_s + wish.text;
}

std::optional<Wish> readPrompt(const QString &prompt)
{
    const qsizetype blankLine = prompt.indexOf(u"\n\n"_s);
    const QString task = blankLine < 0 ? prompt : prompt.first(blankLine);

    // The longer name first: 繁体中文 ends in 中文.
    static const QRegularExpression target(u"译[为成](繁体中文|中文|粤语|日语|韩语|英语|罗马字)"_s);
    static const QRegularExpression count(u"给出(\\d{1,2})种"_s);
    const auto found = target.match(task);
    if (!found.hasMatch())
        return std::nullopt;

    Wish wish;
    wish.target = *tongueOfChineseName(found.capturedView(1));
    wish.text = blankLine < 0 ? QString() : prompt.sliced(blankLine + 2);
    if (const auto number = count.match(task); number.hasMatch())
        wish.variants = number.capturedView(1).toInt();
    return wish;
}

} // namespace nivora::localcloud
