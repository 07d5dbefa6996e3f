#pragma once

#include "platform/http_client.h"

#include <QString>

namespace nivora {

using platform::NetworkFault;

// Why a translation failed, with a message for the user.
class TranslationError
{
public:
    enum class Kind { Http, Network, EmptyResponse, Timeout, CannotConnect };

    static TranslationError http(int status);
    static TranslationError network(const QString &text);
    static TranslationError emptyResponse();
    static TranslationError timeout();
    static TranslationError cannotConnect();

    // `description` is shown for faults that have no message of their own.
    static TranslationError from(NetworkFault fault, const QString &description);

    // Whether a second attempt may succeed where the first met this fault.
    static bool isTransient(NetworkFault fault);

    Kind kind() const { return m_kind; }
    int status() const { return m_status; } // 0 unless kind() is Http
    QString errorDescription() const;

    bool operator==(const TranslationError &) const = default;

private:
    TranslationError(Kind kind, int status, const QString &text)
        : m_kind(kind)
        , m_status(status)
        , m_text(text)
    {
    }

    Kind m_kind;
    int m_status;
    QString m_text;
};

} // namespace nivora
