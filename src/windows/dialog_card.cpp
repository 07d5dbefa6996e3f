#include "dialog_card.h"

#include "panel_button.h"
#include "screen_places.h"

#include <QCloseEvent>
#include <QCursor>
#include <QMouseEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr int closeButtonInset = 10; // logical pixels, from the card's corner

Qt::WindowFlags kindOf(DialogCard::Level level)
{
    // Window managers that tile leave a dialog as it is.
    Qt::WindowFlags kind = Qt::Dialog;
    kind.setFlag(Qt::WindowStaysOnTopHint, level == DialogCard::Level::Floating);
    return kind;
}

} // namespace

DialogCard::DialogCard(platform::WindowSystem &windowSystem, const QString &role, Level level,
                       const QString &closeHint)
    : CardWindow(windowSystem, role, nullptr, kindOf(level))
    , m_windowSystem(windowSystem)
    , m_closeButton(new PanelButton(PanelButton::Look::Plain, this))
{
    m_closeButton->setSymbol(u"xmark"_s);
    m_closeButton->setHint(closeHint);
    m_closeButton->resize(m_closeButton->sizeHint());
    connect(m_closeButton, &PanelButton::clicked, this, &CardWindow::cancelled);
}

void DialogCard::setContent(QWidget *content, const QSize &size)
{
    m_content = content;
    m_size = size;
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSizeConstraint(QLayout::SetNoConstraint);
    column->addWidget(content);
    m_closeButton->raise();
}

int DialogCard::cardHeight() const
{
    layout()->activate();
    const QLayout &content = *m_content->layout();
    const int needed = content.hasHeightForWidth() ? content.heightForWidth(m_size.width())
                                                   : content.sizeHint().height();
    return std::max(needed, m_size.height());
}

void DialogCard::open()
{
    if (isVisible())
        return present(card());
    QRect place(QPoint(), QSize(m_size.width(), cardHeight()));
    if (const QScreen *screen = screenFor(QCursor::pos())) {
        const QRect area = workArea(*screen, m_windowSystem);
        place.moveCenter(area.center());
        place.moveTop(std::max(place.top(), area.top()));
    }
    present(place);
}

bool DialogCard::event(QEvent *event)
{
    const bool handled = CardWindow::event(event);
    if (event->type() == QEvent::LayoutRequest && isVisible()) {
        QRect now = card();
        if (std::exchange(now, QRect(now.topLeft(), QSize(now.width(), cardHeight()))) != now)
            setCard(now);
    }
    return handled;
}

void DialogCard::closeEvent(QCloseEvent *event)
{
    CardWindow::closeEvent(event);
    // Not when the program closes all its windows to end.
    if (event->spontaneous())
        Q_EMIT cancelled();
}

void DialogCard::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        windowHandle()->startSystemMove();
}

void DialogCard::resizeEvent(QResizeEvent *event)
{
    CardWindow::resizeEvent(event);
    placeCloseButton();
}

void DialogCard::placeCloseButton()
{
    const QRect card = contentsRect();
    m_closeButton->move(card.right() + 1 - closeButtonInset - m_closeButton->width(),
                        card.top() + closeButtonInset);
}

} // namespace nivora
