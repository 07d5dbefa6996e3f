#include "panel_button_accessible.h"

#include "open_menu.h"
#include "panel_button.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace nivora {

namespace {

using Kind = PanelButton::Kind;

class AccessibleButton final : public QAccessibleWidget
{
public:
    explicit AccessibleButton(PanelButton *button)
        : QAccessibleWidget(button, QAccessible::Button)
    {
    }

    QAccessible::Role role() const override
    {
        switch (button().kind()) {
        case Kind::Toggle:
            return QAccessible::CheckBox; // as the toolkit tells of its own
        case Kind::Menu:
            return QAccessible::ButtonMenu;
        case Kind::Action:
        case Kind::Popover:
            break;
        }
        return QAccessible::Button;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.pressed = button().isDown();
        switch (button().kind()) {
        case Kind::Action:
            break;
        case Kind::Toggle:
            state.checkable = true;
            state.checked = button().isActive();
            break;
        case Kind::Menu:
            state.expandable = true;
            state.expanded = openMenuOf(button()) != nullptr;
            [[fallthrough]];
        case Kind::Popover:
            state.hasPopup = true;
            break;
        }
        return state;
    }

    QString text(QAccessible::Text kind) const override
    {
        const QString text = QAccessibleWidget::text(kind);
        if (kind == QAccessible::Name && text.isEmpty())
            return button().text();
        // The toolkit describes by the tooltip, which has been said already.
        if (kind == QAccessible::Description && text == this->text(QAccessible::Name))
            return {};
        return text;
    }

    int childCount() const override { return openMenuOf(button()) ? 1 : 0; }
    QAccessibleInterface *child(int index) const override
    {
        return index == 0 ? QAccessible::queryAccessibleInterface(openMenuOf(button())) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return child && child->object() == openMenuOf(button()) ? 0 : -1;
    }

    QStringList actionNames() const override
    {
        QStringList names = QAccessibleWidget::actionNames();
        if (button().isEnabled())
            names.prepend(mainAction());
        return names;
    }
    void doAction(const QString &name) override
    {
        if (name != mainAction())
            return QAccessibleWidget::doAction(name);
        // The tool has its answer before anything comes of it.
        if (button().isEnabled())
            QMetaObject::invokeMethod(&button(), &PanelButton::click, Qt::QueuedConnection);
    }

private:
    PanelButton &button() const { return *static_cast<PanelButton *>(widget()); }
    const QString &mainAction() const
    {
        switch (button().kind()) {
        case Kind::Toggle:
            return toggleAction();
        case Kind::Menu:
            return showMenuAction();
        case Kind::Action:
        case Kind::Popover:
            break;
        }
        return pressAction();
    }
};

QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    auto *button = qobject_cast<PanelButton *>(object);
    return button ? new AccessibleButton(button) : nullptr;
}

} // namespace

void makePanelButtonsAccessible()
{
    QAccessible::installFactory(makeAccessible);
}

} // namespace nivora
