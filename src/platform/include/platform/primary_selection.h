#pragma once

#include "platform/task.h"

#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace nivora::platform {

// The text that the user last selected with mouse or keyboard, as this desktop
// keeps it beside the clipboard.
struct PrimarySelection
{
    QString text;
    // 0 when the owner cannot be told.
    qint64 ownerProcessId = 0;
    // Whether a mouse button or a key that is no modifier went down after the
    // text was selected. It may then no longer be what the user sees selected:
    // many programs keep offering it after the selection has collapsed.
    bool stale = false;
};

class PrimarySelectionReader
{
public:
    virtual ~PrimarySelectionReader() = default;

    // Absent when nothing is selected, the owner offers no text, or it does not
    // answer within `deadline`. Never changes the selection.
    virtual Task read(std::chrono::milliseconds deadline,
                      std::function<void(std::optional<PrimarySelection>)> done) = 0;
};

} // namespace nivora::platform
