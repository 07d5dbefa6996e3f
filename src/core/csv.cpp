#include "core/csv.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// The fields of one text, from its beginning to its end.
class CsvParser
{
public:
    CsvParser(QStringView text, QChar separator)
        : m_text(text)
        , m_separator(separator)
    {
    }

    std::vector<QStringList> records()
    {
        std::vector<QStringList> records;
        while (m_position < m_text.size()) {
            if (skipLineEnd())
                continue;
            records.push_back(record());
        }
        return records;
    }

private:
    bool atLineEnd() const
    {
        return m_position == m_text.size() || m_text[m_position] == u'\n' ||
               m_text[m_position] == u'\r';
    }

    bool skipLineEnd()
    {
        if (m_position == m_text.size() || !atLineEnd())
            return false;
        const bool isReturn = m_text[m_position++] == u'\r';
        if (isReturn && m_position < m_text.size() && m_text[m_position] == u'\n')
            ++m_position;
        return true;
    }

    QStringList record()
    {
        QStringList fields{field()};
        while (m_position < m_text.size() && m_text[m_position] == m_separator) {
            ++m_position;
            fields << field();
        }
        skipLineEnd();
        return fields;
    }

    QString field()
    {
        QString value;
        if (m_position < m_text.size() && m_text[m_position] == u'"')
            value = quoted();
        const qsizetype begin = m_position;
        while (!atLineEnd() && m_text[m_position] != m_separator)
            ++m_position;
        value += m_text.sliced(begin, m_position - begin);
        return value;
    }

    QString quoted()
    {
        QString value;
        ++m_position;
        while (m_position < m_text.size()) {
            const QChar character = m_text[m_position++];
            if (character == u'"') {
                if (m_position == m_text.size() || m_text[m_position] != u'"')
                    break;
                ++m_position;
            }
            value += character;
        }
        return value;
    }

    QStringView m_text;
    QChar m_separator;
    qsizetype m_position = 0;
};

bool needsQuotes(const QString &field)
{
    return std::ranges::any_of(field, [](QChar each) { return u",\"\r\n"_s.contains(each); });
}

} // namespace

QString csvRecord(const QStringList &fields)
{
    // Without quotes a lone empty field would be a line without any character.
    if (fields == QStringList{QString()})
        return u"\"\"\r\n"_s;
    QStringList written;
    for (const QString &field : fields)
        written << (needsQuotes(field) ? u'"' + QString(field).replace(u'"', u"\"\""_s) + u'"'
                                       : field);
    return written.join(u',') + u"\r\n"_s;
}

std::vector<QStringList> parseCsv(const QString &text, QChar separator)
{
    return CsvParser(text, separator).records();
}

} // namespace nivora
