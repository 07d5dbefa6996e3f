#include "desktop/speech_input_service.h"

#include "platform/log.h"

using namespace Qt::Literals::StringLiterals;

namespace nivora {

using platform::AudioInput;
using platform::RecognitionResult;

SpeechInputService::SpeechInputService(AudioInput &audio, platform::SpeechRecognizer &recognizer)
    : localeProvider([] { return u"zh-CN"_s; })
    , onPartial([](const QString &) {})
    , onFinal([](const QString &) {})
    , onStateChange([](bool) {})
    , onError([](const QString &) {})
    , onRefused([](const QString &) {})
    , m_audio(audio)
    , m_recognizer(recognizer)
{
}

SpeechInputService::~SpeechInputService() = default;

void SpeechInputService::start()
{
    if (m_isListening)
        return;
    setListening(true);
    m_permission = m_audio.requestAccess([this](bool granted) {
        if (granted)
            return beginSession();
        giveUp(onRefused, tr("需要麦克风和语音识别权限"));
    });
}

void SpeechInputService::giveUp(const std::function<void(const QString &)> &tell,
                                const QString &message)
{
    tell(message);
    setListening(false);
}

void SpeechInputService::beginSession()
{
    m_recognition = m_recognizer.recognize(
        localeProvider(), [this](const RecognitionResult &result) { deliver(result); });
    if (!m_recognition)
        return giveUp(onError, tr("当前语言的语音识别暂不可用"));
    m_recording =
        m_audio.record([this](const QByteArray &samples) { m_recognition->append(samples); },
                       [this](AudioInput::Failure failure) { microphoneFailed(failure); });
    setListening(true);
}

void SpeechInputService::microphoneFailed(AudioInput::Failure failure)
{
    switch (failure) {
    case AudioInput::Failure::NoDevice:
        onError(tr("没有找到麦克风"));
        return teardown();
    case AudioInput::Failure::Refused:
        onRefused(tr("无法打开麦克风"));
        return teardown();
    case AudioInput::Failure::Lost:
        onError(tr("麦克风已断开"));
        // What was said until then is still worth having.
        return stop();
    }
}

std::optional<QString> SpeechInputService::errorOf(RecognitionResult::Failure failure)
{
    switch (failure) {
    case RecognitionResult::Failure::None:
        break;
    case RecognitionResult::Failure::Unavailable:
        return tr("当前语言的语音识别暂不可用");
    case RecognitionResult::Failure::Model:
        return tr("语音识别模型无法读取");
    case RecognitionResult::Failure::Engine:
        return tr("语音识别出错");
    }
    return std::nullopt;
}

void SpeechInputService::deliver(const RecognitionResult &result)
{
    deliver(result.text, result.isFinal, errorOf(result.failure));
}

void SpeechInputService::deliver(const QString &text, bool final,
                                 const std::optional<QString> &error)
{
    if (!text.isEmpty()) {
        if (final)
            onFinal(text);
        else
            onPartial(text);
    }
    if (error) {
        qCCritical(log::translate).noquote() << u"语音识别错误: %1"_s.arg(*error);
        onError(*error);
    }
    if (error || final)
        teardown();
}

void SpeechInputService::stop()
{
    if (!m_isListening)
        return;
    if (m_recognition)
        m_recognition->endAudio();
    m_recording.cancel();
    setListening(false);
}

void SpeechInputService::teardown()
{
    m_recording.cancel();
    m_recognition.reset();
    setListening(false);
}

void SpeechInputService::setListening(bool isListening)
{
    if (std::exchange(m_isListening, isListening) == isListening)
        return;
    onStateChange(isListening);
    Q_EMIT isListeningChanged(isListening);
}

} // namespace nivora
