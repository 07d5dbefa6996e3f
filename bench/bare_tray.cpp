// A tray program with nothing in it: what Qt itself costs at start and at rest.

#include <QApplication>
#include <QMenu>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::blue);
    QSystemTrayIcon icon(pixmap);
    QMenu menu;
    menu.addAction(QStringLiteral("Quit"), &application, &QApplication::quit);
    icon.setContextMenu(&menu);
    icon.show();
    return QApplication::exec();
}
