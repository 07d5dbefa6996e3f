#pragma once

#include <QHashFunctions>
#include <QString>
#include <QUrl>
#include <QUuid>

#include <optional>

namespace nivora {

// One release as the version history lists it.
struct AppcastEntry
{
    QUuid id; // fresh on each parse, not from the feed
    QString version;
    QString date;                 // as the feed writes it; may be empty
    std::optional<QUrl> notesURL; // the notes in the language that fits the user best

    bool operator==(const AppcastEntry &) const = default;
};

inline size_t qHash(const AppcastEntry &entry, size_t seed = 0)
{
    return qHash(entry.id, seed);
}

} // namespace nivora
