#include "atspi_search.h"

#include "atspi_roles.h"

#include <QDBusArgument>

namespace nivora::linuxdesktop {

using namespace Qt::Literals::StringLiterals;

namespace {

// Lists are not walked element by element: theirs may be without end.
constexpr int mostChildren = 100;

// "All elements with the state focused", as the Collection interface puts it.
QVariant focusedRule()
{
    constexpr int all = 1;
    const QList<int> states{1 << static_cast<int>(AtspiState::Focused), 0};
    QDBusArgument rule;
    rule.beginStructure();
    rule << states << all << QMap<QString, QString>() << all << QList<int>() << all << QStringList()
         << all << false;
    rule.endStructure();
    return QVariant::fromValue(rule);
}

} // namespace

QStringList AtspiSearch::programs()
{
    QStringList services;
    for (const auto &program : m_calls.objects(m_calls.send(
             {u"org.a11y.atspi.Registry"_s, atspi::rootPath}, atspi::accessible, "GetChildren"_L1)))
        services.append(program.service);
    return services;
}

std::optional<AtspiObject> AtspiSearch::focusedOf(const QString &service)
{
    for (const auto &window : windows(service)) {
        std::optional<AtspiObject> focused;
        if (askProgram(window, focused))
            return focused;
        if ((focused = walk(window)))
            return focused;
    }
    return std::nullopt;
}

std::vector<AtspiObject> AtspiSearch::windows(const QString &service)
{
    auto windows = m_calls.objects(
        m_calls.send({service, atspi::rootPath}, atspi::accessible, "GetChildren"_L1));
    std::vector<QDBusPendingCall> states;
    for (const auto &window : windows)
        states.push_back(m_calls.send(window, atspi::accessible, "GetState"_L1));
    std::vector<AtspiObject> active;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        if (has(m_calls.states(states[i]), AtspiState::Active))
            active.push_back(std::move(windows[i]));
    }
    return active;
}

bool AtspiSearch::askProgram(const AtspiObject &window, std::optional<AtspiObject> &focused)
{
    constexpr uint inTreeOrder = 1;
    const auto answer = m_calls.send(window, atspi::collection, "GetMatches"_L1,
                                     {focusedRule(), inTreeOrder, 1, true});
    const auto matches = m_calls.objects(answer);
    if (!matches.empty())
        focused = matches.front();
    return !answer.isError();
}

bool AtspiSearch::hasText(const AtspiObject &object)
{
    return m_calls.strings(m_calls.send(object, atspi::accessible, "GetInterfaces"_L1))
        .contains(atspi::text);
}

// Qt programs call what surrounds the focused text focused too.
std::optional<AtspiObject> AtspiSearch::walk(const AtspiObject &window)
{
    std::optional<AtspiObject> focused;
    std::vector<AtspiObject> level{window};
    for (std::size_t seen = 0; !level.empty() && seen < longestWalk && !m_calls.isOver();) {
        level.resize(std::min<std::size_t>(level.size(), longestWalk - seen));
        seen += level.size();
        std::vector<std::pair<QDBusPendingCall, QDBusPendingCall>> questions;
        for (const auto &object : level)
            questions.emplace_back(m_calls.send(object, atspi::accessible, "GetState"_L1),
                                   m_calls.sendGet(object, atspi::accessible, "ChildCount"_L1));
        std::vector<QDBusPendingCall> descents;
        for (std::size_t i = 0; i < level.size(); ++i) {
            const auto states = m_calls.states(questions[i].first);
            const int children = m_calls.property(questions[i].second).toInt();
            if (has(states, AtspiState::Focused)) {
                if (hasText(level[i]))
                    return level[i];
                focused = focused.value_or(level[i]);
            }
            if (has(states, AtspiState::Showing) && !has(states, AtspiState::ManagesDescendants) &&
                children > 0 && children <= mostChildren)
                descents.push_back(m_calls.send(level[i], atspi::accessible, "GetChildren"_L1));
        }
        level.clear();
        for (const auto &descent : descents) {
            auto children = m_calls.objects(descent);
            std::ranges::move(children, std::back_inserter(level));
        }
    }
    return focused;
}

} // namespace nivora::linuxdesktop
