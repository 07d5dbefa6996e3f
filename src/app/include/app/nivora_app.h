#pragma once

#include "app/deployment.h"

#include "platform/services.h"

#include <memory>

namespace nivora {

class AppCoordinator;
enum class MenuCommand;

// The program as its user meets it: the coordinator, the tray icon and its menu.
class NivoraApp
{
public:
    // The services outlive the program.
    NivoraApp(const platform::Services &services, const Deployment &deployment);
    ~NivoraApp();

    // Shows the icon and then begins with the rest, which may wait for other programs.
    void start();

    // Another program, or a second start, asks for the program.
    void activate();

    // One of the actions by which a desktop's own shortcuts, and desktops without
    // a tray, reach the program: "invoke", or what the menu offers by its name in
    // the table of actions. Any other name costs a log line.
    void performAction(const QString &name);

    // A link of the program's own scheme, from anybody.
    void openLink(const QUrl &link);

private:
    void begin();
    AppCoordinator &coordinator();
    void perform(MenuCommand command);
    void renderMenu();
    void visitWebsite();

    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace nivora
