#include "support/application.h"

#include "support/clipboard_peer.h"
#include "support/editor.h"
#include "support/wait.h"

#include <X11/keysym.h>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto patience = 10s;
constexpr auto keysBound = 4s;
const auto guards = u"〔〕"_s;

class EditedDocument final : public Application
{
public:
    EditedDocument(const Desk &desk, Editor::Toolkit toolkit)
        : m_user(desk.user)
        , m_clipboard(desk.clipboard)
        , m_editor(desk.session, desk.user, desk.tree)
        , m_toolkit(toolkit)
    {
    }

    bool open() override { return m_editor.open(m_toolkit, guards); }

    bool show(const QString &text) override
    {
        if (!m_clipboard.offerText(guards.first(1) + text + guards.last(1)))
            return false;
        // Line ends may have become others.
        const auto letters = [](QString some) {
            return some.remove(u'\r').remove(u'\n').remove(QChar::ParagraphSeparator);
        };
        return insist([&] {
            m_user.press({XK_Control_L, XK_a});
            m_user.press({XK_Control_L, XK_v});
            return waitUntil([&] { return letters(content()) == letters(text); }, keysBound);
        });
    }

    bool select() override
    {
        return insist([&] {
            m_user.press({XK_Control_L, XK_Home});
            m_user.press({XK_Right});
            m_user.press({XK_Control_L, XK_Shift_L, XK_End});
            m_user.press({XK_Shift_L, XK_Left});
            return waitUntil([&] { return selectedText() == content(); }, keysBound);
        });
    }

    bool deselect() override
    {
        return insist([&] {
            m_user.press({XK_Control_L, XK_Home});
            m_user.press({XK_Right});
            return waitUntil([&] { return m_editor.cursor() == 1 && selectedText().isEmpty(); },
                             keysBound);
        });
    }

    QString selectedText() const override { return m_editor.selectedText(); }

    QString content() const override
    {
        const QString all = m_editor.text();
        const bool isGuarded = all.size() >= guards.size() && all.startsWith(guards.first(1)) &&
                               all.endsWith(guards.last(1));
        return isGuarded ? all.sliced(1).chopped(1) : u"damaged: "_s + all;
    }

    QRect place() const override
    {
        const QRect selection = m_editor.selectionBounds();
        return selection.isEmpty() ? m_editor.cursorBounds() : selection;
    }
    QRect frame() const override { return m_editor.textArea(); }
    Paste paste() const override { return Paste::ReplacesSelection; }
    X11Driver::WindowId window() const override { return m_editor.window(); }

private:
    // A program that has only just opened, or is busy, may drop keys.
    template<typename Attempt>
    static bool insist(Attempt &&attempt)
    {
        return waitUntil(attempt, patience);
    }

    X11Driver &m_user;
    ClipboardPeer &m_clipboard;
    Editor m_editor;
    Editor::Toolkit m_toolkit;
};

} // namespace

std::unique_ptr<Application> makeMousepad(const Application::Desk &desk)
{
    return std::make_unique<EditedDocument>(desk, Editor::Toolkit::Gtk);
}

std::unique_ptr<Application> makeFocusWriter(const Application::Desk &desk)
{
    return std::make_unique<EditedDocument>(desk, Editor::Toolkit::Qt);
}

std::unique_ptr<Application> makeFeatherPad(const Application::Desk &desk)
{
    return std::make_unique<EditedDocument>(desk, Editor::Toolkit::Qt5);
}

} // namespace nivora::test
