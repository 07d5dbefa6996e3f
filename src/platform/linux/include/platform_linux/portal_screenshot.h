#pragma once

#include "platform/task.h"

#include <QString>

#include <functional>

namespace nivora::linuxdesktop {

// Whether there is an X server that hands out what all windows show. The one
// within a Wayland session shows its own windows alone.
bool x11ShowsAllWindows();

// Whether the session has a portal that takes pictures of the screen, running or
// to be started. Answers within 3 s.
platform::Task queryScreenshotPortal(std::function<void(bool)> done);

struct PortalScreenshot
{
    enum class Result { Taken, Cancelled, Failed };

    Result result = Result::Failed;
    QString file; // where taken; it is the caller's to remove
};

// Lets the portal ask the user what to take, in any time they want for it.
// https://flatpak.github.io/xdg-desktop-portal/docs/doc-org.freedesktop.portal.Screenshot.html
platform::Task takePortalScreenshot(std::function<void(const PortalScreenshot &)> done);

} // namespace nivora::linuxdesktop
