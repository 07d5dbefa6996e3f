#pragma once

#include "platform/secret.h"

#include <QString>
#include <QUrl>

#include <chrono>

namespace nivora {

// What one request needs to know about the backend, built afresh for each.
struct TranslationConfig
{
    QUrl apiBaseURL; // paths are appended to the base's own path
    QString modelName;
    std::chrono::milliseconds requestTimeout{120'000}; // without any sign of life
    platform::SecretBytes apiToken;                    // UTF-8; empty: no Authorization header
    bool cloud = true; // false: an OpenAI-compatible endpoint of the user's own
    QString translateTemplate;
};

} // namespace nivora
