#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace nivora {

// Comma-separated values as RFC 4180 has them. Fields hold any text, line ends
// included.

// One record with its line end.
QString csvRecord(const QStringList &fields);

// The records of a text. Read with good will: any line end, fields behind a
// separator of another kind, quotes in the middle of a bare field, and a last
// quote that is missing. Lines without any character are no records.
std::vector<QStringList> parseCsv(const QString &text, QChar separator = u',');

} // namespace nivora
