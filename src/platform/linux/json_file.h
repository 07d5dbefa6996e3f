#pragma once

#include <QJsonObject>
#include <QString>
#include <QThreadPool>

#include <functional>
#include <optional>

#include <sys/types.h>

namespace nivora::linuxdesktop {

// Keeps other processes from writing at the same time. Released by the kernel
// when its holder dies, so that a crash leaves nothing behind to wait for.
class FileLock
{
public:
    // Waits for another holder, as long as it takes `goOn`, which is asked again
    // and again, to say no.
    FileLock(const QString &path, const std::function<bool()> &goOn);
    ~FileLock();
    FileLock(FileLock &&other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1))
        , m_held(std::exchange(other.m_held, false))
    {
    }
    FileLock &operator=(FileLock &&) = delete;

    // Another process has it. False, too, where there can be no lock at all.
    bool isTaken() const { return m_descriptor >= 0 && !m_held; }

private:
    int m_descriptor = -1;
    bool m_held = false;
};

// One JSON object in one file. A symbolic link is followed: its target is what is read, replaced or
// renamed.
class JsonFile
{
public:
    enum class State {
        Missing,
        Object,
        Corrupt,  // something else than a JSON object
        Unusable, // a file that cannot be opened, or no file at all
    };

    // What nearly always tells one version of a file from the next.
    struct Stamp
    {
        dev_t device;
        ino_t number;
        off_t size;
        qint64 modified; // in nanoseconds

        bool operator==(const Stamp &) const = default;
    };

    explicit JsonFile(QString path);

    // Fills `object` when the answer is State::Object.
    State read(QJsonObject &object) const;
    // What is there now; absent when nothing is.
    std::optional<Stamp> version() const;
    // Replaces the file in one step. False, with the old file intact, when that
    // cannot be done. The disk, which may be busy for seconds, is waited for by a
    // thread: from here on every process reads the new text, and a crash costs nothing,
    // but until then a power cut may.
    bool write(const QJsonObject &object);
    // Gives the file a name that nothing has yet. False if it could not.
    bool keepAside() const;
    // Makes the folder if need be. False if it could not.
    bool makeFolder() const;

    QString path() const { return m_path; }
    QString lockPath() const;

private:
    QString m_path;
    QThreadPool m_disk; // at work on the last write, at most one thread
};

} // namespace nivora::linuxdesktop
