#include "flowing_text_accessible.h"

#include "flowing_text.h"
#include "open_menu.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QContextMenuEvent>
#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

class AccessibleText final : public QAccessibleWidget, public QAccessibleTextInterface
{
public:
    explicit AccessibleText(QWidget *widget)
        : QAccessibleWidget(widget, QAccessible::EditableText)
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        state.multiLine = true;
        state.selectableText = true;
        return state;
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? view().text() : QAccessibleWidget::text(kind);
    }

    int childCount() const override { return openMenuOf(view()) ? 1 : 0; }
    QAccessibleInterface *child(int index) const override
    {
        return index == 0 ? QAccessible::queryAccessibleInterface(openMenuOf(view())) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return child && child->object() == openMenuOf(view()) ? 0 : -1;
    }

    QStringList actionNames() const override
    {
        return QAccessibleWidget::actionNames() << showMenuAction();
    }
    void doAction(const QString &name) override
    {
        if (name != showMenuAction())
            return QAccessibleWidget::doAction(name);
        const QPoint place = view().flow().caretAt(view().cursor()).toAlignedRect().bottomLeft();
        QCoreApplication::postEvent(
            &view(),
            new QContextMenuEvent(QContextMenuEvent::Keyboard, place, view().mapToGlobal(place)));
    }

    void selection(int index, int *start, int *end) const override
    {
        const auto [first, last] = view().selection();
        const bool exists = index == 0 && first < last;
        *start = exists ? first : 0;
        *end = exists ? last : 0;
    }
    int selectionCount() const override
    {
        const auto [first, last] = view().selection();
        return first < last ? 1 : 0;
    }
    void addSelection(int start, int end) override { view().select(start, end); }
    void setSelection(int index, int start, int end) override
    {
        if (index == 0)
            view().select(start, end);
    }
    void removeSelection(int index) override
    {
        if (index == 0)
            view().select(view().cursor(), view().cursor());
    }

    int cursorPosition() const override { return view().cursor(); }
    void setCursorPosition(int position) override { view().select(position, position); }

    QString text(int start, int end) const override
    {
        const auto size = characterCount();
        start = std::clamp(start, 0, size);
        end = end < 0 ? size : std::clamp(end, start, size);
        return view().text().sliced(start, end - start);
    }
    int characterCount() const override { return int(view().text().size()); }

    QRect characterRect(int offset) const override
    {
        const TextFlow &flow = view().flow();
        const QRectF caret = flow.caretAt(offset);
        const QRectF after = flow.caretAt(flow.next(offset));
        QRectF place = caret;
        // At the end of a line, the next place lies on another.
        if (after.top() == caret.top())
            place = caret.united(after);
        QRect rect = place.toAlignedRect();
        rect.moveTopLeft(view().mapToGlobal(rect.topLeft()));
        return rect;
    }
    int offsetAtPoint(const QPoint &point) const override
    {
        return view().flow().positionAt(view().mapFromGlobal(point));
    }
    void scrollToSubstring(int start, int) override
    {
        Q_EMIT view().cursorShown(view().flow().caretAt(start).toAlignedRect());
    }
    QString attributes(int, int *start, int *end) const override
    {
        *start = 0;
        *end = characterCount();
        return {};
    }

private:
    FlowingText &view() const { return *static_cast<FlowingText *>(widget()); }
};

QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    auto *text = qobject_cast<FlowingText *>(object);
    return text ? new AccessibleText(text) : nullptr;
}

} // namespace

void makeFlowingTextsAccessible()
{
    QAccessible::installFactory(makeAccessible);
}

} // namespace nivora
