// The desktop of a soak: what it is made of, and what happens to it.
#include "soak.h"

#include "long_history.h"
#include "silent_application.h"

#include "stores/history_store.h"

#include "support/wait.h"

#include <QDBusPendingCall>

#include <X11/keysym.h>

#include <algorithm>
#include <cstdio>

namespace nivora::bench {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora::test;

namespace {

constexpr auto fine = 2ms;
// Threads of a pool live half a minute longer than their work, and the rows of the
// history a minute longer than its window.
constexpr auto settleBound = 100s;
constexpr auto settleTime = 2s;
// The history of a user of some years. The newest rows, which the product keeps in
// memory once its window was open, are like those that will take their place.
constexpr int olderRows = 5000;
constexpr int newestRows = HistoryStore::displayLimit;
const auto messagePattern = u"%{time hh:mm:ss.zzz} %{category}: %{message}"_s;
constexpr auto busName = "of the soak"_L1;
// For how long something stays away, in triggers.
constexpr int absence = 12;

} // namespace

Soak::Soak(quint32 seed)
    : m_random(seed)
    , m_road({.keyring = true})
    , m_service(seed + 1)
    , m_disturbances{{50, &Soak::visitWindows},
                     {210, &Soak::loseNetwork},
                     {330, &Soak::loseKeyring},
                     {450, &Soak::restartRegistry},
                     {930, &Soak::restartAccessibility}}
{
    for (Disturbance &each : m_disturbances)
        each.next = each.period;
}

Soak::~Soak()
{
    for (Program &each : m_programs)
        each.running.reset();
    m_bus.reset();
    QDBusConnection::disconnectFromBus(busName);
}

bool Soak::prepare()
{
    const auto failed = [this](const char *what) {
        std::printf("%s\n%s\n", what, qUtf8Printable(m_road.problem()));
        return false;
    };
    if (!m_road.prepare() || !m_service.open())
        return failed("there is no desktop");
    const QString path = m_road.session.folder() + u"/data/Nivora/history.sqlite"_s;
    fillHistory(path);
    m_history.emplace(path);
    m_bus = QDBusConnection::connectToBus(m_road.session.busAddress(), busName);
    m_peer.emplace(m_road.session.displayName());
    if (!openPrograms())
        return failed("a program does not open");
    const bool starts = m_road.product->start({{u"hasCompletedOnboarding"_s, true},
                                               {u"hasToldOfMissingTray"_s, true},
                                               {u"useCustomBackend"_s, true},
                                               {u"apiBaseURL"_s, m_service.address()}},
                                              {{u"QT_MESSAGE_PATTERN"_s, messagePattern}});
    if (!starts)
        return failed("the product does not start");
    m_log.emplace(m_road.product->logFile());
    return true;
}

void Soak::fillHistory(const QString &path)
{
    HistoryStore store([] { return true; }, path);
    bench::fillHistory(path, olderRows);
    constexpr int longest = 8000; // characters
    for (int row = 0; row < newestRows; ++row) {
        const QString source = *m_older.insert(makeText(longest));
        store.record(source, m_service.translationOf(source), Language::Japanese,
                     Language::Chinese);
    }
}

bool Soak::openPrograms()
{
    if (m_programs.empty()) {
        const auto makeSilent = [](const Application::Desk &desk) {
            return std::make_unique<SilentApplication>(desk);
        };
        m_programs.push_back({"Mousepad", makeMousepad, 40, true, 8000});
        m_programs.push_back({"FeatherPad", makeFeatherPad, 25, true, 8000});
        m_programs.push_back({"xterm", makeXTerm, 8, false, 70});
        m_programs.push_back({"a silent program", makeSilent, 15, false, 20'000});
    }
    const Application::Desk desk{m_road.session, *m_road.user, *m_road.tree, *m_road.clipboard};
    return std::ranges::all_of(m_programs, [&](Program &each) {
        if (!each.running)
            each.running = each.make(desk);
        else if (each.isAccessible)
            (each.running = nullptr, each.running = each.make(desk));
        else
            return true;
        return each.running->open();
    });
}

bool Soak::enter(Program &program)
{
    const auto window = program.running->window();
    m_journal.note(u"enter"_s, QLatin1StringView(program.name));
    if (m_road.user->activeWindow() == window)
        return true;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = m_peer->atom("_NET_ACTIVE_WINDOW");
    message.data.data32[0] = 2; // as a task bar asks for it
    xcb_send_event(m_peer->xcb(), 0, m_peer->root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&message));
    m_peer->synchronise();
    if (m_road.user->waitForActive(window, patience))
        return true;
    problem(u"%1 does not get the keyboard"_s.arg(QLatin1StringView(program.name)));
    return false;
}

void Soak::disturb()
{
    const auto isOver = [this](int &until) {
        const bool over = until >= 0 && m_triggers >= until;
        if (over)
            until = -1;
        return over;
    };
    m_journal.note(u"set up again"_s);
    if (isOver(m_networkBack) && !m_service.open())
        problem(u"the service cannot listen again"_s);
    if (isOver(m_keyringBack) && !m_road.session.startKeyring())
        problem(u"the keyring does not come back"_s);
    if (isOver(m_accessibilityBack)) {
        const bool isBack = m_road.session.startAccessibility();
        m_road.tree.emplace(m_road.session.accessibilityBusAddress());
        if (!isBack || !openPrograms())
            problem(u"accessibility does not come back: "_s + m_road.session.error());
    }
    for (Disturbance &each : m_disturbances) {
        if (m_triggers < each.next)
            continue;
        each.next += each.period;
        (this->*each.strike)();
    }
}

void Soak::visitWindows()
{
    static const std::pair<QString, QString> windows[]{
        {u"settings"_s, u"settings"_s}, {u"history"_s, u"history"_s}, {u"panel"_s, u"panel"_s}};
    const auto &[action, role] = windows[random(int(std::size(windows)))];
    m_journal.note(u"visit window"_s, action);
    const auto isIt = X11Driver::ofClass(u"Nivora"_s, role);
    if (isPanelOpen())
        closePanel();
    perform(action);
    const auto window = m_road.user->waitForMapped(isIt, patience);
    if (!window || !m_road.user->waitForActive(window->id, patience))
        return problem(u"the window \"%1\" does not open"_s.arg(role));
    const auto closes = [&] {
        m_road.user->press({XK_Escape});
        return m_road.user->waitForGone(isIt, 500ms);
    };
    if (!waitUntil(closes, patience))
        problem(u"the window \"%1\" does not close"_s.arg(role));
}

void Soak::loseNetwork()
{
    m_journal.note(u"lose the network"_s);
    m_service.close();
    m_networkBack = m_triggers + absence;
}

void Soak::loseKeyring()
{
    m_journal.note(u"lose the keyring"_s);
    m_road.session.endKeyring();
    m_keyringBack = m_triggers + absence;
}

void Soak::restartRegistry()
{
    m_journal.note(u"lose the registry"_s);
    if (m_accessibilityBack < 0 && !m_road.session.endAccessibilityRegistry())
        problem(u"there is no registry of accessible programs"_s);
}

void Soak::restartAccessibility()
{
    m_journal.note(u"lose accessibility"_s);
    if (isPanelOpen())
        closePanel();
    if (!m_road.session.endAccessibility())
        return problem(u"there is no accessibility bus"_s);
    m_accessibilityBack = m_triggers + absence;
}

QDBusMessage Soak::messageTo(const QString &interface, const QString &method)
{
    return QDBusMessage::createMethodCall(u"app.nivora"_s, u"/app/nivora"_s, interface, method);
}

void Soak::perform(const QString &action)
{
    auto call = messageTo(u"org.freedesktop.Application"_s, u"ActivateAction"_s);
    call.setArguments({action, QVariant(QVariantList()), QVariantMap()});
    m_bus->send(call);
}

// Until it is through with all that it had to do, and has told the X server: what a
// window asks for while it opens comes after the window manager has shown it.
void Soak::awaitProduct()
{
    for (int turn = 0; turn < 2; ++turn) {
        const auto answer =
            m_bus->asyncCall(messageTo(u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s));
        if (!waitUntil([&] { return answer.isFinished(); }, patience, fine))
            problem(u"the product does not answer"_s);
    }
}

bool Soak::isMapped(X11Driver::WindowId window) const
{
    const auto attributes = X11Peer::hold(xcb_get_window_attributes_reply(
        m_peer->xcb(), xcb_get_window_attributes(m_peer->xcb(), window), nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

// Looks at one window once it is known: to look for it among all takes its time.
bool Soak::isPanelOpen()
{
    if (m_panel == 0) {
        const auto found = m_road.user->find(Product::panel());
        m_panel = found ? found->id : 0;
    }
    return m_panel != 0 && isMapped(m_panel) && m_road.user->activeWindow() == m_panel;
}

bool Soak::closePanel()
{
    m_journal.note(u"close panel"_s);
    const auto closes = [this] {
        if (m_road.user->activeWindow() == m_panel)
            m_road.user->press({XK_Escape});
        return waitUntil([this] { return !isMapped(m_panel); }, 300ms, fine);
    };
    return waitUntil(closes, patience);
}

ProcessState Soak::state() const
{
    return ProcessState::of(m_road.product->processId(), m_peer->xcb());
}

ProcessState Soak::settle(const std::optional<ProcessState> &before)
{
    if (isPanelOpen())
        closePanel();
    m_journal.note(u"settle"_s);
    // What it keeps of the clipboard before, to give it back, it need not keep now.
    m_offers = {{"UTF8_STRING", "at the end"}};
    if (!m_road.clipboard->offer(m_offers))
        problem(u"the clipboard cannot be taken"_s);
    m_service.close(); // and with it the connections that are kept for the next request
    m_networkBack = m_triggers;
    ProcessState now;
    const auto isQuiet = [&] {
        waitUntil([] { return false; }, settleTime);
        now = state();
        return before && now.privateKiB <= before->privateKiB &&
               now.descriptors <= before->descriptors && now.threads <= before->threads &&
               now.serverResources <= before->serverResources;
    };
    waitUntil(isQuiet, settleBound);
    return now;
}

void Soak::checkHistory()
{
    int rows = 0;
    m_history->forEach([&](const QString &source, int count, const QString &translation) {
        if (source.contains(u"季度的预算安排") || m_older.contains(source)) // from before
            return;
        ++rows;
        const QString name = u"\"%1\""_s.arg(source.left(40));
        if (!m_service.fates().contains(source))
            return problem(name + u" is in the history, and nobody had selected it"_s);
        if (count != 1)
            problem(u"%1 has %2 rows"_s.arg(name).arg(count));
        if (translation != m_service.translationOf(source))
            problem(u"the row of %1 is not its translation"_s.arg(name));
        if (m_service.fateOf(source).whole == 0)
            problem(name + u" has a row, and was never answered to the end"_s);
    });
    for (const QString &source : m_finished) {
        if (m_history->rowsOf(source) != 1)
            problem(u"\"%1\" has lost its row"_s.arg(source.left(40)));
    }
    std::printf("%d texts, %d rows, %lld of them seen to finish; %lld pastes held back\n",
                m_texts - int(m_older.size()), rows, static_cast<long long>(m_finished.size()),
                static_cast<long long>(m_heldBack));
}

void Soak::problem(const QString &what)
{
    ++m_problems;
    std::printf("BROKEN at trigger %d: %s\n", m_triggers, qUtf8Printable(what));
    std::fflush(stdout);
    m_journal.testify(m_road.product->log());
}

} // namespace nivora::bench
