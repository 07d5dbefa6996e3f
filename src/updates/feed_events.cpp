#include "updates/feed_events.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace nivora {

namespace {

constexpr int maximumDepth = 64;
constexpr qsizetype pieceSize = 16 * 1024;
// Qt compares each attribute of a tag with all others of it.
constexpr qsizetype maximumToken = 128 * 1024;

} // namespace

void readFeed(const QByteArray &feed, FeedEvents &events)
{
    QXmlStreamReader reader;
    reader.setNamespaceProcessing(false);
    int depth = 0;
    qsizetype given = 0;
    qsizetype givenAtLastToken = 0;
    for (;;) {
        switch (reader.readNext()) {
        case QXmlStreamReader::Invalid:
            if (reader.error() != QXmlStreamReader::PrematureEndOfDocumentError ||
                given == feed.size() || given - givenAtLastToken >= maximumToken)
                return;
            reader.addData(feed.mid(given, pieceSize));
            given = std::min(given + pieceSize, feed.size());
            continue;
        case QXmlStreamReader::StartElement:
            if (++depth > maximumDepth)
                return;
            events.startElement(reader.qualifiedName(), reader.attributes());
            break;
        case QXmlStreamReader::Characters:
            events.characters(reader.text());
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            events.endElement(reader.qualifiedName());
            if (!events.wantsMore())
                return;
            break;
        case QXmlStreamReader::EndDocument:
            return;
        default:
            break;
        }
        givenAtLastToken = given;
    }
}

QString attributeOf(const QXmlStreamAttributes &attributes,
                    std::initializer_list<QStringView> names)
{
    for (const QStringView name : names) {
        const auto found = std::ranges::find(attributes, name, &QXmlStreamAttribute::qualifiedName);
        if (found != attributes.end())
            return found->value().toString();
    }
    return {};
}

} // namespace nivora
