#include "road.h"

#include "localcloud/event_stream.h"

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

    void theEnglishInterfaceIsEnglish()
    {
        Road road;
        // What the model is told is no text of the interface.
        QVERIFY(road.begin({{u"AppleLanguages"_s, QJsonArray{u"en"_s}},
                            {u"byoPromptTemplate"_s, u"{{text}}"_s},
                            {u"closeOnResignFocus"_s, false}}));
        road.server.enqueue(localcloud::eventStream({u"Hi"_s}));
        QVERIFY(road.ask(u"panel"_s));
        const auto source = road.product->waitForControl(u"Source text"_s, patience);
        QVERIFY(source && source->setText(u"hello"_s));
        QVERIFY(road.product->waitForPanel(patience));
        road.user->press({XK_Control_L, XK_Return});
        QVERIFY(road.product->waitForControl(u"Ctrl+↩ Copy"_s, patience));

        const std::pair<QString, QString> windows[] = {
            {u"sign-in"_s, u"Sign in to Nivora"_s},
            {u"history"_s, u"Clear all"_s},
            {u"check-updates"_s, u"Updates could not be checked"_s},
            {u"version-history"_s, u"The version history could not be loaded"_s},
            {u"settings"_s, u"Follow system"_s}};
        QStringList expected{u"Ctrl+↩ Copy"_s};
        for (const auto &[action, text] : windows) {
            QVERIFY(road.ask(action));
            QVERIFY(road.product->waitForControl(text, patience));
            expected.append(text);
        }
        for (const auto &[tab, text] :
             {std::pair(u"Translation"_s, u"Test"_s), {u"Account"_s, u"Send code"_s}}) {
            const auto found =
                road.tree->find(road.product->processId(), [&](const AccessibleElement &element) {
                    return element.name() == tab && element.role() == u"page tab";
                });
            QVERIFY(found && found->press() && road.product->waitForControl(text, patience));
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
        QVERIFY(road.begin(
            {{u"AppleLanguages"_s, QJsonArray{u"en"_s}}, {u"hasCompletedOnboarding"_s, false}}));
        QVERIFY(road.product->waitForControl(u"Welcome to Nivora"_s, patience));
        QCOMPARE(eastAsian(texts(road)), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestLanguages)
#include "tst_languages.moc"
