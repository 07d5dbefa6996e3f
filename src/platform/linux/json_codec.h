#pragma once

#include "platform/preferences.h"

#include <QJsonValue>

namespace nivora::linuxdesktop {

// How preferences look in JSON: booleans, numbers, strings and arrays of strings
// as themselves, a date as {"$date": "2026-01-02T03:04:05.678Z"}.

// Absent for JSON that is none of these.
std::optional<platform::PreferenceValue> decodePreference(const QJsonValue &json);

// Null, which decodes as absent, for what JSON cannot hold: infinities, NaN and
// invalid dates. Dates lose what is finer than a millisecond.
QJsonValue encodePreference(const platform::PreferenceValue &value);

} // namespace nivora::linuxdesktop
