#include "speechd_worker.h"

#include "platform/japanese_tokenizer.h"
#include "platform/log.h"

#include <algorithm>

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

SpeechdWorker::SpeechdWorker(platform::JapaneseTokenizer &tokenizer)
    : m_tokenizer(tokenizer)
{
}

void SpeechdWorker::readVoices(quint64 request)
{
    Voices offered;
    if (const auto listed = connectToService() ? m_connection->voices() : std::nullopt) {
        offered.emplace();
        for (const auto &voice : *listed) {
            if (auto offer = offeredVoice(voice))
                offered->push_back(std::move(*offer));
        }
        if (offered->empty()) {
            qCWarning(log::app, "The speech service has no voice: nothing is read aloud");
            offered.reset();
        }
    }
    Q_EMIT voicesRead(request, offered);
}

void SpeechdWorker::speak(quint64 request, const platform::Utterance &utterance)
{
    if (m_request) {
        m_connection->cancel();
        finish(End::Cancelled);
    }
    if (m_wanted != request)
        return;
    const QString text = spoken(request, utterance);
    const bool connected = connectToService();
    // Both may have taken seconds.
    if (m_wanted != request)
        return;
    m_request = request;
    const auto message =
        connected ? m_connection->say(text, utterance.language, parsedVoiceId(utterance.voice),
                                      speechdRate(utterance.rate))
                  : std::nullopt;
    if (!message)
        return disconnectFromService();
    m_message = *message;
}

void SpeechdWorker::cancel(quint64 request)
{
    if (m_request != request)
        return;
    m_request = 0;
    m_connection->cancel();
}

void SpeechdWorker::end()
{
    if (m_request)
        m_connection->cancel();
    m_request = 0;
    disconnectFromService();
}

void SpeechdWorker::interrupt()
{
    const std::lock_guard lock(m_mutex);
    if (m_connection)
        m_connection->interrupt();
}

bool SpeechdWorker::connectToService()
{
    if (m_connection && m_connection->isBroken())
        disconnectFromService();
    if (m_connection)
        return true;
    // The library's thread only knocks: while a request is made here its events
    // wait, so that they are held against the new message's number.
    auto connection = SpeechdConnection::open([this](int message, SpeechdConnection::Event event) {
        QMetaObject::invokeMethod(
            this, [=, this] { handle(message, event); }, Qt::QueuedConnection);
    });
    while (m_abandoned)
        pause();
    if (!connection) {
        qCWarning(log::app, "No speech service: nothing is read aloud");
        return false;
    }
    m_notifier = std::make_unique<QSocketNotifier>(connection->descriptor(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] { lookWhetherBroken(); });
    const std::lock_guard lock(m_mutex);
    m_connection = std::move(connection);
    return true;
}

void SpeechdWorker::disconnectFromService()
{
    m_notifier.reset();
    std::unique_ptr<SpeechdConnection> connection;
    {
        const std::lock_guard lock(m_mutex);
        connection.swap(m_connection);
    }
    if (m_request)
        finish(End::Failed);
}

// The library says nothing when the service ends.
void SpeechdWorker::lookWhetherBroken()
{
    if (!m_connection->isBroken())
        return;
    // Not from within the notifier that calls.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (!m_connection || !m_connection->isBroken())
                return;
            if (m_request)
                qCWarning(log::app, "The speech service is gone");
            disconnectFromService();
        },
        Qt::QueuedConnection);
    m_notifier->setEnabled(false);
}

void SpeechdWorker::handle(int message, SpeechdConnection::Event event)
{
    if (!m_request || message != m_message)
        return;
    switch (event) {
    case SpeechdConnection::Event::Begin:
        Q_EMIT started(m_request);
        return;
    case SpeechdConnection::Event::End:
        return finish(End::Finished);
    case SpeechdConnection::Event::Cancel:
        return finish(End::Cancelled);
    }
}

void SpeechdWorker::finish(End end)
{
    Q_EMIT ended(std::exchange(m_request, 0), end);
}

QString SpeechdWorker::spoken(quint64 request, const platform::Utterance &utterance) const
{
    QString text = utterance.text;
    if (utterance.language.startsWith(u"ja") && needsKana(parsedVoiceId(utterance.voice).module)) {
        const auto tokens =
            m_tokenizer.tokenize(text, [this, request] { return m_wanted == request; });
        if (tokens) {
            text.clear();
            for (const auto &token : *tokens) {
                text += token.pronunciation.isEmpty() ? token.surface : token.pronunciation;
                text += u' ';
            }
        }
    }
    // The text ends at a null, and the service takes other control characters ill.
    std::ranges::replace_if(
        text, [](QChar c) { return c.category() == QChar::Other_Control && c != u'\n'; }, u' ');
    // A lone point ends the text, and the rest of it would be taken for commands.
    if (text.startsWith(u'.'))
        text.prepend(u' ');
    text.replace("\n."_L1, "\n ."_L1);
    return text;
}

} // namespace nivora::linuxdesktop
