#include "vosk_decoder.h"

#include "platform/audio_input.h"

#include "vosk_library.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <functional>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

namespace {

using Model = std::unique_ptr<VoskModel, std::function<void(VoskModel *)>>;
using Recognizer = std::unique_ptr<VoskRecognizer, std::function<void(VoskRecognizer *)>>;

class VoskDecoder final : public SpeechDecoder
{
public:
    VoskDecoder(std::shared_ptr<const VoskLibrary> library, Model model, Recognizer recognizer)
        : m_library(std::move(library))
        , m_model(std::move(model))
        , m_recognizer(std::move(recognizer))
    {
    }

    bool accept(std::span<const qint16> samples) override
    {
        const auto bytes = std::as_bytes(samples);
        const int pause = m_library->accept(
            m_recognizer.get(), reinterpret_cast<const char *>(bytes.data()), int(bytes.size()));
        if (pause > 0)
            keep(m_library->result(m_recognizer.get()));
        return pause >= 0;
    }

    QString text() override
    {
        return withoutBlanksInHan(joinedSpeech(
            m_before, member(m_library->partialResult(m_recognizer.get()), "partial"_L1)));
    }

    QString finish() override
    {
        keep(m_library->finalResult(m_recognizer.get()));
        return withoutBlanksInHan(m_before);
    }

private:
    static QString member(const char *json, QLatin1StringView name)
    {
        return QJsonDocument::fromJson(json).object().value(name).toString().trimmed();
    }
    void keep(const char *json) { m_before = joinedSpeech(m_before, member(json, "text"_L1)); }

    std::shared_ptr<const VoskLibrary> m_library;
    Model m_model;
    Recognizer m_recognizer;
    QString m_before; // of the stretches that have ended
};

bool isHan(QChar c)
{
    switch (c.script()) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
        return true;
    default:
        return c == u'ー';
    }
}

} // namespace

std::unique_ptr<SpeechDecoder> makeVoskDecoder(std::shared_ptr<const VoskLibrary> library,
                                               const QString &modelFolder)
{
    // It would print to standard error.
    library->setLogLevel(-1);
    Model model(library->modelNew(QFile::encodeName(modelFolder).constData()), library->modelFree);
    if (!model)
        return nullptr;
    Recognizer recognizer(library->recognizerNew(model.get(), platform::AudioInput::sampleRate),
                          library->recognizerFree);
    if (!recognizer)
        return nullptr;
    return std::make_unique<VoskDecoder>(std::move(library), std::move(model),
                                         std::move(recognizer));
}

QString withoutBlanksInHan(const QString &text)
{
    QString kept;
    kept.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isBetween = text[i] == u' ' && !kept.isEmpty() && isHan(kept.back()) &&
                               i + 1 < text.size() && isHan(text[i + 1]);
        if (!isBetween)
            kept += text[i];
    }
    return kept;
}

} // namespace nivora::linuxdesktop
