#include "road.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
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

    // What the program shows or says in Chinese or Japanese.
    static QString foreignTexts(const Road &road)
    {
        static const QRegularExpression eastAsian(
            uR"([\p{Han}\p{Hiragana}\p{Katakana}\x{3000}-\x{303F}\x{FF00}-\x{FFEF}])"_s);
        QStringList found;
        (void)road.tree->find(road.product->processId(), [&](const AccessibleElement &element) {
            for (const QString &text : {element.name(), element.description(), element.text()}) {
                // Languages to choose from stand in their own words.
                const bool isOwnName =
                    element.role() == u"list item" &&
                    QStringList{u"简体中文"_s, u"繁體中文"_s, u"日本語"_s}.contains(text);
                if (text.contains(eastAsian) && !isOwnName)
                    found.append(text);
            }
            return false;
        });
        return found.join(u"; "_s);
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
                             {u"byoPromptTemplate"_s, u"{{text}}"_s}}),
                 qUtf8Printable(road.problem()));
        const std::pair<QString, QString> windows[] = {
            {u"panel"_s, u"Source text"_s},
            {u"sign-in"_s, u"Sign in to Nivora"_s},
            {u"history"_s, u"No translations yet"_s},
            {u"check-updates"_s, u"Updates could not be checked"_s},
            {u"version-history"_s, u"The version history could not be loaded"_s},
            {u"settings"_s, u"Follow system"_s}};
        for (const auto &[action, text] : windows) {
            ask(road, action);
            QVERIFY2(road.product->waitForControl(text, patience), qUtf8Printable(road.problem()));
            QCOMPARE(foreignTexts(road), QString());
        }
        for (const auto &[tab, text] :
             {std::pair(u"Translation"_s, u"Test connection"_s), {u"Account"_s, u"Send code"_s}}) {
            QVERIFY2(road.press(tab) && road.product->waitForControl(text, patience),
                     qUtf8Printable(road.problem()));
            QCOMPARE(foreignTexts(road), QString());
        }
    }

    void theFirstStartIsEnglish()
    {
        Road road;
        QVERIFY2(road.begin({{u"AppleLanguages"_s, QJsonArray{u"en"_s}},
                             {u"hasCompletedOnboarding"_s, false}}),
                 qUtf8Printable(road.problem()));
        QVERIFY2(road.product->waitForControl(u"Welcome to Nivora"_s, patience),
                 qUtf8Printable(road.problem()));
        QCOMPARE(foreignTexts(road), QString());
    }
};

QTEST_GUILESS_MAIN(TestLanguages)
#include "tst_languages.moc"
