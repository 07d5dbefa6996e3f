#pragma once

#include "platform/task.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <variant>

namespace nivora::platform {

// The value of one preference. Integers and real numbers are told apart, dates
// are told apart from strings.
using PreferenceValue = std::variant<bool, qint64, double, QString, QStringList, QDateTime>;

struct PreferenceChange
{
    QString key;
    // Absent: remove the key.
    std::optional<PreferenceValue> value;
};

class PreferenceNotifier;

// The user's preferences by key. Main thread only. A value of another type than
// the one asked for counts as absent; nothing here fails or throws.
class Preferences
{
public:
    virtual ~Preferences() = default;

    virtual std::optional<PreferenceValue> value(const QString &key) const = 0;

    // Makes all changes visible at once and persists them together: another
    // process, or a crash, sees all of them or none.
    virtual void apply(std::span<const PreferenceChange> changes) = 0;

    // Tells the keys of values that changed other than by apply() here: another
    // process wrote them, or the user's editor. For as long as the task lives.
    Task watch(std::function<void(const QStringList &keys)> changed);

    std::optional<bool> boolean(const QString &key) const;
    // A stored number that is not whole is cut towards zero.
    std::optional<qint64> integer(const QString &key) const;
    std::optional<double> number(const QString &key) const;
    std::optional<QString> string(const QString &key) const;
    std::optional<QStringList> strings(const QString &key) const;
    std::optional<QDateTime> date(const QString &key) const;

    void set(const QString &key, PreferenceValue value);
    void remove(const QString &key);

protected:
    // Called when there is somebody to be told.
    virtual void startWatching() {}
    // Reaches those who watch from the event loop.
    void tellOfChange(const QStringList &keys);

private:
    std::shared_ptr<PreferenceNotifier> m_notifier; // null while nobody has watched
};

} // namespace nivora::platform
