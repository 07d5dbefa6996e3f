#include "platform/selection.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;

namespace nivora::platform {

namespace {

// QJsonObject sorts its keys, so the members are put together one by one.
QByteArray member(QLatin1StringView key, const QJsonValue &value)
{
    const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return '"' + QByteArray(key.data(), key.size()) + "\":" + list.sliced(1, list.size() - 2);
}

} // namespace

QByteArray FocusDiag::toJson() const
{
    const QByteArrayList members{
        member("app"_L1, app),           member("role"_L1, role),
        member("subrole"_L1, subrole),   member("editable"_L1, editable),
        member("manualAX"_L1, manualAX), member("attrs"_L1, QJsonArray::fromStringList(attrs)),
        member("scene"_L1, scene),
    };
    return '{' + members.join(',') + '}';
}

std::optional<FocusDiag> FocusDiag::fromJson(const QByteArray &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const auto isText = [&](QStringView key) { return object[key].isString(); };
    if (!isText(u"app") || !isText(u"role") || !isText(u"subrole") || !isText(u"editable") ||
        !isText(u"scene") || !object[u"manualAX"].isBool() || !object[u"attrs"].isArray())
        return std::nullopt;
    FocusDiag diag;
    for (const auto &name : object[u"attrs"].toArray()) {
        if (!name.isString())
            return std::nullopt;
        diag.attrs << name.toString();
    }
    diag.app = object[u"app"].toString();
    diag.role = object[u"role"].toString();
    diag.subrole = object[u"subrole"].toString();
    diag.editable = object[u"editable"].toString();
    diag.manualAX = object[u"manualAX"].toBool();
    diag.scene = object[u"scene"].toString();
    return diag;
}

} // namespace nivora::platform
