#include "lazy_speech.h"

#include "loadable_module.h"

#include "platform/audio_input.h"
#include "platform/speech_recognizer.h"
#include "platform/speech_synthesizer.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

using platform::SpeechBackend;
using Voices = std::optional<std::vector<platform::SpeechVoice>>;

namespace {

class Module : public LoadableModule
{
public:
    Module(const QString &file, platform::JapaneseTokenizer &tokenizer)
        : LoadableModule(file, "speech")
        , m_tokenizer(tokenizer)
    {
    }

    // Null where it cannot be loaded. Takes its time where load() was not called.
    SpeechBackend *backend()
    {
        if (m_backend || std::exchange(m_tried, true))
            return m_backend.get();
        if (const auto make = resolve<platform::MakeSpeechBackend>("nivoraMakeSpeechBackend"))
            m_backend.reset(make(&m_tokenizer));
        return m_backend.get();
    }

private:
    platform::JapaneseTokenizer &m_tokenizer;
    std::unique_ptr<SpeechBackend> m_backend;
    bool m_tried = false;
};

// The callers begin with what loads the module: with the voices here, and with the
// question for the microphone below.
class LazySynthesizer final : public platform::SpeechSynthesizer
{
public:
    explicit LazySynthesizer(Module &module)
        : m_module(module)
    {
    }

    platform::Task readVoices(std::function<void(Voices)> done) override
    {
        return platform::Task(new OnceLoaded<Voices>(
            m_module,
            [this](std::function<void(Voices)> tell) {
                if (SpeechBackend *backend = m_module.backend())
                    return backend->synthesizer().readVoices(std::move(tell));
                return platform::delay({}, [tell = std::move(tell)] { tell(std::nullopt); });
            },
            std::move(done)));
    }

    platform::Task speak(const platform::Utterance &utterance, std::function<void()> started,
                         std::function<void(End)> ended) override
    {
        if (SpeechBackend *backend = m_module.backend())
            return backend->synthesizer().speak(utterance, std::move(started), std::move(ended));
        return platform::delay({}, [ended = std::move(ended)] { ended(End::Failed); });
    }

private:
    Module &m_module;
};

class LazyRecognizer final : public platform::SpeechRecognizer
{
public:
    explicit LazyRecognizer(Module &module)
        : m_module(module)
    {
    }

    std::unique_ptr<platform::SpeechRecognition> recognize(const QString &locale,
                                                           Handler handler) override
    {
        SpeechBackend *backend = m_module.backend();
        return backend ? backend->recognizer().recognize(locale, std::move(handler)) : nullptr;
    }

private:
    Module &m_module;
};

class LazyAudioInput final : public platform::AudioInput
{
public:
    explicit LazyAudioInput(Module &module)
        : m_module(module)
    {
    }

    platform::Task requestAccess(std::function<void(bool)> done) override
    {
        return platform::Task(new OnceLoaded<bool>(
            m_module,
            [this](std::function<void(bool)> tell) {
                if (SpeechBackend *backend = m_module.backend())
                    return backend->audioInput().requestAccess(std::move(tell));
                return platform::delay({}, [tell = std::move(tell)] { tell(true); });
            },
            std::move(done)));
    }

    platform::Task record(std::function<void(const QByteArray &)> samples,
                          std::function<void(Failure)> failed) override
    {
        if (SpeechBackend *backend = m_module.backend())
            return backend->audioInput().record(std::move(samples), std::move(failed));
        return platform::delay({}, [failed = std::move(failed)] { failed(Failure::NoDevice); });
    }

private:
    Module &m_module;
};

} // namespace

struct LazySpeech::Parts
{
    Module module;
    LazySynthesizer synthesizer{module};
    LazyRecognizer recognizer{module};
    LazyAudioInput audioInput{module};
};

QString LazySpeech::defaultModule()
{
    return QCoreApplication::applicationDirPath() + u'/' + QStringLiteral(NIVORA_SPEECH_MODULE);
}

LazySpeech::LazySpeech(platform::JapaneseTokenizer &tokenizer, const QString &module)
    : m_parts(new Parts{{module, tokenizer}})
{
}

LazySpeech::~LazySpeech() = default;

platform::SpeechSynthesizer &LazySpeech::synthesizer()
{
    return m_parts->synthesizer;
}

platform::SpeechRecognizer &LazySpeech::recognizer()
{
    return m_parts->recognizer;
}

platform::AudioInput &LazySpeech::audioInput()
{
    return m_parts->audioInput;
}

} // namespace nivora::linuxdesktop
