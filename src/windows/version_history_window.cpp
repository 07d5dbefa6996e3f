#include "windows/version_history_window.h"

#include "screen_places.h"
#include "version_history_view.h"

#include <QCursor>
#include <QScreen>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr QSize windowSize(600, 440); // logical pixels

} // namespace

VersionHistoryWindowController::VersionHistoryWindowController(
    VersionHistory &history, ReleaseNotes &notes, std::function<void(const QUrl &)> openLink)
    : m_history(history)
    , m_notes(notes)
    , m_openLink(std::move(openLink))
{
}

VersionHistoryWindowController::~VersionHistoryWindowController() = default;

void VersionHistoryWindowController::show()
{
    if (!m_window) {
        auto view = std::make_unique<VersionHistoryView>(m_history, m_notes);
        connect(view.get(), &VersionHistoryView::linkActivated, this,
                [this](const QUrl &link) { m_openLink(link); });
        m_window = std::move(view);
        m_window->setWindowTitle(tr("版本历史", "version history window title"));
        m_window->setWindowRole(u"versionHistory"_s);
        m_window->setAttribute(Qt::WA_QuitOnClose, false);
        m_window->resize(windowSize);
        if (const QScreen *screen = screenFor(QCursor::pos())) {
            QRect place(QPoint(), windowSize);
            place.moveCenter(screen->availableGeometry().center());
            m_window->move(place.topLeft());
        }
    }
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

} // namespace nivora
