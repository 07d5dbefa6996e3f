#pragma once

#include "frozen_screens.h"
#include "overlay_decoration.h"
#include "region_selection.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QRasterWindow>

namespace nivora::screencapture {

// The frozen screens, dimmed, with the region in its own colours. Has the mouse
// and the keyboard for itself; no window manager has a say in it.
class OverlayWindow : public QRasterWindow
{
    Q_OBJECT

public:
    // `scale`: pixels for one logical pixel of what is drawn above the picture.
    OverlayWindow(const FrozenScreens &screens, double scale);

    // Shows it and takes mouse and keyboard; grabFailed() follows where another
    // program, an open menu say, does not let go of them.
    void begin();

Q_SIGNALS:
    void chosen(const QImage &picture);
    void cancelled();
    void grabFailed();

protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    bool takeInput();
    void release();
    void take();
    void cancel();
    void confirm();
    void nudge(const QPoint &direction, Qt::KeyboardModifiers modifiers);
    template<typename Change>
    void repaintAfter(Change &&change);
    QRect screenBelowPointer() const;

    FrozenScreens m_screens;
    QImage m_dimmed;
    double m_scale;
    OverlayDecoration m_decoration;
    RegionSelection m_selection; // in pixels of the window
    bool m_buttonHeld = false;
    QBasicTimer m_grabRetry;
    QElapsedTimer m_sinceBegin;
};

} // namespace nivora::screencapture
