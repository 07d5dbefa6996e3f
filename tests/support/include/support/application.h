#pragma once

#include "support/accessibility_tree.h"
#include "support/x11_driver.h"

#include <QRect>
#include <QString>

#include <memory>
#include <optional>

namespace nivora::test {

class ClipboardPeer;
class DesktopSession;

// A program that people select text in. What it shows and holds is learnt from
// the program itself, never through the product.
class Application
{
public:
    // Whom a program is started for. All of it outlives the program.
    struct Desk
    {
        DesktopSession &session;
        X11Driver &user;
        const AccessibilityTree &tree;
        ClipboardPeer &clipboard;
    };

    // What a paste does in it.
    enum class Paste {
        ReplacesSelection,
        Inserts, // where it takes typing, whatever is selected
        Unknown, // it has no keys for it
    };

    Application() = default;
    virtual ~Application() = default;
    Application(const Application &) = delete;
    Application &operator=(const Application &) = delete;

    // Starts it; true once it has the keyboard.
    virtual bool open() = 0;

    // Makes it show this text. It may use the clipboard for that.
    virtual bool show(const QString &text) = 0;
    // As a user would; false when the program does not show it as selected.
    virtual bool select() = 0;
    // Puts the cursor right before the text, with nothing selected.
    virtual bool deselect() = 0;

    // Exactly the selected text. Line ends are the program's own.
    virtual QString selectedText() const = 0;
    // What stands in the place of the text now, or, in a terminal, what the
    // program inside it has been sent.
    virtual QString content() const = 0;

    // Where the selection, or the cursor, is, in pixels of the screen; empty when
    // the program does not tell.
    virtual QRect place() const = 0;
    // The element around it; empty when the program does not tell.
    virtual QRect frame() const = 0;
    virtual Paste paste() const = 0;

    virtual X11Driver::WindowId window() const = 0;
};

// Text editors. Each text is a document of its own between two guards, which
// show whether more than the selection was touched.
std::unique_ptr<Application> makeMousepad(const Application::Desk &desk);
std::unique_ptr<Application> makeFocusWriter(const Application::Desk &desk);
std::unique_ptr<Application> makeFeatherPad(const Application::Desk &desk);

// Terminals in which a program writes a text and keeps every byte it is sent.
std::unique_ptr<Application> makeXTerm(const Application::Desk &desk);
std::unique_ptr<Application> makeXfceTerminal(const Application::Desk &desk);

} // namespace nivora::test
