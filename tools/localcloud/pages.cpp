#include "pages.h"

using namespace Qt::Literals::StringLiterals;

namespace nivora::localcloud {

Answer page(int status, const QString &title, const QString &content)
{
    const QString html = u"<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\">"
                         "<title>%1</title><style>body{font:16px sans-serif;margin:3em auto;"
                         "max-width:36em}td,th{padding:.3em 1em .3em 0;text-align:left}"
                         "</style></head>\n<body><h1>%1</h1>\n%2\n</body></html>\n"_s.arg(
                             title.toHtmlEscaped(), content);
    return Answer::plain(status, html.toUtf8(), "text/html; charset=utf-8")
        .withHeader("Cache-Control", "no-store");
}

QString button(const QString &label, const QString &action)
{
    return u"<form method=\"post\" action=\"%1\"><button type=\"submit\">%2</button></form>"_s.arg(
        action.toHtmlEscaped(), label.toHtmlEscaped());
}

} // namespace nivora::localcloud
