#pragma once

#include "updates/release_notes.h"

#include "platform/task.h"

#include <QTextBrowser>
#include <QUrl>

#include <map>

namespace nivora {

// The text of one page of notes. Qt asks it for all that a page refers to, and it
// asks the update server alone.
class NotesBrowser : public QTextBrowser
{
    Q_OBJECT

public:
    // `notes` outlives the view.
    explicit NotesBrowser(ReleaseNotes &notes, QWidget *parent = nullptr);

    void setPage(const ReleaseNotes::Page &page);

Q_SIGNALS:
    void linkActivated(const QUrl &url); // whole

protected:
    QVariant loadResource(int type, const QUrl &name) override;
    void changeEvent(QEvent *event) override;

private:
    void render();
    void fetchPicture(const QUrl &name);
    void showPicture(const QUrl &name, QImage picture);

    ReleaseNotes &m_notes;
    ReleaseNotes::Page m_page;
    std::map<QUrl, platform::Task> m_pictures; // asked for, by the name in the page
};

} // namespace nivora
