#include "updates/notes_html.h"

#include <QSet>
#include <QStringList>
#include <QUrl>

#include <libxml/HTMLparser.h>
#include <libxml/parserInternals.h>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr int maximumDepth = 48;
constexpr int maximumElements = 4000;
constexpr qsizetype maximumText = 100'000;
constexpr int maximumWord = 80;          // that is kept in one piece
constexpr int maximumPictureWidth = 320; // that a page may ask for, logical pixels

const QSet<QString> shown{
    u"h1"_s,  u"h2"_s,    u"h3"_s,  u"h4"_s,   u"h5"_s,    u"h6"_s,    u"p"_s,    u"div"_s,
    u"br"_s,  u"hr"_s,    u"ul"_s,  u"ol"_s,   u"li"_s,    u"dl"_s,    u"dt"_s,   u"dd"_s,
    u"pre"_s, u"code"_s,  u"kbd"_s, u"samp"_s, u"b"_s,     u"em"_s,    u"i"_s,    u"strong"_s,
    u"u"_s,   u"s"_s,     u"del"_s, u"sub"_s,  u"sup"_s,   u"a"_s,     u"img"_s,  u"blockquote"_s,
    u"tr"_s,  u"small"_s, u"td"_s,  u"th"_s,   u"thead"_s, u"tbody"_s, u"table"_s};
const QSet<QString> empty{u"br"_s, u"hr"_s, u"img"_s};
const QSet<QString> tableParts{u"table"_s, u"thead"_s, u"tbody"_s, u"tr"_s, u"td"_s, u"th"_s};
// What stands in these is not for readers.
const QSet<QString> hidden{u"head"_s,     u"script"_s,   u"style"_s,  u"noscript"_s,
                           u"template"_s, u"textarea"_s, u"select"_s, u"iframe"_s,
                           u"object"_s,   u"svg"_s,      u"math"_s,   u"title"_s};

class NotesWriter
{
public:
    Notes read(const QByteArray &page, const char *encoding)
    {
        htmlSAXHandler events{};
        events.startElement = [](void *self, const xmlChar *name, const xmlChar **attributes) {
            static_cast<NotesWriter *>(self)->start(textOf(name), attributes);
        };
        events.endElement = [](void *self, const xmlChar *name) {
            static_cast<NotesWriter *>(self)->end(textOf(name));
        };
        events.characters = [](void *self, const xmlChar *text, int length) {
            static_cast<NotesWriter *>(self)->text(text, length);
        };
        events.ignorableWhitespace = events.characters;
        const std::unique_ptr<htmlParserCtxt, decltype(&htmlFreeParserCtxt)> parser(
            htmlCreatePushParserCtxt(&events, this, nullptr, 0, nullptr, XML_CHAR_ENCODING_NONE),
            &htmlFreeParserCtxt);
        if (!parser)
            return {};
        m_parser = parser.get();
        htmlCtxtUseOptions(m_parser, HTML_PARSE_NONET | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING);
        if (auto *handler = xmlFindCharEncodingHandler(encoding))
            xmlSwitchToEncoding(m_parser, handler);
        constexpr qsizetype pieceSize = 4096;
        for (qsizetype at = 0; at < page.size() && !m_stopped; at += pieceSize) {
            const auto length = std::min(pieceSize, page.size() - at);
            htmlParseChunk(m_parser, page.constData() + at, int(length), 0);
        }
        if (!m_stopped)
            htmlParseChunk(m_parser, nullptr, 0, 1);
        while (!m_open.isEmpty())
            close();
        return {m_html, m_language};
    }

private:
    static QString textOf(const xmlChar *text)
    {
        return QString::fromUtf8(reinterpret_cast<const char *>(text));
    }

    void stop()
    {
        m_stopped = true;
        xmlStopParser(m_parser);
    }

    void start(const QString &name, const xmlChar **attributes)
    {
        if (m_stopped)
            return;
        if (++m_depth > maximumDepth || ++m_elements > maximumElements)
            return stop();
        if (name == u"html" || name == u"body")
            takeLanguage(attributes);
        if (m_hiddenDepth == 0 && hidden.contains(name))
            m_hiddenDepth = m_depth;
        if (m_hiddenDepth > 0 || !shown.contains(name))
            return;
        const bool isNested = m_inTable && name == u"table";
        m_nestedTables += isNested;
        if (m_nestedTables > 0 && tableParts.contains(name)) {
            m_html += u"<br>"_s;
            return;
        }
        m_html += u'<' + name;
        if (name == u"a")
            writeLink(attributes);
        else if (name == u"img")
            writePicture(attributes);
        m_html += u'>';
        if (empty.contains(name))
            return;
        m_open.append(name);
        m_inTable = m_inTable || name == u"table";
    }

    void end(const QString &name)
    {
        if (m_stopped)
            return;
        if (m_hiddenDepth == m_depth)
            m_hiddenDepth = 0;
        --m_depth;
        if (m_nestedTables > 0 && tableParts.contains(name)) {
            m_nestedTables -= name == u"table";
            return;
        }
        if (!m_open.isEmpty() && m_open.last() == name)
            close();
    }

    void close()
    {
        const QString name = m_open.takeLast();
        m_html += u"</"_s + name + u'>';
        if (name == u"table")
            m_inTable = false;
    }

    void text(const xmlChar *text, int length)
    {
        if (m_stopped || m_hiddenDepth > 0)
            return;
        const auto piece = QString::fromUtf8(reinterpret_cast<const char *>(text), length);
        m_html += breakable(piece.left(maximumText - m_text)).toHtmlEscaped();
        m_text += piece.size();
        if (m_text >= maximumText)
            stop();
    }

    // With places to break a line in words without end: a text view takes a time for
    // them that grows with the square of their length.
    QString breakable(const QString &text)
    {
        QString broken;
        for (const QChar each : text) {
            // Lines break between ideographs by themselves.
            const bool isIdeograph = each.unicode() >= 0x2E80 && each.isLetter();
            m_word = each.isSpace() || isIdeograph ? 0 : m_word + 1;
            if (m_word > maximumWord && !each.isLowSurrogate() && !each.isMark()) {
                broken += QChar(0x200B);
                m_word = 1;
            }
            broken += each;
        }
        return broken;
    }

    static QString attribute(const xmlChar **attributes, QStringView name)
    {
        for (; attributes && *attributes; attributes += 2) {
            if (textOf(attributes[0]) == name)
                return attributes[1] ? textOf(attributes[1]) : QString();
        }
        return {};
    }

    void write(QStringView name, const QString &value)
    {
        m_html += u" %1=\"%2\""_s.arg(name, value.toHtmlEscaped());
    }

    void takeLanguage(const xmlChar **attributes)
    {
        if (const QString language = attribute(attributes, u"lang"); !language.isEmpty())
            m_language = language.left(35); // the longest that BCP 47 asks to be ready for
    }

    void writeLink(const xmlChar **attributes)
    {
        const QString address = attribute(attributes, u"href").trimmed();
        const QString scheme = QUrl(address).scheme();
        if (scheme.isEmpty() || scheme == u"http" || scheme == u"https")
            write(u"href", address);
    }

    void writePicture(const xmlChar **attributes)
    {
        write(u"src", attribute(attributes, u"src").trimmed());
        write(u"alt", attribute(attributes, u"alt"));
        const int width = attribute(attributes, u"width").toInt();
        const int height = attribute(attributes, u"height").toInt();
        if (width <= 0 || width > maximumPictureWidth || height < 0 || height > 10 * width)
            return;
        write(u"width", QString::number(width));
        if (height > 0)
            write(u"height", QString::number(height));
    }

    htmlParserCtxtPtr m_parser = nullptr;
    QString m_html;
    QString m_language;
    QStringList m_open; // elements written and not closed
    qsizetype m_text = 0;
    int m_word = 0; // characters since the last blank
    int m_depth = 0;
    int m_elements = 0;
    int m_hiddenDepth = 0; // where a hidden element began
    int m_nestedTables = 0;
    bool m_inTable = false;
    bool m_stopped = false;
};

// That of the answer; else the one that the page names itself, where libxml2 looks
// for it; else UTF-8.
QByteArray encodingOf(const QByteArray &page, const QByteArray &contentType)
{
    const QByteArray lower = contentType.toLower();
    if (const auto at = lower.indexOf("charset="); at >= 0)
        return lower.mid(at + 8).split(';').first().trimmed().replace('"', "");
    return page.left(1024).toLower().contains("charset=") ? QByteArray() : "utf-8"_ba;
}

} // namespace

Notes readNotes(const QByteArray &page, const QByteArray &contentType)
{
    const QByteArray encoding = encodingOf(page, contentType);
    return NotesWriter().read(page.left(maximumNotesPage),
                              encoding.isEmpty() ? nullptr : encoding.constData());
}

} // namespace nivora
