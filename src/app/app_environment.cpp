#include "app/app_environment.h"

#include "windows/product_style.h"
#include "windows/theme.h"

#include <QApplication>
#include <QProcess>

using namespace Qt::Literals::StringLiterals;

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

void AppEnvironment::relaunch()
{
    // While this process lives, another one would only call it to the front. A
    // parent that does not collect it must not keep the shell waiting for ever.
    const auto script =
        u"for i in $(seq 100); do kill -0 $1 2>/dev/null || break; sleep 0.1; done; "
        "exec \"$0\""_s;
    QProcess::startDetached(u"/bin/sh"_s, {u"-c"_s, script, QCoreApplication::applicationFilePath(),
                                           QString::number(QCoreApplication::applicationPid())});
    QCoreApplication::quit();
}

void AppEnvironment::apply()
{
    const bool dark = m_mode == u"dark" ||
                      (m_mode != u"light" && m_desktop.prefersDark.value_or(m_desktopIsDark));
    QApplication::setPalette(themePalette(dark));
    m_style->setReducedMotion(m_desktop.reducedMotion);
}

} // namespace nivora
