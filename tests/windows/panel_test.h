#pragma once

#include "windows/floating_panel.h"
#include "windows/floating_panel_controller.h"

#include "../session/session_test.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QLabel>
#include <QTest>

namespace nivora::test {

// What every test of the panel works with: a panel over the session of those tests.
// Controls are found by what assistive tools call them. `init` calls start().
class PanelTest : public SessionTest
{
protected:
    void start()
    {
        m_controller.reset();
        SessionTest::start();
        m_controller = std::make_unique<FloatingPanelController>(*m_session, *m_settings,
                                                                 m_desktop->windowSystem);
    }

    static QString nameOf(QWidget *widget)
    {
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(widget);
        return accessible ? accessible->text(QAccessible::Name) : QString();
    }

    // Of the panel and of what is open beside it.
    template<typename Widget = QWidget>
    Widget *named(const QString &name) const
    {
        for (Widget *widget : m_controller->panel()->findChildren<Widget *>()) {
            if (widget->isVisible() && nameOf(widget) == name)
                return widget;
        }
        return nullptr;
    }
    QAbstractButton *button(const QString &name) const { return named<QAbstractButton>(name); }

    // The names of all that can be pressed, in the order of Tab.
    QStringList buttons() const
    {
        QStringList names;
        const QWidget *panel = m_controller->panel();
        for (QWidget *each = panel->nextInFocusChain(); each != panel;
             each = each->nextInFocusChain()) {
            if (qobject_cast<QAbstractButton *>(each) && each->isVisible())
                names << nameOf(each);
        }
        return names;
    }

    // What assistive tools read there; null when there is no such text.
    QString text(const QString &name) const
    {
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(named(name));
        QAccessibleTextInterface *text = accessible ? accessible->textInterface() : nullptr;
        return text ? text->text(0, text->characterCount()) : QString();
    }

    void show(PanelMode mode)
    {
        m_controller->show(mode, QRectF(100, 100, 50, 20));
        QVERIFY(QTest::qWaitForWindowActive(m_controller->panel()));
    }
    void showSelection(const QString &source, bool hasInsertTarget = true)
    {
        m_session->setSource(source, hasInsertTarget, std::nullopt);
        show(PanelMode::Selection);
    }

    std::unique_ptr<FloatingPanelController> m_controller;
};

} // namespace nivora::test
