#include "windows/tray_icon.h"

#include "windows/theme.h"

#include <QApplication>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPainterPath>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// The letter is an outline, so that it is crisp at every size. Trays are dark or
// light whatever the theme of windows: a filled tile shows on both.
QIcon letterIcon()
{
    QIcon icon;
    for (const int side : {16, 22, 24, 32, 44, 48, 64, 128}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(side / 16.0, side / 16.0);
        painter.setPen(Qt::NoPen);
        painter.setBrush(themePalette(false).color(QPalette::Highlight));
        painter.drawRoundedRect(QRectF(0.5, 0.5, 15, 15), 3.5, 3.5);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        QPainterPath letter({5, 12});
        letter.lineTo(5, 4);
        letter.lineTo(11, 12);
        letter.lineTo(11, 4);
        painter.drawPath(letter);
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace

TrayIcon::TrayIcon()
    : m_menu(std::make_unique<QMenu>())
    , m_icon(letterIcon())
{
    m_warning << m_menu->addAction(
                     tr("⚠️ 未授予辅助功能权限，双击 Shift 不可用"))
              << m_menu->addAction(tr("打开系统设置授权…")) << m_menu->addSeparator();
    m_warning.first()->setEnabled(false);
    connect(m_warning.at(1), &QAction::triggered, this, &TrayIcon::accessibilitySettingsRequested);
    setAccessibilityMissing(false);
    connect(m_menu->addAction(tr("翻译面板")), &QAction::triggered, this,
            &TrayIcon::panelRequested);
    m_menu->addSeparator();
    connect(m_menu->addAction(tr("检查更新…")), &QAction::triggered, this,
            &TrayIcon::updateCheckRequested);
    connect(m_menu->addAction(tr("版本历史")), &QAction::triggered, this,
            &TrayIcon::versionHistoryRequested);
    m_menu->addSeparator();
    connect(m_menu->addAction(tr("退出 Nivora")), &QAction::triggered, this,
            &TrayIcon::quitRequested);
    m_icon.setContextMenu(m_menu.get());
    m_icon.setToolTip(u"Nivora"_s);
    QApplication::setWindowIcon(m_icon.icon());
}

TrayIcon::~TrayIcon() = default;

void TrayIcon::show()
{
    m_icon.show();
}

void TrayIcon::setAccessibilityMissing(bool missing)
{
    for (QAction *each : std::as_const(m_warning))
        each->setVisible(missing);
}

void TrayIcon::notify(const QString &text)
{
    if (QSystemTrayIcon::isSystemTrayAvailable() && QSystemTrayIcon::supportsMessages())
        return m_icon.showMessage(u"Nivora"_s, text, m_icon.icon());
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
