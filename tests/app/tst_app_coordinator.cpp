#include "app/app_coordinator.h"

#include "windows/floating_panel.h"

#include "localcloud/event_stream.h"
#include "localcloud/server.h"
#include "platform/accessibility.h"
#include "platform_linux_network/qt_http_client.h"
#include "platform_memory/memory_desktop.h"

#include <QAbstractButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using localcloud::eventStream;
using platform::KeyEvent;

namespace {
const platform::ForeignWindow editor{77, 4711, u"Editor"_s, u"editor"_s};
constexpr platform::KeyChord chord{Qt::Key_O, Qt::ControlModifier | Qt::AltModifier};

platform::FocusedElement field(const QString &selected)
{
    platform::FocusedElement element;
    element.processId = editor.processId;
    element.role = u"AXTextArea"_s;
    element.selectedTextRange.emplace();
    element.selectedText = selected;
    element.selectedTextBounds = QRectF(100, 100, 50, 18);
    return element;
}

} // namespace

// The decisions of a trigger and of the start, over a desktop in memory, with a
// real panel, engine and server.
class TestAppCoordinator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_coordinator.reset();
        m_server = std::make_unique<localcloud::Server>();
        QVERIFY(m_server->listen());
        m_server->setHandler([](const auto &) { return eventStream({u"译文"_s}); });
        m_folder = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", m_folder->path().toUtf8());
        m_desktop = std::make_unique<memory::MemoryDesktop>();
        m_desktop->http.connectTo(m_network);
        m_desktop->windowSystem.setActiveWindow(editor);
        m_desktop->preferences.set(u"hasCompletedOnboarding"_s, true);
        m_desktop->secrets.write(u"app.nivora"_s, u"session-token"_s, "token"_ba);
    }

    void accessIsAskedForAndWaitedFor()
    {
        m_desktop->accessibility.setTrusted(false);
        start();
        QSignalSpy changed(&m_coordinator->uiState(), &AppUIState::accessibilityTrustedChanged);
        QVERIFY(!m_coordinator->uiState().accessibilityTrusted());
        QVERIFY(alertButton(u"取消"_s));
        QCOMPARE(m_desktop->accessibility.trustRequests(), 0); // the user decides
        alertButton(u"开启"_s)->click();
        QCOMPARE(m_desktop->accessibility.trustRequests(), 1);
        QVERIFY(!alertButton(u"开启"_s));
        m_desktop->accessibility.setTrusted(true);
        QTRY_VERIFY(m_desktop->keyEventTap.isRunning());
        QVERIFY(m_coordinator->uiState().accessibilityTrusted());
        QCOMPARE(changed.count(), 1);
    }

    void aDesktopWithoutSettingsLeavesAWayToGrantAccess()
    {
        start();
        m_coordinator->openAccessibilitySettings();
        QVERIFY(!alertButton(u"开启"_s));
        m_desktop->settingsPanes.setInstalled(false);
        m_coordinator->openAccessibilitySettings();
        QCOMPARE(m_desktop->settingsPanes.opened(),
                 std::vector(2, platform::SettingsPane::Accessibility));
        QVERIFY(alertButton(u"好"_s) && !alertButton(u"开启"_s)); // it is on
        m_desktop->accessibility.setTrusted(false);               // and there it stays
        m_coordinator->openAccessibilitySettings();
        alertButton(u"开启"_s)->click();
        QCOMPARE(m_desktop->accessibility.trustRequests(), 1);
        QTRY_VERIFY(alertButton(u"好"_s));
        alertButton(u"好"_s)->click();
    }

    void aScreenThatMayNotBeReadLeadsToTheSettings()
    {
        start();
        m_coordinator->showScreenPermissionAlert();
        alertButton(u"取消"_s)->click();
        QVERIFY(m_desktop->settingsPanes.opened().empty());
        m_coordinator->showScreenPermissionAlert();
        alertButton(u"打开系统设置"_s)->click();
        QCOMPARE(m_desktop->settingsPanes.opened(),
                 std::vector{platform::SettingsPane::ScreenRecording});
        QVERIFY(!alertButton(u"好"_s));
        m_desktop->settingsPanes.setInstalled(false);
        m_coordinator->showScreenPermissionAlert();
        alertButton(u"打开系统设置"_s)->click();
        QVERIFY(alertButton(u"好"_s));
        alertButton(u"好"_s)->click();
    }

    void aTakenChordLeavesTheDoubleTap()
    {
        m_desktop->hotKey.refuse(chord);
        start();
        QVERIFY(m_desktop->hotKey.grabbed().empty());
        doubleTap();
        QVERIFY(panelShown());
    }

    void theFirstStartTeachesBeforeItListens()
    {
        m_desktop->preferences.remove(u"hasCompletedOnboarding"_s);
        m_desktop->accessibility.setTrusted(false);
        start();
        QVERIFY(shown(u"onboarding"_s));
        QVERIFY(!alertButton(u"开启"_s)); // it asks by itself
        QVERIFY(m_desktop->hotKey.press(chord));
        QTRY_VERIFY(panelShown());
        m_coordinator->panelController().hide();
        m_coordinator->activate();
        QVERIFY(!panelShown());
        m_desktop->accessibility.setTrusted(true);
        QVERIFY(!m_desktop->keyEventTap.isRunning());
        QTest::keyClick(shown(u"onboarding"_s), Qt::Key_Escape);
        QVERIFY(!shown(u"onboarding"_s));
        QVERIFY(m_desktop->keyEventTap.isRunning());
        QVERIFY(m_coordinator->uiState().accessibilityTrusted());
        start();
        QVERIFY(!shown(u"onboarding"_s));
    }

    void nobodySignedInOpensNoPanel_data()
    {
        QTest::addColumn<bool>("signedIn");
        QTest::addColumn<bool>("custom");
        QTest::addColumn<bool>("opens");
        QTest::newRow("cloud, signed out") << false << false << false;
        QTest::newRow("cloud, signed in") << true << false << true;
        QTest::newRow("custom, signed out") << false << true << true;
    }

    void nobodySignedInOpensNoPanel()
    {
        QFETCH(bool, signedIn);
        QFETCH(bool, custom);
        QFETCH(bool, opens);
        if (!signedIn)
            m_desktop->secrets.remove(u"app.nivora"_s, u"session-token"_s);
        m_desktop->preferences.set(u"useCustomBackend"_s, custom);
        start();
        doubleTap();
        QCOMPARE(panelShown(), opens);
        QCOMPARE(shown(u"login"_s) != nullptr, !opens);
        QCOMPARE(m_desktop->accessibility.reads() > 0, opens); // no selection is read
        start();                                               // anew, with no window
        m_coordinator->showPanel();
        QCOMPARE(panelShown(), opens);
        QCOMPARE(shown(u"login"_s) != nullptr, !opens);
    }

    void thePlanIsAskedForAsTheProgramIsUsed()
    {
        const QJsonObject plan{
            {u"plan"_s, u"pro"_s}, {u"status"_s, u"active"_s}, {u"used"_s, 1}, {u"quota"_s, 4}};
        m_server->setHandler([&](const auto &) { return localcloud::Answer::json(200, plan); });
        start();
        QVERIFY(!m_coordinator->billingSummary());
        QTRY_COMPARE(m_coordinator->billingSummary(), u"Pro · 1/4 (25%)"_s);
        m_coordinator->showPanel();
        QTRY_COMPARE(m_server->requests().size(), 2);
        doubleTap();
        QTRY_COMPARE(m_server->requests().size(), 3);
        QCOMPARE(m_server->requests().last().path, "/billing/status"_ba);
        m_coordinator->authStore().signOut();
        QTRY_VERIFY(!m_coordinator->billingSummary());
        const platform::Task attempt =
            m_coordinator->signIn().signInWithGoogle([](const auto &) {});
        m_coordinator->openLink(QUrl(u"nivora:?token=t"_s));
        QTRY_COMPARE(m_coordinator->billingSummary(), u"Pro · 1/4 (25%)"_s);
        QCOMPARE(m_server->requests().size(), 4);
    }

    void aResultThatCannotGoBackIsToldOf()
    {
        start();
        int told = 0;
        m_coordinator->onTextLeftOnClipboard = [&] { ++told; };
        m_desktop->accessibility.setElement(field(u"hello"_s));
        doubleTap();
        QTRY_COMPARE(m_coordinator->viewModel().phase().kind, Phase::Kind::Done);
        m_desktop->windowSystem.setActiveWindow(
            platform::ForeignWindow{78, 815, u"Other"_s, u"other"_s});
        m_coordinator->viewModel().insert();
        QTRY_COMPARE(told, 1);
        QCOMPARE(m_desktop->clipboard.text(), u"译文"_s);
    }

    void aTriggerDuringACaptureIsIgnored()
    {
        start();
        m_desktop->accessibility.setElement(field(u"hello"_s));
        m_desktop->accessibility.setLatency(100ms);
        const platform::Task second = platform::delay(80ms, [this] { doubleTap(); });
        doubleTap();
        QVERIFY(!second.isRunning()); // it fell into the capture
        QTRY_COMPARE(m_coordinator->viewModel().phase().kind, Phase::Kind::Done);
        QCOMPARE(requests().size(), 1);
    }

    void aTriggerDuringAnInsertionWaitsForItsEnd()
    {
        start();
        m_desktop->accessibility.setElement(field(u"hello"_s));
        m_desktop->clipboard.putForeignText(u"mine"_s);
        m_desktop->keySynthesizer.setTarget([&](const auto &) { m_desktop->clipboard.paste(); });
        doubleTap();
        QTRY_COMPARE(m_coordinator->viewModel().phase().kind, Phase::Kind::Done);
        m_coordinator->viewModel().insert();
        m_desktop->accessibility.setElement(field({})); // what was pasted is not selected
        doubleTap();
        QVERIFY(!panelShown());
        QTRY_VERIFY(panelShown());
        // Neither what lay on the clipboard nor what was lent to it was taken for text.
        QCOMPARE(m_coordinator->viewModel().sourceText(), QString());
        QCOMPARE(requests().size(), 1);
        QCOMPARE(m_desktop->clipboard.text(), u"mine"_s);
    }

    void theEmptyPanelReadsNoSelection()
    {
        start();
        m_desktop->accessibility.setElement(field(u"hello"_s));
        m_coordinator->showPanel();
        QVERIFY(panelShown());
        QCOMPARE(m_coordinator->viewModel().mode(), PanelMode::Compose);
        QVERIFY(!m_coordinator->viewModel().hasInsertTarget());
        QCOMPARE(m_desktop->accessibility.reads(), 0);
    }

    void settingsTakeEffectAtOnce()
    {
        start();
        m_coordinator->settings().themeModeRaw.set(u"dark"_s);
        QVERIFY(QApplication::palette().color(QPalette::Window).lightness() < 128);
        m_coordinator->settings().themeModeRaw.set(u"light"_s);
        QVERIFY(QApplication::palette().color(QPalette::Window).lightness() > 128);

        m_coordinator->settings().doubleTapThresholdMs.set(50);
        doubleTap(); // 100 ms apart
        QVERIFY(!panelShown());
        m_coordinator->settings().doubleTapThresholdMs.set(100);
        doubleTap();
        QVERIFY(panelShown());
    }

    void usageIsCounted()
    {
        start();
        m_server->setHandler([](const auto &) {
            return eventStream({u"x"_s}, {.usage = localcloud::TokenCounts{5, 6}});
        });
        m_coordinator->viewModel().setSource(u"hello"_s, false, std::nullopt);
        QTRY_COMPARE(m_coordinator->usageStore().promptTokens(), 5);
        QCOMPARE(m_coordinator->usageStore().requestCount(), 1);
    }

private:
    void start()
    {
        m_coordinator = std::make_unique<AppCoordinator>(m_desktop->services(), m_server->url(),
                                                         m_server->url());
        m_coordinator->start();
    }

    bool panelShown() const
    {
        const FloatingPanel *panel = m_coordinator->panelController().panel();
        return panel && panel->isVisible();
    }
    void doubleTap()
    {
        for (int i = 0; i < 2; ++i) {
            m_time += 100ms;
            m_desktop->keyEventTap.send(
                {KeyEvent::Kind::ModifiersChanged, KeyEvent::Key::LeftShift, true, m_time});
        }
        m_time += 5s;
    }

    // What the user's doings have asked for, without the questions about the plan.
    QList<localcloud::Request> requests() const
    {
        QList<localcloud::Request> all = m_server->requests();
        all.removeIf([](const auto &each) { return each.path == "/billing/status"_ba; });
        return all;
    }
    static QWidget *shown(const QString &role)
    {
        const auto windows = QApplication::topLevelWidgets();
        const auto found = std::ranges::find_if(windows, [&](const QWidget *window) {
            return window->windowRole() == role && window->isVisible();
        });
        return found == windows.end() ? nullptr : *found;
    }
    static QAbstractButton *alertButton(const QString &text)
    {
        const auto windows = QApplication::topLevelWidgets();
        for (const QWidget *window : windows) {
            for (auto *button : window->findChildren<QAbstractButton *>()) {
                if (window->windowRole() == u"alert" && button->isVisible() &&
                    button->text() == text)
                    return button;
            }
        }
        return nullptr;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<localcloud::Server> m_server;
    linuxdesktop::QtHttpClient m_network;
    std::unique_ptr<memory::MemoryDesktop> m_desktop;
    std::unique_ptr<AppCoordinator> m_coordinator;
    std::chrono::milliseconds m_time{1s};
};

QTEST_MAIN(TestAppCoordinator)
#include "tst_app_coordinator.moc"
