#include "platform_linux/atspi_accessibility.h"

#include "platform/window_system.h"
#include "support/desktop_session.h"
#include "support/wait.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QTest>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using platform::FocusedElement;

namespace {

// A program on the accessibility bus whose elements answer what the script says.
// Their paths end in the members of the script's object. Writes a line for every
// text that is asked of it.
class Program final : public QDBusVirtualObject
{
public:
    Program(const QString &address, const QJsonObject &script)
        : m_script(script)
        , m_bus(QDBusConnection::connectToBus(address, u"program"_s))
    {
        m_bus.registerVirtualObject(m_root, this, QDBusConnection::SubPath);
    }

    void tellOfFocus(const QString &name)
    {
        auto signal = QDBusMessage::createSignal(
            m_root + u'/' + name, u"org.a11y.atspi.Event.Object"_s, u"StateChanged"_s);
        signal << u"focused"_s << 1 << 0 << QVariant::fromValue(QDBusVariant(0));
        m_bus.send(signal);
    }

    QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        const auto element = m_script.value(message.path().section(u'/', -1)).toObject();
        const auto answers = answer(message, element);
        bus.send(answers.isEmpty()
                     ? message.createErrorReply(QDBusError::UnknownMethod, u"no such thing"_s)
                     : message.createReply(answers));
        return true;
    }

private:
    QVariantList answer(const QDBusMessage &message, const QJsonObject &element)
    {
        const QString what = message.member() == u"Get"_s ? message.arguments().value(1).toString()
                                                          : message.member();
        if (element.value(u"malformed"_s).toBool())
            return {u"nonsense"_s, u"more"_s};
        if (what == u"GetRole"_s)
            return {element.value(u"role"_s).toInt(67)};
        if (what == u"GetState"_s)
            return {QVariant::fromValue(states(element))};
        if (what == u"GetInterfaces"_s)
            return {element.value(u"interfaces"_s).toVariant().toStringList()};
        if (what == u"Name"_s)
            return {QVariant::fromValue(QDBusVariant(u"Scripted"_s))};
        if (what == u"ToolkitName"_s)
            return {QVariant::fromValue(QDBusVariant(element.value(u"toolkit"_s).toString()))};
        if (what == u"CharacterCount"_s || what == u"CaretOffset"_s)
            return {QVariant::fromValue(QDBusVariant(element.value(what).toInt()))};
        if (what == u"GetNSelections"_s)
            return {element.value(what).toInt()};
        if (what == u"GetSelection"_s)
            return {element.value(u"start"_s).toInt(), element.value(u"end"_s).toInt()};
        if (what == u"GetText"_s) {
            std::puts("text asked");
            std::fflush(stdout);
            return {element.value(u"text"_s).toString()};
        }
        if (what == u"GetRangeExtents"_s) {
            const int size = ++m_extentsAsked > element.value(u"emptyExtents"_s).toInt() ? 10 : 0;
            return {100, 200, size, size};
        }
        return {};
    }

    static QList<uint> states(const QJsonObject &element)
    {
        quint64 bits = 0;
        for (const auto state : element.value(u"states"_s).toArray())
            bits |= quint64(1) << state.toInt();
        return {static_cast<uint>(bits), static_cast<uint>(bits >> 32)};
    }

    const QString m_root = u"/org/a11y/atspi/accessible"_s;
    QJsonObject m_script;
    QDBusConnection m_bus;
    int m_extentsAsked = 0;
};

class OneWindow final : public platform::WindowSystem
{
public:
    std::optional<platform::ForeignWindow> activeWindow() const override
    {
        return platform::ForeignWindow{
            .id = 1, .processId = processId, .className = {}, .instanceName = {}};
    }
    bool hasInputFocus(platform::WindowId) const override { return true; }
    void requestActivation(platform::WindowId) override {}
    bool isCompositing() const override { return false; }

    qint64 processId = 0;
};

// Names of the numbers on the bus.
constexpr int editable = 7, focused = 12, multiLine = 17, showing = 25, singleLine = 26;
constexpr int comboBox = 11, panel = 39, password = 40, pushButton = 43, terminal = 60, text = 61,
              paragraph = 73, entry = 79;

const auto textInterface = u"org.a11y.atspi.Text"_s;
const auto componentInterface = u"org.a11y.atspi.Component"_s;

QJsonObject element(int role, const QList<int> &states, bool hasText = true)
{
    QJsonArray bits{focused, showing};
    for (const int state : states)
        bits.append(state);
    QJsonArray interfaces{componentInterface};
    if (hasText)
        interfaces.append(textInterface);
    return {{u"role"_s, role},         {u"states"_s, bits},    {u"interfaces"_s, interfaces},
            {u"CharacterCount"_s, 20}, {u"CaretOffset"_s, 10}, {u"text"_s, u"the text"_s}};
}

QJsonObject selecting(int role, int selections, int start, int end,
                      const QString &content = u"the text"_s)
{
    auto selected = element(role, {editable});
    selected.insert(u"GetNSelections"_s, selections);
    selected.insert(u"CaretOffset"_s, start);
    selected.insert(u"start"_s, start);
    selected.insert(u"end"_s, end);
    selected.insert(u"text"_s, content);
    return selected;
}

} // namespace

// What elements that no editor at hand shows become in our terms.
class tst_atspi_elements : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_session.start({.windowManager = false}), qPrintable(m_session.error()));
    }

    void init()
    {
        m_accessibility = std::make_unique<linuxdesktop::AtspiAccessibility>(
            m_session.busAddress(), m_window, [](qint64) { return 1; });
        QVERIFY(m_accessibility->isTrusted());
    }

    void cleanup()
    {
        m_accessibility.reset();
        if (m_process)
            m_session.end(std::exchange(m_process, nullptr));
    }

    void rolesAndStates_data()
    {
        QTest::addColumn<QJsonObject>("script");
        QTest::addColumn<QString>("role");
        QTest::addColumn<QString>("subrole");
        QTest::addColumn<bool>("takesText");
        QTest::addColumn<bool>("hasText");
        const auto row = [](const char *name, const QJsonObject &script, const QString &role,
                            const QString &subrole, bool takesText, bool hasText) {
            QTest::newRow(name) << script << role << subrole << takesText << hasText;
        };
        row("several lines", element(text, {editable, multiLine}), u"AXTextArea"_s, {}, true, true);
        row("one line", element(text, {editable, singleLine}), u"AXTextField"_s, {}, true, true);
        row("entry", element(entry, {editable}), u"AXTextField"_s, {}, true, true);
        row("paragraph", element(paragraph, {editable}), u"AXTextArea"_s, {}, true, true);
        row("combo box", element(comboBox, {editable}), u"AXComboBox"_s, {}, true, true);
        row("choice", element(comboBox, {}, false), u"AXPopUpButton"_s, {}, false, false);
        row("read-only", element(text, {multiLine}), u"AXStaticText"_s, {}, false, true);
        row("terminal", element(terminal, {}), u"AXTextArea"_s, {}, true, true);
        row("password", element(password, {editable, singleLine}), u"AXTextField"_s,
            u"AXSecureTextField"_s, true, false);
        row("button", element(pushButton, {}, false), u"AXButton"_s, {}, false, false);
        row("unknown", element(panel, {}, false), u"AXUnknown"_s, {}, false, false);
    }

    void rolesAndStates()
    {
        QFETCH(const QJsonObject, script);
        QFETCH(const bool, takesText);
        QFETCH(const bool, hasText);
        QVERIFY(start({{u"only"_s, script}}, {u"only"_s}));
        const auto found = find();
        QVERIFY(found);
        QTEST(found->role, "role");
        QTEST(found->subrole, "subrole");
        QCOMPARE(found->valueSettable, takesText);
        QCOMPARE(found->selectedTextSettable, takesText);
        QCOMPARE(found->attributes.contains(u"AXSubrole"_s), !found->subrole.isEmpty());
        QCOMPARE(found->attributes.contains(u"AXSelectedTextRange"_s), hasText);
        QCOMPARE(found->selectedTextRange.has_value(), hasText);
        QCOMPARE(found->characterCount.has_value(), hasText);
        QCOMPARE(found->selectedText.has_value(), hasText || !found->subrole.isEmpty());
        QCOMPARE(found->applicationName, u"Scripted"_s);
    }

    void textOfAPasswordIsNeverAskedFor()
    {
        auto script = element(password, {editable});
        script.insert(u"GetNSelections"_s, 1);
        script.insert(u"end"_s, 20);
        QVERIFY(start({{u"only"_s, script}}, {u"only"_s}));
        const auto found = find();
        QVERIFY(found);
        QVERIFY(!found->characterCount);
        // Not "unknown": nobody shall look for it elsewhere.
        QCOMPARE(found->selectedText, QString());
        m_process->waitForReadyRead(50);
        QVERIFY(!m_process->readAllStandardOutput().contains("text asked"));
    }

    void selectedText_data()
    {
        QTest::addColumn<QString>("toolkit");
        QTest::addColumn<QJsonObject>("script");
        QTest::addColumn<std::optional<QString>>("expected");
        const auto row = [](const char *name, const QJsonObject &script,
                            const std::optional<QString> &expected,
                            const QString &toolkit = u"gtk"_s) {
            QTest::newRow(name) << toolkit << script << expected;
        };
        row("all of a field", selecting(entry, 1, 0, 20), u"the text"_s);
        row("backwards", selecting(entry, 1, 12, 3), u"the text"_s);
        row("none in a field", selecting(entry, 0, 0, 0), u""_s);
        row("two in a field", selecting(entry, 2, 0, 20), std::nullopt);
        row("within a paragraph", selecting(paragraph, 1, 3, 12), u"the text"_s);
        row("none within a paragraph", selecting(paragraph, 0, 3, 3), u""_s);
        row("to the end of a paragraph", selecting(paragraph, 1, 3, 20), std::nullopt);
        row("none at the start of a paragraph", selecting(paragraph, 0, 0, 0), std::nullopt);
        row("with an embedded element", selecting(entry, 1, 0, 20, u"see \ufffc there"_s),
            std::nullopt);
        row("in a terminal", selecting(terminal, 1, 3, 12), std::nullopt);
        row("none in a terminal", selecting(terminal, 0, 3, 3), u""_s);

        const auto onPage = [](QJsonObject script) {
            script.insert(u"states"_s, QJsonArray{focused, showing});
            return script;
        };
        row("Gecko fills up its units",
            selecting(entry, 1, 0, 6, u"好👍\ufeff🏽\ufeff \ufeff!"_s),
            u"好👍🏽 \ufeff!"_s, u"Gecko"_s);
        row("Gecko, all of a paragraph", selecting(paragraph, 1, 0, 20), u"the text"_s, u"Gecko"_s);
        row("Gecko, of a page", onPage(selecting(paragraph, 1, 3, 12)), std::nullopt, u"Gecko"_s);
        row("Gecko, none of a page", onPage(selecting(paragraph, 0, 0, 0)), u""_s, u"Gecko"_s);
        row("Chromium, end of a field", selecting(entry, 1, 4, 8), u"text"_s, u"Chromium"_s);
        row("Chromium miscounts", selecting(entry, 1, 4, 6, u"👍 text"_s), std::nullopt,
            u"Chromium"_s);
        row("Chromium loses an end", selecting(entry, 1, 3, 3), std::nullopt, u"Chromium"_s);
        row("Chromium, none in a field", selecting(entry, 0, 3, 3), u""_s, u"Chromium"_s);
        row("Chromium, none of a page", onPage(selecting(paragraph, 0, 3, 3)), std::nullopt,
            u"Chromium"_s);
    }

    void selectedText()
    {
        QFETCH(const QString, toolkit);
        QFETCH(const QJsonObject, script);
        const QJsonObject program{{u"toolkit"_s, toolkit}};
        QVERIFY(start({{u"only"_s, script}, {u"root"_s, program}}, {u"only"_s}));
        const auto found = find();
        QVERIFY(found);
        QTEST(found->selectedText, "expected");
    }

    void emptyFirstExtentsAreAskedForAgain()
    {
        auto script = selecting(entry, 1, 0, 20);
        script.insert(u"emptyExtents"_s, 2);
        const QJsonObject program{{u"toolkit"_s, u"Gecko"_s}};
        QVERIFY(start({{u"only"_s, script}, {u"root"_s, program}}, {u"only"_s}));
        const auto found = find();
        QVERIFY(found);
        QCOMPARE(found->selectedTextBounds, QRectF(100, 200, 10, 10));
    }

    void trailingFocusWithoutTextIsIgnored()
    {
        QVERIFY(start(
            {{u"field"_s, element(entry, {editable})}, {u"around"_s, element(panel, {}, false)}},
            {u"field"_s, u"around"_s}));
        QVERIFY(find());
        for (int i = 0; i < 20; ++i) {
            const auto found = read();
            QVERIFY(found);
            QCOMPARE(found->role, u"AXTextField"_s);
        }
    }

    void malformedAnswersAreNone()
    {
        QVERIFY(start({{u"only"_s, QJsonObject{{u"malformed"_s, true}}}}, {u"only"_s}));
        for (int i = 0; i < 20; ++i)
            QVERIFY(!read());
    }

    void ownElementsAreNeverAsked()
    {
        QVERIFY(start({{u"field"_s, element(entry, {editable})}}, {u"field"_s}));
        QVERIFY(find());
        Program ours(m_session.accessibilityBusAddress(),
                     {{u"own"_s, element(pushButton, {}, false)}});
        ours.tellOfFocus(u"own"_s);
        m_window.processId = QCoreApplication::applicationPid();
        // Until the focus change must have arrived, and after.
        for (int i = 0; i < 20; ++i) {
            const auto found = read();
            QVERIFY(found);
            QCOMPARE(found->role, u"AXTextField"_s);
        }
        // Nor one that has closed.
        m_session.end(std::exchange(m_process, nullptr));
        QTRY_VERIFY(!read());
        QDBusConnection::disconnectFromBus(u"program"_s);
    }

private:
    // Starts a program with this script, which tells of the focus in these
    // elements, and makes it the active one.
    bool start(const QJsonObject &script, const QStringList &focusedInTurn)
    {
        const auto json = QString::fromUtf8(QJsonDocument(script).toJson(QJsonDocument::Compact));
        m_process = m_session.launch(
            QCoreApplication::applicationFilePath(),
            QStringList{u"--program"_s, m_session.accessibilityBusAddress(), json} + focusedInTurn);
        if (!m_process)
            return false;
        m_window.processId = m_process->processId();
        // Its elements are known from its signals alone: it is in no tree.
        return test::waitUntil([&] { return m_process->canReadLine(); }, 10s) &&
               m_process->readLine() == "ready\n";
    }

    // Its elements are known from its signals alone, since it is in no tree: the
    // first ones may be on their way still.
    std::optional<FocusedElement> find()
    {
        std::optional<FocusedElement> found;
        test::waitUntil([&] { return (found = read()).has_value(); }, 5s);
        return found;
    }

    std::optional<FocusedElement> read()
    {
        std::optional<FocusedElement> result;
        bool done = false;
        const auto task = m_accessibility->readFocusedElement([&](auto answer) {
            result = std::move(answer);
            done = true;
        });
        test::waitUntil([&] { return done; }, 5s);
        return result;
    }

    test::DesktopSession m_session;
    OneWindow m_window;
    std::unique_ptr<linuxdesktop::AtspiAccessibility> m_accessibility;
    QProcess *m_process = nullptr;
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.value(1) == u"--program"_s) {
        Program program(arguments.value(2),
                        QJsonDocument::fromJson(arguments.value(3).toUtf8()).object());
        for (const auto &name : arguments.mid(4))
            program.tellOfFocus(name);
        std::puts("ready");
        std::fflush(stdout);
        return application.exec();
    }
    tst_atspi_elements test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_atspi_elements.moc"
