#pragma once

#include "atspi_calls.h"
#include "atspi_roles.h"
#include "platform/accessibility.h"

namespace nivora::linuxdesktop {

// One accessible object with everything about it that was asked so far.
class AtspiElement
{
public:
    enum class Answer {
        None, // it is gone, or its program did not answer in time
        Unfocused,
        Focused,
    };

    explicit AtspiElement(AtspiObject object)
        : m_object(std::move(object))
    {
    }

    // Asks what kind of element it is: one round trip.
    Answer inspect(AtspiCalls &calls);
    bool hasText() const { return m_hasText; }
    bool isOfGtk() const { return m_toolkit == Toolkit::Gtk; }
    bool isOfChromium() const { return m_toolkit == Toolkit::Chromium; }

    // Asks for text and places: two round trips more where it has text, and a wait
    // of at most 120 ms where Firefox has yet to find out where it has put things.
    // What the program did not tell stays absent. After inspect().
    platform::FocusedElement read(AtspiCalls &calls);

private:
    struct Selection;
    enum class Toolkit { Other, Gecko, Chromium, Gtk };

    bool isInBrowser() const
    {
        return m_toolkit == Toolkit::Gecko || m_toolkit == Toolkit::Chromium;
    }
    // What a browser shows and the user cannot write in.
    bool isPage() const { return isInBrowser() && !m_kind.takesText; }

    platform::FocusedElement readOnce(AtspiCalls &calls) const;
    std::optional<Selection> askSelection(AtspiCalls &calls) const;
    std::optional<QString> textOf(AtspiCalls &calls, const Selection &selection) const;
    void readText(AtspiCalls &calls, platform::FocusedElement &element) const;
    void readSelection(AtspiCalls &calls, const Selection &selection,
                       platform::FocusedElement &element) const;
    std::optional<QRectF> place(AtspiCalls &calls, const Selection &selection,
                                const std::optional<QString> &text, int depth) const;
    std::optional<QRectF> placeWithin(AtspiCalls &calls, int offset, int depth) const;
    std::optional<QRectF> bounds(AtspiCalls &calls, const Selection &selection) const;
    QDBusPendingCall sendCharacter(AtspiCalls &calls, int offset) const;
    void readCaret(AtspiCalls &calls, int caret, platform::FocusedElement &element) const;

    AtspiObject m_object;
    AtspiKind m_kind;
    Toolkit m_toolkit = Toolkit::Other;
    bool m_hasText = false;
    std::optional<QRectF> m_frame;
    QString m_programName;
};

} // namespace nivora::linuxdesktop
