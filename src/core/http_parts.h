#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace nivora {

// The base with the path put behind its own.
QUrl appendPath(const QUrl &base, QStringView path);

// Whether the value can be a header's: a control character would end the line
// and start another.
bool isHeaderValue(const QByteArray &value);

} // namespace nivora
