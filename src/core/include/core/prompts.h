#pragma once

#include "core/translation_options.h"

#include <QHash>
#include <QString>

#include <optional>

namespace nivora {

// The prompt template of a user's own endpoint: text with {{variables}}.
class PromptTemplate
{
public:
    PromptTemplate() = delete;

    static QString defaultTranslate();

    // text, target, source, style, background and glossary.
    static QHash<QString, QString> translateVariables(const QString &text, Language target,
                                                      const TranslationOptions &options);

    // Replaces each {{key}} by its value, then removes whatever {{...}} is left,
    // also where it came in with a value. There is no escape.
    static QString render(const QString &promptTemplate, const QHash<QString, QString> &variables);
};

// Fixed prompts for endpoints that take no template.
class SimplePrompt
{
public:
    SimplePrompt() = delete;

    // Asks for several phrasings, one a line; 3 when no count is given.
    static QString variants(const QString &text, Language target, std::optional<int> count);
};

} // namespace nivora
