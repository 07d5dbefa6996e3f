#include "windows/login_window_controller.h"
#include "windows/onboarding_window_controller.h"
#include "windows/product_style.h"

#include "account/auth_store.h"
#include "account/sign_in.h"
#include "core/auth_service.h"
#include "stores/keychain_store.h"

#include "localcloud/server.h"
#include "platform_linux_network/qt_http_client.h"
#include "platform_memory/memory_desktop.h"

#include <QAbstractButton>
#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QJsonDocument>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using localcloud::Answer;

namespace {
const auto address = u"me@x.org"_s;
const auto sendButton = u"发送验证码"_s;
const auto signInButton = u"登录"_s;
const auto googleButton = u"用 Google 登录"_s;
const auto beginButton = u"开始"_s;
const auto nextButton = u"继续"_s;
const auto laterButton = u"稍后再说"_s;
const auto finishButton = u"完成"_s;

Answer signedIn()
{
    return Answer::json(200, {{u"token"_s, u"t0ken"_s}, {u"email"_s, address}});
}

struct Press
{
    Qt::Key key;
    quint64 time; // milliseconds
    bool repeated = false;
};

} // namespace

// The login window and the window of the first start, driven by keys and found by
// what they show.
class TestAccountWindows : public QObject
{
    Q_OBJECT

    linuxdesktop::QtHttpClient m_network;
    std::unique_ptr<localcloud::Server> m_server;
    std::unique_ptr<memory::MemoryDesktop> m_desktop;
    std::unique_ptr<KeychainStore> m_keychain;
    std::unique_ptr<AuthStore> m_auth;
    std::unique_ptr<SignIn> m_signIn;
    std::unique_ptr<LoginWindowController> m_login;
    std::unique_ptr<OnboardingWindowController> m_onboarding;

    static QWidget *window()
    {
        const QWidgetList all = QApplication::topLevelWidgets();
        const auto shown = std::ranges::find_if(all, &QWidget::isVisible);
        return shown == all.end() ? nullptr : *shown;
    }
    template<typename Widget, typename Condition>
    static Widget *find(Condition condition)
    {
        for (Widget *each : window() ? window()->findChildren<Widget *>() : QList<Widget *>()) {
            if (each->isVisible() && condition(*each))
                return each;
        }
        return nullptr;
    }
    static QAbstractButton *button(const QString &text)
    {
        return find<QAbstractButton>(
            [&](const auto &each) { return each.text() == text || each.accessibleName() == text; });
    }
    static bool shows(const QString &text)
    {
        return find<QLabel>([&](const auto &each) { return each.text() == text; });
    }
    static QLineEdit *field()
    {
        return find<QLineEdit>([](const auto &) { return true; });
    }
    static bool hasKeyboard(QWidget *widget) { return window()->focusWidget() == widget; }
    static void type(const QString &text) { QTest::keyClicks(field(), text); }
    static void press(Qt::Key key) { QTest::keyClick(window()->windowHandle(), key); }
    void showLogin()
    {
        m_login->show();
        QVERIFY(QTest::qWaitForWindowActive(window()));
    }
    // Up to the form's second stage.
    void haveCodeSent()
    {
        showLogin();
        m_server->enqueue(Answer::json(200, {}));
        type(address);
        press(Qt::Key_Return);
        QTRY_VERIFY(button(signInButton));
    }

private Q_SLOTS:
    void init()
    {
        m_login.reset();
        m_onboarding.reset();
        m_server = std::make_unique<localcloud::Server>();
        QVERIFY(m_server->listen());
        m_desktop = std::make_unique<memory::MemoryDesktop>();
        m_keychain = std::make_unique<KeychainStore>(m_desktop->secrets);
        m_auth = std::make_unique<AuthStore>(m_desktop->preferences, *m_keychain);
        m_signIn = std::make_unique<SignIn>(*m_auth, AuthEndpoint{m_network, m_server->url()},
                                            m_desktop->webBrowser, u"zh"_s);
        m_login = std::make_unique<LoginWindowController>(*m_signIn, m_desktop->windowSystem);
        m_onboarding = std::make_unique<OnboardingWindowController>(
            *m_auth, *m_signIn, m_desktop->accessibility, m_desktop->windowSystem);
        auto *style = new ProductStyle;
        style->setReducedMotion(true);
        QApplication::setStyle(style);
    }

    void onlyWhatMayBeSentIsSent_data()
    {
        QTest::addColumn<bool>("code");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("sent"); // null for nothing
        QTest::newRow("no dot") << false << u"me@x"_s << QString();
        QTest::newRow("no at sign") << false << u"me.x"_s << QString();
        QTest::newRow("the dot before the at sign") << false << u"m.e@x"_s << u"m.e@x"_s;
        QTest::newRow("blanks around it") << false << u" me@x.org  "_s << address;
        QTest::newRow("five characters") << true << u"12345"_s << QString();
        QTest::newRow("seven characters") << true << u"1234567"_s << QString();
        QTest::newRow("six characters of any kind") << true << u"甲b３-5 "_s << u"甲b３-5 "_s;
        QTest::newRow("beyond the basic plane") << true << u"😀😀😀456"_s << u"😀😀😀456"_s;
        QTest::newRow("blanks copied along") << true << u" 123 456\n"_s << u"123456"_s;
    }
    void onlyWhatMayBeSentIsSent()
    {
        QFETCH(bool, code);
        QFETCH(QString, typed);
        QFETCH(QString, sent);
        code ? haveCodeSent() : showLogin();
        const qsizetype before = m_server->requests().size();
        m_server->enqueue(Answer::silence());
        field()->insert(typed); // as a paste does
        QCOMPARE(button(code ? signInButton : sendButton)->isEnabled(), !sent.isNull());
        press(Qt::Key_Return);
        if (sent.isNull()) {
            QVERIFY(field()->isEnabled());
            QTest::qWait(0);
            QCOMPARE(m_server->requests().size(), before);
            return;
        }
        QTRY_COMPARE(m_server->requests().size(), before + 1);
        const auto body = QJsonDocument::fromJson(m_server->requests().last().body);
        QCOMPARE(body[code ? u"code" : u"email"].toString(), sent);
    }

    void whileARequestRunsNothingElseIsDone()
    {
        haveCodeSent();
        type(u"123456"_s);
        Answer slow = signedIn();
        slow.prelude = {localcloud::step::Wait{150ms}};
        m_server->enqueue(slow);
        for (int i = 0; i < 3; ++i)
            press(Qt::Key_Return);
        QVERIFY(m_login->isVisible());
        QVERIFY(!field()->isEnabled());
        for (const QString &each : {u"登录中…"_s, u"返回"_s, googleButton})
            QVERIFY(!button(each)->isEnabled());
        press(Qt::Key_Escape); // which does not end it
        QVERIFY(!m_login->isVisible());
        QTRY_VERIFY(m_auth->isSignedIn());
        QCOMPARE(m_server->requests().size(), 2);
    }

    void twoShiftsAreLearnt_data()
    {
        QTest::addColumn<QList<Press>>("presses");
        QTest::addColumn<bool>("learnt");
        constexpr auto shift = Qt::Key_Shift;
        using Presses = QList<Press>;
        QTest::newRow("once") << Presses{{shift, 0}} << false;
        QTest::newRow("twice") << Presses{{shift, 0}, {shift, 499}} << true;
        QTest::newRow("too far apart") << Presses{{shift, 0}, {shift, 500}} << false;
        QTest::newRow("the second and the third")
            << Presses{{shift, 0}, {shift, 600}, {shift, 900}} << true;
        QTest::newRow("another key in between")
            << Presses{{shift, 0}, {Qt::Key_Control, 100}, {shift, 300}} << true;
        QTest::newRow("held") << Presses{{shift, 0}, {shift, 300, true}} << false;
    }
    void twoShiftsAreLearnt()
    {
        QFETCH(QList<Press>, presses);
        QFETCH(bool, learnt);
        m_onboarding->show();
        QVERIFY(QTest::qWaitForWindowActive(window()));
        for (const Press &each : presses) {
            for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
                QKeyEvent event(type, each.key, Qt::NoModifier, {}, each.repeated);
                event.setTimestamp(each.time + 1000);
                QApplication::sendEvent(window()->windowHandle(), &event);
            }
        }
        QCOMPARE(button(sendButton) != nullptr, learnt);
        QCOMPARE(button(beginButton) == nullptr, learnt);
    }

    void theFirstStartGoesStepByStep()
    {
        m_desktop->accessibility.setTrusted(false);
        const QSignalSpy asked(m_onboarding.get(),
                               &OnboardingWindowController::accessibilityRequested);
        const QSignalSpy finished(m_onboarding.get(), &OnboardingWindowController::finished);
        m_onboarding->show();
        QVERIFY(QTest::qWaitForWindowActive(window()));
        QWidget *onlyWindow = window();
        press(Qt::Key_Return);
        QTRY_VERIFY(hasKeyboard(field()));
        for (int i = 0; i < 2; ++i)
            press(Qt::Key_Shift); // the practice is over
        QVERIFY(button(sendButton));

        // Somebody who is signed in is told so, and goes on by hand.
        QVERIFY(m_auth->signIn({u"t0ken"_s, address}));
        QVERIFY(shows(u"已登录"_s) && !button(sendButton));
        press(Qt::Key_Return);
        QVERIFY(button(laterButton));
        press(Qt::Key_Return);
        QCOMPARE(asked.size(), 1);
        m_desktop->accessibility.setTrusted(true);
        QTRY_VERIFY(button(finishButton)); // by itself
        QVERIFY(finished.isEmpty());
        press(Qt::Key_Return);
        QCOMPARE(finished.size(), 1);
        QVERIFY(!m_onboarding->isVisible());

        // Nothing wakes the program for a window that is gone.
        QList<QObject *> objects = onlyWindow->findChildren<QObject *>();
        for (QObject *each : objects << onlyWindow)
            QVERIFY2(QAbstractEventDispatcher::instance()->registeredTimers(each).isEmpty(),
                     each->metaObject()->className());
    }
};

QTEST_MAIN(TestAccountWindows)
#include "tst_account_windows.moc"
