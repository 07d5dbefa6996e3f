#include "app/app_environment.h"

#include "windows/theme.h"

#include <QApplication>

namespace nivora {

AppEnvironment::AppEnvironment()
    : m_desktopIsDark(isDark(QApplication::palette()))
{
}

void AppEnvironment::applyTheme(const QString &mode)
{
    const bool dark = mode == u"dark" || (mode != u"light" && m_desktopIsDark);
    QApplication::setPalette(themePalette(dark));
}

} // namespace nivora
