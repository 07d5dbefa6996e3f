#pragma once

#include "speechd_voices.h"

#include <functional>
#include <memory>
#include <vector>

namespace nivora::linuxdesktop {

// A connection to Speech Dispatcher. Every call waits for the service's answer
// without a bound, so it is none for the main thread, except interrupt().
class SpeechdConnection
{
public:
    enum class Event { Begin, End, Cancel };
    // The message's number as say() gave it. Runs on a thread of the library.
    using Handler = std::function<void(int message, Event event)>;

    // Starts the service where it does not run. Null when that fails.
    static std::unique_ptr<SpeechdConnection> open(Handler handler);
    ~SpeechdConnection();
    SpeechdConnection(const SpeechdConnection &) = delete;
    SpeechdConnection &operator=(const SpeechdConnection &) = delete;

    // Of all modules. Absent when the connection broke.
    std::optional<std::vector<SpeechdVoice>> voices();

    // `voice` may be empty, for the module's own of the language. The message's
    // number; absent when the service did not take it.
    std::optional<int> say(const QString &text, const QString &language,
                           const SpeechdVoiceId &voice, int rate);

    // Silences what this connection says.
    void cancel();

    // To be watched for the service's end.
    int descriptor() const;
    bool isBroken() const;

    // Breaks the connection, so that a call that waits on another thread returns.
    void interrupt();

private:
    struct Link;

    explicit SpeechdConnection(std::unique_ptr<Link> link);

    std::unique_ptr<Link> m_link;
};

} // namespace nivora::linuxdesktop
