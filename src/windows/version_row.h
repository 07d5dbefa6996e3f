#pragma once

#include <QStyledItemDelegate>

namespace nivora {

// A row of the version history: the version, and below it its date, if it has one.
class VersionRow : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // Of the item; Qt::DisplayRole is the version.
    static constexpr int dateRole = Qt::UserRole;

    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};

} // namespace nivora
