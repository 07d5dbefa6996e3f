#include "soak_service.h"

#include "localcloud/event_stream.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace nivora::bench {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using localcloud::Answer;

namespace {

// The text after the first empty line of the prompt.
QString textOf(const localcloud::Request &request)
{
    const auto body = QJsonDocument::fromJson(request.body).object();
    const QString prompt = body[u"messages"_s].toArray().last()[u"content"_s].toString();
    const auto gap = prompt.indexOf(u"\n\n");
    return gap < 0 ? QString() : prompt.sliced(gap + 2);
}

} // namespace

bool SoakService::open()
{
    m_server = std::make_unique<localcloud::Server>();
    m_server->setRecording(false);
    m_server->setHandler([this](const auto &request) { return answerTo(request); });
    if (!m_server->listen(m_port))
        return false;
    m_port = quint16(m_server->url().port());
    return true;
}

void SoakService::expect(const QString &source)
{
    m_fates.insert(source, {});
    m_translations.insert(translationOf(source));
}

// As long as the text, more or less, and different for each.
QString SoakService::translationOf(const QString &source) const
{
    const QString one = u"訳文%1です。"_s.arg(qHash(source, 0), 0, 16);
    return one.repeated(1 + source.size() / (2 * one.size()));
}

Answer SoakService::answerTo(const localcloud::Request &request)
{
    const QString text = textOf(request);
    const auto fate = m_fates.find(text);
    if (fate == m_fates.end()) {
        if (!m_translations.contains(text))
            m_strange << text;
        return draw(u"回译："_s + text).answer;
    }
    const Draw drawn = draw(translationOf(text));
    ++(drawn.isWhole ? fate->whole : fate->failing);
    fate->lastWasWhole = drawn.isWhole;
    return drawn.answer;
}

SoakService::Draw SoakService::draw(const QString &text)
{
    QStringList pieces;
    for (qsizetype at = 0; at < text.size(); at += pieces.last().size())
        pieces << text.sliced(at, std::min<qsizetype>(1 + random(12), text.size() - at));
    const auto some = [&] { return random(int(pieces.size())); }; // never all of them
    switch (random(20)) {
    case 0:
        return {whole(pieces).cutAfter(some(), localcloud::step::Reset{}), false};
    case 1:
        return {whole(pieces).cutAfter(some(), localcloud::step::Close{}), false};
    case 2:
        return {whole(pieces).cutAfter(some(), localcloud::step::Silence{}), false};
    case 3: {
        constexpr int codes[]{400, 401, 404, 429, 500, 503};
        return {Answer::error(codes[random(int(std::size(codes)))], u"out of order"_s), false};
    }
    case 4:
        return {random(2) ? Answer::html(502) : Answer::redirect(QUrl(u"http://127.0.0.1:9/"_s)),
                false};
    case 5: {
        const QByteArrayList garbage{
            "data: {\"choices\":[{\"delta\":", "data: \xff\xfe\"]}", "data: {\"choices\":{}}",
            "\x01" + QByteArray(3000, 'x'),    "data: [1,2,3]",      ""};
        return {localcloud::lineStream(garbage.sliced(0, 1 + random(int(garbage.size())))), false};
    }
    case 6: {
        const Answer ends[]{Answer::silence(), Answer::reset(), Answer::close()};
        return {ends[random(int(std::size(ends)))], false};
    }
    case 7: // slower than the user
        return {localcloud::eventStream(pieces, {.pause = 1200ms / pieces.size()}), true};
    default:
        return {whole(pieces), true};
    }
}

Answer SoakService::whole(const QStringList &pieces)
{
    localcloud::EventStreamOptions options;
    constexpr localcloud::LineEnd ends[]{localcloud::LineEnd::Lf, localcloud::LineEnd::CrLf,
                                         localcloud::LineEnd::Cr};
    options.lineEnd = ends[random(3)];
    options.done = random(4) > 0;
    options.decorated = random(4) == 0;
    options.pause = std::chrono::milliseconds(pieces.size() < 30 ? random(4) : 0);
    if (random(2))
        options.usage = localcloud::TokenCounts{random(500), random(500)};
    options.translationId = random(2) ? "id" : QByteArray();
    const Answer answer = localcloud::eventStream(pieces, options);
    // One packet goes out each time this thread looks for events.
    const int packet = pieces.size() < 60 ? 7 : 997; // bytes
    return random(5) ? answer : answer.inPackets(packet, 0ms);
}

} // namespace nivora::bench
