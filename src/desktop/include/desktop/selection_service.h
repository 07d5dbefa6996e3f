#pragma once

#include "platform/selection.h"
#include "platform/services.h"

#include <QDeadlineTimer>
#include <QRectF>
#include <QString>

#include <optional>

namespace nivora {

namespace platform {
struct FocusedElement;
}

// Answers what the user has selected, where it is, and whether text can be put
// back there. Silent reads come first; a simulated copy is the last resort, and
// the clipboard is put back after it. Holds no state.
class SelectionService
{
public:
    explicit SelectionService(const platform::Services &services)
        : m_services(services)
    {
    }

    // Main thread. Waits in turns of the event loop, 1 s at most, programs that
    // do not answer included.
    platform::Selection capture() const;

    // Whether the element takes text: absent when nothing is known of it.
    static std::optional<bool> editability(const platform::FocusedElement &element);

    // Where the selected text is; absent when unknown, empty or so tall that it
    // is no help in placing a panel.
    static std::optional<QRectF> selectedTextBounds(const platform::FocusedElement &element);

    // The element's own rectangle, absent when it is a large container.
    static std::optional<QRectF> elementFrame(const platform::FocusedElement &element);

private:
    std::optional<platform::FocusedElement> focusedElement(qint64 frontProcess,
                                                           const QDeadlineTimer &deadline) const;
    std::optional<platform::FocusedElement>
    readFocusedElement(const QDeadlineTimer &deadline) const;
    std::optional<QString> primaryText(const platform::ForeignWindow &window,
                                       const QDeadlineTimer &deadline) const;
    std::optional<QString> captureViaClipboard(const platform::ForeignWindow &window,
                                               const QDeadlineTimer &deadline) const;

    platform::Services m_services;
};

} // namespace nivora
