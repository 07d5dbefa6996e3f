#include "windows/version_history_window.h"

#include "version_history_view.h"
#include "window_opening.h"

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
        placeInTheMiddle(*m_window, windowSize);
    }
    bringToFront(*m_window);
}

} // namespace nivora
