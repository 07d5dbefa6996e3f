#include "platform_linux/launch_links.h"

#include <algorithm>
#include <cstring>
#include <strings.h>

namespace nivora::linuxdesktop {

QStringList takeLaunchLinks(int &argc, char **argv)
{
    static constexpr char scheme[] = "nivora:";
    const auto isLink = [](const char *argument) {
        return strncasecmp(argument, scheme, sizeof scheme - 1) == 0;
    };
    QStringList links;
    char **const end = argv + argc;
    for (char **each = argv + 1; each < end; ++each) {
        if (!isLink(*each))
            continue;
        links.append(QString::fromUtf8(*each));
        explicit_bzero(*each, strlen(*each));
        *each = nullptr;
    }
    argc -= int(links.size());
    std::fill(std::remove(argv, end, nullptr), end, nullptr);
    return links;
}

} // namespace nivora::linuxdesktop
