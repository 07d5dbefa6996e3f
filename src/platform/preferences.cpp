#include "platform/preferences.h"

#include <cmath>

namespace nivora::platform {

class PreferenceNotifier : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    void changed(const QStringList &keys);
};

namespace {

class PreferenceWatch final : public Operation
{
public:
    PreferenceWatch(const PreferenceNotifier &notifier,
                    std::function<void(const QStringList &)> changed)
    {
        connect(
            &notifier, &PreferenceNotifier::changed, this,
            [this, changed = std::move(changed)](const QStringList &keys) {
                deliver([&] { changed(keys); });
            },
            Qt::QueuedConnection);
    }

private:
    void stop() override {}
};

template<typename Value>
std::optional<Value> typed(const std::optional<PreferenceValue> &stored)
{
    if (stored) {
        if (const auto *value = std::get_if<Value>(&*stored))
            return *value;
    }
    return std::nullopt;
}

} // namespace

Task Preferences::watch(std::function<void(const QStringList &)> changed)
{
    if (!m_notifier) {
        m_notifier = std::make_shared<PreferenceNotifier>();
        startWatching();
    }
    return Task(new PreferenceWatch(*m_notifier, std::move(changed)));
}

void Preferences::tellOfChange(const QStringList &keys)
{
    if (m_notifier && !keys.isEmpty())
        Q_EMIT m_notifier->changed(keys);
}

std::optional<bool> Preferences::boolean(const QString &key) const
{
    return typed<bool>(value(key));
}

std::optional<qint64> Preferences::integer(const QString &key) const
{
    const auto stored = value(key);
    if (const auto whole = typed<qint64>(stored))
        return whole;
    // Beyond 2^63 the conversion would be undefined.
    if (const auto real = typed<double>(stored); real && std::abs(*real) < 9.2e18)
        return static_cast<qint64>(*real);
    return std::nullopt;
}

std::optional<double> Preferences::number(const QString &key) const
{
    const auto stored = value(key);
    if (const auto whole = typed<qint64>(stored))
        return static_cast<double>(*whole);
    return typed<double>(stored);
}

std::optional<QString> Preferences::string(const QString &key) const
{
    return typed<QString>(value(key));
}

std::optional<QStringList> Preferences::strings(const QString &key) const
{
    return typed<QStringList>(value(key));
}

std::optional<QDateTime> Preferences::date(const QString &key) const
{
    return typed<QDateTime>(value(key));
}

void Preferences::set(const QString &key, PreferenceValue value)
{
    const PreferenceChange change{key, std::move(value)};
    apply({&change, 1});
}

void Preferences::remove(const QString &key)
{
    const PreferenceChange change{key, std::nullopt};
    apply({&change, 1});
}

} // namespace nivora::platform

#include "preferences.moc"
