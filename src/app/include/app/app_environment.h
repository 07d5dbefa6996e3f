#pragma once

#include <QPalette>
#include <QString>

namespace nivora {

// The appearance of the process as a whole.
class AppEnvironment
{
public:
    // Remembers the desktop's own appearance, which "system" goes back to.
    AppEnvironment();

    // "light", "dark", or anything else to follow the desktop.
    void applyTheme(const QString &mode);

private:
    bool m_desktopIsDark;
};

} // namespace nivora
