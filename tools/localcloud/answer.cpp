#include "localcloud/answer.h"

#include <QJsonDocument>

#include <algorithm>

namespace nivora::localcloud {

using namespace Qt::Literals::StringLiterals;

namespace {

bool isContinuationByte(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// Cuts every Send at the places that `cut` names, with a pause at each cut.
template<typename Cut>
std::vector<Step> recut(const std::vector<Step> &steps, std::chrono::milliseconds pause, Cut cut)
{
    std::vector<Step> result;
    for (const Step &each : steps) {
        const auto *send = std::get_if<step::Send>(&each);
        if (!send) {
            result.push_back(each);
            continue;
        }
        qsizetype from = 0;
        while (from < send->bytes.size()) {
            const qsizetype to = cut(send->bytes, from);
            result.push_back(step::Send{send->bytes.sliced(from, to - from)});
            result.push_back(step::Wait{pause});
            from = to;
        }
    }
    return result;
}

} // namespace

Answer Answer::plain(int status, const QByteArray &body, const QByteArray &contentType)
{
    Answer answer;
    answer.status = status;
    answer.framing = Framing::Length;
    answer.headers = {{"Content-Type", contentType}};
    answer.steps = {step::Send{body}};
    return answer;
}

Answer Answer::json(int status, const QJsonObject &body)
{
    return plain(status, QJsonDocument(body).toJson(QJsonDocument::Compact), "application/json");
}

Answer Answer::error(int status, const QString &message)
{
    const QString type = status >= 500 ? u"server_error"_s : u"invalid_request_error"_s;
    return json(status, {{u"error"_s, QJsonObject{{u"message"_s, message}, {u"type"_s, type}}}});
}

Answer Answer::html(int status)
{
    return plain(status,
                 "<!DOCTYPE html>\n<html><head><title>Sign in to the network</title></head>\n"
                 "<body>\n<h1>Please sign in</h1>\n<p>data: not for you</p>\n</body></html>\n",
                 "text/html; charset=utf-8");
}

Answer Answer::redirect(const QUrl &target, int status)
{
    return plain(status, {}, "text/plain").withHeader("Location", target.toEncoded());
}

Answer Answer::silence()
{
    Answer answer;
    answer.prelude = {step::Silence{}};
    return answer;
}

Answer Answer::reset()
{
    Answer answer;
    answer.prelude = {step::Reset{}};
    return answer;
}

Answer Answer::close()
{
    Answer answer;
    answer.prelude = {step::Close{}};
    return answer;
}

Answer Answer::cutAfter(int writes, Step end, std::chrono::milliseconds pause) const
{
    Answer result = *this;
    result.steps.clear();
    bool cut = false;
    for (const Step &each : steps) {
        const auto *send = std::get_if<step::Send>(&each);
        cut = cut || (send && writes-- <= 0);
        if (!cut)
            result.steps.push_back(each);
        else if (send)
            result.missingBytes += send->bytes.size();
    }
    result.steps.push_back(step::Wait{pause});
    result.steps.push_back(std::move(end));
    return result;
}

Answer Answer::delayedBy(std::chrono::milliseconds duration) const
{
    Answer result = *this;
    result.prelude.insert(result.prelude.begin(), step::Wait{duration});
    return result;
}

Answer Answer::inPackets(int bytes, std::chrono::milliseconds pause) const
{
    Answer result = *this;
    result.steps = recut(steps, pause, [bytes](const QByteArray &all, qsizetype from) {
        return std::min<qsizetype>(from + bytes, all.size());
    });
    return result;
}

Answer Answer::splitInsideCharacters(std::chrono::milliseconds pause) const
{
    Answer result = *this;
    result.steps = recut(steps, pause, [](const QByteArray &all, qsizetype from) {
        const auto inside = std::find_if(all.begin() + from + 1, all.end(), isContinuationByte);
        return std::distance(all.begin(), inside);
    });
    return result;
}

Answer Answer::withHeader(const QByteArray &name, const QByteArray &value) const
{
    Answer result = *this;
    result.headers.append({name, value});
    return result;
}

Answer Answer::withStatus(int code) const
{
    Answer result = *this;
    result.status = code;
    return result;
}

Answer Answer::withFraming(Framing kind) const
{
    Answer result = *this;
    result.framing = kind;
    return result;
}

} // namespace nivora::localcloud
