#include "glossary_format.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

void appendEscaped(QByteArray &json, char character)
{
    switch (character) {
    case '"':
    case '\\':
    case '/':
        json += '\\';
        json += character;
        break;
    case '\b':
        json += "\\b";
        break;
    case '\f':
        json += "\\f";
        break;
    case '\n':
        json += "\\n";
        break;
    case '\r':
        json += "\\r";
        break;
    case '\t':
        json += "\\t";
        break;
    default:
        if (uchar(character) < 0x20)
            json += "\\u" + QByteArray::number(uchar(character), 16).rightJustified(4, '0');
        else
            json += character;
    }
}

void appendMember(QByteArray &json, const char *name, const QString &value)
{
    json += "    \"";
    json += name;
    json += "\" : \"";
    for (const char character : value.toUtf8())
        appendEscaped(json, character);
    json += '"';
}

// QUuid reads a prefix and gives the null id for whatever it cannot read.
std::optional<QUuid> uuidFrom(const QString &text)
{
    const QUuid id(text);
    if (id.toString(QUuid::WithoutBraces).compare(text, Qt::CaseInsensitive) != 0)
        return std::nullopt;
    return id;
}

} // namespace

QByteArray encodeGlossary(const std::vector<GlossaryTerm> &terms)
{
    QByteArray json = "[\n";
    const char *separator = "";
    for (const GlossaryTerm &term : terms) {
        json += separator;
        json += "  {\n";
        appendMember(json, "id", term.id.toString(QUuid::WithoutBraces).toUpper());
        json += ",\n";
        appendMember(json, "ja", term.ja);
        json += ",\n";
        appendMember(json, "zh", term.zh);
        json += "\n  }";
        separator = ",\n";
    }
    json += "\n]";
    return json;
}

std::optional<std::vector<GlossaryTerm>> decodeGlossary(const QByteArray &json)
{
    const auto document = QJsonDocument::fromJson(json);
    if (!document.isArray())
        return std::nullopt;
    std::vector<GlossaryTerm> terms;
    for (const QJsonValue &element : document.array()) {
        const QJsonValue ja = element[u"ja"_s];
        const QJsonValue zh = element[u"zh"_s];
        const auto id = uuidFrom(element[u"id"_s].toString());
        if (!id || !ja.isString() || !zh.isString())
            return std::nullopt;
        terms.push_back({*id, zh.toString(), ja.toString()});
    }
    return terms;
}

} // namespace nivora
