#pragma once

#include "localcloud/request.h"

#include <QByteArray>
#include <QJsonObject>
#include <QUrl>

#include <chrono>
#include <functional>
#include <variant>
#include <vector>

namespace nivora::localcloud {

class LiveAnswer;

// The steps of an answer. A step that ends the exchange is the last one run.
namespace step {

// These bytes of the body, handed to the network in one write.
struct Send
{
    QByteArray bytes;
};
struct Wait
{
    std::chrono::milliseconds duration{0};
};
// Ends the connection the hard way: the client reads an error, not an end. What
// it has not read yet may be lost, so let it read with a Wait before.
struct Reset
{
};
// Ends the connection in order, with the body cut short where it is.
struct Close
{
};
// Sends nothing more and leaves the connection open until the client goes.
struct Silence
{
};

} // namespace step

using Step = std::variant<step::Send, step::Wait, step::Reset, step::Close, step::Silence>;

// What the server does with one request, down to single writes.
struct Answer
{
    enum class Framing {
        Chunked,    // every Send is one chunk
        Length,     // Content-Length counts all the Sends
        UntilClose, // the end of the connection is the end of the body
    };

    int status = 200;
    // Framing and connection fields are added by the server.
    Headers headers;
    Framing framing = Framing::Chunked;
    // How many bytes Content-Length promises beyond what the Sends hold.
    qint64 missingBytes = 0;
    // Run before the status line is sent.
    std::vector<Step> prelude;
    // The body. It is ended properly unless a step ended the exchange before.
    std::vector<Step> steps;
    // When set, takes the place of everything above: is called once with an
    // answer to be filled while it is being sent.
    std::function<void(LiveAnswer &)> live;

    // Whole answers with a length, as a web service gives them.
    static Answer plain(int status, const QByteArray &body, const QByteArray &contentType);
    static Answer json(int status, const QJsonObject &body);
    // {"error":{"message":...,"type":...}}
    static Answer error(int status, const QString &message);
    // A page as proxies and captive portals send it.
    static Answer html(int status);
    static Answer redirect(const QUrl &target, int status = 307);

    // Answers that never get as far as a status line.
    static Answer silence();
    static Answer reset();
    static Answer close();

    // The same answer with its first `writes` Sends, and `end` in place of the
    // rest. The client is given `pause` to read them first.
    Answer cutAfter(int writes, Step end,
                    std::chrono::milliseconds pause = std::chrono::milliseconds(30)) const;
    // The same answer with nothing sent for a while: neither status nor headers.
    Answer delayedBy(std::chrono::milliseconds duration) const;
    // The same body in writes of at most `bytes` bytes with a pause after each.
    Answer inPackets(int bytes, std::chrono::milliseconds pause) const;
    // The same body with a write ending inside every character that takes more
    // than one byte in UTF-8, and a pause there.
    Answer
    splitInsideCharacters(std::chrono::milliseconds pause = std::chrono::milliseconds(2)) const;

    Answer withHeader(const QByteArray &name, const QByteArray &value) const;
    Answer withStatus(int code) const;
    Answer withFraming(Framing kind) const;
};

} // namespace nivora::localcloud
