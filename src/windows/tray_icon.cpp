#include "windows/tray_icon.h"

#include "letter_icon.h"
#include "windows/menu_content.h"

#include "platform/tray_hosts.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QMessageBox>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

TrayIcon::TrayIcon(MenuContent &content, platform::TrayHosts &hosts)
    : m_content(content)
    , m_hosts(hosts)
{
    QApplication::setWindowIcon(letterIcon());
}

// A menu that is deleted with its entries leaves behind what Qt made of them for the bus.
TrayIcon::~TrayIcon()
{
    if (!m_menu)
        return;
    for (QMenu *menu : m_menu->findChildren<QMenu *>())
        menu->clear();
    m_menu->clear();
}

void TrayIcon::show()
{
    m_watch = m_hosts.watch([this](bool present) {
        m_present = present;
        if (present && !m_icon)
            makeIcon();
        Q_EMIT trayKnown();
    });
}

void TrayIcon::makeIcon()
{
    m_menu = m_content.makeMenu();
    m_icon = std::make_unique<QSystemTrayIcon>(letterIcon(m_marked));
    m_icon->setToolTip(u"Nivora"_s);
    m_icon->setContextMenu(m_menu.get());
    // There is nothing else to do with it, so any button will do, and two quick
    // clicks are no other wish than one.
    connect(m_icon.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason != QSystemTrayIcon::Context)
                    m_menu->popup(QCursor::pos());
            });
    m_icon->show();
}

void TrayIcon::setMarked(bool marked)
{
    if (std::exchange(m_marked, marked) != marked && m_icon)
        m_icon->setIcon(letterIcon(marked));
}

void TrayIcon::notify(const QString &text)
{
    if (hasTray())
        return m_icon->showMessage(u"Nivora"_s, text, letterIcon());
    if (!m_note) {
        m_note = std::make_unique<QMessageBox>();
        m_note->setWindowTitle(u"Nivora"_s);
        m_note->setWindowRole(u"note"_s);
        m_note->setModal(false);
        // The user goes on where they were.
        m_note->setAttribute(Qt::WA_ShowWithoutActivating);
    }
    m_note->setText(text);
    m_note->show();
    m_note->raise();
}

} // namespace nivora
