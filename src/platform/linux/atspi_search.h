#pragma once

#include "atspi_calls.h"

#include <optional>

namespace nivora::linuxdesktop {

// Looks for the focused element of a program of which no focus change has been
// seen. A program that can search itself is asked to; otherwise what is showing
// of its active window is walked, level by level, at most `longestWalk` elements.
class AtspiSearch
{
public:
    static constexpr int longestWalk = 400;

    explicit AtspiSearch(AtspiCalls &calls)
        : m_calls(calls)
    {
    }

    // The programs that are on the accessibility bus, by their bus names.
    QStringList programs();
    // The focused element of one of them.
    std::optional<AtspiObject> focusedOf(const QString &service);

private:
    std::vector<AtspiObject> windows(const QString &service);
    // False when the program cannot search itself.
    bool askProgram(const AtspiObject &window, std::optional<AtspiObject> &focused);
    bool hasText(const AtspiObject &object);
    std::optional<AtspiObject> walk(const AtspiObject &window);

    AtspiCalls &m_calls;
};

} // namespace nivora::linuxdesktop
