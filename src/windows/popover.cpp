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

void Popover::openAt(QWidget &control, QWidget &first)
{
    m_control = &control;
    m_above = false;
    m_area = {};
    if (const QScreen *screen = screenFor(control.mapToGlobal(control.rect().center())))
        m_area = workArea(*screen, m_windowSystem)
                     .marginsRemoved({screenMargin, screenMargin, screenMargin, screenMargin});
    // The control moves within the panel, and with it.
    for (QWidget *each = &control; each; each = each->parentWidget())
        each->installEventFilter(this);
    const bool byKeyboard = control.window()->testAttribute(Qt::WA_KeyboardFocusChange);
    first.setFocus(byKeyboard ? Qt::TabFocusReason : Qt::PopupFocusReason);
    present(place());
}

// Where there is room it keeps to its side of the control.
QRect Popover::place()
{
    const QRect anchor(m_control->mapToGlobal(QPoint()), m_control->size());
    const int height = contentHeight();
    const int below = anchor.bottom() + 1 + gap;
    const int above = anchor.top() - gap - height;
    QRect card(anchor.center().x() - popoverWidth / 2, below, popoverWidth, height);
    if (m_area.isEmpty())
        return card;
    const bool fitsBelow = below + height <= m_area.bottom() + 1;
    const bool fitsAbove = above >= m_area.top();
    m_above = fitsAbove && (m_above || !fitsBelow);
    if (m_above)
        card.moveTop(above);
    card.moveLeft(
        std::max(std::min(card.left(), m_area.right() + 1 - card.width()), m_area.left()));
    card.moveTop(std::max(std::min(card.top(), m_area.bottom() + 1 - height), m_area.top()));
    return card;
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
        follow();
    return handled;
}

void Popover::keyPressEvent(QKeyEvent *event)
{
    if (isConfirmation(*event))
        confirm();
    else
        CardWindow::keyPressEvent(event);
}

bool Popover::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
        follow();
    return CardWindow::eventFilter(object, event);
}

void Popover::follow()
{
    // A control that went away leaves the popover where it is.
    if (!isVisible() || !m_control || !m_control->isVisible())
        return;
    if (const QRect wished = place(); wished != card())
        setCard(wished);
}

} // namespace nivora
