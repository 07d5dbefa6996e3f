#include "road.h"

#include "localcloud/event_stream.h"
#include "localcloud/router.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <X11/keysym.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using namespace nivora::test;

namespace {
using Keys = QList<X11Driver::Symbol>;

// What the user does with one control, and what then is stored under a key.
struct Step
{
    QString control;
    // A press; or a text, a slider's value, or keys for what has the focus.
    std::variant<std::monostate, QString, double, Keys> input;
    QString key;
    QJsonValue stored;
};

const std::monostate press;

} // namespace

// Every control of the settings window, operated as assistive tools do it.
class TestSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { m_road.reset(); }

    void everyControlWritesThrough_data()
    {
        QTest::addColumn<QString>("tab");
        QTest::addColumn<QList<Step>>("steps");
        QTest::newRow("general")
            << u"通用"_s
            << QList<Step>{
                   {u"App 语言"_s, Keys{XK_End}, u"appLanguage"_s, u"en"_s},
                   {u"App 语言"_s, Keys{XK_Up}, u"AppleLanguages"_s, QJsonArray{u"ja"_s}},
                   {u"主题"_s, Keys{XK_Down}, u"themeMode"_s, u"light"_s},
                   {u"双击 Shift 间隔"_s, 454.0, u"doubleTapThresholdMs"_s, 450},
                   {u"双击 Shift 间隔"_s, Keys{XK_Right}, u"doubleTapThresholdMs"_s, 460},
                   {u"失去焦点时关闭面板"_s, press, u"closeOnResignFocus"_s, false},
                   {u"翻译完成后自动复制"_s, press, u"autoCopyOnFinish"_s, true},
                   {u"保存翻译历史（仅本地）"_s, press, u"saveHistory"_s, false},
                   {u"翻译完成后自动朗读"_s, press, u"autoSpeak"_s, true},
                   {u"语速"_s, 555.0, u"speechRate"_s, 0.555},
               };
        QTest::newRow("translation")
            << u"翻译"_s
            << QList<Step>{
                   {u"后端"_s, Keys{XK_Home}, u"useCustomBackend"_s, false},
                   {u"后端"_s, Keys{XK_End}, u"useCustomBackend"_s, true},
                   {u"API 地址"_s, u"10.0.0.1"_s, u"apiBaseURL"_s, u"10.0.0.1"_s},
                   {u"模型名"_s, u"qwen"_s, u"modelName"_s, u"qwen"_s},
                   {u"实时翻译"_s, press, u"liveTranslate"_s, true},
                   {u"请求超时"_s, 999.0, u"requestTimeoutSec"_s, 300},
                   {u"自建后端提示模板"_s, u"译：{{text}}"_s, u"byoPromptTemplate"_s,
                    u"译：{{text}}"_s},
                   {u"我的语言"_s, Keys{XK_End}, u"defaultTargetLanguage"_s, u"english"_s},
                   {u"我用母语书写时，译成"_s, Keys{XK_Home}, u"secondaryLanguage"_s, u"chinese"_s},
                   {u"读音显示"_s, Keys{XK_Up}, u"readingStyle"_s, u"romaji"_s},
                   {u"书写日语风格"_s, Keys{XK_End}, u"japaneseStyle"_s, u"business"_s},
                   {u"写日语时显示中文回译（校验原意）"_s, press, u"showBackTranslation"_s, true},
               };
        QTest::newRow("account") << u"账户"_s
                                 << QList<Step>{
                                        {u"重置"_s, press, u"usageRequestCount"_s, 0},
                                    };
    }

    void everyControlWritesThrough()
    {
        QFETCH(const QString, tab);
        QFETCH(const QList<Step>, steps);
        open(u"通用"_s, {{u"usageRequestCount"_s, 7}, {u"themeMode"_s, u"system"_s}});
        if (tab == u"账户") {
            m_road->secretTool(u"store"_s, u"session-token"_s, "token"_ba);
        }
        QVERIFY(operate({tab, press, {}, {}}));
        for (const Step &step : steps) {
            QVERIFY2(operate(step), qUtf8Printable(step.control));
            QVERIFY2(waitUntil([&] { return defaults()[step.key] == step.stored; }, patience),
                     qUtf8Printable(step.control + QDebug::toString(defaults())));
        }
        if (tab == u"通用") {
            const auto entry = [&] { return content(u"/config/autostart/app.nivora.desktop"_s); };
            QVERIFY(operate({u"开机自动启动"_s, press, {}, {}}));
            QVERIFY(waitUntil([&] { return entry().contains("bin/nivora"); }, patience));
            QVERIFY(operate({u"开机自动启动"_s, press, {}, {}}));
            QVERIFY(waitUntil([&] { return entry().isEmpty(); }, patience));
        }
        if (tab == u"翻译") {
            QVERIFY(control(u"地址要以 http:// 或 https:// 开头。"_s) ||
                    m_road->product->control(u"地址要以 http:// 或 https:// 开头。"_s));
            QVERIFY(operate({u"恢复默认模板"_s, press, {}, {}}));
            QVERIFY(waitUntil(
                [&] {
                    return defaults()[u"byoPromptTemplate"].toString().contains(u"{{target}}"_s);
                },
                patience));
        }
    }

    void theKeyGoesToTheKeyringAlone()
    {
        open(u"翻译"_s);
        QVERIFY(operate({u"API Key（可选）"_s, u"sk-very-secret"_s, {}, {}}));
        const auto stored = [&] { return m_road->secretTool(u"lookup"_s, u"byo-api-key"_s); };
        QVERIFY(waitUntil([&] { return stored() == "sk-very-secret"_ba; }, patience));
        QVERIFY(!content(u"/config/app.nivora/defaults.json"_s).contains("sk-very"));
        QVERIFY(!m_road->product->log().contains(u"sk-very"_s));
        QVERIFY(operate({u"API Key（可选）"_s, QString(), {}, {}}));
        QVERIFY(waitUntil([&] { return stored().isEmpty(); }, patience));
    }

    void theEndpointIsTriedOut()
    {
        open(u"翻译"_s, {{u"modelName"_s, u"small"_s}});
        m_road->server.setHandler([](const localcloud::Request &request) {
            if (request.method == "GET")
                return localcloud::Answer::json(
                    200, {{u"data"_s, QJsonArray{QJsonObject{{u"id"_s, u"small"_s}},
                                                 QJsonObject{{u"id"_s, u"big"_s}}}}});
            return localcloud::eventStream({u"OK"_s}, {.usage = localcloud::TokenCounts{1, 1}});
        });
        QVERIFY(m_road->server.requests().isEmpty()); // nothing unbidden
        QVERIFY(operate({u"测试连接"_s, press, {}, {}}));
        const auto ends = [&](const QString &end) {
            return waitUntil(
                [&] {
                    const auto line = m_road->product->controlBeginning(u"连接正常"_s);
                    return line && line->name().endsWith(end);
                },
                patience);
        };
        QVERIFY(ends(u"模型可用 · 支持流式 · 报告用量"_s));
        // The list came along.
        QVERIFY(operate({u"模型名"_s, Keys{XK_Down}, {}, {}}));
        QVERIFY2(waitUntil([&] { return defaults()[u"modelName"] == u"big"_s; }, patience),
                 qUtf8Printable(QDebug::toString(defaults())));
        QCOMPARE(m_road->server.requests().size(), 2);
    }

    void termsAreWrittenAndExchanged()
    {
        open(u"翻译"_s);
        const auto forms = [&](qsizetype place) {
            const QJsonObject term = terms().at(place).toObject();
            return term[u"zh"].toString() + u'|' + term[u"ja"].toString();
        };
        QVERIFY(operate({u"添加术语"_s, press, {}, {}}));
        QVERIFY(waitUntil([&] { return terms().size() == 1; }, patience));
        // The field of a table is in nobody's tree, but it has the keyboard.
        for (const auto key : {XK_a, XK_b, XK_Tab, XK_c})
            m_road->user->press({X11Driver::Symbol(key)});
        QVERIFY2(waitUntil([&] { return forms(0) == u"ab|c"; }, patience),
                 qUtf8Printable(QDebug::toString(terms())));
        m_road->user->press({XK_Return});

        m_road->clipboard->offerText(u"验收\t検収\nab\tc\n\"a,\"\"b\"\"\"\tc\n"_s);
        m_road->user->press({XK_Control_L, XK_v});
        QVERIFY2(waitUntil([&] { return forms(2) == u"a,\"b\"|c"; }, patience),
                 qUtf8Printable(QDebug::toString(terms())));
        QCOMPARE(terms().size(), 3);

        const QString path = m_road->session.folder() + u"/terms.csv"_s;
        QVERIFY(operate({u"导出…"_s, press, {}, {}}));
        const auto choose = [&] { // in the dialog, whose first field has the keyboard
            const auto name = m_road->tree->waitFor(
                m_road->product->processId(),
                [](const auto &each) { return each.role() == u"text" && each.isFocused(); },
                patience);
            if (!name || !name->setText(path))
                return false;
            m_road->user->press({XK_Return});
            return true;
        };
        QVERIFY(choose());
        QVERIFY(waitUntil(
            [&] {
                return content(u"/terms.csv"_s) ==
                       "zh,ja\r\nab,c\r\n验收,検収\r\n\"a,\"\"b\"\"\",c\r\n"_ba;
            },
            patience));

        QVERIFY(operate({u"添加术语"_s, Keys(), {}, {}}));
        m_road->user->press({XK_Shift_L, XK_Tab});
        m_road->user->press({XK_Control_L, XK_a});
        m_road->user->press({XK_Delete});
        QVERIFY(waitUntil([&] { return terms().isEmpty(); }, patience));
        QCOMPARE(content(u"/data/app.nivora/glossary.json"_s).simplified(), "[ ]"_ba);
        QVERIFY(operate({u"导入…"_s, press, {}, {}}));
        QVERIFY(choose());
        QVERIFY(waitUntil([&] { return terms().size() == 3; }, patience));
        QCOMPARE(forms(1), u"验收|検収"_s);

        // One key leads through the table, however many terms it has.
        const auto add = control(u"添加术语"_s);
        QVERIFY(add && add->takeFocus());
        m_road->user->press({XK_Shift_L, XK_Tab});
        QVERIFY(waitUntil([&] { return !add->isFocused(); }, patience));
        m_road->user->press({XK_Tab});
        QVERIFY(waitUntil([&] { return add->isFocused(); }, patience));
    }

    void whatIsChangedElsewhereShows()
    {
        open(u"通用"_s);
        const auto toggle = control(u"翻译完成后自动复制"_s);
        QVERIFY(toggle && !toggle->isChecked());
        QJsonObject changed = defaults();
        changed[u"autoCopyOnFinish"] = true;
        QFile file(m_road->session.folder() + u"/config/app.nivora/defaults.json"_s);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QJsonDocument(changed).toJson());
        file.close();
        QVERIFY(waitUntil([&] { return toggle->isChecked(); }, patience));
    }

    void theProgramStartsAnewInAnotherLanguage()
    {
        open(u"通用"_s);
        QVERIFY(!m_road->product->control(u"立即重启"_s));
        QVERIFY(operate({u"App 语言"_s, Keys{XK_Down}, {}, {}}));
        const qint64 before = m_road->product->processId();
        QVERIFY(operate({u"立即重启"_s, press, {}, {}}));
        const auto bus = QDBusConnection::connectToBus(m_road->session.busAddress(), u"relaunch"_s);
        const auto owner = [&] {
            return qint64(bus.interface()->servicePid(u"app.nivora"_s).value());
        };
        QVERIFY(waitUntil([&] { return owner() != before && owner() != 0; }, patience));
        QVERIFY(!m_road->product->isRunning());
        QDBusConnection::disconnectFromBus(u"relaunch"_s);
    }

private:
    std::optional<Road> m_road;

    QByteArray content(const QString &path) const
    {
        QFile file(m_road->session.folder() + path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QJsonObject defaults() const
    {
        return QJsonDocument::fromJson(content(u"/config/app.nivora/defaults.json"_s)).object();
    }
    QJsonArray terms() const
    {
        return QJsonDocument::fromJson(content(u"/data/app.nivora/glossary.json"_s)).array();
    }

    // By its name or its description; labels are passed over.
    std::optional<AccessibleElement> control(const QString &name, bool isText = false) const
    {
        return m_road->tree->waitFor(
            m_road->product->processId(),
            [&](const AccessibleElement &element) {
                if (element.name() != name && element.description() != name)
                    return false;
                const QString role = element.role();
                return isText ? role.endsWith(u"text"_s) : role != u"label" && role != u"filler";
            },
            patience);
    }

    bool hasFocus(const AccessibleElement &element, bool isPicker) const
    {
        if (!isPicker)
            return waitUntil([&] { return element.isFocused(); }, patience);
        return m_road->tree
            ->waitFor(
                m_road->product->processId(),
                [](const AccessibleElement &each) {
                    return each.isFocused() && each.role() == u"list item";
                },
                patience)
            .has_value();
    }

    bool operate(const Step &step)
    {
        const auto *text = std::get_if<QString>(&step.input);
        const auto found = control(step.control, text);
        if (!found)
            return false;
        if (text)
            return found->setText(*text);
        if (const auto *value = std::get_if<double>(&step.input))
            return found->setValue(*value);
        if (const auto *keys = std::get_if<Keys>(&step.input)) {
            // A combo box takes no focus from assistive tools, but it opens its list.
            const bool isPicker = found->role() == u"combo box";
            if (!(isPicker ? found->press() : found->takeFocus()) || !hasFocus(*found, isPicker))
                return false;
            for (const auto key : *keys)
                m_road->user->press({key});
            if (isPicker)
                m_road->user->press({XK_Return});
            return true;
        }
        return found->press();
    }

    // Opens the window on one of its tabs.
    void open(const QString &tab, const QJsonObject &preferences = {})
    {
        m_road.emplace(DesktopSession::Options{.keyring = true});
        QVERIFY(m_road->begin(preferences));
        openTab(tab);
    }
    void openTab(const QString &tab)
    {
        QVERIFY(m_road->ask(u"settings"_s) && m_road->waitForWindow(u"settings"_s));
        QVERIFY(operate({tab, press, {}, {}}));
    }
};

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
