#include "app/missing_tray_note.h"

#include "windows/tray_icon.h"

#include "platform/preferences.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr auto patience = 10s;
const auto told = u"hasToldOfMissingTray"_s;

} // namespace

MissingTrayNote::MissingTrayNote(TrayIcon &tray, platform::Preferences &preferences)
    : m_tray(tray)
    , m_preferences(preferences)
{
}

void MissingTrayNote::start()
{
    if (m_preferences.boolean(told).value_or(false))
        return;
    m_wait = platform::delay(patience, [this] {
        if (m_tray.hasTray())
            return;
        m_preferences.set(told, true);
        m_tray.notify(QCoreApplication::translate(
            "NivoraApp", "这个桌面没有系统托盘，所以看不到 Nivora 的图标。双击 Shift "
                         "照常翻译；翻译历史、设置等，在应用菜单里右键点按 Nivora 就能打开。"));
    });
}

} // namespace nivora
