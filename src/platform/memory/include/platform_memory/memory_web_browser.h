#pragma once

#include "platform/web_browser.h"

#include <QList>

namespace nivora::memory {

class MemoryWebBrowser final : public platform::WebBrowser
{
public:
    platform::Task open(const QUrl &page, std::function<void(bool)> done) override
    {
        m_opened.append(page);
        return platform::delay(
            std::chrono::milliseconds(0),
            [installed = m_installed, done = std::move(done)] { done(installed); });
    }

    // Whether there is a browser.
    void setInstalled(bool installed) { m_installed = installed; }
    const QList<QUrl> &opened() const { return m_opened; }

private:
    bool m_installed = true;
    QList<QUrl> m_opened;
};

} // namespace nivora::memory
