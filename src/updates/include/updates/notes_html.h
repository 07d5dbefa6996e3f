#pragma once

#include <QByteArray>
#include <QString>

namespace nivora {

// The largest page of notes that is read, in bytes.
inline constexpr qint64 maximumNotesPage = 512 * 1024;

struct Notes
{
    QString html;
    QString language; // BCP 47, as the page names it; may be empty
};

// A web page's bytes as plain HTML of headings, paragraphs, lists, tables, links
// and pictures, in the looks of whoever shows it: without scripts, styles, forms,
// frames, and without any attribute but the addresses of links (http and https) and
// of pictures, and the sizes of small ones among the latter. All within bounds that a text view
// lays out at once: reading ends after 4,000 elements, after 100,000 characters,
// and where elements nest deeper than 48; tables in tables become paragraphs.
// `contentType` is that of the answer, for its character set.
Notes readNotes(const QByteArray &page, const QByteArray &contentType);

} // namespace nivora
