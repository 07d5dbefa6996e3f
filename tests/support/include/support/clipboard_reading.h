#pragma once

#include "platform/clipboard.h"
#include "support/wait.h"
#include "support/x11_peer.h"

#include <functional>
#include <optional>

namespace nivora::test {

inline constexpr int sixMegabytes = 6 * 1024 * 1024;

inline QByteArray noise(int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 0x2545f491;
    for (char &byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = char(state >> 24);
    }
    return bytes;
}

// Waits for the answer to a reading of either kind.
template<typename Result, typename Read>
std::optional<Result> await(Read &&read)
{
    std::optional<Result> result;
    bool answered = false;
    const platform::Task task = read([&](std::optional<Result> value) {
        result = std::move(value);
        answered = true;
    });
    if (!waitUntil([&] { return answered; }, std::chrono::seconds(10),
                   std::chrono::microseconds(200)))
        qWarning("a reading was not answered at all");
    return result;
}

inline std::optional<QString> readText(platform::Clipboard &clipboard,
                                       std::chrono::milliseconds deadline = std::chrono::seconds(5))
{
    return await<QString>([&](auto done) { return clipboard.readText(deadline, std::move(done)); });
}

inline std::optional<platform::ClipboardContents>
readAll(platform::Clipboard &clipboard,
        std::chrono::milliseconds deadline = std::chrono::seconds(5))
{
    return await<platform::ClipboardContents>(
        [&](auto done) { return clipboard.read(deadline, std::move(done)); });
}

// A program that owns the clipboard and answers as the test says.
class Owner
{
public:
    using Answer = std::function<void(const xcb_selection_request_event_t &)>;

    Owner(const QByteArray &displayName, Answer answer)
        : peer(displayName)
    {
        peer.onEvent = [this, answer = std::move(answer)](const xcb_generic_event_t &event) {
            if (event.response_type == 0)
                ++errors;
            if ((event.response_type & 0x7f) != XCB_SELECTION_REQUEST)
                return;
            ++requests;
            answer(reinterpret_cast<const xcb_selection_request_event_t &>(event));
        };
        peer.own(peer.atom("CLIPBOARD"), peer.createWindow(0));
    }

    X11Peer peer;
    int requests = 0;
    int errors = 0; // by which many programs would end
};

} // namespace nivora::test
