#include "windows/translation_panel_view.h"

#include "compose_input.h"
#include "divider.h"
#include "panel_footer.h"
#include "panel_header.h"
#include "result_area.h"

#include "session/translation_view_model.h"

#include <QEvent>
#include <QGuiApplication>
#include <QInputMethod>
#include <QMouseEvent>
#include <QShortcut>
#include <QVBoxLayout>

namespace nivora {

TranslationPanelView::TranslationPanelView(TranslationViewModel &session,
                                           platform::WindowSystem &windowSystem, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_header(new PanelHeader(session, windowSystem, this))
    , m_composeDivider(new Divider(this))
    , m_compose(new ComposeInput(session, this))
    , m_resultDivider(new Divider(this))
    , m_result(new ResultArea(session, this))
    , m_footer(new PanelFooter(session, windowSystem, this))
{
    setFixedWidth(panelWidth);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_header);
    column->addWidget(m_composeDivider);
    column->addWidget(m_compose);
    column->addWidget(m_resultDivider);
    column->addWidget(m_result);
    column->addWidget(m_footer);
    column->addStretch();

    connect(m_header, &PanelHeader::closeRequested, this, &TranslationPanelView::closeRequested);
    connect(m_footer, &PanelFooter::replyRequested, this, &TranslationPanelView::replyRequested);
    connect(&m_session, &TranslationViewModel::modeChanged, this,
            &TranslationPanelView::renderMode);
    connect(m_result, &ResultArea::contentShown, this, [this] {
        if (window()->focusWidget() == window()) // nothing was worth it until now
            focusWhereWorkGoesOn(Qt::OtherFocusReason);
    });
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto *shortcut = new QShortcut(QKeySequence(Qt::CTRL | key), this);
        connect(shortcut, &QShortcut::activated, this, [this] {
            // What is still being composed belongs to the text.
            QGuiApplication::inputMethod()->commit();
            if (!m_compose->triggerTranslate())
                m_footer->triggerPrimaryAction();
        });
    }
    renderMode();
}

void TranslationPanelView::renderMode()
{
    const bool writing = m_session.mode() != PanelMode::Selection;
    m_composeDivider->setVisible(writing);
    m_compose->setVisible(writing);
}

void TranslationPanelView::reset()
{
    m_dragStart.reset();
    closePopovers();
    m_result->reset();
    window()->setAttribute(Qt::WA_KeyboardFocusChange, false);
    focusWhereWorkGoesOn(Qt::OtherFocusReason);
}

void TranslationPanelView::focusWhereWorkGoesOn(Qt::FocusReason reason)
{
    if (m_session.mode() != PanelMode::Selection)
        m_compose->focusEditor(reason);
    else if (!m_result->focusText(reason))
        window()->setFocus(reason);
}

// A control that goes away while it has the focus, or can no longer be used, leaves
// it where the work goes on, and not to whatever comes next.
bool TranslationPanelView::focusNextPrevChild(bool next)
{
    const QWidget *last = window()->focusWidget();
    if (!last || !isAncestorOf(last) || (last->isVisible() && last->isEnabled()))
        return QWidget::focusNextPrevChild(next);
    const auto reason = window()->testAttribute(Qt::WA_KeyboardFocusChange) ? Qt::TabFocusReason
                                                                            : Qt::OtherFocusReason;
    const bool belongsToResult = m_result->isAncestorOf(last) || m_footer->isAncestorOf(last);
    if (!belongsToResult || !m_result->focusText(reason))
        focusWhereWorkGoesOn(reason);
    return true;
}

void TranslationPanelView::closePopovers()
{
    m_header->closePopover();
    m_footer->closePopover();
}

int TranslationPanelView::contentHeight() const
{
    return layout()->totalSizeHint().height();
}

bool TranslationPanelView::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest) {
        m_resultDivider->setVisible(!m_result->isHidden());
        const int height = contentHeight();
        if (std::exchange(m_reportedHeight, height) != height)
            Q_EMIT contentHeightChanged(height);
    }
    return handled;
}

// Any place that no control takes drags the panel. The window manager's own way to
// move a window takes the keyboard away for as long, and a panel without the
// keyboard closes.
void TranslationPanelView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_dragStart = event->globalPosition().toPoint();
}

void TranslationPanelView::mouseMoveEvent(QMouseEvent *event)
{
    if (m_dragStart)
        Q_EMIT dragged(event->globalPosition().toPoint() - *m_dragStart, false);
}

void TranslationPanelView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_dragStart)
        return;
    Q_EMIT dragged(event->globalPosition().toPoint() - *m_dragStart, true);
    m_dragStart.reset();
}

} // namespace nivora
