#include "windows/history_window_controller.h"

#include "history_view.h"
#include "window_opening.h"

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr QSize windowSize(520, 440); // logical pixels

} // namespace

HistoryWindowController::HistoryWindowController(HistoryStore &store,
                                                 platform::Clipboard &clipboard)
    : m_store(store)
    , m_clipboard(clipboard)
{
}

HistoryWindowController::~HistoryWindowController() = default;

void HistoryWindowController::show()
{
    if (!m_window) {
        m_window = std::make_unique<HistoryView>(m_store, m_clipboard);
        m_window->setWindowTitle(tr("翻译历史", "translation history window title"));
        m_window->setWindowRole(u"history"_s);
        m_window->setAttribute(Qt::WA_QuitOnClose, false);
        placeInTheMiddle(*m_window, windowSize);
    }
    bringToFront(*m_window);
}

} // namespace nivora
