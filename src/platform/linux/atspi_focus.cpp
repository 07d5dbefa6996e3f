#include "atspi_focus.h"

#include "atspi_search.h"

#include <QDBusMessage>

namespace nivora::linuxdesktop {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

// How many programs and bus names are remembered; the rest is found anew.
constexpr std::size_t mostPrograms = 32;
constexpr qsizetype mostNames = 512;

constexpr auto askProcessWait = 300ms;

void enlarge(platform::FocusedElement &element, int scale)
{
    for (auto *place : {&element.selectedTextBounds, &element.frame}) {
        if (*place)
            **place = QRectF((*place)->topLeft() * scale, (*place)->size() * scale);
    }
}

} // namespace

AtspiFocus::AtspiFocus(const QDBusConnection &bus, qint64 ownProcess)
    : m_bus(bus)
    , m_ownProcess(ownProcess)
{
}

bool AtspiFocus::listen(QDeadlineTimer deadline)
{
    m_bus.connect(QString(), QString(), u"org.a11y.atspi.Event.Object"_s, u"StateChanged"_s,
                  {u"focused"_s}, QString(), this, SLOT(onStateChanged(QDBusMessage)));
    // Programs tell of nothing that nobody has asked for. The registry may still
    // have to be started.
    auto request =
        QDBusMessage::createMethodCall(u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/registry"_s,
                                       u"org.a11y.atspi.Registry"_s, u"RegisterEvent"_s);
    request << u"object:state-changed:focused"_s;
    auto answer = m_bus.asyncCall(request, static_cast<int>(deadline.remainingTime()) + 1);
    answer.waitForFinished();
    return !answer.isError();
}

void AtspiFocus::prepare(qint64 process, QDeadlineTimer deadline)
{
    AtspiCalls calls(m_bus, deadline);
    auto &wanted = program(process);
    if (wanted.focused.empty())
        search(wanted, calls);
}

std::optional<platform::FocusedElement> AtspiFocus::read(qint64 process, int gtkScale,
                                                         QDeadlineTimer deadline)
{
    AtspiCalls calls(m_bus, deadline);
    const bool isActive = process != 0;
    if (isActive)
        m_lastProcess = process;
    if (m_lastProcess == 0)
        return std::nullopt;
    auto &wanted = program(m_lastProcess);
    if (isActive)
        wanted.gtkScale = gtkScale;
    if (auto element = readKnown(wanted, isActive, calls); element || !isActive)
        return element;
    // Once in vain is enough: a program that tells of its focus will do so at the
    // next change.
    if (calls.isOver() || (wanted.searched && wanted.focused.empty()))
        return unseenOf(wanted);
    search(wanted, calls);
    auto element = readKnown(wanted, isActive, calls);
    return element ? element : unseenOf(wanted);
}

std::optional<platform::FocusedElement> AtspiFocus::unseenOf(const Program &program)
{
    if (!program.isChromium)
        return std::nullopt;
    platform::FocusedElement element;
    element.processId = program.process;
    element.selectedText = QString();
    return element;
}

std::optional<platform::FocusedElement> AtspiFocus::readKnown(Program &program, bool mustHaveFocus,
                                                              AtspiCalls &calls)
{
    std::optional<AtspiElement> best;
    for (const auto &object : program.focused) {
        AtspiElement element(object);
        const auto answer = element.inspect(calls);
        program.isChromium = program.isChromium || element.isOfChromium();
        if (calls.isOver())
            return std::nullopt;
        const bool hasFocus = answer == AtspiElement::Answer::Focused;
        const bool isNewest = object == program.focused.front();
        if (answer == AtspiElement::Answer::None || (!hasFocus && (mustHaveFocus || !isNewest)))
            continue;
        if (!best || (!best->hasText() && element.hasText()))
            best = std::move(element);
        if (best->hasText())
            break;
    }
    if (!best)
        return std::nullopt;
    auto element = best->read(calls);
    element.processId = program.process;
    if (best->isOfGtk())
        enlarge(element, program.gtkScale);
    return element;
}

void AtspiFocus::search(Program &program, AtspiCalls &calls)
{
    AtspiSearch search(calls);
    const auto services = search.programs();
    // Their processes in one round trip, as far as they are not known.
    QHash<QString, QDBusPendingCall> questions;
    for (const auto &service : services) {
        if (!m_processes.contains(service))
            questions.insert(service, calls.sendProcessOf(service));
    }
    for (const auto &[service, question] : questions.asKeyValueRange()) {
        if (const auto process = calls.processId(question); process != 0)
            m_processes.insert(service, process);
    }
    std::vector<AtspiObject> found;
    for (const auto &service : services) {
        if (m_processes.value(service) != program.process)
            continue;
        const auto toolkit =
            calls.sendGet({service, atspi::rootPath}, atspi::application, "ToolkitName"_L1);
        if (const auto focused = search.focusedOf(service))
            found.push_back(*focused);
        program.isChromium =
            program.isChromium || calls.property(toolkit).toString() == atspi::chromium;
    }
    if (calls.isOver())
        return;
    program.searched = true;
    program.focused = std::move(found);
}

void AtspiFocus::onStateChanged(const QDBusMessage &signal)
{
    const bool gotFocus = signal.arguments().value(1).toInt() == 1;
    if (!gotFocus || signal.service().isEmpty())
        return;
    AtspiCalls calls(m_bus, QDeadlineTimer(askProcessWait));
    const auto process = processOf(signal.service(), calls);
    if (process == 0 || process == m_ownProcess)
        return;
    m_lastProcess = process;
    remember(program(process), {signal.service(), signal.path()});
}

void AtspiFocus::remember(Program &program, const AtspiObject &object)
{
    std::erase(program.focused, object);
    program.focused.insert(program.focused.begin(), object);
    if (program.focused.size() > 2)
        program.focused.pop_back();
}

AtspiFocus::Program &AtspiFocus::program(qint64 process)
{
    const auto known = std::ranges::find(m_programs, process, &Program::process);
    if (known != m_programs.end()) {
        m_programs.splice(m_programs.begin(), m_programs, known);
    } else {
        m_programs.emplace_front().process = process;
        if (m_programs.size() > mostPrograms)
            m_programs.pop_back();
    }
    return m_programs.front();
}

qint64 AtspiFocus::processOf(const QString &service, AtspiCalls &calls)
{
    if (const auto known = m_processes.value(service); known != 0)
        return known;
    if (m_processes.size() >= mostNames)
        m_processes.clear();
    const auto process = calls.processId(calls.sendProcessOf(service));
    if (process != 0)
        m_processes.insert(service, process);
    return process;
}

} // namespace nivora::linuxdesktop
