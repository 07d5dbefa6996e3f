#pragma once

#include <QObject>

#include <memory>

class QWidget;

namespace nivora {

class HistoryStore;

namespace platform {
class Clipboard;
}

// Owns the window that lists the history. It is made at the first use and only
// hidden afterwards: the search survives closing.
class HistoryWindowController : public QObject
{
    Q_OBJECT

public:
    // Both outlive the controller.
    HistoryWindowController(HistoryStore &store, platform::Clipboard &clipboard);
    ~HistoryWindowController() override;

    // Opens the window, or brings it to the front.
    void show();

private:
    HistoryStore &m_store;
    platform::Clipboard &m_clipboard;
    std::unique_ptr<QWidget> m_window; // null before the first use
};

} // namespace nivora
