#pragma once

#include "platform/screen_capture.h"

namespace nivora::linuxdesktop {

// A program of ours, which freezes the screen and takes mouse and keyboard while
// the user marks a region, or leaves that to the desktop's portal where it is a
// Wayland session. X sessions ask nobody for leave; the portal asks by itself.
class ScreenCaptureProgram final : public platform::ScreenCapture
{
public:
    platform::Task queryAccess(std::function<void(bool)> done) override;
    platform::Task run(const QStringList &arguments, std::function<void(bool)> done) override;
};

} // namespace nivora::linuxdesktop
