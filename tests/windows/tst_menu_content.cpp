#include "windows/menu_content.h"

#include <QMenu>
#include <QSignalSpy>
#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;

namespace {

// What shows, in its order: "-" for a divider, text that cannot be pressed in
// brackets, a submenu's entries behind its own.
QStringList shown(const QMenu &menu)
{
    QStringList rows;
    for (const QAction *each : menu.actions()) {
        if (!each->isVisible())
            continue;
        QString row = each->isSeparator() ? u"-"_s : each->text();
        if (!each->isEnabled())
            row = u"[%1]"_s.arg(row);
        if (!each->shortcut().isEmpty())
            row += u' ' + each->shortcut().toString(QKeySequence::PortableText);
        rows << row;
        if (each->menu())
            rows << shown(*each->menu());
    }
    return rows;
}

} // namespace

class TestMenuContent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theMenuFollowsTheState_data()
    {
        QTest::addColumn<MenuState>("state");
        QTest::addColumn<QStringList>("warning");
        QTest::addColumn<QStringList>("account");
        const QStringList none;
        const QStringList signIn{u"登录…"_s};
        QTest::newRow("signed out") << MenuState{true, {}, {}} << none << signIn;
        QTest::newRow("no accessibility")
            << MenuState{false, {}, {}}
            << QStringList{u"[⚠️ 未授予辅助功能权限，双击 Shift 不可用]"_s,
                           u"打开系统设置授权…"_s, u"-"_s}
            << signIn;
        QTest::newRow("signed in") << MenuState{true, u"a&b@x.org"_s, {}} << none
                                   << QStringList{u"[a&&b@x.org]"_s, u"登出"_s};
        QTest::newRow("signed in, with a plan")
            << MenuState{true, u"me@x.org"_s, u"Pro · 1/10 (10%)"_s} << none
            << QStringList{u"[me@x.org]"_s, u"[Pro · 1/10 (10%)]"_s, u"登出"_s};
        QTest::newRow("a plan of nobody") << MenuState{true, {}, u"Pro"_s} << none << signIn;
    }
    void theMenuFollowsTheState()
    {
        QFETCH(const MenuState, state);
        QFETCH(QStringList, warning);
        QFETCH(const QStringList, account);
        MenuContent content({});
        const auto menu = content.makeMenu();
        content.setState(state);
        const QStringList rows = shown(*menu);
        QCOMPARE(rows.first(warning.size()), warning);
        QCOMPARE(rows.value(warning.size()), u"翻译面板 Ctrl+T"_s);
        // Between a divider and that before the end.
        const QStringList last = rows.last(account.size() + 3);
        QCOMPARE(last.first(account.size() + 1), QStringList(u"-"_s) + account);
    }

    void anOpenMenuTakesItsShortcuts()
    {
        MenuContent content(u"1.0"_s);
        const auto menu = content.makeMenu();
        QSignalSpy chosen(&content, &MenuContent::chosen);
        menu->popup({0, 0});
        QTest::keyClick(menu.get(), Qt::Key_Y, Qt::ControlModifier);
        QVERIFY(!menu->isVisible());
        QCOMPARE(chosen.value(0).value(0).value<MenuCommand>(), MenuCommand::ShowHistory);
    }
};

QTEST_MAIN(TestMenuContent)
#include "tst_menu_content.moc"
