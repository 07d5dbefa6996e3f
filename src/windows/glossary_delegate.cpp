#include "glossary_delegate.h"

#include "glossary_model.h"
#include "product_controls.h"
#include "settings_card.h"
#include "symbol.h"
#include "windows/theme.h"

#include <QLineEdit>
#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int textPixels = 13;
constexpr int fieldInset = 3; // above and below a field
constexpr int textInset = 7;
constexpr QSize symbolSize(14, 14);

// What of a term can show in one line.
constexpr qsizetype mostShown = 120;

bool isLast(const QModelIndex &index)
{
    return index.column() == GlossaryModel::Japanese;
}

QRect fieldOf(const QRect &cell, const QModelIndex &index)
{
    using D = GlossaryDelegate;
    return isLast(index) ? cell.adjusted(D::arrowWidth, fieldInset, -D::binWidth, -fieldInset)
                         : cell.adjusted(D::rowInset, fieldInset, 0, -fieldInset);
}

void drawSymbol(QPainter &painter, const QString &name, const QRect &frame, const QColor &color)
{
    QRect place(QPoint(), symbolSize);
    place.moveCenter(frame.center());
    painter.drawPixmap(place.topLeft(), symbolPixmap(name, symbolSize,
                                                     painter.device()->devicePixelRatioF(), color));
}

Language languageOf(const QModelIndex &index)
{
    return isLast(index) ? Language::Japanese : Language::Chinese;
}

} // namespace

bool GlossaryDelegate::isBin(const QModelIndex &index, const QRect &cell, const QPoint &place)
{
    return index.isValid() && isLast(index) && place.x() > cell.right() - binWidth;
}

void GlossaryDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    const QPalette &palette = option.palette;
    const QRect cell = option.rect;
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const bool isHovered = option.state.testFlag(QStyle::State_MouseOver);
    painter->save();
    // Over the view's own mark of a selected row, which is too loud around fields.
    painter->fillRect(cell, palette.color(QPalette::Window));
    painter->fillRect(cell, SettingsCard::tint(palette));
    if (isSelected || isHovered) {
        QColor ground = isSelected ? palette.color(QPalette::Highlight) : hoverTint(palette);
        ground.setAlphaF(isSelected ? 0.16f : ground.alphaF() / 2);
        painter->fillRect(cell, ground);
    }

    QStyleOption field;
    field.rect = fieldOf(cell, index);
    field.palette = palette;
    drawField(*painter, field, option.state.testFlag(QStyle::State_HasFocus));

    QString text = index.data().toString();
    QColor ink = palette.color(QPalette::Text);
    if (text.isEmpty()) {
        text = GlossaryModel::placeholder(index.column());
        ink = palette.color(QPalette::PlaceholderText);
    }
    const QRect frame = field.rect.adjusted(textInset, 0, -textInset, 0);
    painter->setFont(textFont(textPixels, languageOf(index)));
    painter->setPen(ink);
    const QString line = text.first(std::min(text.size(), mostShown)).simplified();
    painter->drawText(frame, Qt::AlignVCenter | Qt::AlignLeft,
                      painter->fontMetrics().elidedText(line, Qt::ElideRight, frame.width()));

    if (isLast(index)) {
        drawSymbol(*painter, u"arrow.left.arrow.right"_s,
                   {cell.left(), cell.top(), arrowWidth, cell.height()}, faintText(palette));
        drawSymbol(*painter, u"trash"_s,
                   {cell.right() + 1 - binWidth, cell.top(), binWidth, cell.height()},
                   secondaryText(palette));
    }
    painter->restore();
}

QSize GlossaryDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return {option.rect.width(), rowHeight};
}

QWidget *GlossaryDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                        const QModelIndex &index) const
{
    auto *editor = new QLineEdit(parent);
    editor->setFont(textFont(textPixels, languageOf(index)));
    editor->setTextMargins(textInset - 4, 0, 0, 0);
    editor->setPlaceholderText(GlossaryModel::placeholder(index.column()));
    editor->setAccessibleName(editor->placeholderText());
    connect(editor, &QLineEdit::textChanged, this,
            [this, editor] { Q_EMIT const_cast<GlossaryDelegate *>(this)->commitData(editor); });
    return editor;
}

void GlossaryDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *field = static_cast<QLineEdit *>(editor);
    const QString text = index.data(Qt::EditRole).toString();
    // What was typed comes back as a change of the model; the cursor stays.
    if (field->text() != text)
        field->setText(text);
}

void GlossaryDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                            const QModelIndex &index) const
{
    editor->setGeometry(fieldOf(option.rect, index));
}

} // namespace nivora
