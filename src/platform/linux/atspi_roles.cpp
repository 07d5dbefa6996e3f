#include "atspi_roles.h"

#include "atspi_calls.h"

#include <array>

namespace nivora::linuxdesktop {

using namespace Qt::Literals::StringLiterals;

namespace {

// Numbers of accessible roles as they travel on the bus.
namespace role {
constexpr uint checkBox = 7;
constexpr uint comboBox = 11;
constexpr uint icon = 26;
constexpr uint image = 27;
constexpr uint label = 29;
constexpr uint list = 31;
constexpr uint listItem = 32;
constexpr uint menuItem = 35;
constexpr uint pageTab = 37;
constexpr uint passwordText = 40;
constexpr uint pushButton = 43;
constexpr uint radioButton = 44;
constexpr uint slider = 51;
constexpr uint spinButton = 52;
constexpr uint table = 55;
constexpr uint tableCell = 56;
constexpr uint terminal = 60;
constexpr uint text = 61;
constexpr uint toggleButton = 62;
constexpr uint tree = 65;
constexpr uint treeTable = 66;
constexpr uint paragraph = 73;
constexpr uint autocomplete = 76;
constexpr uint editBar = 77;
constexpr uint entry = 79;
constexpr uint documentFrame = 82;
constexpr uint heading = 83;
constexpr uint link = 88;
constexpr uint treeItem = 91;
constexpr uint documentText = 94;
constexpr uint documentWeb = 95;
constexpr uint documentEmail = 96;
constexpr uint staticText = 116;
} // namespace role

struct Name
{
    uint role;
    QLatin1StringView name;
};

// Elements that take no text. The names serve diagnosis alone; what is not
// listed is "AXUnknown".
constexpr std::array otherNames{
    Name{role::checkBox, "AXCheckBox"_L1},
    Name{role::comboBox, "AXPopUpButton"_L1},
    Name{role::icon, "AXImage"_L1},
    Name{role::image, "AXImage"_L1},
    Name{role::label, "AXStaticText"_L1},
    Name{role::list, "AXList"_L1},
    Name{role::listItem, "AXStaticText"_L1},
    Name{role::menuItem, "AXMenuItem"_L1},
    Name{role::pageTab, "AXRadioButton"_L1},
    Name{role::pushButton, "AXButton"_L1},
    Name{role::radioButton, "AXRadioButton"_L1},
    Name{role::slider, "AXSlider"_L1},
    Name{role::spinButton, "AXIncrementor"_L1},
    Name{role::table, "AXTable"_L1},
    Name{role::tableCell, "AXCell"_L1},
    Name{role::text, "AXStaticText"_L1},
    Name{role::toggleButton, "AXCheckBox"_L1},
    Name{role::tree, "AXOutline"_L1},
    Name{role::treeTable, "AXOutline"_L1},
    Name{role::paragraph, "AXStaticText"_L1},
    Name{role::entry, "AXStaticText"_L1},
    Name{role::documentFrame, "AXWebArea"_L1},
    Name{role::heading, "AXHeading"_L1},
    Name{role::link, "AXLink"_L1},
    Name{role::treeItem, "AXRow"_L1},
    Name{role::documentText, "AXWebArea"_L1},
    Name{role::documentWeb, "AXWebArea"_L1},
    Name{role::documentEmail, "AXWebArea"_L1},
    Name{role::staticText, "AXStaticText"_L1},
};

QString otherName(uint accessibleRole)
{
    for (const auto &[number, name] : otherNames) {
        if (number == accessibleRole)
            return name;
    }
    return u"AXUnknown"_s;
}

bool isControl(uint accessibleRole)
{
    constexpr std::array controls{role::autocomplete, role::comboBox, role::editBar, role::entry,
                                  role::spinButton,   role::terminal, role::text};
    return std::ranges::find(controls, accessibleRole) != controls.end();
}

QString editableName(uint accessibleRole, quint64 states)
{
    if (accessibleRole == role::comboBox)
        return u"AXComboBox"_s;
    if (has(states, AtspiState::MultiLine))
        return u"AXTextArea"_s;
    const bool isField = has(states, AtspiState::SingleLine) || accessibleRole == role::entry ||
                         accessibleRole == role::autocomplete || accessibleRole == role::spinButton;
    return isField ? u"AXTextField"_s : u"AXTextArea"_s;
}

} // namespace

AtspiKind AtspiKind::of(uint accessibleRole, quint64 states, const QStringList &interfaces,
                        const QStringList &attributes)
{
    AtspiKind kind;
    kind.hasComponent = interfaces.contains(atspi::component);
    if (accessibleRole == role::passwordText) {
        kind.role = u"AXTextField"_s;
        kind.subrole = u"AXSecureTextField"_s;
        kind.takesText = true;
        kind.hidesText = true;
        return kind;
    }
    kind.hasText = interfaces.contains(atspi::text);
    kind.standsAlone = isControl(accessibleRole);
    kind.misreadsSelection = accessibleRole == role::terminal;
    if (accessibleRole == role::terminal) {
        kind.role = u"AXTextArea"_s;
        kind.takesText = true;
    } else if (kind.hasText && has(states, AtspiState::Editable)) {
        kind.role = editableName(accessibleRole, states);
        kind.takesText = true;
        if (attributes.contains(u"xml-roles:searchbox"_s) ||
            attributes.contains(u"text-input-type:search"_s))
            kind.subrole = u"AXSearchField"_s;
    } else {
        kind.role = otherName(accessibleRole);
    }
    return kind;
}

void AtspiKind::describe(platform::FocusedElement &element) const
{
    element.role = role;
    element.subrole = subrole;
    element.valueSettable = takesText;
    element.selectedTextSettable = takesText;

    element.attributes = {u"AXRole"_s};
    if (!subrole.isEmpty())
        element.attributes.append(u"AXSubrole"_s);
    if (hasText || takesText)
        element.attributes.append(u"AXValue"_s);
    if (hasText)
        element.attributes +=
            {u"AXSelectedText"_s, u"AXSelectedTextRange"_s, u"AXNumberOfCharacters"_s};
    if (hasComponent)
        element.attributes += {u"AXPosition"_s, u"AXSize"_s};
}

} // namespace nivora::linuxdesktop
