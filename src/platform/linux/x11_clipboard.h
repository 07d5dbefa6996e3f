#pragma once

#include "platform/clipboard.h"
#include "x11_selection_thread.h"

namespace nivora::linuxdesktop {

class X11Clipboard final : public platform::Clipboard
{
public:
    explicit X11Clipboard(X11SelectionThread &thread);

    quint64 changeCount() const override;
    platform::Task
    read(std::chrono::milliseconds deadline,
         std::function<void(std::optional<platform::ClipboardContents>)> done) override;
    platform::Task readText(std::chrono::milliseconds deadline,
                            std::function<void(std::optional<QString>)> done) override;
    void setText(const QString &text, Privacy privacy) override;
    void setContents(const platform::ClipboardContents &contents) override;
    int fetchCount(qint64 processId) const override;

private:
    X11SelectionThread &m_thread;
    std::shared_ptr<X11FetchLog> m_fetches; // of what we offered last
};

} // namespace nivora::linuxdesktop
