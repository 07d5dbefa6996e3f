#include "app/app_environment.h"

#include "windows/product_style.h"
#include "windows/theme.h"

#include <QApplication>

namespace nivora {

AppEnvironment::AppEnvironment(platform::Appearance &appearance)
    : m_desktopIsDark(isDark(QApplication::palette()))
    , m_style(new ProductStyle)
{
    QApplication::setStyle(m_style);
    m_watch = appearance.watch([this](const platform::DesktopAppearance &desktop) {
        m_desktop = desktop;
        apply();
    });
}

void AppEnvironment::applyTheme(const QString &mode)
{
    m_mode = mode;
    apply();
}

void AppEnvironment::apply()
{
    const bool dark = m_mode == u"dark" ||
                      (m_mode != u"light" && m_desktop.prefersDark.value_or(m_desktopIsDark));
    QApplication::setPalette(themePalette(dark));
    m_style->setReducedMotion(m_desktop.reducedMotion);
}

} // namespace nivora
