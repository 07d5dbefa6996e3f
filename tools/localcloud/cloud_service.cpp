#include "localcloud/cloud_service.h"

#include "localcloud/accounts.h"
#include "localcloud/event_stream.h"
#include "localcloud/router.h"
#include "prompt.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTextBoundaryFinder>
#include <QUuid>

namespace nivora::localcloud {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int charactersPerPiece = 2;
constexpr int defaultVariants = 3;
const QStringList feedbackReasons{u"mistranslation"_s, u"omission"_s,   u"number"_s,
                                  u"tone"_s,           u"cannotEdit"_s, u"other"_s};

QStringList piecesOf(const QString &text)
{
    QStringList pieces;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype from = 0;
    for (int count = 1; from < text.size(); ++count) {
        const qsizetype to = finder.toNextBoundary();
        if (count % charactersPerPiece == 0 || to == text.size()) {
            pieces.append(text.sliced(from, to - from));
            from = to;
        }
    }
    return pieces;
}

std::optional<QJsonObject> objectOf(const QByteArray &body)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    return document.object();
}

// A field that may be left out, but not be of another type.
bool hasTypeOrIsAbsent(const QJsonObject &body, const QString &key, QJsonValue::Type type)
{
    return !body.contains(key) || body.value(key).type() == type;
}

bool isFilledOrAbsent(const QJsonObject &body, const QString &key)
{
    return !body.contains(key) || !body.value(key).toString().isEmpty();
}

bool readGlossary(const QJsonArray &pairs, Wish &wish)
{
    for (const QJsonValue each : pairs) {
        const QJsonArray pair = each.toArray();
        if (pair.size() != 2 || !pair.at(0).isString() || !pair.at(1).isString())
            return false;
        wish.glossary.append({pair.at(0).toString(), pair.at(1).toString()});
    }
    return true;
}

// What the body asks for, or the answer that says what is wrong with it.
std::variant<Wish, Answer> readWish(const QJsonObject &body)
{
    Wish wish;
    if (!body.value(u"text"_s).isString())
        return Answer::error(400, u"text must be a string"_s);
    wish.text = body.value(u"text"_s).toString();
    const auto target = tongueOfWireName(body.value(u"target"_s).toString());
    if (!target)
        return Answer::error(400, u"target is not a language of this service"_s);
    wish.target = *target;
    const QString mode = body.value(u"mode"_s).toString(u"translate"_s);
    if (mode == u"variants")
        wish.variants = body.value(u"variantCount"_s).toInt(defaultVariants);
    else if (mode != u"translate")
        return Answer::error(400, u"mode must be translate or variants"_s);
    if (!hasTypeOrIsAbsent(body, u"stream"_s, QJsonValue::Bool) ||
        !hasTypeOrIsAbsent(body, u"style"_s, QJsonValue::String) ||
        !hasTypeOrIsAbsent(body, u"background"_s, QJsonValue::String) ||
        !hasTypeOrIsAbsent(body, u"glossary"_s, QJsonValue::Array) ||
        !readGlossary(body.value(u"glossary"_s).toArray(), wish))
        return Answer::error(400, u"an option has the wrong type"_s);
    wish.style = body.value(u"style"_s).toString();
    wish.background = body.value(u"background"_s).toString();
    return wish;
}

// The content of the last message that the user wrote. Absent without one.
std::optional<QString> lastUserMessage(const QJsonObject &body)
{
    const QJsonArray messages = body.value(u"messages"_s).toArray();
    for (qsizetype i = messages.size() - 1; i >= 0; --i) {
        const QJsonObject message = messages.at(i).toObject();
        if (message.value(u"role"_s) == u"user"_s && message.value(u"content"_s).isString())
            return message.value(u"content"_s).toString();
    }
    return std::nullopt;
}

} // namespace

CloudService::CloudService(Options options)
    : m_pieceDelay(options.pieceDelay)
    , m_upstream(std::move(options.upstream))
    , m_accounts(options.accounts)
{
}

void CloudService::addRoutes(Router &router)
{
    router.add("POST", "/v1/translate", [this](const Request &each) { return translate(each); });
    router.add("POST", "/v1/chat/completions",
               [this](const Request &each) { return complete(each); });
    router.add("GET", "/v1/models", [this](const Request &) { return models(); });
    router.add("POST", "/v1/feedback", [this](const Request &each) { return takeFeedback(each); });
}

bool CloudService::isAuthorized(const Request &request) const
{
    return m_accounts ? m_accounts->find(request) != nullptr : !bearerToken(request).isEmpty();
}

Answer CloudService::translate(const Request &request)
{
    if (!isAuthorized(request))
        return Answer::error(401, u"sign in first"_s);
    const auto body = objectOf(request.body);
    if (!body)
        return Answer::error(400, u"the body must be a JSON object"_s);
    auto read = readWish(*body);
    if (auto *refusal = std::get_if<Answer>(&read))
        return std::move(*refusal);

    const Wish &wish = std::get<Wish>(read);
    if (m_accounts)
        m_accounts->find(request)->used += wish.text.size();
    const bool stream = body->value(u"stream"_s).toBool();
    const QByteArray id = QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
    if (!m_upstream)
        return completion(wish.text, answerTo(wish), stream, true)
            .withHeader("X-Translation-Id", id);

    QJsonObject forwarded{
        {u"messages"_s,
         QJsonArray{QJsonObject{{u"role"_s, u"user"_s}, {u"content"_s, writePrompt(wish)}}}},
        {u"temperature"_s, wish.variants ? 0.7 : 0.0},
        {u"stream"_s, stream}};
    if (stream)
        forwarded.insert(u"stream_options"_s, QJsonObject{{u"include_usage"_s, true}});
    return m_upstream->forward(forwarded, {{"X-Translation-Id", id}});
}

Answer CloudService::complete(const Request &request)
{
    const auto body = objectOf(request.body);
    if (!body)
        return Answer::error(400, u"the body must be a JSON object"_s);
    const auto prompt = lastUserMessage(*body);
    if (!prompt)
        return Answer::error(400, u"messages holds no text of the user"_s);
    if (m_upstream)
        return m_upstream->forward(*body, {});

    const auto wish = readPrompt(*prompt);
    const QString result = wish ? answerTo(*wish) : u"（没有写明译成哪种语言）"_s;
    const QJsonObject options = body->value(u"stream_options"_s).toObject();
    return completion(*prompt, result, body->value(u"stream"_s).toBool(),
                      options.value(u"include_usage"_s).toBool());
}

Answer CloudService::models() const
{
    const QJsonObject model{{u"id"_s, m_upstream ? m_upstream->model() : u"phrase-book"_s},
                            {u"object"_s, u"model"_s},
                            {u"owned_by"_s, u"localcloud"_s}};
    return Answer::json(200, {{u"object"_s, u"list"_s}, {u"data"_s, QJsonArray{model}}});
}

Answer CloudService::takeFeedback(const Request &request) const
{
    if (!isAuthorized(request))
        return Answer::error(401, u"sign in first"_s);
    const auto body = objectOf(request.body);
    if (!body)
        return Answer::error(400, u"the body must be a JSON object"_s);
    for (const QString &key :
         {u"sourceText"_s, u"translation"_s, u"target"_s, u"reason"_s, u"comment"_s}) {
        if (!body->value(key).isString())
            return Answer::error(400, key + u" must be a string"_s);
    }
    if (!tongueOfWireName(body->value(u"target"_s).toString()))
        return Answer::error(400, u"target is not a language of this service"_s);
    if (!feedbackReasons.contains(body->value(u"reason"_s).toString()))
        return Answer::error(400, u"reason is none that can be given"_s);
    if (!isFilledOrAbsent(*body, u"tid"_s) || !isFilledOrAbsent(*body, u"context"_s))
        return Answer::error(400, u"tid and context are strings that say something"_s);
    if (body->contains(u"context"_s) && !objectOf(body->value(u"context"_s).toString().toUtf8()))
        return Answer::error(400, u"context must be the text of a JSON object"_s);
    return Answer::json(200, {});
}

QString CloudService::answerTo(const Wish &wish) const
{
    if (wish.variants) {
        const QStringList all = m_book.variants(wish.text, wish.target, *wish.variants);
        return all.isEmpty() ? PhraseBook::notFound(wish.target) : all.join(u'\n');
    }
    return m_book.lookUp(wish.text, wish.target).value_or(PhraseBook::notFound(wish.target));
}

Answer CloudService::completion(const QString &prompt, const QString &result, bool stream,
                                bool usage) const
{
    // The phrase book has no tokens; a character stands for one.
    const TokenCounts counts{static_cast<int>(prompt.size()), static_cast<int>(result.size())};
    if (stream) {
        EventStreamOptions options;
        options.pause = m_pieceDelay;
        if (usage)
            options.usage = counts;
        return eventStream(piecesOf(result), options);
    }
    const QJsonObject message{{u"role"_s, u"assistant"_s}, {u"content"_s, result}};
    const QJsonObject choice{
        {u"index"_s, 0}, {u"message"_s, message}, {u"finish_reason"_s, u"stop"_s}};
    return Answer::json(200, {{u"object"_s, u"chat.completion"_s},
                              {u"choices"_s, QJsonArray{choice}},
                              {u"usage"_s, usageOf(counts)}});
}

} // namespace nivora::localcloud
