#include "pocketsphinx_decoder.h"

#include "platform/audio_input.h"

#include <QFile>
#include <QFileInfo>

#include <pocketsphinx.h>
#include <sphinxbase/err.h>

#include <algorithm>
#include <random>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

namespace {

template<auto release>
struct Releaser
{
    template<typename Type>
    void operator()(Type *object) const
    {
        release(object);
    }
};
using Configuration = std::unique_ptr<cmd_ln_t, Releaser<cmd_ln_free_r>>;
using Decoder = std::unique_ptr<ps_decoder_t, Releaser<ps_free>>;

struct ModelFiles
{
    explicit ModelFiles(const QString &folder)
        : acoustic(folder + "/en-us"_L1)
        , language(folder + "/en-us.lm.bin"_L1)
        , words(folder + "/cmudict-en-us.dict"_L1)
    {
    }

    QString acoustic, language, words;
};

// The recogniser learns from the first moments what silence is. Where somebody speaks
// at once it takes the speech for that, and the first words are lost: so it gets 0.3 s
// of faint noise before, like a quiet room's.
std::vector<qint16> quietRoom()
{
    constexpr int amplitude = 8; // of 32767
    std::minstd_rand random;     // the same each time
    std::uniform_int_distribution<int> level(-amplitude, amplitude);
    std::vector<qint16> samples(platform::AudioInput::sampleRate * 3 / 10);
    std::ranges::generate(samples, [&] { return qint16(level(random)); });
    return samples;
}

// Takes speech apart at its pauses, so that the search never has more than a
// sentence or two to look back on. Not where there were no words: at the end of an
// utterance the recogniser takes the mean of what it heard for the voice's (cepstral mean
// normalisation), and after one of mere noise it would understand nothing of the next.
class PocketsphinxDecoder final : public SpeechDecoder
{
public:
    explicit PocketsphinxDecoder(Decoder decoder)
        : m_decoder(std::move(decoder))
    {
        m_isSound = ps_start_utt(m_decoder.get()) >= 0;
        accept(quietRoom());
    }

    bool accept(std::span<const qint16> samples) override
    {
        m_isSound = m_isSound && ps_process_raw(m_decoder.get(), samples.data(), samples.size(),
                                                false, false) >= 0;
        const bool isInSpeech = m_isSound && ps_get_in_speech(m_decoder.get());
        if (std::exchange(m_wasInSpeech, isInSpeech) && !isInSpeech && m_isSound &&
            !hypothesis().isEmpty()) {
            endUtterance();
            m_isSound = ps_start_utt(m_decoder.get()) >= 0;
        }
        return m_isSound;
    }

    QString text() override { return joinedSpeech(m_before, hypothesis()); }

    QString finish() override
    {
        endUtterance();
        return m_before;
    }

private:
    void endUtterance()
    {
        ps_end_utt(m_decoder.get());
        m_before = joinedSpeech(m_before, hypothesis());
    }
    QString hypothesis() const
    {
        return QString::fromUtf8(ps_get_hyp(m_decoder.get(), nullptr)).trimmed();
    }

    Decoder m_decoder;
    QString m_before; // of the utterances that have ended
    bool m_isSound = true;
    bool m_wasInSpeech = false;
};

} // namespace

bool hasPocketsphinxModel(const QString &folder)
{
    const ModelFiles files(folder);
    return QFileInfo(files.acoustic).isDir() && QFileInfo::exists(files.language) &&
           QFileInfo::exists(files.words);
}

std::unique_ptr<SpeechDecoder> makePocketsphinxDecoder(const QString &folder)
{
    // It would print what it understands to standard error.
    err_set_logfp(nullptr);
    const ModelFiles files(folder);
    const Configuration configuration(
        cmd_ln_init(nullptr, ps_args(), true, "-hmm", QFile::encodeName(files.acoustic).constData(),
                    "-lm", QFile::encodeName(files.language).constData(), "-dict",
                    QFile::encodeName(files.words).constData(), "-samprate", "16000", nullptr));
    Decoder decoder(configuration ? ps_init(configuration.get()) : nullptr);
    if (!decoder)
        return nullptr;
    return std::make_unique<PocketsphinxDecoder>(std::move(decoder));
}

} // namespace nivora::linuxdesktop
