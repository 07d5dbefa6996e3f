#include "atspi_element.h"

#include <QDBusArgument>

#include <thread>

namespace nivora::linuxdesktop {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr uint onScreen = 0; // the space of places: of the whole screen

// Stands in a text for a part of it that is an element of its own.
constexpr QChar embeddedObject{0xfffc};

// Firefox asks the process of the page for places when it is first asked, and
// answers without until it has them.
constexpr auto placeWait = 20ms;
constexpr int mostPlaceWaits = 6;

// Elements within elements whose places are looked at.
constexpr int deepestPlace = 8;

// GTK measures a range character by character, each from the start of its line:
// 4000 characters of one line take it 0.3 s. Of a longer range than this only the
// ends are measured.
constexpr int longestMeasuredRange = 200;

bool isPlace(const QRectF &rectangle)
{
    return rectangle.width() >= 0 && rectangle.height() >= 0 &&
           (rectangle.width() > 0 || rectangle.height() > 0);
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

bool isBeyondBasicPlane(const QString &text)
{
    return std::ranges::any_of(text, [](QChar unit) { return unit.isSurrogate(); });
}

// Firefox counts in UTF-16 and makes up for that with a filler after each
// character of two units.
QString withoutFillers(const QString &text)
{
    constexpr QChar filler{0xfeff};
    QString plain;
    plain.reserve(text.size());
    for (const QChar unit : text) {
        if (unit != filler || plain.isEmpty() || !plain.back().isLowSurrogate())
            plain.append(unit);
    }
    return plain;
}

} // namespace

struct AtspiElement::Selection
{
    bool isEmpty() const { return start == end; }

    int start = 0;
    int end = 0;
    int count = 0; // of the selections, of which this is the first
};

AtspiElement::Answer AtspiElement::inspect(AtspiCalls &calls)
{
    const auto role = calls.send(m_object, atspi::accessible, "GetRole"_L1);
    const auto states = calls.send(m_object, atspi::accessible, "GetState"_L1);
    const auto interfaces = calls.send(m_object, atspi::accessible, "GetInterfaces"_L1);
    const auto attributes = calls.send(m_object, atspi::accessible, "GetAttributes"_L1);
    const auto frame = calls.send(m_object, atspi::component, "GetExtents"_L1, {onScreen});
    const AtspiObject program{m_object.service, atspi::rootPath};
    const auto name = calls.sendGet(program, atspi::accessible, "Name"_L1);
    const auto toolkit = calls.sendGet(program, atspi::application, "ToolkitName"_L1);

    const auto roleNumber = calls.arguments(role).value(0).toUInt();
    const auto stateBits = calls.states(states);
    const auto interfaceNames = calls.strings(interfaces);
    m_kind =
        AtspiKind::of(roleNumber, stateBits, interfaceNames, pairs(calls.arguments(attributes)));
    m_hasText = interfaceNames.contains(atspi::text);
    m_frame = extents(calls.arguments(frame));
    m_programName = calls.property(name).toString();
    const auto toolkitName = calls.property(toolkit).toString();
    if (toolkitName == atspi::gecko)
        m_toolkit = Toolkit::Gecko;
    else if (toolkitName == atspi::chromium)
        m_toolkit = Toolkit::Chromium;
    else if (toolkitName == "gtk"_L1)
        m_toolkit = Toolkit::Gtk;
    if (stateBits == 0)
        return Answer::None;
    return has(stateBits, AtspiState::Focused) ? Answer::Focused : Answer::Unfocused;
}

platform::FocusedElement AtspiElement::read(AtspiCalls &calls)
{
    auto element = readOnce(calls);
    const auto lacksPlace = [&] {
        return !element.frame || (element.selectedTextRange && !element.selectedTextBounds &&
                                  element.selectedTextRange->length > 0);
    };
    bool isSettled = m_toolkit != Toolkit::Gecko || !lacksPlace();
    for (int i = 0; i < mostPlaceWaits && !isSettled; ++i) {
        std::this_thread::sleep_for(placeWait);
        if (calls.isOver())
            break;
        const auto before = element.selectedTextBounds;
        m_frame = extents(
            calls.arguments(calls.send(m_object, atspi::component, "GetExtents"_L1, {onScreen})));
        element = readOnce(calls);
        // The first places may be those of a part of the characters.
        isSettled = !lacksPlace() && element.selectedTextBounds == before;
    }
    return element;
}

platform::FocusedElement AtspiElement::readOnce(AtspiCalls &calls) const
{
    platform::FocusedElement element;
    m_kind.describe(element);
    element.applicationName = m_programName;
    element.frame = m_frame;
    if (m_kind.hasText)
        readText(calls, element);
    else if (m_kind.hidesText)
        element.selectedText = QString();
    return element;
}

std::optional<AtspiElement::Selection> AtspiElement::askSelection(AtspiCalls &calls) const
{
    const auto caretCall = calls.sendGet(m_object, atspi::text, "CaretOffset"_L1);
    const auto countCall = calls.send(m_object, atspi::text, "GetNSelections"_L1);
    const auto endsCall = calls.send(m_object, atspi::text, "GetSelection"_L1, {0});

    const int caret = calls.property(caretCall).toInt();
    const auto count = calls.arguments(countCall);
    const auto ends = calls.arguments(endsCall);
    if (count.isEmpty())
        return std::nullopt;
    const int selections = count.first().toInt();
    // VTE may know of a selection and not of its ends.
    if (selections <= 0 || ends.size() != 2 || ends[0] == ends[1])
        return Selection{.start = caret, .end = caret, .count = selections};
    // No program is to be trusted with an end before the text's beginning.
    const int one = std::max(0, ends[0].toInt());
    const int other = std::max(0, ends[1].toInt());
    return Selection{
        .start = std::min(one, other), .end = std::max(one, other), .count = selections};
}

void AtspiElement::readText(AtspiCalls &calls, platform::FocusedElement &element) const
{
    const auto countCall = calls.sendGet(m_object, atspi::text, "CharacterCount"_L1);
    const auto selection = askSelection(calls);
    const auto count = calls.property(countCall);
    if (count.isNull() || !selection)
        return;
    element.characterCount = count.toInt();
    element.selectedTextRange = {selection->start, selection->end - selection->start};
    if (!selection->isEmpty()) {
        readSelection(calls, *selection, element);
        return;
    }

    // Elsewhere than in a field and in a browser, whose focused element holds all
    // of a selection, it may go on in the next element.
    const bool touchesEdge = selection->start <= 0 || selection->end >= *element.characterCount;
    const bool mayGoOn = !m_kind.standsAlone && !isInBrowser() && touchesEdge;
    // Chromium: none in a page where all is selected, an empty one where an end of
    // it cannot be told.
    const bool isUnsure = (m_toolkit == Toolkit::Chromium && (isPage() || selection->count > 0)) ||
                          (m_kind.misreadsSelection && selection->count > 0);
    if (!mayGoOn && !isUnsure && selection->count <= 1)
        element.selectedText = QString();
    // What a browser says of the insertion point in a page is not seen there.
    if (!isPage() && selection->start >= 0)
        readCaret(calls, selection->start, element);
}

void AtspiElement::readSelection(AtspiCalls &calls, const Selection &selection,
                                 platform::FocusedElement &element) const
{
    const auto text = textOf(calls, selection);
    const bool touchesEdge = selection.start <= 0 || selection.end >= *element.characterCount;
    const bool isWhole = selection.count == 1 && !m_kind.misreadsSelection &&
                         (m_kind.standsAlone || isInBrowser() || !touchesEdge);
    // The part that is an element of its own is missing from the text, and a page
    // is copied otherwise than it is told: without the bullets of its lists and
    // with what is hidden from accessibility alone.
    if (text && isWhole && !isPage() && !text->contains(embeddedObject))
        element.selectedText = text;
    element.selectedTextBounds = place(calls, selection, text, deepestPlace);
}

// Absent where the program is known to tell of another part than what is selected.
std::optional<QString> AtspiElement::textOf(AtspiCalls &calls, const Selection &selection) const
{
    // Chromium takes the characters before an offset for units of UTF-16: any
    // character of two units shifts it.
    const bool countsUnits = m_toolkit == Toolkit::Chromium;
    const int start = countsUnits ? 0 : selection.start;
    const auto answer =
        calls.arguments(calls.send(m_object, atspi::text, "GetText"_L1, {start, selection.end}));
    if (answer.isEmpty())
        return std::nullopt;
    const auto text = answer.first().toString();
    if (countsUnits)
        return isBeyondBasicPlane(text) ? std::nullopt : std::optional(text.mid(selection.start));
    return m_toolkit == Toolkit::Gecko ? withoutFillers(text) : text;
}

// Where a selection begins and ends with elements of their own, their parts of it
// tell the place: Firefox's own account has an element too many.
std::optional<QRectF> AtspiElement::place(AtspiCalls &calls, const Selection &selection,
                                          const std::optional<QString> &text, int depth) const
{
    if (depth > 0 && text && text->startsWith(embeddedObject) && text->endsWith(embeddedObject)) {
        const auto first = placeWithin(calls, selection.start, depth - 1);
        const auto last = selection.end - selection.start > 1
                              ? placeWithin(calls, selection.end - 1, depth - 1)
                              : first;
        if (first && last)
            return first->united(*last);
    }
    return bounds(calls, selection);
}

// Where the selected part is of the element that stands at this offset.
std::optional<QRectF> AtspiElement::placeWithin(AtspiCalls &calls, int offset, int depth) const
{
    const auto index =
        calls.arguments(calls.send(m_object, atspi::hypertext, "GetLinkIndex"_L1, {offset}))
            .value(0, -1)
            .toInt();
    if (index < 0)
        return std::nullopt;
    const auto link = calls.object(calls.send(m_object, atspi::hypertext, "GetLink"_L1, {index}));
    if (!link)
        return std::nullopt;
    const auto object = calls.object(calls.send(*link, atspi::hyperlink, "GetObject"_L1, {0}));
    if (!object)
        return std::nullopt;
    AtspiElement element(*object);
    if (element.inspect(calls) == Answer::None)
        return std::nullopt;
    const auto selection = element.m_kind.hasText ? element.askSelection(calls) : std::nullopt;
    if (!selection || selection->isEmpty())
        return element.m_frame;
    return element.place(calls, *selection, element.textOf(calls, *selection), depth);
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
