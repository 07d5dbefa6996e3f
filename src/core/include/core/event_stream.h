#pragma once

#include "core/token_usage.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

class QJsonValue;

namespace nivora {

// Cuts a byte stream into lines. LF, CR and CRLF end a line, wherever the bytes
// happen to be cut into pieces. A line may be of any length up to maximumLine;
// what exceeds it is dropped whole, so that a server cannot fill the memory.
class LineSplitter
{
public:
    static constexpr qsizetype maximumLine = 64 * 1024 * 1024; // bytes

    // Calls `line` for every line that `bytes` completes; false from it stops
    // the walk, and the rest of `bytes` is discarded.
    void feed(const QByteArray &bytes, const std::function<bool(QByteArrayView)> &line);

    // The last line of a stream may lack its end.
    void finish(const std::function<bool(QByteArrayView)> &line);

private:
    bool emitLine(QByteArrayView tail, const std::function<bool(QByteArrayView)> &line);

    QByteArray m_pending;
    bool m_overlong = false;
    bool m_afterCarriageReturn = false;
};

// One event of a chat-completions stream.
struct StreamEvent
{
    bool done = false; // the "[DONE]" marker
    std::optional<QString> content;
    std::optional<TokenUsage> usage;
};

// A content field as services write it: strings, and numbers in their shortest
// decimal form; absent for everything else.
std::optional<QString> lenientText(const QJsonValue &value);

// Reads one line of the stream; absent for every line that carries no event.
// Malformed JSON gives an event without content.
std::optional<StreamEvent> parseEventLine(QByteArrayView line);

// The content of one event's payload, absent when it has none.
std::optional<QString> parseDelta(const QByteArray &payload);

} // namespace nivora
