#pragma once

#include "platform/appearance.h"
#include "platform/task.h"

#include <QString>

namespace nivora {

class ProductStyle;

// The appearance of the process as a whole.
class AppEnvironment
{
public:
    // Follows the desktop from now on. The desktop's own palette stands in where
    // it tells no choice. `appearance` outlives this object.
    explicit AppEnvironment(platform::Appearance &appearance);

    // "light", "dark", or anything else to follow the desktop.
    void applyTheme(const QString &mode);

    // Ends this process and starts the same program anew once it is gone.
    static void relaunch();

private:
    void apply();

    bool m_desktopIsDark; // as its palette had it at the start
    platform::DesktopAppearance m_desktop;
    QString m_mode;
    ProductStyle *m_style; // owned by the application
    platform::Task m_watch;
};

} // namespace nivora
