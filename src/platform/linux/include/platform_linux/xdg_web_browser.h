#pragma once

#include "platform/web_browser.h"

#include <list>
#include <memory>

namespace nivora::linuxdesktop {

// Lets the desktop's xdg-open find the browser. The browser outlives this
// program.
class XdgWebBrowser final : public platform::WebBrowser
{
public:
    XdgWebBrowser();
    ~XdgWebBrowser() override;

    platform::Task open(const QUrl &page, std::function<void(bool)> done) override;

private:
    class Opener;
    class Opening;

    std::list<std::unique_ptr<Opener>> m_openers; // that still run
};

} // namespace nivora::linuxdesktop
