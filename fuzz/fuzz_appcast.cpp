#include "fuzz.h"

#include "updates/appcast_parser.h"
#include "updates/release.h"
#include "updates/version_number.h"

using namespace Qt::Literals::StringLiterals;
using namespace nivora;

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray feed = fuzz::Input(data, size).rest();
    const QUrl address(u"https://updates.invalid/dist/appcast.xml"_s);

    AppcastParser parser({u"zh-Hant-TW"_s, u"ja"_s});
    parser.parse(feed);
    fuzz::check(parser.entries().size() <= AppcastParser::maximumEntries, "a list has its bound");
    for (const AppcastEntry &entry : parser.entries()) {
        const auto order = compareVersions(entry.version, u"1.2.3"_s);
        fuzz::check((order < 0) == (compareVersions(u"1.2.3"_s, entry.version) > 0),
                    "older and newer are each other's opposites");
    }

    const FeedAnswer answer = newerRelease(feed, address, u"1.2.3"_s, u"6.1.0"_s);
    if (answer.newer) {
        fuzz::check(compareVersions(answer.newer->version, u"1.2.3"_s) > 0, "newer is newer");
        fuzz::check(answer.newer->page.isEmpty() ||
                        answer.newer->page.scheme().startsWith("http"_L1),
                    "a page is one of the web");
        fuzz::check(!answer.newer->package || answer.newer->package->url.scheme() == u"https",
                    "a package comes encrypted");
    }
    return 0;
}
