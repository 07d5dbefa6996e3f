#pragma once

#include "core/token_usage.h"

#include <QDateTime>
#include <QObject>

namespace nivora {

namespace platform {
class Preferences;
}

// Adds up the tokens that the service reported on this machine.
class UsageStore : public QObject
{
    Q_OBJECT

public:
    // Reads the counters and writes nothing.
    explicit UsageStore(platform::Preferences &preferences);

    qint64 requestCount() const { return m_requestCount; }
    qint64 promptTokens() const { return m_promptTokens; }
    qint64 completionTokens() const { return m_completionTokens; }
    QDateTime since() const { return m_since; } // UTC

    // One report of the engine, so requestCount() counts reports.
    void record(const TokenUsage &usage);

    // Back to zero, from now.
    void reset();

Q_SIGNALS:
    void changed();

private:
    platform::Preferences &m_preferences;
    qint64 m_requestCount;
    qint64 m_promptTokens;
    qint64 m_completionTokens;
    QDateTime m_since;
};

} // namespace nivora
