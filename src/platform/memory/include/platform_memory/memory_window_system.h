#pragma once

#include "platform/window_system.h"

#include <vector>

namespace nivora::memory {

class MemoryWindowSystem final : public platform::WindowSystem
{
public:
    std::optional<platform::ForeignWindow> activeWindow() const override { return m_active; }
    bool hasInputFocus(platform::WindowId window) const override;
    void requestActivation(platform::WindowId window) override;
    platform::Task isResponding(platform::WindowId window, std::chrono::milliseconds deadline,
                                std::function<void(bool)> done) const override;
    bool isCompositing() const override { return m_compositing; }

    // The input focus goes to the active window along with the activation.
    void setActiveWindow(std::optional<platform::ForeignWindow> window);
    // Takes the input focus away from the active window, or gives it back.
    void setFocusArrived(bool arrived) { m_focusArrived = arrived; }
    // A window that an activation request may bring to the front. Requests for
    // any other window are recorded and refused.
    void setActivatable(const platform::ForeignWindow &window) { m_activatable = window; }
    // A program that hangs answers no question.
    void setResponding(bool responding) { m_responding = responding; }
    void setCompositing(bool compositing) { m_compositing = compositing; }
    const std::vector<platform::WindowId> &activationRequests() const { return m_requests; }

private:
    std::optional<platform::ForeignWindow> m_active;
    std::optional<platform::ForeignWindow> m_activatable;
    bool m_focusArrived = true;
    bool m_responding = true;
    bool m_compositing = false;
    std::vector<platform::WindowId> m_requests;
};

} // namespace nivora::memory
