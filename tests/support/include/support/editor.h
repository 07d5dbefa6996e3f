#pragma once

#include "support/accessibility_tree.h"
#include "support/x11_driver.h"

#include <QString>

#include <optional>

class QProcess;

namespace nivora::test {

class DesktopSession;

// A real text editor with one document, as people have it open beside the
// product.
class Editor
{
public:
    enum class Toolkit {
        Gtk, // Mousepad
        Qt,  // FocusWriter
        Qt5, // FeatherPad
    };

    Editor(DesktopSession &session, X11Driver &user, const AccessibilityTree &tree);
    ~Editor();
    Editor(const Editor &) = delete;
    Editor &operator=(const Editor &) = delete;

    // Opens a document with this text and waits until it has the keyboard. False
    // when that does not come about.
    bool open(Toolkit toolkit, const QString &text);

    // By the keyboard; false when the editor does not show it as selected.
    bool selectAll();

    QString text() const { return m_area ? m_area->text() : QString(); }
    QString selectedText() const { return m_area ? m_area->selectedText() : QString(); }
    int cursor() const { return m_area ? m_area->cursor() : -1; } // in characters
    // In pixels of the screen; of the cursor without a width.
    QRect selectionBounds() const { return m_area ? m_area->selectionBounds() : QRect(); }
    QRect cursorBounds() const { return m_area ? m_area->cursorBounds() : QRect(); }
    QRect textArea() const { return m_area ? m_area->frame() : QRect(); }
    bool waitForText(const QString &text, std::chrono::milliseconds bound) const;

    X11Driver::WindowId window() const { return m_window; }

private:
    DesktopSession &m_session;
    X11Driver &m_user;
    const AccessibilityTree &m_tree;
    QProcess *m_process = nullptr;
    X11Driver::WindowId m_window = 0;
    std::optional<AccessibleElement> m_area;
};

} // namespace nivora::test
