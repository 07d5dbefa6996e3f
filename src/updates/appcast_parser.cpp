#include "updates/appcast_parser.h"

#include "updates/preferred_localization.h"

#include <QXmlStreamAttributes>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr qsizetype maximumNoteLinks = 64;

bool isNotesLink(QStringView name)
{
    return name == u"sparkle:releaseNotesLink" || name == u"releaseNotesLink";
}

bool isVersion(QStringView name)
{
    return name == u"sparkle:shortVersionString" || name == u"shortVersionString";
}

QString languageOf(const NoteLink &link)
{
    return link.lang.isEmpty() ? u"en"_s : link.lang;
}

} // namespace

AppcastParser::AppcastParser(QStringList userLanguages)
    : m_userLanguages(std::move(userLanguages))
{
}

void AppcastParser::parse(const QByteArray &feed)
{
    readFeed(feed, *this);
}

void AppcastParser::startElement(QStringView name, const QXmlStreamAttributes &attributes)
{
    m_buf.clear();
    if (name == u"item") {
        m_inItem = true;
        m_title.clear();
        m_shortVer.clear();
        m_date.clear();
        m_noteLinks.clear();
    } else if (name == u"enclosure" && m_inItem && m_shortVer.isEmpty()) {
        m_shortVer = attributeOf(attributes, {u"sparkle:shortVersionString", u"shortVersionString"})
                         .left(maximumFeedText);
    } else if (isNotesLink(name)) {
        m_curNoteLang = attributeOf(attributes, {u"xml:lang"}).left(maximumFeedText);
    }
}

void AppcastParser::characters(QStringView text)
{
    m_buf += text.left(maximumFeedText - m_buf.size());
}

void AppcastParser::endElement(QStringView name)
{
    if (!m_inItem)
        return;
    const QString text = m_buf.trimmed();
    if (name == u"title") {
        m_title = text;
    } else if (isVersion(name)) {
        // It also wins over the attribute of an enclosure before it.
        if (!text.isEmpty())
            m_shortVer = text;
    } else if (isNotesLink(name)) {
        if (!text.isEmpty() && m_noteLinks.size() < maximumNoteLinks)
            m_noteLinks.append({m_curNoteLang, text});
    } else if (name == u"pubDate") {
        m_date = text;
    } else if (name == u"item") {
        finishItem();
    }
    m_buf.clear();
}

void AppcastParser::finishItem()
{
    m_entries.append({QUuid::createUuid(), m_shortVer.isEmpty() ? m_title : m_shortVer, m_date,
                      bestNotesURL(m_noteLinks, m_userLanguages)});
    m_inItem = false;
}

std::optional<QUrl> AppcastParser::bestNotesURL(const QList<NoteLink> &links,
                                                const QStringList &userLanguages)
{
    if (links.isEmpty())
        return std::nullopt;
    QStringList candidates;
    for (const NoteLink &link : links)
        candidates.append(languageOf(link));
    const QString best = preferredLocalization(candidates, userLanguages).value_or(u"en"_s);
    auto chosen = std::ranges::find(links, best, languageOf);
    if (chosen == links.end())
        chosen = std::ranges::find(links, QString(), &NoteLink::lang);
    if (chosen == links.end())
        chosen = links.begin();
    const QUrl url(chosen->url);
    return url.isValid() ? std::optional(url) : std::nullopt;
}

} // namespace nivora
