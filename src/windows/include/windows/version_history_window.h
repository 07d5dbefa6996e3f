#pragma once

#include <QObject>

#include <functional>
#include <memory>

class QUrl;
class QWidget;

namespace nivora {

class ReleaseNotes;
class VersionHistory;

// Owns the window that lists the releases. It is made at the first use and only
// hidden afterwards; each time it comes on screen the feed is read anew.
class VersionHistoryWindowController : public QObject
{
    Q_OBJECT

public:
    // Both outlive the controller. `openLink` gets the links of the notes.
    VersionHistoryWindowController(VersionHistory &history, ReleaseNotes &notes,
                                   std::function<void(const QUrl &)> openLink);
    ~VersionHistoryWindowController() override;

    // Opens the window, or brings it to the front.
    void show();

private:
    VersionHistory &m_history;
    ReleaseNotes &m_notes;
    std::function<void(const QUrl &)> m_openLink;
    std::unique_ptr<QWidget> m_window; // null before the first use
};

} // namespace nivora
