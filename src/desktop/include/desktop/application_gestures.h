#pragma once

#include "platform/keys.h"
#include "platform/window_system.h"

#include <optional>

namespace nivora {

// The key presses that copy and paste in a program. Absent: there is none that
// does it, or none that is safe.
struct ApplicationGestures
{
    std::optional<platform::KeyChord> copy;
    std::optional<platform::KeyChord> paste;
    // Whether what is pasted takes the place of the selected text.
    bool pasteReplaces = true;
    // Whether a selected password, too, is offered as PRIMARY. A copy of it is
    // refused.
    bool primaryMayBeSecret = false;
};

ApplicationGestures gesturesFor(const platform::ForeignWindow &window);

} // namespace nivora
