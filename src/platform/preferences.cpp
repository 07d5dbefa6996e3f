#include "platform/preferences.h"

#include <cmath>

namespace nivora::platform {

namespace {

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
