#include "glossary_format.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

bool isPlain(char character)
{
    return uchar(character) >= 0x20 && character != '"' && character != '\\' && character != '/';
}

void appendEscape(QByteArray &json, char character)
{
    switch (character) {
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
            json.append('\\').append(character);
    }
}

// In whole runs: the file is written at each keystroke in a long glossary.
void appendText(QByteArray &json, QByteArrayView text)
{
    while (!text.isEmpty()) {
        const auto end = std::ranges::find_if_not(text, isPlain);
        json.append(text.first(end - text.begin()));
        if (end == text.end())
            return;
        appendEscape(json, *end);
        text = text.sliced(end - text.begin() + 1);
    }
}

void appendMember(QByteArray &json, QByteArrayView name, const QByteArray &value)
{
    json.append("    \"").append(name).append("\" : \"");
    appendText(json, value);
    json.append('"');
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
    constexpr qsizetype usualTerm = 150; // bytes
    json.reserve(qsizetype(terms.size()) * usualTerm);
    const char *separator = "";
    for (const GlossaryTerm &term : terms) {
        json += separator;
        json += "  {\n";
        appendMember(json, "id", term.id.toByteArray(QUuid::WithoutBraces).toUpper());
        json += ",\n";
        appendMember(json, "ja", term.ja.toUtf8());
        json += ",\n";
        appendMember(json, "zh", term.zh.toUtf8());
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
