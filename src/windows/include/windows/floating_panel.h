#pragma once

#include "windows/card_window.h"

namespace nivora {

// The panel's window: in no task list, on top of the others.
class FloatingPanel : public CardWindow
{
    Q_OBJECT

public:
    explicit FloatingPanel(platform::WindowSystem &windowSystem);
};

} // namespace nivora
