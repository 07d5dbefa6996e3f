#pragma once

#include "platform/accessibility.h"

#include <chrono>
#include <vector>

namespace nivora::memory {

class MemoryAccessibility final : public platform::Accessibility
{
public:
    bool isTrusted() const override { return m_trusted; }
    void requestTrust() override;
    platform::Task
    readFocusedElement(std::function<void(std::optional<platform::FocusedElement>)> done) override;
    bool requestExposure(qint64 processId) override;

    void setTrusted(bool trusted) { m_trusted = trusted; }
    // Whether requestTrust() switches the service on, as a user who agrees would.
    void setGrantsTrust(bool grants) { m_grantsTrust = grants; }
    int trustRequests() const { return m_trustRequests; }

    // What a read that ends from now on answers.
    void setElement(std::optional<platform::FocusedElement> element);
    // How long a read takes. Beyond 300 ms the application counts as stuck.
    void setLatency(std::chrono::milliseconds latency) { m_latency = latency; }
    int reads() const { return m_reads; }

    // The answer of requestExposure(), which runs `exposed` when it is true.
    void setExposure(bool answers, std::function<void()> exposed = {});
    const std::vector<qint64> &exposureRequests() const { return m_exposureRequests; }

private:
    bool m_trusted = true;
    bool m_grantsTrust = false;
    int m_trustRequests = 0;
    std::optional<platform::FocusedElement> m_element;
    std::chrono::milliseconds m_latency{0};
    int m_reads = 0;
    bool m_exposes = false;
    std::function<void()> m_exposed;
    std::vector<qint64> m_exposureRequests;
};

} // namespace nivora::memory
