#pragma once

#include "localcloud/answer.h"

#include <QString>

namespace nivora::localcloud {

// A small web page. `content` is HTML.
Answer page(int status, const QString &title, const QString &content);

// HTML: one button that posts nothing to this address.
QString button(const QString &label, const QString &action);

} // namespace nivora::localcloud
