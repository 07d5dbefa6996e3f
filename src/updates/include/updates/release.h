#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

namespace nivora {

// A release as somebody may want to get it.
struct Release
{
    struct Package
    {
        QUrl url;              // of https, or of http where the feed itself is
        bool isSigned = false; // the feed names a signature; nobody has checked it

        bool operator==(const Package &) const = default;
    };

    QString version;
    QUrl page;                      // about it, for the browser; may be empty
    std::optional<Package> package; // for this system, where the feed names one

    bool operator==(const Release &) const = default;
};

// What a feed says to a program that asks for something newer.
struct FeedAnswer
{
    bool isFeed = false; // there was a release in it, of whatever kind
    // The newest that this system can run and that is newer than the program.
    std::optional<Release> newer;
};

// `version` is the program's, `systemVersion` the kernel's: its number alone means
// the same on every Linux, so that sparkle:minimumSystemVersion is held against it.
// Left out are releases for other systems (sparkle:os) and those of channels that
// nobody has chosen (sparkle:channel). Links other than to the web do not count.
FeedAnswer newerRelease(const QByteArray &feed, const QUrl &feedURL, const QString &version,
                        const QString &systemVersion);

} // namespace nivora
