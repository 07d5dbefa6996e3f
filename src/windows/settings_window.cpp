#include "settings_window.h"

#include "screen_places.h"
#include "settings_account_tab.h"
#include "settings_general_tab.h"
#include "settings_tab_bar.h"
#include "settings_translation_tab.h"
#include "windows/theme.h"

#include "platform/window_system.h"

#include <QCursor>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr QSize contentSize(460, 480);
constexpr int tabMargin = 10;
constexpr int headHeight = 76; // of the bar with the tabs

QScrollArea *scrolling(QWidget *form, QWidget *parent)
{
    auto *area = new QScrollArea(parent);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Its room is kept, so that nothing moves when a section comes or goes.
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidget(form);
    for (QWidget *each : {static_cast<QWidget *>(form), area->viewport()})
        each->setAutoFillBackground(false);
    return area;
}

} // namespace

SettingsWindow::SettingsWindow(const SettingsWindowController::Parts &parts)
    : QWidget(nullptr, Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                           Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint)
    , m_windowSystem(parts.windowSystem)
    , m_tabs(new SettingsTabBar(this))
    , m_pages(new QStackedWidget(this))
{
    setWindowTitle(tr("Nivora 设置"));
    setWindowRole(u"settings"_s);
    setAttribute(Qt::WA_QuitOnClose, false);
    setFixedSize(contentSize);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, tabMargin, 0, 0);
    column->setSpacing(headHeight - tabMargin - m_tabs->sizeHint().height());
    column->addWidget(m_tabs, 0, Qt::AlignHCenter);
    column->addWidget(m_pages, 1);
    add(tr("通用"), u"gearshape"_s, new SettingsGeneralTab(parts, this));
    add(tr("翻译"), u"character.bubble"_s, new SettingsTranslationTab(parts, this));
    add(tr("账户"), u"person.crop.circle"_s, new SettingsAccountTab(parts, this));
    column->setSpacing(headHeight - tabMargin - m_tabs->sizeHint().height());
    connect(m_tabs, &QTabBar::currentChanged, m_pages, &QStackedWidget::setCurrentIndex);
    m_tabs->setFocus();
}

void SettingsWindow::add(const QString &label, const QString &symbol, QWidget *form)
{
    m_tabs->add(label, symbol);
    auto *page = scrolling(form, m_pages);
    page->setAccessibleName(label);
    m_pages->addWidget(page);
}

void SettingsWindow::placeAtFirst()
{
    const QScreen *screen = screenFor(QCursor::pos());
    if (!screen)
        return;
    const QRect area = workArea(*screen, m_windowSystem);
    QRect place(QPoint(), contentSize);
    place.moveCenter(area.center());
    move(place.topLeft());
}

void SettingsWindow::present()
{
    if (isMinimized())
        setWindowState(windowState() & ~Qt::WindowMinimized);
    if (!isVisible()) {
        if (m_place)
            move(*m_place); // window managers place anew what was hidden
        else
            placeAtFirst();
    }
    show();
    raise();
    activateWindow();
    m_windowSystem.requestActivation(platform::WindowId(winId()));
}

void SettingsWindow::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous())
        m_place = pos();
    QWidget::hideEvent(event);
}

void SettingsWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel) || event->matches(QKeySequence::Close))
        close();
    else
        QWidget::keyPressEvent(event);
}

void SettingsWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    QColor head = palette().color(QPalette::WindowText);
    head.setAlphaF(isDark(palette()) ? 0.03f : 0.02f);
    painter.fillRect(QRect(0, 0, width(), headHeight), head);
    painter.fillRect(QRect(0, headHeight - 1, width(), 1), hairline(palette()));
}

} // namespace nivora
