#include "updates/release.h"

#include "updates/feed_events.h"
#include "updates/version_number.h"

#include <QHash>
#include <QXmlStreamAttributes>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr int maximumItems = 10'000;
constexpr qsizetype maximumFields = 32;

class ReleaseSearch final : public FeedEvents
{
public:
    ReleaseSearch(const QUrl &feedURL, const QString &version, const QString &systemVersion)
        : m_feedURL(feedURL)
        , m_newest(version)
        , m_systemVersion(systemVersion)
    {
    }

    FeedAnswer answer;

private:
    void startElement(QStringView name, const QXmlStreamAttributes &attributes) override
    {
        m_text.clear();
        if (name == u"item") {
            m_inItem = true;
            m_fields.clear();
            m_package.reset();
            m_systems = {};
        } else if (name == u"enclosure" && m_inItem) {
            takeEnclosure(attributes);
        }
    }

    void characters(QStringView text) override
    {
        m_text += text.left(maximumFeedText - m_text.size());
    }

    void endElement(QStringView name) override
    {
        if (!m_inItem)
            return;
        if (name == u"item") {
            m_inItem = false;
            finishItem();
        } else if (m_fields.size() < maximumFields && !m_text.trimmed().isEmpty()) {
            m_fields.insert(bare(name), m_text.trimmed());
        }
        m_text.clear();
    }

    bool wantsMore() const override { return m_items < maximumItems; }

    static QString bare(QStringView name)
    {
        constexpr QStringView prefix = u"sparkle:";
        return (name.startsWith(prefix) ? name.mid(prefix.size()) : name).toString();
    }

    void takeEnclosure(const QXmlStreamAttributes &attributes)
    {
        for (const QString &field : {u"shortVersionString"_s, u"version"_s}) {
            const QString value = attributeOf(attributes, {u"sparkle:"_s + field, field});
            if (!value.isEmpty() && !m_fields.contains(field))
                m_fields.insert(field, value);
        }
        const QString system = attributeOf(attributes, {u"sparkle:os", u"os"});
        const bool isOurs = system == u"linux";
        (isOurs || system.isEmpty() ? m_systems.ours : m_systems.others) = true;
        if (!isOurs || m_package)
            return;
        const QUrl url = webURL(attributeOf(attributes, {u"url"}));
        const bool isSigned =
            !attributeOf(attributes, {u"sparkle:edSignature", u"edSignature"}).isEmpty();
        if (!url.isEmpty())
            m_package = Release::Package{url, isSigned};
    }

    // Empty for anything that is no page of the web, or less safe than the feed.
    QUrl webURL(const QString &text) const
    {
        const QUrl url = m_feedURL.resolved(QUrl(text.trimmed(), QUrl::StrictMode));
        const bool isSafe = url.scheme() == u"https" || url.scheme() == m_feedURL.scheme();
        return !text.isEmpty() && url.isValid() && !url.host().isEmpty() && isSafe ? url : QUrl();
    }

    void finishItem()
    {
        ++m_items;
        const QString version =
            m_fields.value(u"shortVersionString"_s, m_fields.value(u"version"_s));
        if (!isVersionNumber(version))
            return;
        answer.isFeed = true;
        const QString least = m_fields.value(u"minimumSystemVersion"_s);
        if ((m_systems.others && !m_systems.ours) || m_fields.contains(u"channel"_s) ||
            (isVersionNumber(least) && compareVersions(m_systemVersion, least) < 0) ||
            compareVersions(version, m_newest) <= 0)
            return;
        m_newest = version;
        answer.newer = Release{version, webURL(m_fields.value(u"link"_s)), m_package};
    }

    QUrl m_feedURL;
    QString m_newest;
    QString m_systemVersion;
    int m_items = 0;

    // Of the current item.
    bool m_inItem = false;
    QHash<QString, QString> m_fields; // by name without prefix
    std::optional<Release::Package> m_package;
    struct
    {
        bool ours = false;
        bool others = false;
    } m_systems; // that its packages are for
    QString m_text;
};

} // namespace

FeedAnswer newerRelease(const QByteArray &feed, const QUrl &feedURL, const QString &version,
                        const QString &systemVersion)
{
    ReleaseSearch search(feedURL, version, systemVersion);
    readFeed(feed, search);
    return search.answer;
}

} // namespace nivora
