#pragma once

#include "platform/services.h"

#include <QUrl>

#include <memory>

namespace nivora {

// The program as its user meets it: the coordinator and the tray icon.
class NivoraApp
{
public:
    // The services outlive the program. `cloudEndpoint` is the origin of the
    // cloud service, `updateEndpoint` that of the feed of releases.
    NivoraApp(const platform::Services &services, const QUrl &cloudEndpoint,
              const QUrl &updateEndpoint);
    ~NivoraApp();

    void start();

    // Another program, or a second start, asks for the program.
    void activate();

    // One of the actions by which a desktop's own shortcuts reach the program:
    // "invoke", "panel", "settings", "sign-in", "sign-out", "check-updates",
    // "version-history" or "quit". Any other name costs a log line.
    void performAction(const QString &name);

    // A link of the program's own scheme, from anybody.
    void openLink(const QUrl &link);

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace nivora
