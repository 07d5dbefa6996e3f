#pragma once

#include "speechd_connection.h"

#include <QObject>
#include <QSocketNotifier>

#include <atomic>
#include <memory>
#include <mutex>

namespace nivora::platform {
class JapaneseTokenizer;
}

namespace nivora::linuxdesktop {

// Talks to the speech service, on the thread it lives in. Requests have numbers,
// which the answers name.
class SpeechdWorker : public QObject
{
    Q_OBJECT

public:
    using End = platform::SpeechSynthesizer::End;
    using Voices = std::optional<std::vector<platform::SpeechVoice>>;

    explicit SpeechdWorker(platform::JapaneseTokenizer &tokenizer);

    // On the worker's thread.
    void readVoices(quint64 request);
    void speak(quint64 request, const platform::Utterance &utterance);
    void cancel(quint64 request);
    void end();

    // From any thread: speech requests with other numbers are not begun any more,
    // and 0 stands for none.
    void setWanted(quint64 request) { m_wanted = request; }
    void dropWanted(quint64 request) { m_wanted.compare_exchange_strong(request, 0); }
    // From any thread: lets go of a service that does not answer.
    void interrupt();
    // From any thread: the worker could not be ended and what it uses goes away. It
    // stands still for good if the service ever answers.
    void abandon() { m_abandoned = true; }

Q_SIGNALS:
    void voicesRead(quint64 request, const nivora::linuxdesktop::SpeechdWorker::Voices &voices);
    void started(quint64 request);
    void ended(quint64 request, nivora::platform::SpeechSynthesizer::End end);

private:
    bool connectToService();
    // Fails what is being said.
    void disconnectFromService();
    void lookWhetherBroken();
    void handle(int message, SpeechdConnection::Event event);
    void finish(End end);
    QString spoken(quint64 request, const platform::Utterance &utterance) const;

    platform::JapaneseTokenizer &m_tokenizer;
    std::atomic<quint64> m_wanted = 0;
    std::atomic<bool> m_abandoned = false;
    std::mutex m_mutex; // of the pointer to the connection, which interrupt() uses
    std::unique_ptr<SpeechdConnection> m_connection;
    std::unique_ptr<QSocketNotifier> m_notifier;
    quint64 m_request = 0; // being said; 0 for none
    int m_message = 0;
};

} // namespace nivora::linuxdesktop
