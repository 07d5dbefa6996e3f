#include "platform_linux/atspi_accessibility.h"

#include "platform/window_system.h"
#include "platform_linux/x11_desktop.h"
#include "support/accessibility_tree.h"
#include "support/desktop_session.h"
#include "support/editor.h"
#include "support/wait.h"
#include "support/x11_driver.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QTest>

#include <X11/keysym.h>

#include <csignal>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using linuxdesktop::AtspiAccessibility;
using platform::FocusedElement;
using test::Clock;
using test::Editor;
using test::millisecondsBetween;

namespace {
struct Reading
{
    std::optional<FocusedElement> element;
    double took = 0; // ms
};

Reading read(AtspiAccessibility &accessibility)
{
    Reading reading;
    bool done = false;
    const auto start = Clock::now();
    const auto task = accessibility.readFocusedElement([&](std::optional<FocusedElement> element) {
        reading = {std::move(element), millisecondsBetween(start, Clock::now())};
        done = true;
    });
    // Finer than the event loop's own waiting would show.
    test::waitUntil([&] { return done; }, 5s, 100us);
    return reading;
}

} // namespace

// Against real editors on a desktop of its own.
class tst_atspi_accessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_session = std::make_unique<test::DesktopSession>();
        QVERIFY2(m_session->start({}), qPrintable(m_session->error()));
        m_user = std::make_unique<test::X11Driver>(m_session->displayName());
        m_tree = std::make_unique<test::AccessibilityTree>(m_session->accessibilityBusAddress());
        m_x11 = std::make_unique<linuxdesktop::X11Desktop>(m_session->displayName());
        m_editor = std::make_unique<Editor>(*m_session, *m_user, *m_tree);
    }

    void cleanup()
    {
        m_accessibility.reset();
        m_editor.reset();
        m_x11.reset();
        m_tree.reset();
        m_user.reset();
        m_session.reset();
    }

    void readsTheSelection_data()
    {
        QTest::addColumn<Editor::Toolkit>("toolkit");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("startedBefore");
        const auto rows = [](const char *name, const QString &text) {
            QTest::addRow("GTK, %s", name) << Editor::Toolkit::Gtk << text << true;
            QTest::addRow("Qt, %s", name) << Editor::Toolkit::Qt << text << true;
        };
        rows("CJK, emoji and line ends", u"你好，世界\n\U0001F388 café\n\n日本語"_s);
        rows("only blanks", u"   "_s);
        rows("20000 characters", u"汉字 and Latin. "_s.repeated(1250));
        QTest::addRow("GTK, joined later") << Editor::Toolkit::Gtk << u"hello"_s << false;
        QTest::addRow("Qt, joined later") << Editor::Toolkit::Qt << u"hello"_s << false;
    }

    void readsTheSelection()
    {
        QFETCH(const Editor::Toolkit, toolkit);
        QFETCH(const QString, text);
        QFETCH(const bool, startedBefore);
        if (startedBefore)
            start();
        QVERIFY(m_editor->open(toolkit, text));
        QVERIFY(m_editor->selectAll());
        if (!startedBefore)
            start();

        const auto [element, took] = read(*m_accessibility);
        qInfo("Read in %.1f ms", took);
        QVERIFY(element);
        QCOMPARE(element->selectedText, text);
        QCOMPARE(element->role, u"AXTextArea"_s);
        QVERIFY(element->valueSettable && element->selectedTextSettable);
        QVERIFY(element->attributes.contains(u"AXSelectedTextRange"_s));
        QCOMPARE(element->processId, m_x11->windowSystem().activeWindow()->processId);
        QCOMPARE(element->applicationId,
                 toolkit == Editor::Toolkit::Gtk ? u"mousepad"_s : u"focuswriter"_s);
        QVERIFY(!element->applicationName.isEmpty());
        QVERIFY(element->selectedTextRange);
        QCOMPARE(element->selectedTextRange->location, 0);
        QVERIFY(element->selectedTextRange->length > 0);
        QVERIFY(element->selectedTextBounds);
        if (text.size() < 100)
            QCOMPARE(element->selectedTextBounds->toRect(), m_editor->selectionBounds());
        QVERIFY(element->frame);
        QCOMPARE(element->frame->toRect(), m_editor->textArea());
    }

    void stoppedApplicationCostsOneBound()
    {
        start();
        QVERIFY(m_editor->open(Editor::Toolkit::Gtk, u"asleep"_s));
        QVERIFY(read(*m_accessibility).element);
        const auto process = static_cast<pid_t>(m_x11->windowSystem().activeWindow()->processId);
        ::kill(process, SIGSTOP);
        for (int i = 0; i < 2; ++i) {
            const auto [element, took] = read(*m_accessibility);
            QVERIFY(!element);
            QVERIFY2(took >= 250 && took < 330, qPrintable(QString::number(took)));
        }
        ::kill(process, SIGCONT);
        QVERIFY(test::waitUntil([&] { return read(*m_accessibility).element.has_value(); }, 5s));
    }

    void leavingIsBoundedToo()
    {
        start();
        QVERIFY(m_editor->open(Editor::Toolkit::Gtk, u"asleep"_s));
        QVERIFY(read(*m_accessibility).element);
        const auto process = static_cast<pid_t>(m_x11->windowSystem().activeWindow()->processId);
        ::kill(process, SIGSTOP);
        const auto task =
            m_accessibility->readFocusedElement([](const auto &) { QFAIL("not to be delivered"); });
        const auto begin = Clock::now();
        m_accessibility.reset();
        QVERIFY(millisecondsBetween(begin, Clock::now()) < 500);
        ::kill(process, SIGCONT);
    }

    void trustFollowsTheSwitch()
    {
        start();
        QVERIFY(m_editor->open(Editor::Toolkit::Gtk, u"text"_s));
        switchService(false);
        QTRY_VERIFY(!m_accessibility->isTrusted());
        QVERIFY(!read(*m_accessibility).element);
        m_accessibility->requestTrust();
        QTRY_VERIFY(m_accessibility->isTrusted());
        QVERIFY(read(*m_accessibility).element);
    }

    void comesBackWithTheAccessibilityBus()
    {
        start();
        QVERIFY(m_accessibility->isTrusted());
        const auto launcher = serviceProcess();
        QVERIFY(launcher != 0);
        ::kill(launcher, SIGTERM);
        QTRY_VERIFY(!m_accessibility->isTrusted());
        // Asking starts it anew.
        QTRY_VERIFY_WITH_TIMEOUT(serviceProcess() != 0 && serviceProcess() != launcher, 10'000);
        switchService(true);
        QTRY_VERIFY_WITH_TIMEOUT(m_accessibility->isTrusted(), 10'000);
        QVERIFY(m_session->launch(u"mousepad"_s, {u"--disable-server"_s}));
        QVERIFY(test::waitUntil([&] { return read(*m_accessibility).element.has_value(); }, 10s));
    }

    void withoutABusItIsAbsentAtOnce()
    {
        AtspiAccessibility accessibility(u"unix:path=/nonexistent/bus"_s, m_x11->windowSystem(),
                                         [](qint64) { return 1; });
        const auto begin = Clock::now();
        QVERIFY(!accessibility.isTrusted());
        QVERIFY(millisecondsBetween(begin, Clock::now()) < 100);
        const auto [element, took] = read(accessibility);
        QVERIFY(!element);
        QVERIFY(took < 100);
        QVERIFY(!accessibility.requestExposure(1));
    }

private:
    void start()
    {
        m_accessibility = std::make_unique<AtspiAccessibility>(
            m_session->busAddress(), m_x11->windowSystem(), [](qint64) { return 1; });
        const auto begin = Clock::now();
        QVERIFY(m_accessibility->isTrusted());
        QVERIFY(millisecondsBetween(begin, Clock::now()) < 300);
    }

    QDBusMessage askBus(const QString &service, const QString &path, const QString &interface,
                        const QString &method, const QVariantList &arguments)
    {
        auto call = QDBusMessage::createMethodCall(service, path, interface, method);
        call.setArguments(arguments);
        auto bus = QDBusConnection::connectToBus(m_session->busAddress(), u"test"_s);
        const auto answer = bus.call(call);
        QDBusConnection::disconnectFromBus(u"test"_s);
        return answer;
    }

    void switchService(bool on)
    {
        askBus(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.freedesktop.DBus.Properties"_s,
               u"Set"_s,
               {u"org.a11y.Status"_s, u"IsEnabled"_s, QVariant::fromValue(QDBusVariant(on))});
    }

    pid_t serviceProcess()
    {
        const QDBusReply<uint> process =
            askBus(u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s,
                   u"GetConnectionUnixProcessID"_s, {u"org.a11y.Bus"_s});
        return process.isValid() ? static_cast<pid_t>(process.value()) : 0;
    }

    std::unique_ptr<test::DesktopSession> m_session;
    std::unique_ptr<test::X11Driver> m_user;
    std::unique_ptr<test::AccessibilityTree> m_tree;
    std::unique_ptr<linuxdesktop::X11Desktop> m_x11;
    std::unique_ptr<Editor> m_editor;
    std::unique_ptr<AtspiAccessibility> m_accessibility;
};

QTEST_GUILESS_MAIN(tst_atspi_accessibility)
#include "tst_atspi_accessibility.moc"
