#pragma once

#include <QJsonObject>
#include <QString>

#include <chrono>
#include <optional>

#include <sys/types.h>

namespace nivora::linuxdesktop {

// Keeps other processes from writing at the same time. Released by the kernel
// when its holder dies, so that a crash leaves nothing behind to wait for.
class FileLock
{
public:
    // Waits at most `wait` for another holder.
    FileLock(const QString &path, std::chrono::milliseconds wait);
    ~FileLock();
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

    bool isHeld() const { return m_held; }

private:
    int m_descriptor = -1;
    bool m_held = false;
};

// One JSON object in one file, and whether somebody else has touched it. A
// symbolic link is followed: its target is what is read, replaced or renamed.
class JsonFile
{
public:
    enum class State {
        Missing,
        Object,
        Corrupt,  // something else than a JSON object
        Unusable, // a file that cannot be opened, or no file at all
    };

    explicit JsonFile(QString path)
        : m_path(std::move(path))
    {
    }

    // Fills `object` when the answer is State::Object.
    State read(QJsonObject &object);
    // Whether the file is another one than the last read() or write() left.
    bool hasChanged() const;
    // Replaces the file in one step. False, with the old file intact, when that
    // cannot be done.
    bool write(const QJsonObject &object);
    // Gives the file a name that nothing has yet. False if it could not.
    bool keepAside();
    // Makes the folder if need be. False if it could not.
    bool makeFolder() const;

    QString path() const { return m_path; }
    QString lockPath() const;

private:
    // What tells one version of a file from the next. Every replacement is a new
    // file, so its number differs even within one tick of the clock.
    struct Stamp
    {
        dev_t device;
        ino_t number;
        off_t size;
        qint64 modified; // in nanoseconds

        bool operator==(const Stamp &) const = default;
    };

    static std::optional<Stamp> stampOf(const QString &path);

    QString m_path;
    std::optional<Stamp> m_seen;
};

} // namespace nivora::linuxdesktop
