#pragma once

#include <QObject>
#include <QSystemTrayIcon>

#include <memory>

class QMenu;

namespace nivora {

// The program's only permanent surface: a letter in the tray, and its menu.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    TrayIcon();
    ~TrayIcon() override;

    void show();

    // A short note from the program; where the desktop shows such notes at all.
    void notify(const QString &text);

Q_SIGNALS:
    void panelRequested();
    void quitRequested();

private:
    std::unique_ptr<QMenu> m_menu;
    QSystemTrayIcon m_icon;
};

} // namespace nivora
