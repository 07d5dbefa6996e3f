#include "core/event_stream.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

bool LineSplitter::emitLine(QByteArrayView tail, const std::function<bool(QByteArrayView)> &line)
{
    if (m_pending.isEmpty() && !m_overlong)
        return line(tail); // the usual case: nothing is copied

    const bool overlong = m_overlong || m_pending.size() + tail.size() > maximumLine;
    if (!overlong)
        m_pending.append(tail);
    const QByteArray whole = std::exchange(m_pending, {});
    m_overlong = false;
    return overlong || line(whole);
}

void LineSplitter::feed(const QByteArray &bytes, const std::function<bool(QByteArrayView)> &line)
{
    qsizetype begin = 0;
    // The second half of a CRLF whose first half ended a line already.
    if (m_afterCarriageReturn && !bytes.isEmpty()) {
        m_afterCarriageReturn = false;
        if (bytes.front() == '\n')
            begin = 1;
    }
    const auto isEnd = [](char c) { return c == '\n' || c == '\r'; };
    while (true) {
        const auto found = std::find_if(bytes.cbegin() + begin, bytes.cend(), isEnd);
        if (found == bytes.cend())
            break;
        const qsizetype end = found - bytes.cbegin();
        if (!emitLine(QByteArrayView(bytes).sliced(begin, end - begin), line)) {
            m_pending.clear();
            return;
        }
        begin = end + 1;
        if (*found == '\r') {
            if (begin == bytes.size())
                m_afterCarriageReturn = true;
            else if (bytes[begin] == '\n')
                ++begin;
        }
    }
    if (m_overlong)
        return;
    m_pending.append(QByteArrayView(bytes).sliced(begin));
    if (m_pending.size() > maximumLine) {
        m_pending.clear();
        m_overlong = true;
    }
}

void LineSplitter::finish(const std::function<bool(QByteArrayView)> &line)
{
    if (!m_pending.isEmpty() && !m_overlong)
        emitLine({}, line);
}

std::optional<QString> lenientText(const QJsonValue &value)
{
    if (value.isString())
        return value.toString();
    if (!value.isDouble())
        return std::nullopt;
    // Two different defaults tell a number that is no 64-bit integer.
    if (const qint64 whole = value.toInteger(0); whole != 0 || value.toInteger(1) == 0)
        return QString::number(whole);
    return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
}

namespace {

bool isAbsent(const QJsonValue &value)
{
    return value.isUndefined() || value.isNull();
}

// A chunk counts only when all of it has the expected shape.
std::optional<QString> contentOf(const QJsonObject &chunk)
{
    const QJsonValue choices = chunk[u"choices"];
    if (!choices.isArray())
        return std::nullopt;
    const QJsonArray list = choices.toArray();
    for (const auto &choice : list) {
        if (!choice.isObject())
            return std::nullopt;
        const QJsonValue delta = choice.toObject()[u"delta"];
        if (!isAbsent(delta) && !delta.isObject())
            return std::nullopt;
    }
    if (list.isEmpty())
        return std::nullopt;
    return lenientText(list.first().toObject()[u"delta"].toObject()[u"content"]);
}

std::optional<qint64> wholeNumber(const QJsonValue &value)
{
    if (!value.isDouble())
        return std::nullopt;
    const qint64 number = value.toInteger(-1);
    if (number == -1 && value.toInteger(-2) == -2)
        return std::nullopt;
    return number;
}

std::optional<TokenUsage> usageOf(const QJsonObject &chunk)
{
    const QJsonValue usage = chunk[u"usage"];
    if (!usage.isObject())
        return std::nullopt;
    const auto prompt = wholeNumber(usage[u"prompt_tokens"]);
    const auto completion = wholeNumber(usage[u"completion_tokens"]);
    if (!prompt || !completion)
        return std::nullopt;
    return TokenUsage{*prompt, *completion};
}

} // namespace

std::optional<StreamEvent> parseEventLine(QByteArrayView line)
{
    constexpr QByteArrayView field = "data:";
    if (!line.startsWith(field))
        return std::nullopt;
    QByteArray payload = line.sliced(field.size()).trimmed().toByteArray();
    // One bad byte shall cost one character, not the piece.
    if (!payload.isValidUtf8())
        payload = QString::fromUtf8(payload).toUtf8();
    StreamEvent event;
    if (payload == "[DONE]") {
        event.done = true;
        return event;
    }
    const QJsonObject chunk = QJsonDocument::fromJson(payload).object();
    event.content = contentOf(chunk);
    event.usage = usageOf(chunk);
    return event;
}

std::optional<QString> parseDelta(const QByteArray &payload)
{
    return contentOf(QJsonDocument::fromJson(payload).object());
}

} // namespace nivora
