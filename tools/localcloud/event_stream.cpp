#include "localcloud/event_stream.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace nivora::localcloud {

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray terminator(LineEnd end)
{
    switch (end) {
    case LineEnd::Lf:
        return "\n";
    case LineEnd::CrLf:
        return "\r\n";
    case LineEnd::Cr:
        return "\r";
    }
    return {};
}

QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

Answer streamOf(const QByteArrayList &writes, const EventStreamOptions &options)
{
    Answer answer;
    answer.headers = {{"Content-Type", "text/event-stream; charset=utf-8"},
                      {"Cache-Control", "no-store"}};
    if (!options.translationId.isNull())
        answer.headers.append({"X-Translation-Id", options.translationId});
    for (const QByteArray &write : writes) {
        if (!answer.steps.empty() && options.pause.count() > 0)
            answer.steps.push_back(step::Wait{options.pause});
        answer.steps.push_back(step::Send{write});
    }
    return answer;
}

} // namespace

QByteArray pieceEvent(const QString &piece)
{
    const QJsonObject delta{{u"content"_s, piece}};
    const QJsonObject choice{{u"index"_s, 0}, {u"delta"_s, delta}};
    return compact({{u"object"_s, u"chat.completion.chunk"_s}, {u"choices"_s, QJsonArray{choice}}});
}

QJsonObject usageOf(TokenCounts counts)
{
    return {{u"prompt_tokens"_s, counts.prompt},
            {u"completion_tokens"_s, counts.completion},
            {u"total_tokens"_s, counts.prompt + counts.completion}};
}

QByteArray usageEvent(TokenCounts counts)
{
    return compact({{u"object"_s, u"chat.completion.chunk"_s},
                    {u"choices"_s, QJsonArray()},
                    {u"usage"_s, usageOf(counts)}});
}

Answer eventStream(const QStringList &pieces, const EventStreamOptions &options)
{
    QByteArrayList payloads;
    for (const QString &piece : pieces)
        payloads.append(pieceEvent(piece));
    if (options.usage)
        payloads.append(usageEvent(*options.usage));
    if (options.done)
        payloads.append("[DONE]");

    const QByteArray end = terminator(options.lineEnd);
    QByteArrayList writes;
    for (const QByteArray &payload : std::as_const(payloads)) {
        const QByteArray event = "data: " + payload + end + end;
        if (options.decorated) {
            writes.append(": keep-alive" + end + "event: message" + end +
                          "id: " + QByteArray::number(writes.size()) + end + "retry: 3000" + end +
                          event + "Data: not an event" + end + " data: nor this" + end + end);
        } else {
            writes.append(event);
        }
    }
    return streamOf(writes, options);
}

Answer lineStream(const QByteArrayList &lines, const EventStreamOptions &options)
{
    const QByteArray end = terminator(options.lineEnd);
    QByteArrayList writes;
    for (const QByteArray &line : lines)
        writes.append(line + end);
    return streamOf(writes, options);
}

} // namespace nivora::localcloud
