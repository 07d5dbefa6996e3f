#pragma once

#include "platform/task.h"

#include <QStringList>

#include <functional>

namespace nivora::platform {

// The desktop's way to take a picture of a part of the screen.
class ScreenCapture
{
public:
    virtual ~ScreenCapture() = default;

    // Whether this program may see other programs' windows. Answers within 3 s.
    virtual Task queryAccess(std::function<void(bool)> done) = 0;

    // Runs the tool with these arguments, of which the last is the path of the
    // picture that it writes as PNG: "-i" lets the user mark a region, "-x" makes
    // no sound. True once it says that the picture is there; false when the user
    // cancelled or anything failed. The user takes any time for it. Once the task
    // is dropped, the tool is gone and writes nothing any more.
    virtual Task run(const QStringList &arguments, std::function<void(bool)> done) = 0;
};

} // namespace nivora::platform
