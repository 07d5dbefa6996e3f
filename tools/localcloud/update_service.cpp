#include "localcloud/update_service.h"

#include "localcloud/router.h"

#include <QList>
#include <QXmlStreamWriter>

#include <array>

namespace nivora::localcloud {

using namespace Qt::Literals::StringLiterals;

namespace {

struct Notes
{
    const char *language;
    QStringView title; // %1: the version
    std::array<QStringView, 3> changes;
    QStringView more;
};

constexpr std::array<Notes, 4> allNotes{{
    {"zh-Hans",
     u"Nivora %1 更新说明",
     {u"面板打开得更快。", u"术语表支持日语的变形。", u"修复了放大的屏幕上面板偏移的问题。"},
     u"完整说明"},
    {"zh-Hant",
     u"Nivora %1 更新說明",
     {u"面板開啟得更快。", u"詞彙表支援日文的變化形。", u"修正了放大的螢幕上面板偏移的問題。"},
     u"完整說明"},
    {"ja",
     u"Nivora %1 更新内容",
     {u"パネルがより速く開くようになりました。", u"用語集が日本語の活用形に対応しました。",
      u"拡大した画面でパネルの位置がずれる問題を修正しました。"},
     u"詳しい説明"},
    {"en",
     u"What is new in Nivora %1",
     {u"The panel opens faster.", u"The glossary knows inflected Japanese words.",
      u"Fixed: the panel stood in the wrong place on enlarged screens."},
     u"All the details"},
}};

// Bars in the product's blue.
const QByteArray picture = QByteArray::fromBase64(
    "iVBORw0KGgoAAAANSUhEUgAAAAgAAAACCAIAAADq9gq6AAAAFElEQVR42mPQT7u/99wXTJIBlwQAAnsfmSXKFCMA"
    "AAAASUVORK5CYII=");

QByteArray pageOf(const Notes &notes, const QString &version)
{
    QString changes;
    for (const QStringView change : notes.changes)
        changes += u"<li>%1</li>"_s.arg(change);
    return u"<!DOCTYPE html><html lang=\"%1\"><head><meta charset=\"utf-8\"><title>%2</title>"
           "<style>body{background:#fff;color:#222}</style></head><body><h1>%2</h1><ul>%3</ul>"
           "<p><img src=\"/dist/notes/picture.png\" width=\"160\" height=\"40\" alt=\"\"></p>"
           "<p><a href=\"/releases/%4\">%5</a></p></body></html>"_s
               .arg(QString::fromLatin1(notes.language),
                    notes.title.toString().arg(version).toHtmlEscaped(), changes,
                    version.toHtmlEscaped(), notes.more)
               .toUtf8();
}

} // namespace

UpdateService::UpdateService(const QString &newest)
    : m_releases{{newest, u"Mon, 02 Nov 2026 09:00:00 +0000"_s},
                 {u"0.1.0"_s, u"Thu, 01 Oct 2026 09:00:00 +0000"_s},
                 {u"0.0.9"_s, u"Tue, 15 Sep 2026 09:00:00 +0000"_s}}
{
}

void UpdateService::addRoutes(Router &router)
{
    router.add("GET", "/dist/appcast.xml", [this](const Request &each) { return feed(each); });
    router.add("GET", "/dist/notes/picture.png",
               [](const Request &) { return Answer::plain(200, picture, "image/png"); });
    for (const Release &release : m_releases) {
        for (const Notes &notes : allNotes) {
            const auto path = "/dist/notes/" + release.version.toUtf8() + '/' + notes.language;
            router.add("GET", path + ".html",
                       [page = pageOf(notes, release.version)](const Request &) {
                           return Answer::plain(200, page, "text/html; charset=utf-8");
                       });
        }
    }
}

Answer UpdateService::feed(const Request &request) const
{
    const QString here = u"http://"_s + QString::fromLatin1(request.header("Host"));
    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(u"rss"_s);
    writer.writeAttribute(u"version"_s, u"2.0"_s);
    writer.writeAttribute(u"xmlns:sparkle"_s,
                          u"http://www.andymatuschak.org/xml-namespaces/sparkle"_s);
    writer.writeStartElement(u"channel"_s);
    writer.writeTextElement(u"title"_s, u"Nivora"_s);
    for (const Release &release : m_releases) {
        writer.writeStartElement(u"item"_s);
        writer.writeTextElement(u"title"_s, u"Nivora "_s + release.version);
        writer.writeTextElement(u"pubDate"_s, release.date);
        writer.writeTextElement(u"link"_s, here + u"/releases/"_s + release.version);
        writer.writeTextElement(u"sparkle:shortVersionString"_s, release.version);
        writer.writeTextElement(u"sparkle:minimumSystemVersion"_s, u"4.18"_s);
        for (const Notes &notes : allNotes) {
            const QString language = QString::fromLatin1(notes.language);
            writer.writeStartElement(u"sparkle:releaseNotesLink"_s);
            writer.writeAttribute(u"xml:lang"_s, language);
            writer.writeCharacters(here +
                                   u"/dist/notes/%1/%2.html"_s.arg(release.version, language));
            writer.writeEndElement();
        }
        writer.writeEmptyElement(u"enclosure"_s);
        writer.writeAttribute(u"url"_s, here + u"/dist/nivora_%1_amd64.deb"_s.arg(release.version));
        writer.writeAttribute(u"sparkle:os"_s, u"linux"_s);
        writer.writeAttribute(u"type"_s, u"application/vnd.debian.binary-package"_s);
        writer.writeEndElement();
    }
    writer.writeEndDocument();
    return Answer::plain(200, xml, "application/rss+xml");
}

} // namespace nivora::localcloud
