#include "windows/settings_window_controller.h"

#include "account/auth_store.h"
#include "account/billing_store.h"
#include "account/sign_in.h"
#include "core/connection_test.h"
#include "desktop/login_item_manager.h"
#include "desktop/speech_service.h"
#include "stores/glossary_store.h"
#include "stores/settings_store.h"
#include "stores/usage_store.h"

#include "localcloud/server.h"
#include "platform_linux_network/qt_http_client.h"
#include "platform_memory/memory_desktop.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QTabBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;
using localcloud::Answer;
using platform::PreferenceValue;

namespace {

const QUrl cloud(u"https://api.nivora.example"_s);

Answer plan(const QString &name, qint64 used, qint64 quota)
{
    return Answer::json(200, {{u"plan"_s, name},
                              {u"status"_s, u"active"_s},
                              {u"used"_s, used},
                              {u"quota"_s, quota},
                              {u"periodEnd"_s, 1799999999000.0}});
}

// All that stands behind the window.
struct Program
{
    explicit Program(memory::MemoryDesktop &desktop, const QUrl &service)
        : keychain(desktop.secrets)
        , settings(desktop.preferences, keychain, cloud)
        , usage(desktop.preferences)
        , auth(desktop.preferences, keychain)
        , signIn(auth, {network, service}, desktop.webBrowser, u"en"_s)
        , billing({network, service}, keychain, desktop.webBrowser)
        , speech(desktop.speechSynthesizer)
        , loginItem(desktop.loginItem)
        , connectionTest(network)
        , controller({settings, glossary, usage, billing, auth, signIn, speech, loginItem,
                      connectionTest, desktop.windowSystem, [] {}})
    {
    }

    QTemporaryDir folder;
    linuxdesktop::QtHttpClient network;
    KeychainStore keychain;
    SettingsStore settings;
    GlossaryStore glossary{folder.filePath(u"glossary.json"_s)};
    UsageStore usage;
    AuthStore auth;
    SignIn signIn;
    BillingStore billing;
    SpeechService speech;
    LoginItemManager loginItem;
    ConnectionTest connectionTest;
    SettingsWindowController controller;
};

} // namespace

// What the end-to-end walk over every control does not reach: a desktop that
// refuses, a service that fails, and files edited by hand.
class TestSettingsWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_program.reset();
        m_desktop = std::make_unique<memory::MemoryDesktop>();
        m_service = std::make_unique<localcloud::Server>();
        QVERIFY(m_service->listen());
    }

    void absurdValuesShowAsWhatIsInForce_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<PreferenceValue>("stored");
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("control");
        QTest::addColumn<QVariant>("shown"); // a choice, a slider's value or a check
        QTest::addColumn<QString>("readout");
        const auto row = [](const char *name, const QString &key, const PreferenceValue &stored,
                            int tab, const QString &control, const QVariant &shown,
                            const QString &readout = {}) {
            QTest::newRow(name) << key << stored << tab << control << shown << readout;
        };
        row("unknown theme", u"themeMode"_s, u"purple"_s, 0, u"主题"_s, u"跟随系统"_s);
        row("theme of another type", u"themeMode"_s, 7.0, 0, u"主题"_s, u"跟随系统"_s);
        row("unknown interface language", u"appLanguage"_s, u"tlh"_s, 0, u"App 语言"_s,
            u"跟随系统"_s);
        row("voice that is gone", u"speechVoiceID"_s, u"gone"_s, 0, u"日语语音"_s,
            u"自动（最佳）"_s);
        row("threshold beyond all measure", u"doubleTapThresholdMs"_s, 1e300, 0,
            u"双击 Shift 间隔"_s, 600, u"1000000000000000 ms"_s);
        row("threshold out of range", u"doubleTapThresholdMs"_s, 99.9, 0, u"双击 Shift 间隔"_s, 150,
            u"99 ms"_s);
        row("negative time-out", u"requestTimeoutSec"_s, qint64(-5), 1, u"请求超时"_s, 120,
            u"120 s"_s);
        row("time-out as text", u"requestTimeoutSec"_s, u"90"_s, 1, u"请求超时"_s, 120, u"120 s"_s);
        row("rate out of range", u"speechRate"_s, 12.5, 0, u"语速"_s, 700);
        row("unknown language", u"defaultTargetLanguage"_s, u"klingon"_s, 1, u"我的语言"_s,
            u"中文"_s);
        row("unknown reading", u"readingStyle"_s, u"kana"_s, 1, u"读音显示"_s, u"平假名"_s);
        row("unknown style", u"japaneseStyle"_s, QStringList(), 1, u"书写日语风格"_s, u"默认"_s);
        row("number for a switch", u"saveHistory"_s, 0.0, 0, u"保存翻译历史（仅本地）"_s, true);
    }

    void absurdValuesShowAsWhatIsInForce()
    {
        QFETCH(const QString, key);
        QFETCH(const PreferenceValue, stored);
        QFETCH(const QString, control);
        QFETCH(const QVariant, shown);
        QFETCH(const QString, readout);
        m_desktop->preferences.set(key, stored);
        const int writes = m_desktop->preferences.writes();
        QFETCH(const int, tab);
        show(tab);
        if (auto *picker = named<QComboBox>(control)) {
            QCOMPARE(QVariant(picker->currentText()), shown);
        } else if (auto *slider = named<QSlider>(control)) {
            QCOMPARE(QVariant(slider->value()), shown);
            QVERIFY(readout.isEmpty() || shows(readout));
        } else {
            QVERIFY(button(control));
            QCOMPARE(QVariant(button(control)->isChecked()), shown);
        }
        // Nothing is repaired behind the user's back.
        QCOMPARE(m_desktop->preferences.writes(), writes);
        QCOMPARE(m_desktop->preferences.value(key), stored);
    }

    void aRefusedLoginItemFlipsBack()
    {
        m_desktop->loginItem.setRefusal(u"read-only"_s);
        show(0);
        button(u"开机自动启动"_s)->click();
        QVERIFY(!button(u"开机自动启动"_s)->isChecked());
        m_desktop->loginItem.setRefusal({});
        button(u"开机自动启动"_s)->click();
        QVERIFY(m_desktop->loginItem.isEnabled());
    }

    void theVoiceIsChosenAndTried()
    {
        m_desktop->speechSynthesizer.setVoices({{u"en/1"_s, u"Alice"_s, u"en-GB"_s},
                                                {u"ja/1"_s, u"Kyoko"_s, u"ja-JP"_s},
                                                {u"ja/2"_s, u"Otoya"_s, u"ja-JP"_s}});
        m_desktop->preferences.set(u"speechVoiceID"_s, u"ja/2"_s);
        show(0);
        auto *picker = named<QComboBox>(u"日语语音"_s);
        QTRY_COMPARE(picker->count(), 3);
        QCOMPARE(picker->currentText(), u"Otoya"_s);
        picker->setCurrentIndex(1);
        QCOMPARE(m_desktop->preferences.string(u"speechVoiceID"_s), u"ja/1"_s);
        button(u"试听"_s)->click();
        const auto &utterances = m_desktop->speechSynthesizer.utterances();
        QTRY_COMPARE(utterances.size(), 1);
        QCOMPARE(utterances.first().text, u"こんにちは、テストです。"_s);
        QCOMPARE(utterances.first().voice, u"ja/1"_s);
    }

    void theBackendDecidesWhatIsShown()
    {
        show(1);
        QVERIFY(shows(u"由 Nivora 云端提供翻译，开箱即用。"_s) && !named<QLineEdit>(u"API 地址"_s));
        auto *backend = named<QComboBox>(u"后端"_s);
        backend->setCurrentIndex(1);
        QVERIFY(named<QWidget>(u"自建后端提示模板"_s) && !button(u"测试连接"_s)->isEnabled());
        const std::pair<QString, QString> hints[] = {
            {u"host:80"_s, u"地址要以 http:// 或 https:// 开头。"_s},
            {u"http://:80"_s, u"地址里没有可用的主机名。"_s},
            {u"http://h/v1/"_s, u"地址已以 /v1 结尾，而请求会自己加上 v1，通常应去掉。"_s},
        };
        for (const auto &[address, hint] : hints) {
            named<QLineEdit>(u"API 地址"_s)->setText(address);
            QVERIFY2(shows(hint), qUtf8Printable(address));
            QCOMPARE(m_desktop->preferences.string(u"apiBaseURL"_s), address);
        }
        named<QLineEdit>(u"API 地址"_s)->setText(u"http://h"_s);
        QVERIFY(!shows(hints[2].second) && button(u"测试连接"_s)->isEnabled());
        backend->setCurrentIndex(0);
        QVERIFY(!named<QLineEdit>(u"API 地址"_s) && !named<QWidget>(u"自建后端提示模板"_s));
        backend->setCurrentIndex(1);
        QCOMPARE(named<QLineEdit>(u"API 地址"_s)->text(), u"http://h"_s);
    }

    void thePlanIsShownAndManaged()
    {
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        m_desktop->secrets.write(u"app.nivora"_s, u"session-token"_s, "t-1"_ba);
        m_service->enqueue(plan(u"free"_s, 1200, 10000));
        show(2);
        QTRY_VERIFY(shows(u"免费档"_s) && shows(u"1,200 / 10,000"_s));
        QVERIFY(shows(u"本期于 Jan 15, 2027 重置"_s));
        m_service->enqueue(Answer::json(200, {{u"url"_s, u"https://pay.example/x"_s}}));
        button(u"升级到 Pro"_s)->click();
        QTRY_COMPARE(m_desktop->webBrowser.opened(), QList{QUrl(u"https://pay.example/x"_s)});
        m_service->enqueue(Answer::html(502));
        button(u"刷新"_s)->click();
        QVERIFY(!button(u"刷新"_s)->isEnabled());
        QTRY_VERIFY(shows(u"登录服务返回错误 (HTTP 502)。"_s));
        QVERIFY(shows(u"1,200 / 10,000"_s));
        m_service->enqueue(plan(u"pro"_s, 20000, 10000));
        button(u"刷新"_s)->click();
        QTRY_VERIFY(shows(u"Pro"_s) && button(u"管理订阅"_s));
        button(u"登出"_s)->click();
        QVERIFY(shows(u"登录后即可使用 Nivora 云端翻译，用量与订阅随账户保存。"_s));
        QVERIFY(!button(u"管理订阅"_s) && !m_program->billing.status());
    }

    // Thousands of terms: as many rows as the table has room for, none made anew when
    // one is changed.
    void aLongGlossaryIsShownInPart()
    {
        show(1);
        std::vector<GlossaryTerm> terms;
        for (int i = 0; i < 3000; ++i)
            terms.push_back({QUuid::createUuid(), u"术语%1"_s.arg(i), u"用語%1"_s.arg(i)});
        m_program->glossary.append(terms);
        auto *table = m_window->findChild<QTableView *>();
        QCOMPARE(table->model()->rowCount(), 3000);
        QVERIFY(table->height() < 300);
        named<QLineEdit>(u"筛选术语"_s)->setText(u"用語299"_s);
        QCOMPARE(table->model()->rowCount(), 11);
        // The one that is changed stays where it is, though it matches no more.
        QVERIFY(table->model()->setData(table->model()->index(0, 1), u"x"_s, Qt::EditRole));
        QCOMPARE(m_program->glossary.terms()[299].ja, u"x"_s);
        QCOMPARE(table->model()->rowCount(), 11);
    }

private:
    std::unique_ptr<memory::MemoryDesktop> m_desktop;
    std::unique_ptr<localcloud::Server> m_service;
    std::unique_ptr<Program> m_program;
    QWidget *m_window = nullptr;

    void show(int tab)
    {
        m_program = std::make_unique<Program>(*m_desktop, m_service->url());
        m_program->controller.show();
        for (QWidget *each : QApplication::topLevelWidgets()) {
            if (each->windowRole() == u"settings")
                m_window = each;
        }
        QVERIFY(QTest::qWaitForWindowActive(m_window));
        m_window->findChild<QTabBar *>()->setCurrentIndex(tab);
    }

    template<typename Widget>
    Widget *named(const QString &name) const
    {
        for (Widget *each : m_window->findChildren<Widget *>()) {
            auto *button = qobject_cast<QAbstractButton *>(each);
            if (each->isVisible() &&
                (each->accessibleName() == name || (button && button->text() == name)))
                return each;
        }
        return nullptr;
    }
    QAbstractButton *button(const QString &name) const { return named<QAbstractButton>(name); }

    bool shows(const QString &text) const
    {
        const auto labels = m_window->findChildren<QLabel *>();
        return std::ranges::any_of(
            labels, [&](const QLabel *each) { return each->isVisible() && each->text() == text; });
    }
};

QTEST_MAIN(TestSettingsWindow)
#include "tst_settings_window.moc"
