#pragma once

#include "session/phase.h"

#include "platform/task.h"

#include <QHash>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QRectF>
#include <qwindowdefs.h>

#include <memory>
#include <optional>

class QScreen;
class QWindow;

namespace nivora {

class FloatingPanel;
class SettingsStore;
class TranslationPanelView;
class TranslationViewModel;

namespace platform {
class WindowSystem;
}

// Owns the panel's window, decides where it goes, follows the height of its
// content and closes it. The window is made once and only hidden afterwards.
class FloatingPanelController : public QObject
{
    Q_OBJECT

public:
    // The borrowed objects outlive this one.
    FloatingPanelController(TranslationViewModel &session, const SettingsStore &settings,
                            platform::WindowSystem &windowSystem);
    ~FloatingPanelController() override;

    // Makes the window without showing it, so that the first trigger finds it.
    void prepare();

    // Opens the panel, or moves it if it is open. `near`: where the selection is,
    // in device pixels with the origin at the top-left of the primary screen;
    // absent for the place of the mouse pointer.
    void show(PanelMode mode, const std::optional<QRectF> &near);

    void hide();

    FloatingPanel *panel() const { return m_panel.get(); } // null before the first use

    // The place for the panel's top-left corner for a selection there, in
    // logical pixels of the window system.
    static QPoint computeAnchor(const std::optional<QRectF> &near);

    // Where the panel's top-left corner goes: at the anchor, moved as far as the
    // panel has to be to clear the margin within `visible`. Where it does not
    // fit, its right and its top edge are kept visible.
    static QPoint clampedPosition(const QPoint &anchor, const QSize &panel, const QRect &visible);

    // The panel's height for a content of this height.
    static int clampedHeight(int content, std::optional<int> visibleHeight);

    // The least height, not below this one, that a window manager leaves as it is.
    // `ratio` is of device pixels to logical ones.
    static int grantedHeight(int height, qreal ratio);

private:
    void drag(const QPoint &offset, bool ends);
    QRect placeFor(int height) const;
    int targetHeight(int content) const;
    QRect visibleArea(const QScreen &screen) const;
    void applyDynamicHeight(int height);
    void reply();

    void watchScreens();
    void onScreensChanged();

    bool isOurs(WId window) const;
    bool hasKeyboard() const;
    bool keepsKeyboard() const;
    void onFocusWindowChanged(QWindow *window);
    void checkKeyboard();
    void onResignKey();

    TranslationViewModel &m_session;
    const SettingsStore &m_settings;
    platform::WindowSystem &m_windowSystem;
    std::unique_ptr<FloatingPanel> m_panel;
    TranslationPanelView *m_view = nullptr; // owned by the panel
    std::optional<QPoint> m_anchorTopLeft;
    int m_gapAbove = 0; // from what it hangs below
    // While it is dragged: where that began, and where it is now.
    std::optional<QPoint> m_dragOrigin;
    QPoint m_dragPlace;
    std::optional<QRectF> m_lastRect; // of the last show()
    // What docks leave of each screen, as it was when the panel opened.
    mutable QHash<const QScreen *, QRect> m_visibleAreas;
    bool m_popoverHasKeyboard = false;
    platform::Task m_keyboardCheck;
    int m_doubts = 0; // how often it is still looked again
};

} // namespace nivora
