#pragma once

#include <QListWidget>
#include <QUrl>
#include <QWidget>

class QStackedWidget;

namespace nivora {

class EmptyState;
class ReleaseNotes;
class ReleaseNotesWebView;
class VersionHistory;

// The releases on the left, the notes of the chosen one on the right.
class VersionHistoryView : public QWidget
{
    Q_OBJECT

public:
    // Both outlive the view.
    VersionHistoryView(VersionHistory &history, ReleaseNotes &notes);

Q_SIGNALS:
    void linkActivated(const QUrl &url);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void showEntries();
    void showSelection();
    void showPane();

    VersionHistory &m_history;
    QListWidget *m_list;
    QStackedWidget *m_pane;
    ReleaseNotesWebView *m_notes;
    QWidget *m_waiting;
    EmptyState *m_failure;
    QWidget *m_hint;
};

} // namespace nivora
