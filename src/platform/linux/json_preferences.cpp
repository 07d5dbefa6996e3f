#include "platform_linux/json_preferences.h"

#include "json_codec.h"
#include "json_file.h"
#include "platform/log.h"

#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

using namespace std::chrono_literals;

namespace {

constexpr auto lockWait = 100ms;

} // namespace

JsonPreferences::JsonPreferences(const QString &path)
    : m_file(std::make_unique<JsonFile>(path))
{
    if (readFile())
        return;
    // Under the lock, and after another look: by now another process may have
    // put a sound file in its place.
    const FileLock lock(m_file->lockPath(), lockWait);
    if (!readFile())
        keepFileAside();
}

JsonPreferences::~JsonPreferences() = default;

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
// what we have on top of that is exactly the unsaved changes.
void JsonPreferences::save()
{
    if (!m_file->makeFolder()) {
        warnOnce("cannot be written");
        return;
    }
    // A process that is stopped while it holds the lock costs the wait once.
    const FileLock lock(m_file->lockPath(), m_waitForLock ? lockWait : 0ms);
    m_waitForLock = lock.isHeld();

    if (m_file->hasChanged()) {
        if (!readFile())
            keepFileAside();
        for (const auto &[key, value] : m_unsaved.asKeyValueRange())
            m_values.insert(key, value);
    }
    if (!m_usable)
        return;
    if (m_file->write(m_values))
        m_unsaved.clear();
    else
        warnOnce("cannot be written");
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
