#include "json_codec.h"

#include <QTimeZone>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

using platform::PreferenceValue;

namespace {

constexpr auto dateMember = "$date"_L1;

struct Encoder
{
    QJsonValue operator()(bool value) const { return value; }
    QJsonValue operator()(qint64 value) const { return value; }
    QJsonValue operator()(double value) const
    {
        return std::isfinite(value) ? QJsonValue(value) : QJsonValue();
    }
    QJsonValue operator()(const QString &value) const { return value; }
    QJsonValue operator()(const QStringList &value) const
    {
        return QJsonArray::fromStringList(value);
    }
    QJsonValue operator()(const QDateTime &value) const
    {
        if (!value.isValid())
            return {};
        return QJsonObject{{dateMember, value.toUTC().toString(Qt::ISODateWithMs)}};
    }
};

std::optional<PreferenceValue> decodeArray(const QJsonArray &array)
{
    QStringList strings;
    for (const auto &element : array) {
        if (!element.isString())
            return std::nullopt;
        strings.append(element.toString());
    }
    return strings;
}

std::optional<PreferenceValue> decodeObject(const QJsonObject &object)
{
    if (object.size() != 1)
        return std::nullopt;
    const auto date = QDateTime::fromString(object.value(dateMember).toString(), Qt::ISODateWithMs);
    if (!date.isValid())
        return std::nullopt;
    return date.toUTC();
}

} // namespace

std::optional<PreferenceValue> decodePreference(const QJsonValue &json)
{
    switch (json.type()) {
    case QJsonValue::Bool:
        return json.toBool();
    case QJsonValue::Double: {
        // A whole number keeps its 64 bits, which a double could not hold.
        const QVariant number = json.toVariant();
        if (number.typeId() == QMetaType::LongLong)
            return number.toLongLong();
        return number.toDouble();
    }
    case QJsonValue::String:
        return json.toString();
    case QJsonValue::Array:
        return decodeArray(json.toArray());
    case QJsonValue::Object:
        return decodeObject(json.toObject());
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        break;
    }
    return std::nullopt;
}

QJsonValue encodePreference(const PreferenceValue &value)
{
    return std::visit(Encoder{}, value);
}

} // namespace nivora::linuxdesktop
