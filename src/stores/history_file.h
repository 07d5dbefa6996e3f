#pragma once

#include <QString>

#include <optional>

#include <sys/types.h>

namespace nivora {

// The database as a file: its place, who may read it, and what becomes of one
// that is no database.
class HistoryFile
{
public:
    // Tells one file from another that has taken its name.
    struct Identity
    {
        dev_t device;
        ino_t number;

        bool operator==(const Identity &) const = default;
    };

    static QString defaultPath();

    explicit HistoryFile(QString path)
        : m_path(std::move(path))
    {
    }

    // Makes folder and file if need be and keeps both, and what SQLite puts
    // beside them, from everybody else. False when the folder cannot be had or
    // is not this user's; any other failure shows when the file is opened.
    bool makePrivate();

    // The file that makePrivate() left, absent when it left none.
    const std::optional<Identity> &seen() const { return m_seen; }
    // That file is no longer there, whether or not another has its name.
    bool isGone() const;

    // Gives the file and its companions names that nothing has yet, unless
    // another process has put another file in the place of the one seen.
    // The new name; empty when there was nothing to do; absent when it failed.
    std::optional<QString> keepAside() const;

private:
    std::optional<Identity> identity() const;
    void create() const;

    QString m_path;
    std::optional<Identity> m_seen;
};

} // namespace nivora
