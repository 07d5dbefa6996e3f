#pragma once

#include <QString>

namespace nivora {

// How the program writes kana. Both leave alone what is no kana.
//
//  katakana      hiragana    romaji
//  トウキョウ    とうきょう  toukyou   vowels as spelt, so that one can type them
//  コーヒー      こーひー    kōhī      the long mark, and only it, is a macron
//  シンアイ      しんあい    shin'ai   ん before a vowel or y
//  マッチャ      まっちゃ    matcha    っ doubles the consonant
//  アッ          あっ        a'        っ that no consonant follows

// The same in hiragana, letter by letter.
QString hiraganaFromKatakana(QStringView katakana);

// Hepburn romanisation of either kind of kana, or of both mixed.
QString romajiFromKana(QStringView kana);

} // namespace nivora
