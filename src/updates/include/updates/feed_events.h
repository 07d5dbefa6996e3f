#pragma once

#include <QByteArray>
#include <QStringView>

class QXmlStreamAttributes;

namespace nivora {

// Hears what stands in a feed, in order. Names are whole, prefix included.
class FeedEvents
{
public:
    virtual void startElement(QStringView name, const QXmlStreamAttributes &attributes) = 0;
    virtual void characters(QStringView text) = 0;
    virtual void endElement(QStringView name) = 0;
    // Asked after each end of an element.
    virtual bool wantsMore() const = 0;

protected:
    ~FeedEvents() = default;
};

// Reads a feed up to its end or its first error. A feed is not trusted: nothing
// outside it is read, declared entities grow to 4,096 characters at most (Qt's
// limit), and reading ends where elements nest deeper than 64 or where one tag or
// one piece of text is longer than 128 KiB.
void readFeed(const QByteArray &feed, FeedEvents &events);

// The attribute's value under the first of these names that it has.
QString attributeOf(const QXmlStreamAttributes &attributes,
                    std::initializer_list<QStringView> names);

// An element's text as far as it is kept; far more than any use needs.
inline constexpr qsizetype maximumFeedText = 4096;

} // namespace nivora
