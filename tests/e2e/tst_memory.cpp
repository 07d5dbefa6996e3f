#include "road.h"

#include "localcloud/event_stream.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <X11/keysym.h>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using namespace nivora::test;

// What the product remembers for its user.
class TestMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTextIsSentOnce();
    void theUsersTermsReachTheService();
};

void TestMemory::aTextIsSentOnce()
{
    Road road;
    QVERIFY2(road.begin({{u"saveHistory"_s, true}}), qUtf8Printable(road.problem()));
    road.server.enqueue(localcloud::eventStream({u"見積もり"_s, u"を送ってください"_s}));
    QVERIFY2(road.open(Editor::Toolkit::Gtk, u"请发一下报价"_s), qUtf8Printable(road.problem()));
    for (int time = 0; time < 2; ++time) {
        road.pull(Trigger::DoubleShift);
        QVERIFY2(road.product->waitForPanel(patience), qUtf8Printable(road.problem()));
        QVERIFY2(road.product->waitForTranslation(u"見積もりを送ってください"_s, patience),
                 qUtf8Printable(road.problem()));
        QVERIFY2(road.product->waitForControl(u"Ctrl+↩ 替换原文"_s, patience),
                 qUtf8Printable(road.problem()));
        QCOMPARE(road.server.requests().size(), 1);
        road.user->press({XK_Escape});
        QVERIFY(road.product->waitForPanelGone(patience));
        QVERIFY(road.user->waitForActive(road.editor->window(), patience));
    }
    const QDir folder(road.session.folder() + u"/data/Nivora"_s);
    QCOMPARE(QFile::permissions(folder.path()) & (QFile::ReadGroup | QFile::ReadOther), 0);
    const auto files = folder.entryInfoList(QDir::Files);
    QVERIFY(!files.isEmpty());
    for (const QFileInfo &file : files)
        QVERIFY2(!file.permission(QFile::ReadGroup) && !file.permission(QFile::ReadOther),
                 qUtf8Printable(file.fileName()));
}

void TestMemory::theUsersTermsReachTheService()
{
    Road road;
    const QDir data(road.session.folder() + u"/data"_s);
    QVERIFY(data.mkpath(u"app.nivora"_s));
    QFile glossary(data.filePath(u"app.nivora/glossary.json"_s));
    QVERIFY(glossary.open(QIODevice::WriteOnly));
    glossary.write(
        R"([{"id":"6F9619FF-8B86-D011-B42D-00C04FC964FF","zh":"报价","ja":"御見積書"}])");
    glossary.close();
    QVERIFY2(road.begin({{u"byoPromptTemplate"_s, u"术语：{{glossary}}。\n\n{{text}}"_s}}),
             qUtf8Printable(road.problem()));
    road.server.enqueue(localcloud::eventStream({u"御見積書を送ってください"_s}));
    QVERIFY2(road.open(Editor::Toolkit::Gtk, u"请发一下报价"_s), qUtf8Printable(road.problem()));
    road.pull(Trigger::DoubleShift);
    QVERIFY(road.waitForRequests(1));
    QCOMPARE(road.prompt(0), u"术语：报价→御見積書。\n\n请发一下报价"_s);
}

QTEST_GUILESS_MAIN(TestMemory)
#include "tst_memory.moc"
