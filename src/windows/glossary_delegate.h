#pragma once

#include <QStyledItemDelegate>

namespace nivora {

// Draws a term as two fields with an arrow between them and a bin at the end of
// the row, and writes what is typed into them through at each keystroke.
class GlossaryDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    static constexpr int rowHeight = 34; // logical pixels

    // What is in the row beside the two fields, before and behind the second one's
    // left edge; logical pixels.
    static constexpr int rowInset = 13;
    static constexpr int arrowWidth = 28;
    static constexpr int binWidth = 40;

    // Whether this place within a cell is on the bin.
    static bool isBin(const QModelIndex &index, const QRect &cell, const QPoint &place);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
};

} // namespace nivora
