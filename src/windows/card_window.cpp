#include "windows/card_window.h"

#include "card_shadow.h"
#include "windows/theme.h"

#include "platform/window_system.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr qreal cornerRadius = 10; // logical pixels

class AccessibleCard final : public QAccessibleWidget
{
public:
    explicit AccessibleCard(CardWindow *card)
        : QAccessibleWidget(card, QAccessible::Dialog)
    {
    }

    // The card itself has the focus while nothing on it is worth it.
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.focusable = true;
        return state;
    }
};

QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    auto *card = qobject_cast<CardWindow *>(object);
    return card ? new AccessibleCard(card) : nullptr;
}

} // namespace

CardWindow::CardWindow(platform::WindowSystem &windowSystem, const QString &role, QWidget *parent,
                       Qt::WindowFlags kind)
    : QWidget(parent, kind | Qt::FramelessWindowHint)
    , m_windowSystem(windowSystem)
{
    QAccessible::installFactory(makeAccessible); // before anybody asks
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowRole(role);
    setWindowTitle(u"Nivora"_s);
}

QRect CardWindow::card() const
{
    return geometry().adjusted(m_margin, m_margin, -m_margin, -m_margin);
}

void CardWindow::setCard(const QRect &card)
{
    setGeometry(card.adjusted(-m_margin, -m_margin, m_margin, m_margin));
    if (m_margin > 0)
        follow();
}

// Tells the desktop what is shadow.
void CardWindow::follow()
{
    const qreal ratio = devicePixelRatioF();
    m_windowSystem.setShadow(platform::WindowId(winId()), (QSizeF(size()) * ratio).toSize(),
                             qRound(m_margin * ratio));
}

void CardWindow::present(const QRect &card)
{
    const int margin = m_windowSystem.isCompositing() ? cardShadowReach : 0;
    if (std::exchange(m_margin, margin) != margin) {
        setContentsMargins(margin, margin, margin, margin);
        if (margin == 0)
            follow();
    }
    setCard(card);
    m_presenting = !isVisible();
    m_wantsKeyboard = m_presenting;
    show();
    raise();
    activateWindow();
}

// Without a window manager nobody answers a request for the keyboard, and one
// that guards what the user types may not: but the user has called this window. Who
// has turned to another window since is not called back.
void CardWindow::insistOnKeyboard()
{
    if (m_wantsKeyboard && isVisible() && !QGuiApplication::focusWindow())
        m_windowSystem.requestActivation(platform::WindowId(winId()));
}

bool CardWindow::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate)
        m_wantsKeyboard = false;
    return QWidget::event(event);
}

void CardWindow::hideEvent(QHideEvent *event)
{
    m_presenting = false;
    QWidget::hideEvent(event);
}

void CardWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel))
        Q_EMIT cancelled();
    else
        QWidget::keyPressEvent(event);
}

void CardWindow::paintEvent(QPaintEvent *)
{
    // What is painted is on the screen, where a window can take the keyboard.
    if (std::exchange(m_presenting, false))
        QMetaObject::invokeMethod(this, &CardWindow::insistOnKeyboard, Qt::QueuedConnection);

    QPainter painter(this);
    const QColor line = hairline(palette());
    // The hairline lies on the fill, and the fill must not shine through it.
    if (m_margin == 0) {
        painter.fillRect(rect(), palette().color(QPalette::Window));
        painter.setPen(line);
        painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
        return;
    }
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    const QRectF frame = QRectF(rect()).adjusted(m_margin, m_margin, -m_margin, -m_margin);
    drawCardShadow(painter, frame, cornerRadius, isDark(palette()));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(line);
    painter.setBrush(palette().color(QPalette::Window));
    painter.drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
}

} // namespace nivora
