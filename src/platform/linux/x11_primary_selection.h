#pragma once

#include "platform/primary_selection.h"
#include "x11_selection_thread.h"

namespace nivora::linuxdesktop {

class X11PrimarySelection final : public platform::PrimarySelectionReader
{
public:
    explicit X11PrimarySelection(X11SelectionThread &thread)
        : m_thread(thread)
    {
    }

    platform::Task
    read(std::chrono::milliseconds deadline,
         std::function<void(std::optional<platform::PrimarySelection>)> done) override
    {
        return m_thread.ask(&X11SelectionWorker::readPrimary, deadline, std::move(done));
    }

private:
    X11SelectionThread &m_thread;
};

} // namespace nivora::linuxdesktop
