#include "support/accessibility_tree.h"

#include "support/wait.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>
#include <QUuid>

#include <utility>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int callBoundMs = 2000;
constexpr int greatestDepth = 24;

const auto accessibleInterface = u"org.a11y.atspi.Accessible"_s;
const auto textInterface = u"org.a11y.atspi.Text"_s;
const auto componentInterface = u"org.a11y.atspi.Component"_s;
const auto actionInterface = u"org.a11y.atspi.Action"_s;

constexpr uint screenSpace = 0;

// GTK measures a range character by character, which takes it seconds for a long
// one.
constexpr int longestMeasuredRange = 200;

// Places in the bit set of states.
constexpr int stateChecked = 4;
constexpr int stateFocused = 12;
constexpr int stateShowing = 25;

using References = std::vector<std::pair<QString, QString>>; // bus name, object path

References toReferences(const QVariantList &answer)
{
    References references;
    if (answer.isEmpty() || !answer.first().canConvert<QDBusArgument>())
        return references;
    const auto list = answer.first().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString service;
        QDBusObjectPath path;
        list.beginStructure();
        list >> service >> path;
        list.endStructure();
        references.emplace_back(service, path.path());
    }
    list.endArray();
    return references;
}

} // namespace

AccessibleElement::AccessibleElement(const QDBusConnection &bus, const QString &service,
                                     const QString &path)
    : m_bus(bus)
    , m_service(service)
    , m_path(path)
{
}

QString AccessibleElement::name() const
{
    return property(accessibleInterface, u"Name"_s).toString();
}

QString AccessibleElement::description() const
{
    return property(accessibleInterface, u"Description"_s).toString();
}

QString AccessibleElement::role() const
{
    return call(accessibleInterface, u"GetRoleName"_s).value(0).toString();
}

bool AccessibleElement::isShowing() const
{
    return hasState(stateShowing);
}

bool AccessibleElement::isFocused() const
{
    return hasState(stateFocused);
}

bool AccessibleElement::isChecked() const
{
    return hasState(stateChecked);
}

QRect AccessibleElement::frame() const
{
    const auto answer = call(componentInterface, u"GetExtents"_s, {screenSpace});
    if (answer.isEmpty())
        return {};
    const auto extents = answer.first().value<QDBusArgument>();
    int x = 0, y = 0, width = 0, height = 0;
    extents.beginStructure();
    extents >> x >> y >> width >> height;
    extents.endStructure();
    return {x, y, width, height};
}

std::vector<AccessibleElement> AccessibleElement::children() const
{
    std::vector<AccessibleElement> found;
    for (const auto &[service, path] : toReferences(call(accessibleInterface, u"GetChildren"_s)))
        found.emplace_back(m_bus, service, path);
    return found;
}

QString AccessibleElement::text() const
{
    return call(textInterface, u"GetText"_s, {0, -1}).value(0).toString();
}

QString AccessibleElement::selectedText() const
{
    const auto range = selection();
    if (!range)
        return {};
    return call(textInterface, u"GetText"_s, {range->first, range->second}).value(0).toString();
}

int AccessibleElement::cursor() const
{
    bool isNumber = false;
    const int place = property(textInterface, u"CaretOffset"_s).toInt(&isNumber);
    return isNumber ? place : -1;
}

QRect AccessibleElement::characterBounds(int character) const
{
    const auto box = call(textInterface, u"GetCharacterExtents"_s, {character, screenSpace});
    return {box.value(0).toInt(), box.value(1).toInt(), box.value(2).toInt(), box.value(3).toInt()};
}

QRect AccessibleElement::cursorBounds() const
{
    const int place = cursor();
    const QRect next = characterBounds(place);
    if (next.height() > 0 || place <= 0)
        return {next.x(), next.y(), 0, next.height()};
    // There is no next one at the end of a text.
    const QRect last = characterBounds(place - 1);
    return {last.x() + last.width(), last.y(), 0, last.height()};
}

QRect AccessibleElement::selectionBounds() const
{
    const auto range = selection();
    if (!range)
        return {};
    if (range->second - range->first > longestMeasuredRange)
        return characterBounds(range->first).united(characterBounds(range->second - 1));
    const auto box =
        call(textInterface, u"GetRangeExtents"_s, {range->first, range->second, screenSpace});
    return {box.value(0).toInt(), box.value(1).toInt(), box.value(2).toInt(), box.value(3).toInt()};
}

std::optional<std::pair<int, int>> AccessibleElement::selection() const
{
    const auto range = call(textInterface, u"GetSelection"_s, {0});
    if (range.size() < 2 || range[0].toInt() >= range[1].toInt())
        return {};
    return std::pair(range[0].toInt(), range[1].toInt());
}

bool AccessibleElement::press() const
{
    return call(actionInterface, u"DoAction"_s, {0}).value(0).toBool();
}

bool AccessibleElement::takeFocus() const
{
    return call(componentInterface, u"GrabFocus"_s).value(0).toBool();
}

bool AccessibleElement::setText(const QString &text) const
{
    return call(u"org.a11y.atspi.EditableText"_s, u"SetTextContents"_s, {text}).value(0).toBool();
}

bool AccessibleElement::setValue(double value) const
{
    auto message = QDBusMessage::createMethodCall(m_service, m_path,
                                                  u"org.freedesktop.DBus.Properties"_s, u"Set"_s);
    message.setArguments(
        {u"org.a11y.atspi.Value"_s, u"CurrentValue"_s, QVariant::fromValue(QDBusVariant(value))});
    return m_bus.call(message, QDBus::Block, callBoundMs).type() == QDBusMessage::ReplyMessage;
}

QVariantList AccessibleElement::call(const QString &interface, const QString &method,
                                     const QVariantList &arguments) const
{
    auto message = QDBusMessage::createMethodCall(m_service, m_path, interface, method);
    message.setArguments(arguments);
    const auto answer = m_bus.call(message, QDBus::Block, callBoundMs);
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments() : QVariantList();
}

QVariant AccessibleElement::property(const QString &interface, const QString &name) const
{
    const auto answer = call(u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {interface, name});
    return answer.value(0).value<QDBusVariant>().variant();
}

bool AccessibleElement::hasState(int state) const
{
    const auto answer = call(accessibleInterface, u"GetState"_s);
    if (answer.isEmpty())
        return false;
    const auto words = qdbus_cast<QList<uint>>(answer.first());
    return words.size() > state / 32 && (words[state / 32] >> (state % 32) & 1U) != 0;
}

AccessibilityTree::AccessibilityTree(const QString &busAddress)
    : m_connectionName(QUuid::createUuid().toString())
    , m_bus(QDBusConnection::connectToBus(busAddress, m_connectionName))
{
}

AccessibilityTree::~AccessibilityTree()
{
    QDBusConnection::disconnectFromBus(m_connectionName);
}

std::optional<AccessibleElement> AccessibilityTree::application(qint64 processId) const
{
    const AccessibleElement registry(m_bus, u"org.a11y.atspi.Registry"_s,
                                     u"/org/a11y/atspi/accessible/root"_s);
    for (const auto &application : registry.children()) {
        const QDBusReply<uint> owner = m_bus.interface()->servicePid(application.m_service);
        if (owner.isValid() && owner.value() == processId)
            return application;
    }
    return {};
}

namespace {

std::optional<AccessibleElement> search(const AccessibleElement &element,
                                        const AccessibilityTree::Condition &condition, int depth)
{
    if (condition(element) && element.isShowing())
        return element;
    if (depth > 0) {
        for (const auto &child : element.children()) {
            if (auto found = search(child, condition, depth - 1))
                return found;
        }
    }
    return {};
}

void describe(const AccessibleElement &element, int depth, QString &lines)
{
    if (depth > greatestDepth)
        return;
    lines += QString(2 * depth, u' ') + element.role() + u" \""_s + element.name() + u"\" \""_s +
             element.text() + u"\"\n"_s;
    for (const auto &child : element.children()) {
        if (child.isShowing() || depth == 0)
            describe(child, depth + 1, lines);
    }
}

} // namespace

std::optional<AccessibleElement> AccessibilityTree::find(qint64 processId,
                                                         const Condition &condition) const
{
    const auto root = application(processId);
    return root ? search(*root, condition, greatestDepth) : std::nullopt;
}

std::optional<AccessibleElement> AccessibilityTree::waitFor(qint64 processId,
                                                            const Condition &condition,
                                                            std::chrono::milliseconds bound) const
{
    std::optional<AccessibleElement> found;
    waitUntil([&] { return (found = find(processId, condition)).has_value(); }, bound);
    return found;
}

QString AccessibilityTree::dump(qint64 processId) const
{
    QString lines;
    if (const auto root = application(processId))
        describe(*root, 0, lines);
    return lines;
}

AccessibilityTree::Condition AccessibilityTree::hasRole(const QString &role)
{
    return [role](const AccessibleElement &element) { return element.role() == role; };
}

AccessibilityTree::Condition AccessibilityTree::hasName(const QString &name)
{
    return [name](const AccessibleElement &element) { return element.name() == name; };
}

AccessibilityTree::Condition AccessibilityTree::isFocused()
{
    return [](const AccessibleElement &element) { return element.isFocused(); };
}

} // namespace nivora::test
