#pragma once

#include "platform/http_client.h"
#include "platform/task.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <variant>

namespace nivora {

// The one origin that the feed of releases, their notes and the pictures in those
// come from. Nothing is fetched from anywhere else: not at a redirect's word, and
// not at the feed's.
class UpdateServer
{
    Q_DECLARE_TR_FUNCTIONS(UpdateServer)

public:
    // What arrived, whatever the status; a body beyond the limit is cut there.
    struct Document
    {
        QUrl url; // after redirects
        QByteArray bytes;
        QByteArray contentType;
    };
    // Or why nothing did, for the user.
    using Result = std::variant<Document, QString>;

    // Borrows the client. `origin`: scheme, host and port. `timeLimit`: for a whole
    // answer.
    UpdateServer(platform::HttpClient &http, const QUrl &origin,
                 std::chrono::milliseconds timeLimit = std::chrono::seconds(60));

    // dist/appcast.xml
    QUrl feedURL() const;

    // The first 4 MiB of it; a feed is some kilobytes.
    platform::Task feed(std::function<void(Result)> done);

    // `bytes` limits the body. `url` may be relative to the feed.
    platform::Task document(const QUrl &url, qint64 bytes, std::function<void(Result)> done);

private:
    platform::HttpClient &m_http;
    QUrl m_origin;
    std::chrono::milliseconds m_timeLimit;
};

} // namespace nivora
