#pragma once

#include <QStringView>

namespace nivora::platform {

// The number of user-perceived characters (extended grapheme clusters). Linear;
// meant for log lines, so callers ask only when the line is written.
qsizetype characterCount(QStringView text);

} // namespace nivora::platform
