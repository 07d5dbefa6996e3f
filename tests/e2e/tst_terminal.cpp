#include "road.h"

#include "localcloud/event_stream.h"

#include <QFile>
#include <QTest>

#include <X11/keysym.h>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using namespace nivora::test;

namespace {

// Shows a line and writes every byte that is typed, Ctrl+C included, to a file.
QStringList recordingShell(const QString &line, const QString &file)
{
    return {
        u"sh"_s, u"-c"_s, u"stty raw -echo; printf '%s' \"$1\"; touch \"$2\"; exec cat >\"$2\""_s,
        u"sh"_s, line,    file};
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

} // namespace

// A terminal tells assistive tools nothing, and keys sent to it reach whatever
// program runs there.
class TestTerminal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void translatesItsSelectionWithoutTypingIntoIt_data()
    {
        QTest::addColumn<Trigger>("trigger");
        QTest::newRow("double Shift") << Trigger::DoubleShift;
        QTest::newRow("chord") << Trigger::Chord;
    }

    void translatesItsSelectionWithoutTypingIntoIt()
    {
        QFETCH(const Trigger, trigger);
        Road road;
        QVERIFY2(road.begin(), qUtf8Printable(road.problem()));
        road.server.enqueue(localcloud::eventStream({u"你好，世界"_s}));
        const auto typed = road.session.folder() + u"/typed"_s;
        QVERIFY(road.session.launch(
            u"xterm"_s, QStringList{u"-geometry"_s, u"60x10+100+100"_s, u"-b"_s, u"0"_s, u"-e"_s} +
                            recordingShell(u"hello-world"_s, typed)));
        const auto terminal = road.user->waitForMapped(X11Driver::ofClass(u"XTerm"_s), patience);
        QVERIFY(terminal && road.user->waitForActive(terminal->id, patience));
        QVERIFY(waitUntil([&] { return contents(typed).isEmpty(); }, patience));

        road.pull(trigger);
        QVERIFY2(road.product->waitForPanel(patience), qUtf8Printable(road.problem()));
        QVERIFY2(road.product->waitForControl(u"原文"_s, patience), qUtf8Printable(road.problem()));
        road.user->press({XK_Escape});
        QVERIFY(road.product->waitForPanelGone(patience));
        QVERIFY(road.user->waitForActive(terminal->id, patience));

        road.user->movePointer(terminal->geometry.topLeft() + QPoint(20, 6));
        for (int click = 0; click < 3; ++click)
            road.user->click();
        const auto isSelected = [&] {
            return road.clipboard->selection().value_or(QString()).trimmed() == u"hello-world"_s;
        };
        QVERIFY(waitUntil(isSelected, patience));
        road.pull(trigger);
        QVERIFY2(road.product->waitForTranslation(u"你好，世界"_s, patience),
                 qUtf8Printable(road.problem()));
        QVERIFY2(road.prompt(0).trimmed().endsWith(u"\n\nhello-world"_s),
                 qUtf8Printable(road.prompt(0)));
        QCOMPARE(contents(typed), QByteArray());
    }
};

QTEST_GUILESS_MAIN(TestTerminal)
#include "tst_terminal.moc"
