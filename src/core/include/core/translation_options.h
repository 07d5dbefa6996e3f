#pragma once

#include "core/language.h"

#include <QString>
#include <QUuid>

#include <utility>
#include <vector>

namespace nivora {

// One fixed pair of a Chinese and a Japanese term.
struct GlossaryTerm
{
    QUuid id;
    QString zh;
    QString ja;

    bool operator==(const GlossaryTerm &) const = default;
};

// (term as in the source, term to use in the translation)
using TermPair = std::pair<QString, QString>;

// What one translation asks for beyond text and target. An empty string counts
// as absent.
struct TranslationOptions
{
    std::vector<GlossaryTerm> glossary; // the whole of it; requests carry matches only
    QString style;                      // free text on the register
    QString background;                 // the text that is replied to, or other context

    // The pairs that apply to this source, in the glossary's order, repeats
    // included. Only Chinese and Japanese targets have any.
    std::vector<TermPair> matchedTerms(const QString &source, Language target) const;
};

// "甲→乙，丙→丁", empty for no pairs.
QString renderTerms(const std::vector<TermPair> &terms);

} // namespace nivora
