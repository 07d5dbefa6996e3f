#include "windows/product_style.h"

#include "product_controls.h"
#include "symbol.h"
#include "windows/theme.h"

#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QStyleOption>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int scrollBarWidth = 10;
constexpr int handleInset = 2;
constexpr int leastHandle = 24;
constexpr QSize checkMark(14, 14);
constexpr int sliderHandle = 16;
constexpr int pickerPadding = 5;
constexpr int pickerArrow = 24;
constexpr int pickerFrame = 2; // its line while in use
constexpr int menuPadding = 4;
constexpr int menuItemPadding = 4; // above and below

constexpr double handleOpacity = 0.22;
constexpr double handleOpacityInUse = 0.4;

QRect scrollHandle(const QStyleOptionSlider &bar)
{
    const bool upright = bar.orientation == Qt::Vertical;
    const int length = upright ? bar.rect.height() : bar.rect.width();
    const qint64 range = qint64(bar.maximum) - bar.minimum;
    int handle = length;
    if (range > 0)
        handle = std::clamp(int(qint64(length) * bar.pageStep / (range + bar.pageStep)),
                            std::min(leastHandle, length), length);
    const int place = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                      length - handle, bar.upsideDown);
    return upright ? QRect(bar.rect.left(), bar.rect.top() + place, bar.rect.width(), handle)
                   : QRect(bar.rect.left() + place, bar.rect.top(), handle, bar.rect.height());
}

} // namespace

ProductStyle::ProductStyle()
    : QProxyStyle(u"fusion"_s)
{
}

int ProductStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                              const QWidget *widget) const
{
    if (metric == PM_ScrollBarExtent)
        return scrollBarWidth;
    if (metric == PM_SliderThickness || metric == PM_SliderLength ||
        metric == PM_SliderControlThickness)
        return sliderHandle;
    if (metric == PM_MenuHMargin || metric == PM_MenuVMargin)
        return menuPadding;
    if (metric == PM_MenuPanelWidth)
        return 1;
    return QProxyStyle::pixelMetric(metric, option, widget);
}

QSize ProductStyle::sizeFromContents(ContentsType type, const QStyleOption *option,
                                     const QSize &size, const QWidget *widget) const
{
    const QSize whole = QProxyStyle::sizeFromContents(type, option, size, widget);
    return type == CT_MenuItem ? whole.grownBy({0, menuItemPadding, 0, menuItemPadding}) : whole;
}

int ProductStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                            QStyleHintReturn *data) const
{
    if (hint == SH_Widget_Animation_Duration && m_reducedMotion)
        return 0;
    if (hint == SH_EtchDisabledText) // a shadow, which blurs it where text is light
        return 0;
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons)
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, data);
}

QRect ProductStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option,
                                   SubControl part, const QWidget *widget) const
{
    const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option);
    if (control == CC_ComboBox && part == SC_ComboBoxEditField)
        return option->rect.adjusted(pickerPadding, pickerFrame, -pickerArrow, -pickerFrame);
    if (control != CC_ScrollBar || !bar)
        return QProxyStyle::subControlRect(control, option, part, widget);
    const QRect handle = scrollHandle(*bar);
    const bool upright = bar->orientation == Qt::Vertical;
    QRect rest = bar->rect;
    switch (part) {
    case SC_ScrollBarGroove:
        return bar->rect;
    case SC_ScrollBarSlider:
        return handle;
    case SC_ScrollBarSubPage:
        upright ? rest.setBottom(handle.top() - 1) : rest.setRight(handle.left() - 1);
        return rest;
    case SC_ScrollBarAddPage:
        upright ? rest.setTop(handle.bottom() + 1) : rest.setLeft(handle.right() + 1);
        return rest;
    default:
        return {}; // no arrows
    }
}

void ProductStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                      QPainter *painter, const QWidget *widget) const
{
    if (const auto *picker = qstyleoption_cast<const QStyleOptionComboBox *>(option);
        picker && control == CC_ComboBox)
        return drawPicker(*painter, *picker);
    const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option);
    if (bar && control == CC_Slider)
        return drawSlider(*painter, *bar, subControlRect(control, option, SC_SliderHandle, widget));
    if (control != CC_ScrollBar || !bar)
        return QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (bar->minimum == bar->maximum)
        return;
    QColor color = bar->palette.color(QPalette::WindowText);
    const bool inUse = bar->state.testFlag(State_MouseOver) || bar->state.testFlag(State_Sunken);
    color.setAlphaF(float(inUse ? handleOpacityInUse : handleOpacity));
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(color);
    const QRectF handle =
        QRectF(scrollHandle(*bar)).adjusted(handleInset, handleInset, -handleInset, -handleInset);
    const qreal radius = std::min(handle.width(), handle.height()) / 2;
    painter->drawRoundedRect(handle, radius, radius);
    painter->restore();
}

void ProductStyle::drawControl(ControlElement element, const QStyleOption *option,
                               QPainter *painter, const QWidget *widget) const
{
    const auto *progress = qstyleoption_cast<const QStyleOptionProgressBar *>(option);
    if (element == CE_ProgressBar && progress)
        return drawProgress(*painter, *progress);
    QProxyStyle::drawControl(element, option, painter, widget);
}

void ProductStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                                 QPainter *painter, const QWidget *widget) const
{
    if (element == PE_PanelLineEdit) {
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        if (frame && frame->lineWidth > 0)
            return drawField(*painter, *frame, frame->state.testFlag(State_HasFocus));
    }
    if (element == PE_FrameMenu)
        return; // drawn with the rest
    if (element == PE_Frame && qobject_cast<const QPlainTextEdit *>(widget))
        return drawField(*painter, *option, option->state.testFlag(State_HasFocus));
    if (element == PE_PanelMenu) {
        painter->fillRect(option->rect, option->palette.color(QPalette::Window));
        painter->setPen(hairline(option->palette));
        painter->drawRect(QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5));
        return;
    }
    if (element != PE_IndicatorCheckBox || !qobject_cast<const QMenu *>(widget))
        return QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (!option->state.testFlag(State_On))
        return;
    const bool chosen = option->state.testFlag(State_Selected);
    QRect mark(QPoint(), checkMark);
    mark.moveCenter(option->rect.center());
    painter->drawPixmap(mark.topLeft(),
                        symbolPixmap(u"checkmark"_s, checkMark,
                                     painter->device()->devicePixelRatioF(),
                                     option->palette.color(chosen ? QPalette::HighlightedText
                                                                  : QPalette::WindowText)));
}

} // namespace nivora
