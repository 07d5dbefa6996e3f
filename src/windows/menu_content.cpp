#include "windows/menu_content.h"

#include <QKeyEvent>
#include <QMenu>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// A menu takes an ampersand for the mark of a mnemonic.
QString literally(QString text)
{
    return text.replace(u'&', u"&&"_s);
}

} // namespace

MenuContent::MenuContent(const QString &appVersion)
{
    m_warning = {addText(m_rows, tr("⚠️ 未授予辅助功能权限，双击 Shift 不可用")),
                 addButton(m_rows, tr("打开系统设置授权…"), MenuCommand::OpenAccessibilitySettings),
                 addDivider(m_rows)};

    addButton(m_rows, tr("翻译面板"), MenuCommand::ShowPanel, Qt::CTRL | Qt::Key_T);
    addButton(m_rows, tr("截图翻译"), MenuCommand::CaptureOCR, Qt::CTRL | Qt::Key_S);
    addButton(m_rows, tr("翻译历史…"), MenuCommand::ShowHistory, Qt::CTRL | Qt::Key_Y);
    addDivider(m_rows);

    addButton(m_rows, tr("设置…"), MenuCommand::ShowSettings, Qt::CTRL | Qt::Key_Comma);
    addButton(m_rows, tr("检查更新…"), MenuCommand::CheckForUpdates);
    m_about = addText(m_rows, tr("关于"));
    addText(m_aboutRows, u"Nivora v"_s + (appVersion.isEmpty() ? u"—"_s : appVersion));
    addDivider(m_aboutRows);
    addButton(m_aboutRows, tr("版本历史…"), MenuCommand::ShowVersionHistory);
    addButton(m_aboutRows, tr("访问官网"), MenuCommand::VisitWebsite);
    addDivider(m_rows);

    m_signIn = addButton(m_rows, tr("登录…"), MenuCommand::SignIn);
    m_email = addText(m_rows, QString());
    m_billing = addText(m_rows, QString());
    m_signOut = addButton(m_rows, tr("登出"), MenuCommand::SignOut);
    addDivider(m_rows);

    addButton(m_rows, tr("退出 Nivora"), MenuCommand::Quit, Qt::CTRL | Qt::Key_Q);
    render();
}

MenuContent::~MenuContent() = default;

QAction *MenuContent::addText(QList<QAction *> &rows, const QString &text)
{
    auto *action = new QAction(text, this);
    action->setEnabled(false);
    rows.append(action);
    return action;
}

QAction *MenuContent::addButton(QList<QAction *> &rows, const QString &label, MenuCommand command,
                                const QKeySequence &shortcut)
{
    auto *action = new QAction(label, this);
    action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, [this, command] { Q_EMIT chosen(command); });
    rows.append(action);
    return action;
}

QAction *MenuContent::addDivider(QList<QAction *> &rows)
{
    auto *action = new QAction(this);
    action->setSeparator(true);
    rows.append(action);
    return action;
}

void MenuContent::setState(const MenuState &state)
{
    if (m_state == state)
        return;
    m_state = state;
    render();
}

void MenuContent::render()
{
    for (QAction *each : std::as_const(m_warning))
        each->setVisible(!m_state.accessibilityTrusted);
    const bool signedIn = !m_state.email.isEmpty();
    m_signIn->setVisible(!signedIn);
    m_email->setText(literally(m_state.email));
    m_email->setVisible(signedIn);
    m_billing->setText(literally(m_state.billingSummary));
    m_billing->setVisible(signedIn && !m_state.billingSummary.isEmpty());
    m_signOut->setVisible(signedIn);
}

std::unique_ptr<QMenu> MenuContent::makeMenu()
{
    auto menu = std::make_unique<QMenu>();
    menu->installEventFilter(this);
    for (QAction *each : std::as_const(m_rows)) {
        if (each == m_about)
            menu->addMenu(each->text())->addActions(m_aboutRows);
        else
            menu->addAction(each);
    }
    return menu;
}

// The toolkit shows the shortcuts of a menu that belongs to no window, but does
// not serve them.
bool MenuContent::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const QKeySequence pressed(static_cast<QKeyEvent *>(event)->keyCombination());
    auto *menu = static_cast<QMenu *>(object);
    for (QAction *each : menu->actions()) {
        if (each->isVisible() && each->isEnabled() && each->shortcut() == pressed) {
            menu->close();
            each->trigger();
            return true;
        }
    }
    return false;
}

} // namespace nivora
