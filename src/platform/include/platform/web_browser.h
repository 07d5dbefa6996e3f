#pragma once

#include "platform/task.h"

#include <QUrl>

#include <functional>

namespace nivora::platform {

// The user's default browser.
class WebBrowser
{
public:
    virtual ~WebBrowser() = default;

    // Opens a page, of http or https. True once a browser has taken it, false
    // where there is none to take it. Answers within 5 s. Dropping the task does
    // not close what was opened.
    virtual Task open(const QUrl &page, std::function<void(bool)> done) = 0;
};

} // namespace nivora::platform
