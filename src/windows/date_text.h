#pragma once

#include <QString>

class QDate;
class QLocale;

namespace nivora {

// The day as the language writes it with its year, without the day of the week.
QString mediumDate(const QDate &day, const QLocale &locale);

} // namespace nivora
