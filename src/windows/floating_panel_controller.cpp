#include "windows/floating_panel_controller.h"

#include "screen_places.h"
#include "windows/floating_panel.h"
#include "windows/translation_panel_view.h"

#include "session/translation_view_model.h"
#include "stores/settings_store.h"

#include "platform/window_system.h"

#include <QApplication>
#include <QCursor>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

using namespace std::chrono_literals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int heightForSelection = 140;
constexpr int heightForWriting = 240;
constexpr int leastHeight = 100;
constexpr int greatestHeightWithoutScreen = 560;
constexpr double greatestScreenShare = 0.7;
constexpr int heightTolerance = 1;
constexpr int gapToSelection = 6;
constexpr int gapToPointer = 12;
constexpr int screenMargin = 8;

// How often it is looked whether the keyboard, lent to the window manager, is back.
constexpr auto doubtPeriod = 40ms;
constexpr int mostDoubts = 5;
constexpr auto lentKeyboardPeriod = 200ms;

} // namespace

FloatingPanelController::FloatingPanelController(TranslationViewModel &session,
                                                 const SettingsStore &settings,
                                                 platform::WindowSystem &windowSystem)
    : m_session(session)
    , m_settings(settings)
    , m_windowSystem(windowSystem)
{
}

FloatingPanelController::~FloatingPanelController() = default;

void FloatingPanelController::prepare()
{
    if (m_panel)
        return;
    m_panel = std::make_unique<FloatingPanel>(m_windowSystem);
    m_view = new TranslationPanelView(m_session, m_windowSystem, m_panel.get());
    auto *column = new QVBoxLayout(m_panel.get());
    column->setContentsMargins(0, 0, 0, 0);
    column->setSizeConstraint(QLayout::SetNoConstraint);
    column->addWidget(m_view);
    connect(m_view, &TranslationPanelView::contentHeightChanged, this,
            &FloatingPanelController::applyDynamicHeight);
    connect(m_view, &TranslationPanelView::closeRequested, this, &FloatingPanelController::hide);
    connect(m_view, &TranslationPanelView::replyRequested, this, &FloatingPanelController::reply);
    connect(m_view, &TranslationPanelView::dragged, this, &FloatingPanelController::drag);
    connect(m_panel.get(), &CardWindow::cancelled, this, &FloatingPanelController::hide);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this,
            &FloatingPanelController::onFocusWindowChanged);
    watchScreens();
    // A window made without a place of its own is placed by the window manager.
    m_panel->setCard({0, 0, TranslationPanelView::panelWidth, heightForSelection});
    m_panel->winId(); // makes the native window
}

void FloatingPanelController::show(PanelMode mode, const std::optional<QRectF> &near)
{
    prepare();
    m_lastRect = near;
    m_visibleAreas.clear();
    m_keyboardCheck.cancel();
    m_view->reset();
    m_dragOrigin.reset();
    m_anchorTopLeft = computeAnchor(near);
    m_gapAbove = near ? gapToSelection : gapToPointer;
    m_panel->setCard(
        placeFor(mode == PanelMode::Selection ? heightForSelection : heightForWriting));
    // Before the window is on the screen the content's height costs no flicker.
    m_panel->present(placeFor(targetHeight(m_view->contentHeight())));
}

void FloatingPanelController::hide()
{
    m_session.stopSpeaking();
    m_session.stopListening(); // no microphone stays open unseen
    m_keyboardCheck.cancel();
    if (!m_panel)
        return;
    m_view->closePopovers();
    m_panel->hide();
}

void FloatingPanelController::reply()
{
    m_session.prepareReply(m_session.sourceText(), m_session.detectedSource());
    show(PanelMode::Reply, m_lastRect);
}

QPoint FloatingPanelController::computeAnchor(const std::optional<QRectF> &near)
{
    if (near)
        return logicalPoint(near->bottomLeft()) + QPoint(0, gapToSelection);
    return QCursor::pos() + QPoint(0, gapToPointer);
}

QPoint FloatingPanelController::clampedPosition(const QPoint &anchor, const QSize &panel,
                                                const QRect &visible)
{
    int x = std::max(anchor.x(), visible.left() + screenMargin);
    x = std::min(x, visible.left() + visible.width() - panel.width() - screenMargin);
    int y = std::min(anchor.y(), visible.top() + visible.height() - panel.height() - screenMargin);
    y = std::max(y, visible.top() + screenMargin);
    return {x, y};
}

int FloatingPanelController::clampedHeight(int content, std::optional<int> visibleHeight)
{
    if (!visibleHeight)
        return std::clamp(content, leastHeight, greatestHeightWithoutScreen);
    // The screen's limit comes last, so it wins over the least height.
    return std::min(std::max(content, leastHeight), int(greatestScreenShare * *visibleHeight));
}

// In a fractional scale the toolkit asks window managers to size its windows in steps of
// one logical pixel, rounded to whole device pixels. What is no such step loses its edge.
int FloatingPanelController::grantedHeight(int height, qreal ratio)
{
    const int step = qRound(ratio);
    if (step <= 1 || ratio == step)
        return height;
    while (qRound(height * ratio) % step != 0)
        ++height;
    return height;
}

QRect FloatingPanelController::visibleArea(const QScreen &screen) const
{
    const auto known = m_visibleAreas.constFind(&screen);
    if (known != m_visibleAreas.cend())
        return *known;
    return *m_visibleAreas.insert(&screen, workArea(screen, m_windowSystem));
}

// A drag moves the panel, not what it hangs below: the next change of its height
// brings it back there. Growth while the pointer still holds it must not pull it away.
void FloatingPanelController::drag(const QPoint &offset, bool ends)
{
    if (offset.isNull() && !m_dragOrigin)
        return;
    if (!m_dragOrigin)
        m_dragOrigin = m_panel->card().topLeft();
    m_dragPlace = *m_dragOrigin + offset;
    m_panel->setCard(placeFor(targetHeight(m_view->contentHeight())));
    if (ends)
        m_dragOrigin.reset();
}

// Place and size go to the window in one step: while a window is being mapped it
// believes to be elsewhere for a moment, and a mere change of size would keep it
// there.
QRect FloatingPanelController::placeFor(int height) const
{
    const QSize size(TranslationPanelView::panelWidth, height);
    if (!m_anchorTopLeft)
        return {m_panel->card().topLeft(), size};
    if (m_dragOrigin)
        return {m_dragPlace, size};
    // The screen of what the panel hangs below, whose lower edge the gap may cross.
    const QScreen *screen = screenFor(*m_anchorTopLeft - QPoint(0, m_gapAbove + 1));
    return {screen ? clampedPosition(*m_anchorTopLeft, size, visibleArea(*screen))
                   : *m_anchorTopLeft,
            size};
}

int FloatingPanelController::targetHeight(int content) const
{
    const QScreen *screen = m_panel->screen();
    const int height = clampedHeight(content, screen ? std::optional(visibleArea(*screen).height())
                                                     : std::nullopt);
    return grantedHeight(height, m_panel->devicePixelRatioF());
}

void FloatingPanelController::applyDynamicHeight(int height)
{
    const int target = targetHeight(height);
    const auto differs = [this, target] {
        return std::abs(m_panel->card().height() - target) > heightTolerance;
    };
    if (!differs())
        return;
    // Not from within the layout that reports the height.
    QTimer::singleShot(0, this, [this, target, differs] {
        if (differs())
            m_panel->setCard(placeFor(target));
    });
}

void FloatingPanelController::watchScreens()
{
    const auto watch = [this](const QScreen *screen) {
        connect(screen, &QScreen::geometryChanged, this, &FloatingPanelController::onScreensChanged,
                Qt::QueuedConnection);
        connect(screen, &QScreen::availableGeometryChanged, this,
                &FloatingPanelController::onScreensChanged, Qt::QueuedConnection);
    };
    for (const QScreen *screen : QGuiApplication::screens())
        watch(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, watch);
    // Queued: the toolkit is still moving windows away from it.
    connect(qGuiApp, &QGuiApplication::screenRemoved, this,
            &FloatingPanelController::onScreensChanged, Qt::QueuedConnection);
}

// The panel stays on what is left of the desktop.
void FloatingPanelController::onScreensChanged()
{
    m_visibleAreas.clear();
    if (m_panel->isVisible())
        m_panel->setCard(placeFor(targetHeight(m_view->contentHeight())));
}

// The panel, or a window that was opened from it.
bool FloatingPanelController::isOurs(WId window) const
{
    const QWidget *widget = window ? QWidget::find(window) : nullptr;
    while (widget && widget != m_panel.get())
        widget = widget->parentWidget();
    return widget;
}

bool FloatingPanelController::hasKeyboard() const
{
    const QWindow *window = QGuiApplication::focusWindow();
    return window && isOurs(window->winId());
}

// A menu of ours, and a window manager that moves the panel, borrow the keyboard:
// the panel is still where the user works.
bool FloatingPanelController::keepsKeyboard() const
{
    if (QApplication::activePopupWidget())
        return true;
    if (QGuiApplication::focusWindow())
        return hasKeyboard();
    if (m_windowSystem.isKeyboardLost())
        return true;
    const auto active = m_windowSystem.activeWindow();
    return active && isOurs(active->id);
}

void FloatingPanelController::onFocusWindowChanged(QWindow *window)
{
    m_keyboardCheck.cancel();
    m_doubts = mostDoubts;
    if (!m_panel->isVisible())
        return;
    const bool onPanel = window && window == m_panel->windowHandle();
    // The panel's own activation may arrive when a popover is already opening.
    const bool fromPopover = std::exchange(m_popoverHasKeyboard, !onPanel && hasKeyboard());
    if (onPanel && fromPopover)
        m_view->closePopovers();
    else if (!hasKeyboard())
        checkKeyboard();
}

void FloatingPanelController::checkKeyboard()
{
    if (!m_panel->isVisible())
        return;
    if (!keepsKeyboard()) {
        // While a grab of the keyboard ends and the window manager has not yet told
        // of the new active window, nobody seems to have the keyboard.
        if (!QGuiApplication::focusWindow() && m_doubts > 0) {
            --m_doubts;
            m_keyboardCheck = platform::delay(doubtPeriod, [this] { checkKeyboard(); });
            return;
        }
        m_view->closePopovers();
        return onResignKey();
    }
    // Nobody else gives it back.
    if (m_windowSystem.isKeyboardLost())
        m_windowSystem.requestActivation(platform::WindowId(m_panel->winId()));
    if (!hasKeyboard())
        m_keyboardCheck = platform::delay(lentKeyboardPeriod, [this] { checkKeyboard(); });
}

void FloatingPanelController::onResignKey()
{
    if (!m_settings.closeOnResignFocus.value() || m_session.isPinned())
        return;
    // What was typed or is being said must not vanish with a click elsewhere.
    const bool writing = m_session.mode() != PanelMode::Selection;
    if (writing && (m_session.isListening() || !m_session.sourceText().trimmed().isEmpty()))
        return;
    hide();
}

} // namespace nivora
