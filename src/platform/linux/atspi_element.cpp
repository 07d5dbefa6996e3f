#include "atspi_element.h"

#include <QDBusArgument>

namespace nivora::linuxdesktop {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr uint onScreen = 0; // the space of places: of the whole screen

// Stands in a text for a part of it that is an element of its own.
constexpr QChar embeddedObject{0xfffc};

// GTK measures a range character by character, each from the start of its line:
// 4000 characters of one line take it 0.3 s. Of a longer range than this only the
// ends are measured.
constexpr int longestMeasuredRange = 200;

bool isPlace(const QRectF &rectangle)
{
    return rectangle.width() > 0 || rectangle.height() > 0;
}

std::optional<QRectF> rectangle(const QVariantList &numbers)
{
    if (numbers.size() != 4)
        return std::nullopt;
    const QRectF found(numbers[0].toInt(), numbers[1].toInt(), numbers[2].toInt(),
                       numbers[3].toInt());
    return isPlace(found) ? std::optional(found) : std::nullopt;
}

std::optional<QRectF> extents(const QVariantList &arguments)
{
    if (arguments.isEmpty() || arguments.first().metaType() != QMetaType::fromType<QDBusArgument>())
        return std::nullopt;
    const auto structure = arguments.first().value<QDBusArgument>();
    if (structure.currentSignature() != "(iiii)"_L1)
        return std::nullopt;
    int x = 0, y = 0, width = 0, height = 0;
    structure.beginStructure();
    structure >> x >> y >> width >> height;
    structure.endStructure();
    return rectangle({x, y, width, height});
}

QStringList pairs(const QVariantList &arguments)
{
    QStringList pairs;
    if (arguments.isEmpty() || arguments.first().metaType() != QMetaType::fromType<QDBusArgument>())
        return pairs;
    const auto map = arguments.first().value<QDBusArgument>();
    if (map.currentSignature() != "a{ss}"_L1)
        return pairs;
    const auto values = qdbus_cast<QMap<QString, QString>>(map);
    for (const auto &[name, value] : values.asKeyValueRange())
        pairs.append(name + u':' + value);
    return pairs;
}

} // namespace

struct AtspiElement::Selection
{
    int start = 0;
    int end = 0;
    // Whether its text is the whole of what the user sees selected.
    bool isWhole = true;
};

AtspiElement::Answer AtspiElement::inspect(AtspiCalls &calls)
{
    const auto role = calls.send(m_object, atspi::accessible, "GetRole"_L1);
    const auto states = calls.send(m_object, atspi::accessible, "GetState"_L1);
    const auto interfaces = calls.send(m_object, atspi::accessible, "GetInterfaces"_L1);
    const auto attributes = calls.send(m_object, atspi::accessible, "GetAttributes"_L1);
    const auto frame = calls.send(m_object, atspi::component, "GetExtents"_L1, {onScreen});
    const auto name =
        calls.sendGet({m_object.service, atspi::rootPath}, atspi::accessible, "Name"_L1);

    const auto roleNumber = calls.arguments(role).value(0).toUInt();
    const auto stateBits = calls.states(states);
    const auto interfaceNames = calls.strings(interfaces);
    m_kind =
        AtspiKind::of(roleNumber, stateBits, interfaceNames, pairs(calls.arguments(attributes)));
    m_hasText = interfaceNames.contains(atspi::text);
    m_frame = extents(calls.arguments(frame));
    m_programName = calls.property(name).toString();
    if (stateBits == 0)
        return Answer::None;
    return has(stateBits, AtspiState::Focused) ? Answer::Focused : Answer::Unfocused;
}

platform::FocusedElement AtspiElement::read(AtspiCalls &calls) const
{
    platform::FocusedElement element;
    m_kind.describe(element);
    element.applicationName = m_programName;
    element.frame = m_frame;
    if (m_kind.hasText)
        readText(calls, element);
    return element;
}

void AtspiElement::readText(AtspiCalls &calls, platform::FocusedElement &element) const
{
    const auto countCall = calls.sendGet(m_object, atspi::text, "CharacterCount"_L1);
    const auto caretCall = calls.sendGet(m_object, atspi::text, "CaretOffset"_L1);
    const auto selectionsCall = calls.send(m_object, atspi::text, "GetNSelections"_L1);
    const auto selectionCall = calls.send(m_object, atspi::text, "GetSelection"_L1, {0});

    const auto count = calls.property(countCall);
    const auto caret = calls.property(caretCall);
    const auto selections = calls.arguments(selectionsCall);
    const auto ends = calls.arguments(selectionCall);
    if (count.isNull() || selections.isEmpty())
        return;
    element.characterCount = count.toInt();

    Selection selection{.start = caret.toInt(), .end = caret.toInt()};
    if (selections.first().toInt() > 0 && ends.size() == 2)
        selection = {std::min(ends[0].toInt(), ends[1].toInt()),
                     std::max(ends[0].toInt(), ends[1].toInt())};
    element.selectedTextRange = {selection.start, selection.end - selection.start};

    const bool touchesEdge = selection.start <= 0 || selection.end >= *element.characterCount;
    selection.isWhole = selections.first().toInt() <= 1 && (m_kind.standsAlone || !touchesEdge);
    if (selection.start == selection.end) {
        if (selection.isWhole)
            element.selectedText = QString();
        readCaret(calls, selection.start, element);
    } else {
        selection.isWhole = selection.isWhole && !m_kind.misreadsSelection;
        readSelection(calls, selection, element);
    }
}

void AtspiElement::readSelection(AtspiCalls &calls, const Selection &selection,
                                 platform::FocusedElement &element) const
{
    const auto textCall =
        calls.send(m_object, atspi::text, "GetText"_L1, {selection.start, selection.end});
    const auto text = calls.arguments(textCall);
    // The part that is an element of its own is missing from the text.
    if (!text.isEmpty() && selection.isWhole && !text.first().toString().contains(embeddedObject))
        element.selectedText = text.first().toString();
    element.selectedTextBounds = bounds(calls, selection);
    // The first answer of a Firefox field can be empty, the second is true.
    if (!element.selectedTextBounds)
        element.selectedTextBounds = bounds(calls, selection);
}

std::optional<QRectF> AtspiElement::bounds(AtspiCalls &calls, const Selection &selection) const
{
    if (selection.end - selection.start <= longestMeasuredRange)
        return rectangle(calls.arguments(calls.send(m_object, atspi::text, "GetRangeExtents"_L1,
                                                    {selection.start, selection.end, onScreen})));

    const auto firstCall = sendCharacter(calls, selection.start);
    const auto lastCall = sendCharacter(calls, selection.end - 1);
    const auto first = rectangle(calls.arguments(firstCall));
    const auto last = rectangle(calls.arguments(lastCall));
    if (!first || !last)
        return std::nullopt;
    auto all = first->united(*last);
    // Over several lines the text in between fills the width.
    if (m_frame && first->bottom() <= last->top()) {
        all.setLeft(m_frame->left());
        all.setRight(m_frame->right());
    }
    return all;
}

QDBusPendingCall AtspiElement::sendCharacter(AtspiCalls &calls, int offset) const
{
    return calls.send(m_object, atspi::text, "GetCharacterExtents"_L1, {offset, onScreen});
}

// An insertion point has no extents of its own: it lies at the left edge of the
// character after it, or, at the end of the text, where some toolkits know of no
// character, at the right edge of the one before it.
void AtspiElement::readCaret(AtspiCalls &calls, int caret, platform::FocusedElement &element) const
{
    const auto afterCall = sendCharacter(calls, caret);
    const auto beforeCall = sendCharacter(calls, std::max(0, caret - 1));
    const auto after = rectangle(calls.arguments(afterCall));
    const auto before = rectangle(calls.arguments(beforeCall));
    if (after && after->height() > 0)
        element.selectedTextBounds = QRectF(after->topLeft(), QSizeF(0, after->height()));
    else if (caret > 0 && before && before->height() > 0)
        element.selectedTextBounds = QRectF(before->topRight(), QSizeF(0, before->height()));
}

} // namespace nivora::linuxdesktop
