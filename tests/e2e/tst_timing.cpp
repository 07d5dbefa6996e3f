#include "road.h"

#include "localcloud/event_stream.h"
#include "localcloud/live_answer.h"

#include <QPointer>
#include <QTest>

#include <X11/keysym.h>

#include <algorithm>
#include <array>
#include <functional>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using namespace nivora::test;

namespace {

constexpr auto fine = 100us;
constexpr auto gapBetweenTaps = 100ms;

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
        QVERIFY2(road.begin({{u"saveHistory"_s, false}}), qUtf8Printable(road.problem()));
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

        // Each showing is watched for one thing alone: looking takes time as well.
        qsizetype answered = road.server.requests().size();
        const std::array<std::pair<QString, std::function<bool()>>, 3> marks{
            {{u"the request"_s, [&] { return road.server.requests().size() > answered; }},
             {u"the panel mapped"_s, [&] { return road.user->find(Product::panel()).has_value(); }},
             {u"the panel painted"_s, [&] { return road.user->picture(spot) == fill; }}}};
        for (const auto &[mark, isReached] : marks) {
            std::vector<double> times;
            for (int round = 0; round < 7; ++round) {
                QVERIFY2(road.product->waitForPanel(patience), qUtf8Printable(road.problem()));
                QVERIFY(road.waitForRequests(answered));
                road.user->press({XK_Escape});
                QVERIFY(road.product->waitForPanelGone(patience));
                QVERIFY(road.user->waitForActive(road.editor->window(), patience));
                QVERIFY(waitUntil([&] { return road.user->picture(spot) != fill; }, patience));

                road.user->press({XK_Shift_L});
                waitUntil([] { return false; }, gapBetweenTaps);
                const auto secondPress = Clock::now();
                road.user->hold(XK_Shift_L);
                const bool reached = waitUntil(isReached, patience, fine);
                times.push_back(millisecondsBetween(secondPress, Clock::now()));
                road.user->release(XK_Shift_L);
                QVERIFY2(reached, qUtf8Printable(road.problem()));
                ++answered;
            }
            qInfo().noquote() << "second Shift press to" << mark + u':' << summary(times);
        }
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
