#pragma once

#include "platform/primary_selection.h"
#include "x11_input_recency.h"
#include "x11_selection_thread.h"

namespace nivora::linuxdesktop {

class X11PrimarySelection final : public platform::PrimarySelectionReader
{
public:
    X11PrimarySelection(X11SelectionThread &thread, std::shared_ptr<X11InputRecency> recency)
        : m_thread(thread)
        , m_recency(std::move(recency))
    {
    }

    platform::Task
    read(std::chrono::milliseconds deadline,
         std::function<void(std::optional<platform::PrimarySelection>)> done) override
    {
        // The answer may come after this object has gone.
        return m_thread.ask<std::optional<X11PrimaryText>>(
            &X11SelectionWorker::readPrimary, deadline,
            [recency = std::weak_ptr(m_recency),
             done = std::move(done)](const std::optional<X11PrimaryText> &read) {
                std::optional<platform::PrimarySelection> selection;
                if (read) {
                    const auto input = recency.lock();
                    selection = {read->text, read->ownerProcessId,
                                 !input || input->pressedAfter(read->changed)};
                }
                done(std::move(selection));
            });
    }

private:
    X11SelectionThread &m_thread;
    std::shared_ptr<X11InputRecency> m_recency;
};

} // namespace nivora::linuxdesktop
