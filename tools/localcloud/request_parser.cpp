#include "request_parser.h"

#include <algorithm>

namespace nivora::localcloud {

namespace {

constexpr qsizetype headLimit = 64 * 1024;

bool isToken(QByteArrayView text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(),
                                          [](char c) { return c > ' ' && c < 127 && c != ':'; });
}

} // namespace

QByteArray headerValue(const Headers &headers, QByteArrayView name)
{
    for (const auto &[key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0)
            return value;
    }
    return {};
}

RequestParser::State RequestParser::feed(const QByteArray &bytes)
{
    m_buffer += bytes;
    return m_state == State::Incomplete ? advance() : m_state;
}

bool RequestParser::takeContinueWish()
{
    return std::exchange(m_wantsContinue, false);
}

RequestParser::State RequestParser::next()
{
    m_request = {};
    m_headDone = false;
    m_wantsContinue = false;
    m_bodyLength = 0;
    m_state = State::Incomplete;
    return advance();
}

RequestParser::State RequestParser::advance()
{
    if (!m_headDone) {
        // Blank lines before a request are noise that HTTP allows.
        while (m_buffer.startsWith("\r\n"))
            m_buffer.remove(0, 2);
        const qsizetype end = m_buffer.indexOf("\r\n\r\n");
        if ((end < 0 ? m_buffer.size() : end) > headLimit)
            return reject(431);
        if (end < 0)
            return m_state;
        if (!parseHead(QByteArrayView(m_buffer).first(end)))
            return reject(400);
        if (!m_isCurrentVersion)
            return reject(505);
        m_buffer.remove(0, end + 4);
        m_headDone = true;
        if (!takeFraming())
            return m_state;
    }
    if (m_buffer.size() < m_bodyLength)
        return m_state;
    m_request.body = m_buffer.first(m_bodyLength);
    m_buffer.remove(0, m_bodyLength);
    m_request.arrival = std::chrono::steady_clock::now();
    return m_state = State::Complete;
}

RequestParser::State RequestParser::reject(int status)
{
    m_status = status;
    m_buffer.clear();
    return m_state = State::Rejected;
}

bool RequestParser::parseHead(QByteArrayView head)
{
    qsizetype from = 0;
    for (bool first = true; from <= head.size(); first = false) {
        qsizetype to = head.indexOf("\r\n", from);
        if (to < 0)
            to = head.size();
        const QByteArrayView line = head.sliced(from, to - from);
        from = to + 2;
        if (first) {
            if (!parseRequestLine(line))
                return false;
            continue;
        }
        const qsizetype colon = line.indexOf(':');
        if (colon < 0 || !isToken(line.first(colon)))
            return false;
        // Non-null even without a value: the field is there.
        QByteArray value = line.sliced(colon + 1).trimmed().toByteArray();
        if (value.isNull())
            value = QByteArray("");
        m_request.headers.append({line.first(colon).toByteArray(), value});
    }
    return true;
}

bool RequestParser::parseRequestLine(QByteArrayView line)
{
    const qsizetype first = line.indexOf(' ');
    const qsizetype last = line.lastIndexOf(' ');
    if (first <= 0 || last <= first + 1 || !line.sliced(last + 1).startsWith("HTTP/"))
        return false;
    m_isCurrentVersion = line.sliced(last + 1) == "HTTP/1.1";
    m_request.method = line.first(first).toByteArray();
    const QByteArrayView target = line.sliced(first + 1, last - first - 1);
    const qsizetype mark = target.indexOf('?');
    m_request.path = (mark < 0 ? target : target.first(mark)).toByteArray();
    m_request.query = mark < 0 ? QByteArray() : target.sliced(mark + 1).toByteArray();
    return isToken(m_request.method) && m_request.path.startsWith('/');
}

bool RequestParser::takeFraming()
{
    // A length is required, as HTTP lets a server demand.
    if (m_request.hasHeader("Transfer-Encoding")) {
        reject(411);
        return false;
    }
    if (m_request.hasHeader("Content-Length")) {
        bool isNumber = false;
        m_bodyLength = m_request.header("Content-Length").toLongLong(&isNumber);
        if (!isNumber || m_bodyLength < 0) {
            reject(400);
            return false;
        }
        if (m_bodyLength > m_bodyLimit) {
            reject(413);
            return false;
        }
    }
    m_wantsContinue = m_bodyLength > m_buffer.size() &&
                      m_request.header("Expect").compare("100-continue", Qt::CaseInsensitive) == 0;
    return true;
}

} // namespace nivora::localcloud
