#include "support/application.h"

#include "support/clipboard_peer.h"
#include "support/desktop_session.h"
#include "support/wait.h"

#include <QFile>

#include <X11/keysym.h>
#include <sys/ioctl.h>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto startBound = 20s;
constexpr auto patience = 10s;
constexpr auto selectBound = 500ms;

struct Program
{
    QString className;
    QString command;
    QStringList arguments; // the program inside comes after them
    Application::Paste paste;
    // Its three clicks take only as much of a line as it shows.
    bool selectsShownAlone = false;
};

// Takes every byte as it comes, the one of Ctrl+C included.
const auto recorder = u"stty -icanon -echo -isig -ixon -icrnl; tty >\"$1\"; exec cat >>\"$2\""_s;

class Terminal final : public Application
{
public:
    Terminal(const Desk &desk, Program program)
        : m_session(desk.session)
        , m_user(desk.user)
        , m_tree(desk.tree)
        , m_clipboard(desk.clipboard)
        , m_program(std::move(program))
        , m_sent(desk.session.folder() + u"/sent"_s)
    {
    }

    ~Terminal() override
    {
        if (m_process)
            m_session.end(m_process);
    }

    bool open() override
    {
        const QString named = m_session.folder() + u"/terminal"_s;
        m_process = m_session.launch(
            m_program.command,
            m_program.arguments + QStringList{u"sh"_s, u"-c"_s, recorder, u"sh"_s, named, m_sent});
        if (!m_process)
            return false;
        const auto window =
            m_user.waitForMapped(X11Driver::ofClass(m_program.className), startBound);
        if (!window || !m_user.waitForActive(window->id, startBound))
            return false;
        m_window = window->id;
        return waitUntil(
            [&] {
                const auto device = read(named);
                return device.endsWith('\n') && QFile::exists(m_sent) && attach(device.trimmed());
            },
            startBound);
    }

    bool show(const QString &text) override
    {
        m_text = text;
        QFile sent(m_sent);
        if (!sent.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return false;
        const QByteArray clear = "\033[H\033[2J\033[3J";
        const QByteArray output = clear + text.toUtf8();
        return m_terminal.write(output) == output.size() && m_terminal.flush();
    }

    bool select() override
    {
        const auto lines = m_text.count(u'\n');
        const auto attempt = [&] {
            if (m_program.selectsShownAlone && m_text.size() > m_size.width() * m_size.height())
                selectFarBack();
            else if (lines == 0)
                selectLine();
            else
                m_user.drag(cell(0, 0) + QPoint(-m_cell.width() / 2 + 1, 0),
                            cell(int(lines), m_size.width() - 1));
            return waitUntil([&] { return plain(selectedText()) == plain(m_text); }, selectBound);
        };
        return waitUntil(attempt, patience);
    }

    bool deselect() override
    {
        m_user.movePointer(cell(m_size.height() - 1, m_size.width() - 1));
        m_user.click();
        return true;
    }

    // Without the end of the last line, which a terminal may count in.
    QString selectedText() const override
    {
        QString text = m_clipboard.selection().value_or(QString());
        if (text.endsWith(u'\n'))
            text.chop(1);
        return text;
    }
    QString content() const override { return QString::fromUtf8(read(m_sent)); }
    QRect place() const override
    {
        const auto area = accessible();
        if (!area)
            return {};
        return area->selection() ? area->selectionBounds() : area->cursorBounds();
    }
    QRect frame() const override
    {
        const auto area = accessible();
        return area ? area->frame() : QRect();
    }
    Paste paste() const override { return m_program.paste; }
    X11Driver::WindowId window() const override { return m_window; }

private:
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // Some terminals drop the joiners within an emoji.
    static QString plain(QString text) { return text.remove(u'\r').remove(QChar(0x200d)); }

    bool attach(const QByteArray &device)
    {
        m_terminal.setFileName(QString::fromLocal8Bit(device));
        if (!m_terminal.open(QIODevice::WriteOnly))
            return false;
        winsize size{};
        if (ioctl(m_terminal.handle(), TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
            return false;
        m_size = {size.ws_col, size.ws_row};
        const auto window =
            m_user.find([&](const X11Driver::Window &each) { return each.id == m_window; });
        if (!window)
            return false;
        m_area = window->geometry;
        m_cell = {m_area.width() / m_size.width(), m_area.height() / m_size.height()};
        return true;
    }

    // Its middle.
    QPoint cell(int row, int column) const
    {
        return m_area.topLeft() + QPoint(column * m_cell.width() + m_cell.width() / 2,
                                         row * m_cell.height() + m_cell.height() / 2);
    }

    // The whole of it, also where it goes over many rows.
    void selectLine()
    {
        m_user.movePointer(cell(0, 1));
        for (int click = 0; click < 3; ++click)
            m_user.click();
    }

    // From the start, which has been scrolled away, to the end.
    void selectFarBack()
    {
        constexpr int pages = 60;
        for (int page = 0; page < pages; ++page)
            m_user.press({XK_Shift_L, XK_Prior});
        m_user.movePointer(cell(0, 0) - QPoint(m_cell.width() / 2 - 1, 0));
        m_user.click();
        for (int page = 0; page < pages; ++page)
            m_user.press({XK_Shift_L, XK_Next});
        m_user.movePointer(cell(m_size.height() - 1, m_size.width() - 1));
        m_user.click(X11Driver::Button::Right);
    }

    std::optional<AccessibleElement> accessible() const
    {
        return m_tree.find(m_process->processId(), AccessibilityTree::hasRole(u"terminal"_s));
    }

    DesktopSession &m_session;
    X11Driver &m_user;
    const AccessibilityTree &m_tree;
    ClipboardPeer &m_clipboard;
    Program m_program;
    QString m_sent;
    QProcess *m_process = nullptr;
    X11Driver::WindowId m_window = 0;
    QFile m_terminal;
    QSize m_size; // in cells
    QRect m_area; // in pixels, like the cell
    QSize m_cell;
    QString m_text;
};

} // namespace

std::unique_ptr<Application> makeXTerm(const Application::Desk &desk)
{
    return std::make_unique<Terminal>(
        desk, Program{u"XTerm"_s,
                      u"xterm"_s,
                      {u"-geometry"_s, u"80x20+100+60"_s, u"-b"_s, u"0"_s, u"-fa"_s,
                       u"DejaVu Sans Mono"_s, u"-fs"_s, u"9"_s, u"-e"_s},
                      Application::Paste::Unknown,
                      true});
}

std::unique_ptr<Application> makeXfceTerminal(const Application::Desk &desk)
{
    return std::make_unique<Terminal>(
        desk, Program{u"Xfce4-terminal"_s,
                      u"xfce4-terminal"_s,
                      {u"--disable-server"_s, u"--hide-menubar"_s, u"--hide-scrollbar"_s,
                       u"--geometry=80x20+100+60"_s, u"-x"_s},
                      Application::Paste::Inserts});
}

} // namespace nivora::test
