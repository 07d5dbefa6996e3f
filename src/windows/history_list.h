#pragma once

#include "history_row.h"

#include "platform/task.h"

#include <QListView>
#include <QPersistentModelIndex>

namespace nivora {

class HistoryModel;

// The list of the history. Text in a row can be selected with the pointer, and
// each row has a button that copies its translation.
class HistoryList : public QListView
{
    Q_OBJECT

public:
    HistoryList(HistoryModel &model, QWidget *parent);

    void doItemsLayout() override;
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;

Q_SIGNALS:
    void copyRequested(const QString &text);
    void deleteRequested(const QUuid &id);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool viewportEvent(QEvent *event) override;

private:
    class Delegate;

    // What of which row lies at a place of the viewport.
    struct Spot
    {
        QModelIndex row;
        enum class Kind { Nothing, CopyButton, Text } kind = Kind::Nothing;
        HistoryText which = HistoryText::Source;
        int position = 0; // in the text
    };

    // Lays all rows out by the heights that are known. The current row stays where it
    // shows, or else the one at the top.
    void place();
    // Lays out what shows in the width of now.
    void settleVisible();
    // The same for all others, in slices.
    void settleRest();

    Spot spotAt(const QPoint &place);
    int positionIn(const QModelIndex &row, HistoryText which, const QPoint &place);
    void point(const Spot &spot);
    void select(const QModelIndex &row, HistoryText which, int anchor, int cursor);
    QString selectedText();
    void copyFrom(const QModelIndex &row);

    HistoryModel &m_model;
    HistoryRows m_rows;
    platform::Task m_settling;
    bool m_unplaced = false;         // rows are settled that place() does not know of
    QPersistentModelIndex m_hovered; // the row whose button is below the pointer
    QPersistentModelIndex m_pressed; // the row whose button is held
    // The selected text.
    QPersistentModelIndex m_selectedRow;
    HistoryText m_selectedText = HistoryText::Source;
    int m_anchor = 0;
    int m_cursor = 0;
    bool m_selecting = false;
    bool m_ring = false; // the keyboard brought the focus
};

} // namespace nivora
