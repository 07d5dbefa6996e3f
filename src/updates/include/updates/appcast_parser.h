#pragma once

#include "updates/appcast_entry.h"
#include "updates/feed_events.h"

#include <QList>
#include <QStringList>

#include <optional>

namespace nivora {

// The notes of one release in one language.
struct NoteLink
{
    QString lang; // BCP 47; empty where the feed marks none
    QString url;
};

// Reads the releases out of an RSS feed with Sparkle's extensions: elements by
// their whole names, prefix included or left out. What was read before an error
// in the feed counts.
// https://sparkle-project.org/documentation/publishing/
class AppcastParser final : private FeedEvents
{
public:
    // More are not listed.
    static constexpr qsizetype maximumEntries = 2000;

    // `userLanguages`: BCP 47, the most wanted first.
    explicit AppcastParser(QStringList userLanguages);

    void parse(const QByteArray &feed);

    // In the feed's order.
    const QList<AppcastEntry> &entries() const { return m_entries; }

    // The link whose language, with an unmarked one counted as English, fits the
    // user best; without one an unmarked link, and without that the first. Absent
    // when there is no link, or when its text is no URL.
    static std::optional<QUrl> bestNotesURL(const QList<NoteLink> &links,
                                            const QStringList &userLanguages);

private:
    void startElement(QStringView name, const QXmlStreamAttributes &attributes) override;
    void characters(QStringView text) override;
    void endElement(QStringView name) override;
    bool wantsMore() const override { return m_entries.size() < maximumEntries; }

    void finishItem();

    QStringList m_userLanguages;
    QList<AppcastEntry> m_entries;

    // Of the current item.
    QString m_title;
    QString m_shortVer;
    QString m_date;
    QList<NoteLink> m_noteLinks;
    QString m_curNoteLang;
    bool m_inItem = false;
    QString m_buf; // since the last element boundary
};

} // namespace nivora
