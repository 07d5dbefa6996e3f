#pragma once

#include "updates/release_notes.h"

#include "platform/task.h"

#include <QHash>
#include <QStackedWidget>
#include <QTextBrowser>
#include <QUrl>

#include <functional>
#include <optional>

namespace nivora {

class EmptyState;
class NotesBrowser;

// One page of release notes, in the colours of the theme. Its pictures follow the
// text; links are handed on.
class ReleaseNotesWebView : public QStackedWidget
{
    Q_OBJECT

public:
    // `notes` outlives the view.
    explicit ReleaseNotesWebView(ReleaseNotes &notes, QWidget *parent = nullptr);

    // Loads the page, unless it is the one that is there.
    void setUrl(const QUrl &url);

Q_SIGNALS:
    void linkActivated(const QUrl &url);

private:
    void take(const ReleaseNotes::Result &result);

    ReleaseNotes &m_notes;
    NotesBrowser *m_browser;
    QWidget *m_waiting;
    EmptyState *m_failure;
    std::optional<QUrl> m_url;
    platform::Task m_request;
};

} // namespace nivora
