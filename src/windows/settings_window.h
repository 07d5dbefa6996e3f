#pragma once

#include "windows/settings_window_controller.h"

#include <QPoint>
#include <QWidget>

#include <optional>

class QStackedWidget;

namespace nivora {

class SettingsTabBar;

// The settings: three tabs of forms, each scrolling on its own.
class SettingsWindow : public QWidget
{
    Q_OBJECT

public:
    explicit SettingsWindow(const SettingsWindowController::Parts &parts);

    // Opens it where it was, at first in the middle of the screen with the pointer.
    void present();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void add(const QString &label, const QString &symbol, QWidget *form);
    void placeAtFirst();

    platform::WindowSystem &m_windowSystem;
    SettingsTabBar *m_tabs;
    QStackedWidget *m_pages;
    std::optional<QPoint> m_place; // of the frame, once it was closed
};

} // namespace nivora
