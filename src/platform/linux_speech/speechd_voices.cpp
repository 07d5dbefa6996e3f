#include "speechd_voices.h"

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

using platform::SpeechVoice;

namespace {

constexpr QChar separator = u'/';

bool isEspeak(QStringView module)
{
    return module.startsWith(u"espeak") && !module.contains(u"mbrola");
}

// The program's name of a language that modules call otherwise.
QString programLanguage(const QString &language)
{
    struct Name
    {
        QLatin1StringView theirs, ours;
    };
    static constexpr Name names[] = {
        {"ja"_L1, "ja-JP"_L1},     {"en"_L1, "en-US"_L1},
        {"ko"_L1, "ko-KR"_L1},     {"cmn-latn-pinyin"_L1, "zh-CN"_L1},
        {"cmn"_L1, "zh-CN"_L1},    {"zh"_L1, "zh-CN"_L1},
        {"zh-cmn"_L1, "zh-CN"_L1}, {"yue"_L1, "zh-HK"_L1},
        {"zh-yue"_L1, "zh-HK"_L1},
    };
    const auto found = std::ranges::find_if(names, [&](const Name &name) {
        return language.compare(name.theirs, Qt::CaseInsensitive) == 0;
    });
    return found == std::end(names) ? language : QString(found->ours);
}

// Speech Dispatcher does not tell how good a voice is. What makes it does.
SpeechVoice::Quality quality(QStringView module)
{
    const auto isAnyOf = [module](std::initializer_list<QStringView> names) {
        return std::ranges::any_of(names, [module](QStringView name) {
            return module.contains(name, Qt::CaseInsensitive);
        });
    };
    if (isAnyOf({u"piper", u"mimic3", u"kokoro", u"neural"}))
        return SpeechVoice::Quality::Premium; // neural networks
    if (isEspeak(module) || isAnyOf({u"flite", u"festival", u"epos", u"cicero", u"dtk"}))
        return SpeechVoice::Quality::Default; // rules, and small recordings
    return SpeechVoice::Quality::Enhanced;
}

} // namespace

std::optional<SpeechVoice> offeredVoice(const SpeechdVoice &voice)
{
    if (voice.module == u"dummy" || voice.name.isEmpty())
        return std::nullopt;
    if (isEspeak(voice.module)) {
        if (!voice.variant.isEmpty() && voice.variant != u"none")
            return std::nullopt;
        // It says hanzi in English; the one for pinyin says them well.
        if (!voice.language.compare("cmn"_L1, Qt::CaseInsensitive))
            return std::nullopt;
    }
    return SpeechVoice{voice.module + separator + voice.name, voice.name,
                       programLanguage(voice.language), quality(voice.module)};
}

SpeechdVoiceId parsedVoiceId(const QString &identifier)
{
    return {identifier.section(separator, 0, 0), identifier.section(separator, 1)};
}

bool needsKana(QStringView module)
{
    return module.isEmpty() || module.startsWith(u"espeak");
}

int speechdRate(double rate)
{
    return int(std::lround(std::clamp((rate - 0.5) * 500.0, -100.0, 100.0)));
}

} // namespace nivora::linuxdesktop
