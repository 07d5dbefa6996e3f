#include "road.h"

#include "localcloud/event_stream.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTest>

#include <X11/keysym.h>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using namespace nivora::test;

// The program in the languages of its interface.
class TestLanguages : public QObject
{
    Q_OBJECT

    static void ask(const Road &road, const QString &action)
    {
        const auto bus = QDBusConnection::connectToBus(road.session.busAddress(), u"languages"_s);
        auto call =
            QDBusMessage::createMethodCall(u"app.nivora"_s, u"/app/nivora"_s,
                                           u"org.freedesktop.Application"_s, u"ActivateAction"_s);
        call.setArguments({action, QVariantList(), QVariantMap()});
        QCOMPARE(bus.call(call).type(), QDBusMessage::ReplyMessage);
        QDBusConnection::disconnectFromBus(u"languages"_s);
    }

    // All that the program's windows show and say, hidden parts of them included.
    static QStringList texts(const Road &road)
    {
        QStringList found;
        (void)road.tree->find(road.product->processId(), [&](const AccessibleElement &element) {
            for (const QString &text : {element.name(), element.description(), element.text()}) {
                // Languages to choose from stand in their own words.
                static const QStringList ownNames{u"简体中文"_s, u"繁體中文"_s, u"日本語"_s};
                if (!ownNames.contains(text) || element.role() != u"list item")
                    found.append(text);
            }
            return false;
        });
        return found;
    }
    static QStringList eastAsian(const QStringList &texts)
    {
        static const QRegularExpression characters(
            uR"([\p{Han}\p{Hiragana}\p{Katakana}\x{3000}-\x{303F}\x{FF00}-\x{FFEF}])"_s);
        return texts.filter(characters);
    }

private Q_SLOTS:
    void theUsersLanguageCounts_data()
    {
        QTest::addColumn<QString>("desktop");
        QTest::addColumn<QJsonArray>("chosen");
        QTest::addColumn<QString>("title");
        QTest::newRow("Japanese desktop") << u"ja_JP:en"_s << QJsonArray() << u"Nivora の設定"_s;
        QTest::newRow("Hong Kong") << u"zh_HK"_s << QJsonArray() << u"Nivora 設定"_s;
        QTest::newRow("Singapore") << u"zh_SG"_s << QJsonArray() << u"Nivora 设置"_s;
        QTest::newRow("German desktop") << u"de"_s << QJsonArray() << u"Nivora settings"_s;
        QTest::newRow("chosen") << u"de"_s << QJsonArray{u"ja"_s} << u"Nivora の設定"_s;
    }
    void theUsersLanguageCounts()
    {
        QFETCH(const QString, desktop);
        QFETCH(const QJsonArray, chosen);
        QFETCH(const QString, title);
        Road road;
        QVERIFY2(road.prepare(), qUtf8Printable(road.problem()));
        QVERIFY(road.product->start({{u"AppleLanguages"_s, chosen}}, {{u"LANGUAGE"_s, desktop}}));
        ask(road, u"settings"_s);
        QVERIFY2(road.product->waitForControl(title, patience), qUtf8Printable(road.problem()));
    }

    void theEnglishInterfaceIsEnglish()
    {
        Road road;
        // What the model is told is no text of the interface.
        QVERIFY2(road.begin({{u"AppleLanguages"_s, QJsonArray{u"en"_s}},
                             {u"byoPromptTemplate"_s, u"{{text}}"_s},
                             {u"closeOnResignFocus"_s, false}}),
                 qUtf8Printable(road.problem()));
        road.server.enqueue(localcloud::eventStream({u"Hi"_s}));
        ask(road, u"panel"_s);
        const auto source = road.product->waitForControl(u"Source text"_s, patience);
        QVERIFY2(source && source->setText(u"hello"_s), qUtf8Printable(road.problem()));
        QVERIFY(road.product->waitForPanel(patience));
        road.user->press({XK_Control_L, XK_Return});
        QVERIFY2(road.product->waitForControl(u"Ctrl+↩ Copy"_s, patience),
                 qUtf8Printable(road.problem()));

        const std::pair<QString, QString> windows[] = {
            {u"sign-in"_s, u"Sign in to Nivora"_s},
            {u"history"_s, u"Clear all"_s},
            {u"check-updates"_s, u"Updates could not be checked"_s},
            {u"version-history"_s, u"The version history could not be loaded"_s},
            {u"settings"_s, u"Follow system"_s}};
        QStringList expected{u"Ctrl+↩ Copy"_s};
        for (const auto &[action, text] : windows) {
            ask(road, action);
            QVERIFY2(road.product->waitForControl(text, patience), qUtf8Printable(road.problem()));
            expected.append(text);
        }
        for (const auto &[tab, text] :
             {std::pair(u"Translation"_s, u"Test"_s), {u"Account"_s, u"Send code"_s}}) {
            const auto found =
                road.tree->find(road.product->processId(), [&](const AccessibleElement &element) {
                    return element.name() == tab && element.role() == u"page tab";
                });
            QVERIFY2(found && found->press() && road.product->waitForControl(text, patience),
                     qUtf8Printable(road.problem()));
            expected.append(text);
        }
        const QStringList all = texts(road);
        for (const QString &text : expected)
            QVERIFY2(all.contains(text), qUtf8Printable(text));
        QVERIFY(!all.filter(u"English → Chinese\n"_s).isEmpty()); // the history's row
        QCOMPARE(eastAsian(all), QStringList());
    }

    void theFirstStartIsEnglish()
    {
        Road road;
        QVERIFY2(road.begin({{u"AppleLanguages"_s, QJsonArray{u"en"_s}},
                             {u"hasCompletedOnboarding"_s, false}}),
                 qUtf8Printable(road.problem()));
        QVERIFY2(road.product->waitForControl(u"Welcome to Nivora"_s, patience),
                 qUtf8Printable(road.problem()));
        QCOMPARE(eastAsian(texts(road)), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestLanguages)
#include "tst_languages.moc"
