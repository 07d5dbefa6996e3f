#include "platform_linux/json_preferences.h"

#include "json_codec.h"
#include "json_file.h"
#include "platform/log.h"

#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

using namespace std::chrono_literals;

namespace {

// How long another process may hold the lock without anything to show for it,
// and how long it all may take while others write one after the other.
constexpr auto stuckWait = 100ms;
constexpr auto busyWait = 500ms;
// After that the change is tried again and again without waiting, and in the end
// written all the same: the holder of the lock is taken for dead.
constexpr auto retryPause = 100ms;
constexpr auto deadAfter = 2000ms;
// From the first sign of a change in the folder: a writer makes several.
constexpr auto lookPause = 50ms;

} // namespace

JsonPreferences::JsonPreferences(const QString &path)
    : m_file(std::make_unique<JsonFile>(path))
{
    m_retry.setSingleShot(true);
    m_retry.setInterval(retryPause);
    m_retry.callOnTimeout([this] { save(); });
    m_look.setSingleShot(true);
    m_look.setInterval(lookPause);
    // A file that is no JSON object may be half written: there will be another sign.
    m_look.callOnTimeout([this] {
        if (m_usable)
            takeOver();
    });
    if (readFile())
        return;
    // Under the lock, and after another look: by now another process may have
    // put a sound file in its place.
    const auto lock = takeLock();
    if (!readFile())
        keepFileAside();
}

JsonPreferences::~JsonPreferences()
{
    m_waitForLock = true;
    if (m_usable && !m_unsaved.isEmpty())
        save(Patience::None);
}

QString JsonPreferences::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           "/app.nivora/defaults.json"_L1;
}

std::optional<platform::PreferenceValue> JsonPreferences::value(const QString &key) const
{
    return decodePreference(m_values.value(key));
}

void JsonPreferences::apply(std::span<const platform::PreferenceChange> changes)
{
    for (const auto &change : changes) {
        const QJsonValue json =
            change.value ? encodePreference(*change.value) : QJsonValue(QJsonValue::Undefined);
        m_values.insert(change.key, json);
        m_unsaved.insert(change.key, json);
    }
    if (m_usable)
        save();
}

// Another process may have written since: what it changed must not be lost, and
// what we have on top of that is exactly the unsaved changes. The file is read
// each time: two versions can have the same number, size and time.
void JsonPreferences::save(Patience patience)
{
    if (!finishWriting(patience)) {
        m_retry.start();
        return;
    }
    if (m_unsaved.isEmpty())
        return;
    if (!m_file->makeFolder()) {
        warnOnce("cannot be written");
        return;
    }
    watchFolder();
    auto lock = takeLock(patience);
    // To write without the lock is to lose what the other process writes.
    if (lock.isTaken() && patience == Patience::Some && !m_refused.hasExpired(deadAfter.count())) {
        m_retry.start();
        return;
    }
    if (!takeOver())
        keepFileAside();
    if (!m_usable)
        return;
    if (!lock.isTaken())
        m_written = m_unsaved; // otherwise the other process may yet overwrite them
    m_file->write(m_values, std::move(lock));
    if (!finishWriting(patience))
        m_retry.start();
}

bool JsonPreferences::finishWriting(Patience patience)
{
    switch (m_file->writing(patience == Patience::None ? deadAfter : 0ms)) {
    case JsonFile::Writing::Pending:
        return false;
    case JsonFile::Writing::Failed:
        warnOnce("cannot be written");
        break;
    case JsonFile::Writing::Done:
        for (const auto &[key, value] : m_written.asKeyValueRange()) {
            if (m_unsaved.value(key) == value)
                m_unsaved.remove(key);
        }
    }
    m_written.clear();
    return true;
}

void JsonPreferences::startWatching()
{
    m_watching = true;
    watchFolder();
}

// The folder rather than the file, which each writer replaces. Without a folder
// there is nothing to see yet.
void JsonPreferences::watchFolder()
{
    const QFileInfo file(m_file->path());
    if (!m_watching || m_watcher || !QFileInfo(file.path()).isDir())
        return;
    m_watcher = std::make_unique<QFileSystemWatcher>(QStringList{file.path()});
    const auto look = [this] {
        // Somebody may write in place, and a file that was replaced is another one.
        if (m_watcher->files().isEmpty() && QFileInfo::exists(m_file->path()))
            m_watcher->addPath(m_file->path());
        if (!m_look.isActive())
            m_look.start();
    };
    QObject::connect(m_watcher.get(), &QFileSystemWatcher::directoryChanged, &m_look, look);
    QObject::connect(m_watcher.get(), &QFileSystemWatcher::fileChanged, &m_look, look);
    look();
}

// What the file holds by now, with what has not reached it yet. False, with
// nothing changed, when it is no JSON object.
bool JsonPreferences::takeOver()
{
    const QJsonObject before = m_values;
    const bool isSound = readFile();
    for (const auto &[key, value] : m_unsaved.asKeyValueRange())
        m_values.insert(key, value);
    tellWhatDiffers(before);
    return isSound;
}

void JsonPreferences::tellWhatDiffers(const QJsonObject &before)
{
    QStringList keys;
    for (auto entry = m_values.begin(); entry != m_values.end(); ++entry) {
        if (before.value(entry.key()) != entry.value())
            keys << entry.key();
    }
    for (const QString &key : before.keys()) {
        if (!m_values.contains(key))
            keys << key;
    }
    tellOfChange(keys);
}

FileLock JsonPreferences::takeLock(Patience patience)
{
    // The last attempt of all may take longer: nobody waits for what ends.
    const bool isLast = patience == Patience::None;
    const auto stuck = isLast ? deadAfter : stuckWait;
    const auto busy = isLast ? deadAfter : busyWait;
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    auto lastSign = start;
    auto version = m_file->version();
    FileLock lock(m_file->lockPath(), [&] {
        const auto now = Clock::now();
        if (auto latest = m_file->version(); latest != version) {
            version = latest;
            lastSign = now;
        }
        return m_waitForLock && now - lastSign < stuck && now - start < busy;
    });
    // A process that is stopped while it holds the lock costs the wait once.
    m_waitForLock = !lock.isTaken();
    if (!lock.isTaken())
        m_refused.invalidate();
    else if (!m_refused.isValid())
        m_refused.start();
    return lock;
}

bool JsonPreferences::readFile()
{
    QJsonObject values;
    switch (m_file->read(values)) {
    case JsonFile::State::Object:
        m_values = values;
        return true;
    case JsonFile::State::Missing:
        // A file that has vanished says nothing: what we know stays.
        return true;
    case JsonFile::State::Unusable:
        m_usable = false;
        warnOnce("cannot be read, working in memory");
        return true;
    case JsonFile::State::Corrupt:
        break;
    }
    return false;
}

void JsonPreferences::keepFileAside()
{
    m_usable = m_file->keepAside();
    qCWarning(log::app, "Preferences: %s is no JSON object, %s", qUtf8Printable(m_file->path()),
              m_usable ? "kept aside as .corrupt-*" : "left alone; working in memory");
}

void JsonPreferences::warnOnce(const char *what)
{
    if (!std::exchange(m_warned, true))
        qCWarning(log::app, "Preferences: %s %s", qUtf8Printable(m_file->path()), what);
}

} // namespace nivora::linuxdesktop
