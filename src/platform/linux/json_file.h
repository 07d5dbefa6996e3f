#pragma once

#include "platform/write_queue.h"

#include <QJsonObject>
#include <QString>
#include <QThreadPool>

#include <chrono>
#include <functional>
#include <memory>
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
    enum class Writing {
        Done,
        Failed,  // the old file is intact
        Pending, // the disk is busy
    };
    // Replaces the file in one step, by a thread, for which this waits at most 50 ms; the
    // lock is held until it is through. Not to be called while a write is pending. Once it
    // is done, every process reads the new text and a crash costs nothing; until another
    // thread has got the disk to keep it, a power cut may.
    Writing write(const QJsonObject &object, FileLock lock);
    // What has become of the last write, after waiting for it so long. Done before the
    // first.
    Writing writing(std::chrono::milliseconds wait = {}) const;
    // Gives the file a name that nothing has yet. False if it could not.
    bool keepAside() const;
    // Makes the folder if need be. False if it could not.
    bool makeFolder() const;

    QString path() const { return m_path; }
    QString lockPath() const;

private:
    QString m_path;
    std::shared_ptr<QThreadPool> m_syncing; // one thread
    std::shared_ptr<bool> m_replaced;       // by the last write; null before the first
    platform::WriteQueue m_writing;
};

} // namespace nivora::linuxdesktop
