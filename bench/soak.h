#pragma once

#include "process_state.h"
#include "soak_history.h"
#include "soak_journal.h"
#include "soak_log.h"
#include "soak_service.h"

#include "e2e/road.h"
#include "support/application.h"
#include "support/x11_peer.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <optional>
#include <random>
#include <vector>

namespace nivora::bench {

// A long day on one desktop: the user goes from program to program, selects, calls
// the product and takes or leaves what comes, while the service fails at random and
// parts of the desktop go away and come back. Everything that the product promises
// for each trigger is checked at each trigger.
class Soak
{
public:
    // `seed` decides on all that is left to chance.
    explicit Soak(quint32 seed);
    ~Soak();

    // Starts the desktop, the programs and the product.
    bool prepare();
    // Shows the product texts until it has been called this often in all.
    void runTo(int triggers);
    // Closes what is open and waits until the product holds no more than `before`,
    // if it comes to that.
    ProcessState settle(const std::optional<ProcessState> &before);
    ProcessState state() const;
    // Holds every row of the history against what the service has answered.
    void checkHistory();

    const SoakJournal &journal() const { return m_journal; }
    int triggers() const { return m_triggers; }
    int problems() const { return m_problems; }

private:
    using Maker =
        std::function<std::unique_ptr<test::Application>(const test::Application::Desk &)>;
    struct Program
    {
        const char *name;
        Maker make;
        int weight;
        bool isAccessible;
        int longestText; // characters
        std::unique_ptr<test::Application> running = {};
        QString text = {}; // what was last selected in it
    };
    struct Disturbance
    {
        int period; // triggers
        void (Soak::*strike)();
        int next = 0;
    };
    enum class After { Closed, Replaced, LeftOpen };

    void fillHistory(const QString &path);
    bool openPrograms();
    Program &somebody();
    bool enter(Program &program);
    QString makeText(int longest);
    void scene(Program &program);
    After round(Program &program, bool isLast);
    void compose(Program &program);
    void pull();
    void awaitResult(const QString &source);
    void leave(Program &program);
    After replace(Program &program);
    void offerSomething();
    void checkClipboard();
    void disturb();

    void visitWindows();
    void loseNetwork();
    void loseKeyring();
    void restartRegistry();
    void restartAccessibility();
    void perform(const QString &action);
    void awaitProduct();

    static QDBusMessage messageTo(const QString &interface, const QString &method);
    bool isPanelOpen();
    bool closePanel();
    bool isMapped(test::X11Driver::WindowId window) const;
    void problem(const QString &what);
    int random(int below) { return int(m_random() % unsigned(below)); }

    std::mt19937 m_random;
    test::Road m_road;
    SoakService m_service;
    SoakJournal m_journal{m_road.session, m_road.user};
    std::optional<test::X11Peer> m_peer;
    std::optional<SoakHistory> m_history;
    std::optional<SoakLog> m_log;
    std::optional<QDBusConnection> m_bus;
    std::vector<Program> m_programs;
    std::vector<Disturbance> m_disturbances;
    std::vector<test::ClipboardPeer::Offer> m_offers; // what is the user's clipboard
    QSet<QString> m_older;    // sources that are in the history from the start
    QSet<QString> m_finished; // sources that were seen to finish
    test::X11Driver::WindowId m_panel = 0;
    int m_triggers = 0;
    int m_texts = 0;
    int m_networkBack = -1; // at this trigger
    int m_keyringBack = -1;
    int m_accessibilityBack = -1;
    qsizetype m_heldBack = 0; // pastes that the product did not dare
    int m_problems = 0;
};

} // namespace nivora::bench
