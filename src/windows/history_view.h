#pragma once

#include "platform/task.h"

#include <QWidget>

class QFileDialog;
class QLabel;
class QLineEdit;
class QStackedWidget;

namespace nivora {

class EmptyState;
class HistoryList;
class HistoryModel;
class HistoryStore;
class PanelButton;

namespace platform {
class Clipboard;
}

// The content of the history window: a field to search with, and the rows found.
// It keeps nothing of its own except the search text. The store is watched while
// the view is on screen, and costs nothing else.
class HistoryView : public QWidget
{
    Q_OBJECT

public:
    HistoryView(HistoryStore &store, platform::Clipboard &clipboard);

protected:
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    QWidget *makeBar();
    void search();
    void render();
    QWidget *pageFor() const;
    void askForFile();
    void exportTo(const QString &path, bool asJson);

    HistoryStore &m_store;
    platform::Clipboard &m_clipboard;
    HistoryModel *m_model;
    QLineEdit *m_field;
    PanelButton *m_export;
    QLabel *m_count;
    PanelButton *m_clear;
    QWidget *m_bar;
    QStackedWidget *m_pages;
    QWidget *m_blank; // nothing is known yet
    EmptyState *m_empty;
    EmptyState *m_noResults;
    HistoryList *m_list;
    QFileDialog *m_dialog = nullptr;
    platform::Task m_exporting;
    platform::Task m_alert;
};

} // namespace nivora
