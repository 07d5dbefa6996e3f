#pragma once

#include "localcloud/answer.h"

#include <QByteArrayList>
#include <QStringList>

#include <chrono>
#include <optional>

namespace nivora::localcloud {

enum class LineEnd { Lf, CrLf, Cr };

struct TokenCounts
{
    int prompt = 0;
    int completion = 0;
};

struct EventStreamOptions
{
    LineEnd lineEnd = LineEnd::Lf;
    // Whether [DONE] closes the stream.
    bool done = true;
    // Puts comments, other fields and lines that only look like events around
    // the events.
    bool decorated = false;
    // An event with the counts before [DONE].
    std::optional<TokenCounts> usage = {};
    // Sent as X-Translation-Id unless null.
    QByteArray translationId = {};
    // Between one event and the next.
    std::chrono::milliseconds pause{0};
};

// {"prompt_tokens":...,"completion_tokens":...,"total_tokens":...}
QJsonObject usageOf(TokenCounts counts);

// The payloads of events: chat-completion chunks.
QByteArray pieceEvent(const QString &piece);
QByteArray usageEvent(TokenCounts counts);

// A stream that delivers these pieces: one Send for each event.
Answer eventStream(const QStringList &pieces, const EventStreamOptions &options = {});

// A stream of these lines, whatever they hold, each with its line end: one Send
// for each line. Only lineEnd, pause and translationId of the options count.
Answer lineStream(const QByteArrayList &lines, const EventStreamOptions &options = {});

} // namespace nivora::localcloud
