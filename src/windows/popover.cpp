#include "popover.h"

#include "screen_places.h"

#include <QEvent>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int popoverWidth = 320;
constexpr int padding = 14;
constexpr int gap = 4; // to the control
constexpr int screenMargin = 8;

bool isConfirmation(const QKeyEvent &event)
{
    return (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) &&
           !event.modifiers().testFlag(Qt::ShiftModifier);
}

} // namespace

Popover::Popover(platform::WindowSystem &windowSystem, const QString &title, QWidget *panel)
    : CardWindow(windowSystem, u"popover"_s, panel)
    , m_windowSystem(windowSystem)
{
    setAccessibleName(title);
    m_column = new QVBoxLayout(this);
    m_column->setContentsMargins(padding, padding, padding, padding);
    m_column->setSpacing(8);
    m_column->setSizeConstraint(QLayout::SetNoConstraint);
    connect(this, &CardWindow::cancelled, this, &QWidget::hide);
}

void Popover::openAt(const QWidget &control, QWidget &first)
{
    const QRect anchor(control.mapToGlobal(QPoint()), control.size());
    const int height = contentHeight();
    QRect card(anchor.center().x() - popoverWidth / 2, anchor.bottom() + 1 + gap, popoverWidth,
               height);
    if (const QScreen *screen = screenFor(anchor.center())) {
        const QRect area =
            workArea(*screen, m_windowSystem)
                .marginsRemoved({screenMargin, screenMargin, screenMargin, screenMargin});
        if (card.bottom() > area.bottom() && anchor.top() - gap - height >= area.top())
            card.moveBottom(anchor.top() - 1 - gap);
        card.moveLeft(
            std::max(std::min(card.left(), area.right() + 1 - card.width()), area.left()));
        card.moveTop(std::max(std::min(card.top(), area.bottom() + 1 - card.height()), area.top()));
    }
    m_above = card.bottom() < anchor.top();
    first.setFocus(Qt::PopupFocusReason);
    present(card);
}

int Popover::contentHeight() const
{
    m_column->activate();
    return m_column->hasHeightForWidth() ? m_column->heightForWidth(popoverWidth)
                                         : m_column->sizeHint().height();
}

bool Popover::event(QEvent *event)
{
    // The panel's shortcuts reach into the windows that it opens: Control+Return
    // would put the translation into the user's document.
    if (event->type() == QEvent::ShortcutOverride &&
        isConfirmation(static_cast<const QKeyEvent &>(*event))) {
        event->accept();
        return true;
    }
    const bool handled = CardWindow::event(event);
    if (event->type() == QEvent::LayoutRequest)
        fitHeight();
    return handled;
}

void Popover::keyPressEvent(QKeyEvent *event)
{
    if (isConfirmation(*event))
        confirm();
    else
        CardWindow::keyPressEvent(event);
}

void Popover::fitHeight()
{
    const QRect now = card();
    const int change = contentHeight() - now.height();
    if (isVisible() && change != 0)
        setCard(m_above ? now.adjusted(0, -change, 0, 0) : now.adjusted(0, 0, 0, change));
}

} // namespace nivora
