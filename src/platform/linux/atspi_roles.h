#pragma once

#include "platform/accessibility.h"

#include <QStringList>

namespace nivora::linuxdesktop {

// Places in the bit set of an accessible's states.
enum class AtspiState {
    Active = 1,
    Editable = 7,
    Focused = 12,
    MultiLine = 17,
    Showing = 25,
    SingleLine = 26,
    ManagesDescendants = 31,
};

inline bool has(quint64 states, AtspiState state)
{
    return states >> static_cast<int>(state) & 1;
}

// What kind of element an accessible is, in the terms that this program tests.
//
// The rules, in their order:
//  - A password entry is "AXSecureTextField". None of its text is ever asked for,
//    and none counts as selected: Chromium shows a selected password to whoever
//    asks for PRIMARY, where it would be looked for otherwise.
//  - A terminal is a text area: it takes what is pasted at its prompt. Toolkits do
//    not call it editable, since its text cannot be set.
//  - A text with the state "editable" is a combo box if that is its role, otherwise
//    a text area or a text field by its state "multi line" or "single line". Where
//    it has neither, an entry is a field and everything else, a paragraph of a
//    document for instance, an area.
//  - Anything else must not bear one of those role names, which stand for "takes
//    text": a read-only text has the text attributes, none of them settable, and
//    so counts as a text that takes none. A spin button or a combo box that is not
//    editable takes no text either.
struct AtspiKind
{
    // Fills role, subrole, attribute names and what is settable. `interfaces` and
    // `attributes` are those that the accessible names, the latter "name:value".
    static AtspiKind of(uint role, quint64 states, const QStringList &interfaces,
                        const QStringList &attributes);

    void describe(platform::FocusedElement &element) const;

    QString role;
    QString subrole;
    bool hasText = false;      // and it may be read
    bool hasComponent = false; // it has a place on the screen
    bool takesText = false;
    bool hidesText = false; // a password's
    // What its text says of the selection is all there is to it. Elsewhere, in a
    // paragraph or a web page, the selection may go on in another element.
    bool standsAlone = false;
    // Its own account of the selected text is known to differ from what is shown.
    bool misreadsSelection = false;
};

} // namespace nivora::linuxdesktop
