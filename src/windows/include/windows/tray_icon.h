#pragma once

#include "platform/task.h"

#include <QObject>
#include <QSystemTrayIcon>

#include <memory>

class QMenu;
class QMessageBox;

namespace nivora {

class MenuContent;

namespace platform {
class TrayHosts;
}

// The program's only permanent surface: a letter in the tray, and its menu.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    // Both outlive the icon.
    TrayIcon(MenuContent &content, platform::TrayHosts &hosts);
    ~TrayIcon() override;

    // Shows the icon as soon as there is a tray for it. The first one decides on
    // its kind: the toolkit serves trays of the session bus or those of the X server
    // and stays with what it began with. Of that kind others may come and go.
    void show();

    // Whether there is a tray now; false until it is known.
    bool hasTray() const { return m_present; }

    // Whether the icon carries a mark that something is amiss.
    void setMarked(bool marked);

    // A short note from the program: by the desktop, or in a small window of our
    // own where there is no tray to show it.
    void notify(const QString &text);

Q_SIGNALS:
    // The desktop has told whether there is a tray; where there is one, the icon shows.
    // Told again when that changes.
    void trayKnown();

private:
    void makeIcon();

    MenuContent &m_content;
    platform::TrayHosts &m_hosts;
    bool m_marked = false;
    bool m_present = false;
    std::unique_ptr<QMenu> m_menu;           // before the icon, which borrows it
    std::unique_ptr<QSystemTrayIcon> m_icon; // absent until there is a tray
    std::unique_ptr<QMessageBox> m_note;
    platform::Task m_watch;
};

} // namespace nivora
