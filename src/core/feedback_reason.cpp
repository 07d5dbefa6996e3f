#include "core/feedback_service.h"

#include <QCoreApplication>

#include <algorithm>

namespace nivora {

namespace {

struct ReasonEntry
{
    FeedbackReason reason;
    QLatin1StringView raw;
    struct
    {
        const char *source;
        const char *comment; // for translators
    } label;
};

using namespace Qt::Literals::StringLiterals;

constexpr ReasonEntry entries[] = {
    {FeedbackReason::Mistranslation, "mistranslation"_L1,
     QT_TRANSLATE_NOOP3("FeedbackReason", "翻译错误", "feedback reason: mistranslation")},
    {FeedbackReason::Omission, "omission"_L1,
     QT_TRANSLATE_NOOP3("FeedbackReason", "漏译", "feedback reason: omission")},
    {FeedbackReason::Number, "number"_L1,
     QT_TRANSLATE_NOOP3("FeedbackReason", "数字错误", "feedback reason: number error")},
    {FeedbackReason::Tone, "tone"_L1,
     QT_TRANSLATE_NOOP3("FeedbackReason", "语气不对", "feedback reason: wrong tone")},
    {FeedbackReason::CannotEdit, "cannotEdit"_L1,
     QT_TRANSLATE_NOOP3("FeedbackReason", "无法替换/插入译文",
                        "feedback reason: cannot replace or insert")},
    {FeedbackReason::Other, "other"_L1,
     QT_TRANSLATE_NOOP3("FeedbackReason", "其他", "feedback reason: other")},
};

const ReasonEntry &entry(FeedbackReason reason)
{
    return *std::ranges::find(entries, reason, &ReasonEntry::reason);
}

} // namespace

QString rawValue(FeedbackReason reason)
{
    return entry(reason).raw.toString();
}

QString label(FeedbackReason reason)
{
    const auto &[source, comment] = entry(reason).label;
    return QCoreApplication::translate("FeedbackReason", source, comment);
}

} // namespace nivora
