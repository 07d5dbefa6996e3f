#include "windows/floating_panel.h"

using namespace Qt::Literals::StringLiterals;

namespace nivora {

FloatingPanel::FloatingPanel(platform::WindowSystem &windowSystem)
    : CardWindow(windowSystem, u"panel"_s, nullptr)
{
}

} // namespace nivora
