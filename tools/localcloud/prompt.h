#pragma once

#include "localcloud/phrase_book.h"

#include <QList>
#include <QString>

#include <optional>
#include <utility>

namespace nivora::localcloud {

// What one request wants, whichever form it came in.
struct Wish
{
    QString text;
    Tongue target = Tongue::Chinese;
    // How many ways to say it; absent for a plain translation.
    std::optional<int> variants;
    QString style;
    QString background;
    QList<std::pair<QString, QString>> glossary;
};

// A prompt in Chinese for a language model.
QString writePrompt(const Wish &wish);

// The wish behind a prompt of the kind "…翻译为日语…", a blank line, the text.
// Absent when it does not say into which language.
std::optional<Wish> readPrompt(const QString &prompt);

} // namespace nivora::localcloud
