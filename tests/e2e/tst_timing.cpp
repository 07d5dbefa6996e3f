#include "road.h"

#include "localcloud/event_stream.h"
#include "localcloud/live_answer.h"

#include <QPointer>
#include <QTest>

#include <X11/keysym.h>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using namespace nivora::test;

namespace {

constexpr auto fine = 200us;

QString summary(std::vector<double> milliseconds)
{
    std::ranges::sort(milliseconds);
    return u"median %1 ms, %2 to %3 ms of %4"_s
        .arg(milliseconds[milliseconds.size() / 2], 0, 'f', 1)
        .arg(milliseconds.front(), 0, 'f', 1)
        .arg(milliseconds.back(), 0, 'f', 1)
        .arg(milliseconds.size());
}

} // namespace

// Prints how long the user waits. What is too long is for people to judge: these
// tests fail only when there is nothing to measure.
class TestTiming : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fromTheSecondShiftToThePanel()
    {
        Road road;
        QVERIFY2(road.begin(), qUtf8Printable(road.problem()));
        road.server.setHandler(
            [](const localcloud::Request &) { return localcloud::eventStream({u"はい"_s}); });
        QVERIFY2(road.open(Editor::Toolkit::Gtk, u"请发一下报价"_s),
                 qUtf8Printable(road.problem()));

        // The first showing, which tells where to look and for which colour.
        road.pull(Trigger::DoubleShift);
        QVERIFY2(road.product->waitForTranslation(u"はい"_s, patience),
                 qUtf8Printable(road.problem()));
        const auto panel = road.user->find(Product::panel());
        QVERIFY(panel);
        const QRect spot(panel->geometry.topLeft() + QPoint(panel->geometry.width() / 2, 6),
                         QSize(1, 1));
        const auto fill = road.user->picture(spot);

        std::vector<double> toRequest;
        std::vector<double> toMapped;
        std::vector<double> toPainted;
        for (qsizetype round = 1; round <= 9; ++round) {
            QVERIFY(road.product->waitForPanel(patience));
            road.user->press({XK_Escape});
            QVERIFY(road.product->waitForPanelGone(patience));
            QVERIFY(road.user->waitForActive(road.editor->window(), patience));
            QVERIFY(waitUntil([&] { return road.user->picture(spot) != fill; }, patience));

            road.user->press({XK_Shift_L});
            waitUntil([] { return false; }, 100ms);
            const auto secondPress = Clock::now();
            road.user->hold(XK_Shift_L);
            std::optional<Clock::time_point> mapped;
            std::optional<Clock::time_point> painted;
            const auto complete = [&] {
                if (!mapped && road.user->find(Product::panel()))
                    mapped = Clock::now();
                if (!painted && road.user->picture(spot) == fill)
                    painted = Clock::now();
                return mapped && painted && road.server.requests().size() > round;
            };
            const bool arrived = waitUntil(complete, patience, fine);
            road.user->release(XK_Shift_L);
            QVERIFY2(arrived, qUtf8Printable(road.problem()));
            toRequest.push_back(
                millisecondsBetween(secondPress, road.server.requests().last().arrival));
            toMapped.push_back(millisecondsBetween(secondPress, *mapped));
            toPainted.push_back(millisecondsBetween(secondPress, *painted));
        }
        qInfo().noquote() << "second Shift press to the request:" << summary(toRequest);
        qInfo().noquote() << "second Shift press to the panel mapped:" << summary(toMapped);
        qInfo().noquote() << "second Shift press to the panel painted:" << summary(toPainted);
    }

    void fromTheSocketToTheScreen()
    {
        Road road;
        QVERIFY2(road.begin(), qUtf8Printable(road.problem()));
        QPointer<localcloud::LiveAnswer> answer;
        localcloud::Answer live;
        live.live = [&](localcloud::LiveAnswer &started) { answer = &started; };
        road.server.enqueue(live);
        QVERIFY2(road.open(Editor::Toolkit::Gtk, u"请发一下报价"_s),
                 qUtf8Printable(road.problem()));
        road.pull(Trigger::DoubleShift);
        QVERIFY2(waitUntil([&] { return !answer.isNull(); }, patience),
                 qUtf8Printable(road.problem()));

        const auto send = [&](const QString &piece) {
            answer->send("data: " + localcloud::pieceEvent(piece) + "\n\n");
        };
        answer->start(200, {{"Content-Type", "text/event-stream"}});
        send(u"一"_s);
        QString shown = u"一"_s;
        QVERIFY2(road.product->waitForTranslation(shown, patience), qUtf8Printable(road.problem()));
        const auto area = road.product->control(u"译文"_s);
        QVERIFY(area);

        std::vector<double> toScreen;
        for (int round = 0; round < 15; ++round) {
            const auto rectangle = area->frame();
            const auto before = road.user->picture(rectangle);
            QVERIFY(!before.isNull());
            // Nothing else moves there: what changes next is the piece.
            QVERIFY(!waitUntil([&] { return road.user->picture(rectangle) != before; }, 40ms));
            const auto sent = Clock::now();
            send(u"二"_s);
            QVERIFY(
                waitUntil([&] { return road.user->picture(rectangle) != before; }, patience, fine));
            toScreen.push_back(millisecondsBetween(sent, Clock::now()));
            shown += u'二';
            QVERIFY(road.product->waitForTranslation(shown, patience));
        }
        qInfo().noquote() << "byte on the socket to the screen:" << summary(toScreen);
    }
};

QTEST_GUILESS_MAIN(TestTiming)
#include "tst_timing.moc"
