#include "support/editor.h"

#include "support/desktop_session.h"
#include "support/wait.h"

#include <QDir>
#include <QFile>

#include <X11/keysym.h>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto startBound = 20s;

struct Program
{
    QString className;
    QString command;
    QStringList arguments; // the document comes after them
    QString configFile;    // below the folder for configuration
    QByteArray config;
};

const Program &programOf(Editor::Toolkit toolkit)
{
    static const Program mousepad{u"Mousepad"_s, u"mousepad"_s, {u"--disable-server"_s}, {}, {}};
    // Left to itself it covers the whole screen.
    static const Program focusWriter{u"FocusWriter"_s,
                                     u"focuswriter"_s,
                                     {},
                                     u"GottCode/FocusWriter.conf"_s,
                                     "[Window]\nFullscreen=false\n"};
    static const Program featherPad{u"FeatherPad"_s, u"featherpad"_s, {u"--standalone"_s}, {}, {}};
    switch (toolkit) {
    case Editor::Toolkit::Gtk:
        return mousepad;
    case Editor::Toolkit::Qt:
        return focusWriter;
    case Editor::Toolkit::Qt5:
        return featherPad;
    }
    Q_UNREACHABLE();
}

bool writeFile(const QString &path, const QByteArray &contents)
{
    QDir().mkpath(path.section(u'/', 0, -2));
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
}

} // namespace

Editor::Editor(DesktopSession &session, X11Driver &user, const AccessibilityTree &tree)
    : m_session(session)
    , m_user(user)
    , m_tree(tree)
{
}

Editor::~Editor()
{
    if (m_process)
        m_session.end(m_process);
}

bool Editor::open(Toolkit toolkit, const QString &text)
{
    const Program &program = programOf(toolkit);
    // One of its own: an editor asks what to do when another one writes its file.
    const auto document = m_session.folder() + u"/documents/"_s + program.command + u"/note.txt"_s;
    if (!writeFile(document, text.toUtf8()))
        return false;

    if (!program.configFile.isEmpty() &&
        !writeFile(m_session.folder() + u"/config/"_s + program.configFile, program.config))
        return false;
    m_process = m_session.launch(program.command, program.arguments + QStringList{document});
    if (!m_process)
        return false;

    const auto window = m_user.waitForMapped(
        [&](const X11Driver::Window &candidate) {
            return candidate.className == program.className &&
                   candidate.title.contains("note.txt"_L1);
        },
        startBound);
    if (!window || !m_user.waitForActive(window->id, startBound))
        return false;
    m_window = window->id;
    m_area = m_tree.waitFor(
        m_process->processId(),
        [&](const AccessibleElement &element) {
            return element.role() == "text"_L1 && element.isFocused() && element.text() == text;
        },
        startBound);
    return m_area.has_value();
}

bool Editor::selectAll()
{
    // An editor that has only just opened may still drop keys.
    const auto pressAndLook = [&] {
        m_user.press({XK_Control_L, XK_a});
        return waitUntil([&] { return selectedText() == text(); }, 500ms);
    };
    return waitUntil(pressAndLook, 5s);
}

bool Editor::waitForText(const QString &expected, std::chrono::milliseconds bound) const
{
    return waitUntil([&] { return text() == expected; }, bound);
}

} // namespace nivora::test
