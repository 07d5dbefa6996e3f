#pragma once

#include "platform/preferences.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QTimer>

#include <memory>

class QFileSystemWatcher;

namespace nivora::linuxdesktop {

class FileLock;
class JsonFile;

// Preferences in one JSON object in one file, which is read once, here, and
// replaced as a whole by every apply(). Members that this program does not know
// are kept. The file is readable by the user alone.
//
// An apply() waits at most 50 ms for the disk; a write that takes longer goes on by
// itself, and what changes meanwhile is written after it.
//
// Several processes may use one file: each change is merged into what the file
// holds by then. An apply() waits at most 100 ms for another process that is in
// the middle of writing, and at most 500 ms while others write one after the
// other. If that was not enough the change is written soon afterwards, without
// further waiting, as soon as the other process is done; one that is not done
// after two seconds is passed over.
//
// A file that is no JSON object is renamed to <file>.corrupt-<UTC time>. Where
// the file cannot be read or written the preferences live in memory; a failed
// write is made up for by the next one that succeeds. Each of these costs one
// log line.
class JsonPreferences final : public platform::Preferences
{
public:
    explicit JsonPreferences(const QString &path);
    ~JsonPreferences() override;

    // Where the user's preferences lie: in the configuration folder that the
    // environment names.
    static QString defaultPath();

    std::optional<platform::PreferenceValue> value(const QString &key) const override;
    void apply(std::span<const platform::PreferenceChange> changes) override;

private:
    void startWatching() override;
    void watchFolder();
    bool takeOver();
    void tellWhatDiffers(const QJsonObject &before);
    // False when the file is no JSON object.
    bool readFile();
    void keepFileAside();
    enum class Patience { None, Some };
    void save(Patience patience = Patience::Some);
    // False while a write is pending.
    bool finishWriting(Patience patience);
    FileLock takeLock(Patience patience = Patience::Some);
    void warnOnce(const char *what);

    std::unique_ptr<JsonFile> m_file;
    QJsonObject m_values;
    // What has not reached the file yet; an undefined value removes the key.
    QHash<QString, QJsonValue> m_unsaved;
    QHash<QString, QJsonValue> m_written;          // of these, what a pending write holds
    bool m_watching = false;                       // somebody wants to be told
    std::unique_ptr<QFileSystemWatcher> m_watcher; // null while there is no folder
    QTimer m_look;
    bool m_usable = true;
    bool m_waitForLock = true;
    QTimer m_retry;
    QElapsedTimer m_refused; // since when the lock has not been free
    bool m_warned = false;
};

} // namespace nivora::linuxdesktop
