#pragma once

#include "localcloud/answer.h"
#include "localcloud/phrase_book.h"
#include "localcloud/request.h"
#include "localcloud/upstream.h"

#include <QJsonObject>

#include <chrono>
#include <memory>

namespace nivora::localcloud {

class Accounts;
class Router;
struct Wish;

// The translation part of the cloud, in both of its forms, and what users say of
// it, which is checked and not kept:
//
//   POST /v1/translate          text and options; wants a bearer token
//   POST /v1/chat/completions   a prompt, OpenAI-compatible
//   GET  /v1/models             OpenAI-compatible
//   POST /v1/feedback           a user's word on a translation; wants a bearer token
//
// Translates with the phrase book, or lets an upstream server do it.
class CloudService
{
public:
    struct Options
    {
        // Between one streamed piece and the next.
        std::chrono::milliseconds pieceDelay{15};
        std::unique_ptr<Upstream> upstream;
        // When set, only tokens issued there are taken, and what is translated is
        // counted there; otherwise any token will do. Borrowed.
        Accounts *accounts = nullptr;
    };

    explicit CloudService(Options options);

    // The router borrows the service.
    void addRoutes(Router &router);

private:
    Answer translate(const Request &request);
    Answer complete(const Request &request);
    Answer models() const;
    Answer takeFeedback(const Request &request) const;
    bool isAuthorized(const Request &request) const;
    QString answerTo(const Wish &wish) const;
    Answer completion(const QString &prompt, const QString &result, bool stream, bool usage) const;

    std::chrono::milliseconds m_pieceDelay;
    std::unique_ptr<Upstream> m_upstream;
    Accounts *m_accounts;
    PhraseBook m_book;
};

} // namespace nivora::localcloud
