#pragma once

#include "platform/japanese_tokenizer.h"

#include <memory>

namespace nivora::linuxdesktop {

// MeCab with its IPA dictionary in UTF-8. The dictionary is mapped into memory
// once for this object, at the first call and not before; each caller at a time
// gets an analyser of its own, which is kept for the next.
class MecabTokenizer final : public platform::JapaneseTokenizer
{
public:
    // Where distributions put the dictionary.
    static QString defaultDictionary();

    // `dictionary` is a folder with a compiled dictionary. The user's own MeCab
    // settings are not read. A missing or broken one is logged once, at first use.
    explicit MecabTokenizer(const QString &dictionary = defaultDictionary());
    ~MecabTokenizer() override;

    bool prepare() override;
    std::optional<std::vector<platform::JapaneseToken>>
    tokenize(const QString &text, const std::function<bool()> &goesOn) override;

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace nivora::linuxdesktop
