#include "stores/usage_store.h"

#include "platform/preferences.h"

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

const auto requestCountKey = u"usageRequestCount"_s;
const auto promptTokensKey = u"usagePromptTokens"_s;
const auto completionTokensKey = u"usageCompletionTokens"_s;
const auto sinceKey = u"usageSince"_s;

// A counter stays at its end rather than wrapping to a negative number.
qint64 saturatedSum(qint64 a, qint64 b)
{
    qint64 sum = 0;
    if (qAddOverflow(a, b, &sum))
        return b > 0 ? std::numeric_limits<qint64>::max() : std::numeric_limits<qint64>::min();
    return sum;
}

} // namespace

UsageStore::UsageStore(platform::Preferences &preferences)
    : m_preferences(preferences)
    , m_requestCount(preferences.integer(requestCountKey).value_or(0))
    , m_promptTokens(preferences.integer(promptTokensKey).value_or(0))
    , m_completionTokens(preferences.integer(completionTokensKey).value_or(0))
    , m_since(preferences.date(sinceKey).value_or(QDateTime::currentDateTimeUtc()))
{
}

void UsageStore::record(const TokenUsage &usage)
{
    m_requestCount = saturatedSum(m_requestCount, 1);
    m_promptTokens = saturatedSum(m_promptTokens, usage.promptTokens);
    m_completionTokens = saturatedSum(m_completionTokens, usage.completionTokens);

    std::vector<platform::PreferenceChange> changes{
        {requestCountKey, m_requestCount},
        {promptTokensKey, m_promptTokens},
        {completionTokensKey, m_completionTokens},
    };
    // The first report fixes the date that the counters run from.
    if (!m_preferences.value(sinceKey))
        changes.push_back({sinceKey, m_since});
    m_preferences.apply(changes);
    Q_EMIT changed();
}

void UsageStore::reset()
{
    m_requestCount = 0;
    m_promptTokens = 0;
    m_completionTokens = 0;
    m_since = QDateTime::currentDateTimeUtc();
    const platform::PreferenceChange changes[] = {
        {requestCountKey, m_requestCount},
        {promptTokensKey, m_promptTokens},
        {completionTokensKey, m_completionTokens},
        {sinceKey, m_since},
    };
    m_preferences.apply(changes);
    Q_EMIT changed();
}

} // namespace nivora
