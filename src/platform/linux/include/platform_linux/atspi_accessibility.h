#pragma once

#include "platform/accessibility.h"

#include <QElapsedTimer>
#include <QThread>

#include <functional>
#include <memory>

namespace nivora::platform {
class WindowSystem;
}

namespace nivora::linuxdesktop {

class AtspiStatus;
class AtspiWorker;

// Other programs' elements, as they show them on the session's accessibility
// bus. Main thread only.
//
// A thread of its own listens for focus changes, so that a read usually asks one
// element and walks no tree. Programs of which no focus change was seen are
// searched within the bounds of AtspiSearch. This process is never asked: its
// main thread could not answer while it waits.
class AtspiAccessibility final : public platform::Accessibility
{
public:
    // `sessionBus` is an address; empty for the session bus that the environment
    // names. `windows` is borrowed. `gtkScale` gives the pixels of a process's unit,
    // if it is a GTK program.
    AtspiAccessibility(const QString &sessionBus, const platform::WindowSystem &windows,
                       std::function<int(qint64)> gtkScale);
    ~AtspiAccessibility() override;

    bool isTrusted() const override;
    void requestTrust() override;
    platform::Task
    readFocusedElement(std::function<void(std::optional<platform::FocusedElement>)> done) override;
    // No program of this desktop takes such a request while it runs: each decides
    // at its start, by the service's state at that moment, or joins by itself when
    // the service is switched on. So this asks for nothing and answers false.
    bool requestExposure(qint64 processId) override;

private:
    // 0 when a window of ours is active; absent when none is, or nobody knows whose
    // it is.
    std::optional<qint64> activeForeignProcess() const;

    const platform::WindowSystem &m_windows;
    std::function<int(qint64)> m_gtkScale;
    std::shared_ptr<AtspiStatus> m_status;
    mutable bool m_hasWaited = false;
    mutable QElapsedTimer m_sinceRefresh;
    QThread m_thread;
    AtspiWorker *m_worker; // lives in the thread and ends with it
};

} // namespace nivora::linuxdesktop
