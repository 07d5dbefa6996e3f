#include "desktop/speech_service.h"

#include <algorithm>
#include <tuple>

namespace nivora {

using platform::SpeechSynthesizer;
using platform::SpeechVoice;

namespace {

QStringView primaryLanguage(QStringView language)
{
    const qsizetype dash = language.indexOf(u'-');
    return dash < 0 ? language : language.first(dash);
}

} // namespace

SpeechService::SpeechService(platform::SpeechSynthesizer &synth)
    : m_synth(synth)
{
}

void SpeechService::loadVoices()
{
    if (!m_voices && !m_voicesTask.isRunning())
        readVoices();
}

void SpeechService::readVoices()
{
    m_voicesTask = m_synth.readVoices([this](std::optional<std::vector<SpeechVoice>> voices) {
        m_voices = std::move(voices);
        const auto waiting = std::exchange(m_waiting, std::nullopt);
        // First, since a listener of the signals may ask for something else.
        if (m_voices && waiting)
            say(*waiting);
        setAvailable(m_voices.has_value());
        if (m_voices)
            Q_EMIT voicesChanged();
    });
}

std::vector<SpeechVoice> SpeechService::voices(const QString &language) const
{
    std::vector<SpeechVoice> found;
    if (m_voices) {
        std::ranges::copy_if(*m_voices, std::back_inserter(found),
                             [&](const SpeechVoice &voice) { return voice.language == language; });
    }
    std::ranges::stable_sort(found, [](const SpeechVoice &left, const SpeechVoice &right) {
        return std::tie(right.quality, left.name) < std::tie(left.quality, right.name);
    });
    return found;
}

std::optional<SpeechVoice> SpeechService::voice(const QString &language,
                                                const QString &preferredID) const
{
    if (!m_voices)
        return std::nullopt;
    const auto first = [this](auto &&matches) -> std::optional<SpeechVoice> {
        const auto found = std::ranges::find_if(*m_voices, matches);
        return found == m_voices->end() ? std::nullopt : std::optional(*found);
    };
    if (!preferredID.isEmpty()) {
        if (auto preferred =
                first([&](const SpeechVoice &voice) { return voice.identifier == preferredID; }))
            return preferred;
    }
    if (const auto best = voices(language); !best.empty())
        return best.front();
    return first([&](const SpeechVoice &voice) {
        return primaryLanguage(voice.language) == primaryLanguage(language);
    });
}

void SpeechService::speak(const QString &text, const QString &language, const QString &preferredID,
                          double rate)
{
    stop();
    const Request request{{text, language, {}, rate}, preferredID};
    if (m_voices)
        return say(request);
    m_waiting = request;
    loadVoices();
}

void SpeechService::say(const Request &request)
{
    platform::Utterance utterance = request.utterance;
    if (const auto chosen = voice(utterance.language, request.preferredID))
        utterance.voice = chosen->identifier;
    m_speech = m_synth.speak(
        utterance, [this] { setSpeaking(true); },
        [this](SpeechSynthesizer::End end) { ended(end); });
}

void SpeechService::stop()
{
    m_waiting.reset();
    m_speech.cancel();
    setSpeaking(false);
}

void SpeechService::ended(SpeechSynthesizer::End end)
{
    const bool failed = end == SpeechSynthesizer::End::Failed;
    // A service that comes back may have other voices.
    if (failed)
        m_voices.reset();
    setSpeaking(false);
    setAvailable(!failed);
}

void SpeechService::setSpeaking(bool isSpeaking)
{
    if (std::exchange(m_isSpeaking, isSpeaking) != isSpeaking)
        Q_EMIT isSpeakingChanged(isSpeaking);
}

void SpeechService::setAvailable(bool isAvailable)
{
    if (std::exchange(m_isAvailable, isAvailable) != isAvailable)
        Q_EMIT availabilityChanged(isAvailable);
}

} // namespace nivora
