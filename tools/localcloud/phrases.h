#pragma once

#include <QStringView>

#include <span>

namespace nivora::localcloud {

// One sentence in every language of the phrase book.
struct Phrase
{
    QStringView chinese;
    QStringView traditionalChinese;
    QStringView cantonese;
    QStringView japanese;
    QStringView romaji;
    QStringView korean;
    QStringView english;
    QStringView familiarJapanese;
    QStringView formalJapanese;
};

std::span<const Phrase> phrases();

} // namespace nivora::localcloud
