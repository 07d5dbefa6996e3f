#include "date_text.h"

#include <QDate>
#include <QLocale>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

QString mediumDate(const QDate &day, const QLocale &locale)
{
    // Qt has a long form and one of mere numbers, whose order nobody can tell.
    static const QRegularExpression weekday(u"^dddd,?\\s*|,?\\s*dddd$"_s);
    QString format = locale.dateFormat(QLocale::LongFormat);
    format.remove(weekday);
    return locale.toString(day, format.replace(u"MMMM"_s, u"MMM"_s));
}

} // namespace nivora
