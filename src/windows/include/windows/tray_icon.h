#pragma once

#include <QList>
#include <QObject>
#include <QSystemTrayIcon>

#include <memory>

class QAction;
class QMenu;
class QMessageBox;

namespace nivora {

// The program's only permanent surface: a letter in the tray, and its menu.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    TrayIcon();
    ~TrayIcon() override;

    void show();

    // Whether the menu begins with a warning and a way to the desktop's settings.
    void setAccessibilityMissing(bool missing);

    // A short note from the program: by the desktop, or in a small window of our
    // own where there is no tray to show it.
    void notify(const QString &text);

Q_SIGNALS:
    void accessibilitySettingsRequested();
    void panelRequested();
    void updateCheckRequested();
    void versionHistoryRequested();
    void quitRequested();

private:
    std::unique_ptr<QMenu> m_menu;
    QList<QAction *> m_warning; // owned by the menu
    QSystemTrayIcon m_icon;
    std::unique_ptr<QMessageBox> m_note;
};

} // namespace nivora
