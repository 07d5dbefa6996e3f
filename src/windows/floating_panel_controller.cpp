#include "windows/floating_panel_controller.h"

#include "windows/floating_panel.h"
#include "windows/translation_panel_view.h"

#include "session/translation_view_model.h"
#include "stores/settings_store.h"

#include "platform/window_system.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

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

// Qt keeps a screen's origin in device pixels and scales only what lies within.
QPoint logicalPoint(const QPointF &device)
{
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QPointF origin = screen->geometry().topLeft();
        const qreal ratio = screen->devicePixelRatio();
        const QRectF extent(origin, QSizeF(screen->geometry().size()) * ratio);
        if (extent.contains(device))
            return (origin + (device - origin) / ratio).toPoint();
    }
    return device.toPoint();
}

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
    m_panel = std::make_unique<FloatingPanel>();
    m_view = new TranslationPanelView(m_session, m_panel.get());
    auto *column = new QVBoxLayout(m_panel.get());
    column->setContentsMargins(0, 0, 0, 0);
    column->setSizeConstraint(QLayout::SetNoConstraint);
    column->addWidget(m_view);
    connect(m_view, &TranslationPanelView::contentHeightChanged, this,
            &FloatingPanelController::applyDynamicHeight);
    connect(m_view, &TranslationPanelView::closeRequested, this, &FloatingPanelController::hide);
    connect(m_panel.get(), &FloatingPanel::cancelled, this, &FloatingPanelController::hide);
    connect(m_panel.get(), &FloatingPanel::resignedKey, this,
            &FloatingPanelController::onResignKey);
    m_panel->resize(TranslationPanelView::panelWidth, heightForSelection);
    // A window made without a place of its own is placed by the window manager.
    m_panel->move(0, 0);
    m_panel->winId(); // makes the native window
}

void FloatingPanelController::show(PanelMode mode, const std::optional<QRectF> &near)
{
    prepare();
    m_panel->setBlended(m_windowSystem.isCompositing());
    m_view->reset();
    m_anchorTopLeft = computeAnchor(near);
    place(mode == PanelMode::Selection ? heightForSelection : heightForWriting);
    // Before the window is on the screen the content's height costs no flicker.
    place(targetHeight(m_view->contentHeight()));
    m_panel->show();
    m_panel->raise();
    m_panel->activateWindow();
}

void FloatingPanelController::hide()
{
    if (m_panel)
        m_panel->hide();
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

// Place and size go to the window in one step: while a window is being mapped it
// believes to be elsewhere for a moment, and a mere change of size would keep it
// there.
void FloatingPanelController::place(int height)
{
    const QSize size(TranslationPanelView::panelWidth, height);
    if (!m_anchorTopLeft)
        return m_panel->resize(size);
    const QScreen *screen = nullptr;
    for (const QScreen *each : QGuiApplication::screens()) {
        if (each->geometry().contains(*m_anchorTopLeft)) {
            screen = each;
            break;
        }
    }
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QPoint position =
        screen ? clampedPosition(*m_anchorTopLeft, size, screen->availableGeometry())
               : *m_anchorTopLeft;
    m_panel->setGeometry(QRect(position, size));
}

int FloatingPanelController::targetHeight(int content) const
{
    const QScreen *screen = m_panel->screen();
    return clampedHeight(content, screen ? std::optional(screen->availableGeometry().height())
                                         : std::nullopt);
}

void FloatingPanelController::applyDynamicHeight(int height)
{
    const int target = targetHeight(height);
    const auto differs = [this, target] {
        return std::abs(m_panel->height() - target) > heightTolerance;
    };
    if (!differs())
        return;
    // Not from within the layout that reports the height.
    QTimer::singleShot(0, this, [this, target, differs] {
        if (differs())
            place(target);
    });
}

void FloatingPanelController::onResignKey()
{
    if (!m_settings.closeOnResignFocus.value() || m_session.isPinned())
        return;
    // What was typed must not vanish with a click elsewhere.
    if (m_session.mode() != PanelMode::Selection && !m_session.sourceText().trimmed().isEmpty())
        return;
    hide();
}

} // namespace nivora
