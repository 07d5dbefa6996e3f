#include "release_notes_view.h"

#include "empty_state.h"
#include "notes_browser.h"
#include "spinner.h"

#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr int spinnerSide = 24; // logical pixels

} // namespace

ReleaseNotesWebView::ReleaseNotesWebView(ReleaseNotes &notes, QWidget *parent)
    : QStackedWidget(parent)
    , m_notes(notes)
    , m_browser(new NotesBrowser(notes, this))
    , m_waiting(new QWidget(this))
    , m_failure(new EmptyState(u"wifi.exclamationmark"_s, tr("无法加载更新说明"), this))
{
    auto *column = new QVBoxLayout(m_waiting);
    column->addWidget(new Spinner(spinnerSide, m_waiting), 0, Qt::AlignCenter);
    for (QWidget *page :
         {m_waiting, static_cast<QWidget *>(m_browser), static_cast<QWidget *>(m_failure)})
        addWidget(page);
    connect(m_browser, &NotesBrowser::linkActivated, this, &ReleaseNotesWebView::linkActivated);
}

void ReleaseNotesWebView::setUrl(const QUrl &url)
{
    if (m_url == url)
        return;
    m_url = url;
    setCurrentWidget(m_waiting);
    m_request = m_notes.page(url, [this](const ReleaseNotes::Result &result) { take(result); });
}

void ReleaseNotesWebView::take(const ReleaseNotes::Result &result)
{
    if (const auto *problem = std::get_if<QString>(&result)) {
        m_failure->setDescription(*problem);
        setCurrentWidget(m_failure);
        return;
    }
    m_browser->setPage(std::get<ReleaseNotes::Page>(result));
    setCurrentWidget(m_browser);
}

} // namespace nivora
