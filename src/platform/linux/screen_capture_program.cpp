#include "platform_linux/screen_capture_program.h"

#include "platform_linux/portal_screenshot.h"

#include "program_run.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora::linuxdesktop {

platform::Task ScreenCaptureProgram::queryAccess(std::function<void(bool)> done)
{
    if (x11ShowsAllWindows())
        return platform::delay(0ms, [done = std::move(done)] { done(true); });
    return queryScreenshotPortal(std::move(done));
}

platform::Task ScreenCaptureProgram::run(const QStringList &arguments,
                                         std::function<void(bool)> done)
{
    return runProgram({.name = u"nivora-screencapture"_s, .arguments = arguments, .input = {}},
                      [done = std::move(done)](const ProgramEnd &end) { done(end.succeeded); });
}

} // namespace nivora::linuxdesktop
