#include "version_row.h"

#include "windows/theme.h"

#include <QFontMetrics>
#include <QPainter>

namespace nivora {

namespace {

// Logical pixels.
constexpr int versionPixels = 13;
constexpr int datePixels = 10;
constexpr int lineGap = 2;
constexpr int sidePadding = 10;
constexpr int verticalPadding = 6;
constexpr int inset = 4; // of the tint of the chosen row
constexpr qreal radius = 5;

QFont versionFont()
{
    QFont font = textFont(versionPixels);
    font.setWeight(QFont::Medium);
    return font;
}

QString dateOf(const QModelIndex &index)
{
    return index.data(VersionRow::dateRole).toString();
}

} // namespace

QSize VersionRow::sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const
{
    int height = 2 * verticalPadding + QFontMetrics(versionFont()).height();
    if (!dateOf(index).isEmpty())
        height += lineGap + QFontMetrics(textFont(datePixels)).height();
    return {0, height};
}

void VersionRow::paint(QPainter *painter, const QStyleOptionViewItem &option,
                       const QModelIndex &index) const
{
    const bool chosen = option.state.testFlag(QStyle::State_Selected);
    const bool inUse = chosen && option.state.testFlag(QStyle::State_HasFocus);
    painter->save();
    if (chosen || option.state.testFlag(QStyle::State_MouseOver)) {
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(inUse ? option.palette.color(QPalette::Highlight)
                                : hoverTint(option.palette));
        painter->setOpacity(chosen ? 1 : 0.6);
        painter->drawRoundedRect(QRectF(option.rect).adjusted(inset, 1, -inset, -1), radius,
                                 radius);
        painter->setOpacity(1);
    }

    const QRect room = option.rect.adjusted(sidePadding, verticalPadding, -sidePadding, 0);
    const QColor ink =
        option.palette.color(inUse ? QPalette::HighlightedText : QPalette::WindowText);
    const QFontMetrics version(versionFont());
    painter->setFont(versionFont());
    painter->setPen(ink);
    painter->drawText(room.x(), room.y() + version.ascent(),
                      version.elidedText(index.data().toString(), Qt::ElideRight, room.width()));
    if (const QString text = dateOf(index); !text.isEmpty()) {
        const QFontMetrics date(textFont(datePixels));
        painter->setFont(textFont(datePixels));
        painter->setPen(inUse ? ink : secondaryText(option.palette));
        painter->drawText(room.x(), room.y() + version.height() + lineGap + date.ascent(),
                          date.elidedText(text, Qt::ElideRight, room.width()));
    }
    painter->restore();
}

} // namespace nivora
