// How long the user waits, in the real program on a desktop of its own: from the
// trigger to the request, to the window and to its paint, and from a piece on the
// socket to the screen. Beside them a round trip to the X server, the floor of each.

#include "e2e/road.h"

#include "localcloud/event_stream.h"
#include "localcloud/live_answer.h"

#include <QCoreApplication>
#include <QPointer>

#include <X11/keysym.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using namespace nivora::test;

namespace {

constexpr auto fine = 100us;
constexpr auto gapBetweenTaps = 100ms;
constexpr int rounds = 15;

void print(const char *what, std::vector<double> milliseconds)
{
    std::ranges::sort(milliseconds);
    std::printf("%-32s median %7.2f ms, %.2f to %.2f ms of %zu\n", what,
                milliseconds[milliseconds.size() / 2], milliseconds.front(), milliseconds.back(),
                milliseconds.size());
    std::fflush(stdout);
}

// Nothing can be measured where the road itself is blocked.
void require(bool condition, const Road &road)
{
    if (condition)
        return;
    std::fprintf(stderr, "nothing to measure: %s\n", qUtf8Printable(road.problem()));
    std::exit(1);
}

void measureRoundTrip(const Road &road)
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(road.session.displayName().constData(), nullptr), &xcb_disconnect);
    std::vector<double> times;
    for (int round = 0; round < 1000; ++round) {
        const auto asked = Clock::now();
        std::free(xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()),
                                            nullptr));
        times.push_back(millisecondsBetween(asked, Clock::now()));
    }
    print("a round trip to the X server", std::move(times));
}

// Each showing is watched for one thing alone: looking takes time as well.
void measureTriggers()
{
    Road road;
    require(road.begin({{u"saveHistory"_s, false}}), road);
    measureRoundTrip(road);
    road.server.setHandler(
        [](const localcloud::Request &) { return localcloud::eventStream({u"はい"_s}); });
    require(road.open(Editor::Toolkit::Gtk, u"请发一下报价"_s), road);

    std::optional<X11Driver::Window> panel;
    QRect spot;
    QImage fill;
    qsizetype answered = 0;
    const auto pull = [&](const std::function<bool()> &isReached) {
        road.user->press({XK_Shift_L});
        waitUntil([] { return false; }, gapBetweenTaps);
        const auto secondPress = Clock::now();
        road.user->hold(XK_Shift_L);
        require(waitUntil(isReached, patience, fine), road);
        const double time = millisecondsBetween(secondPress, Clock::now());
        road.user->release(XK_Shift_L);
        return time;
    };
    const auto isMapped = [&] { return road.user->find(Product::panel()).has_value(); };

    // The first showing makes the panel, and tells where to look and for what colour.
    print("first trigger to the window", {pull(isMapped)});
    require(road.product->waitForTranslation(u"はい"_s, patience), road);
    panel = road.user->find(Product::panel());
    spot = {panel->geometry.topLeft() + QPoint(panel->geometry.width() / 2, 6), QSize(1, 1)};
    fill = road.user->picture(spot);
    answered = road.server.requests().size();

    const std::pair<const char *, std::function<bool()>> marks[]{
        {"trigger to the request", [&] { return road.server.requests().size() > answered; }},
        {"trigger to the window", isMapped},
        {"trigger to the painted window", [&] { return road.user->picture(spot) == fill; }}};
    for (const auto &[mark, isReached] : marks) {
        std::vector<double> times;
        for (int round = 0; round < rounds; ++round) {
            require(road.product->waitForPanel(patience).has_value(), road);
            require(road.waitForRequests(answered), road);
            road.user->press({XK_Escape});
            require(road.product->waitForPanelGone(patience), road);
            require(road.user->waitForActive(road.editor->window(), patience), road);
            require(waitUntil([&] { return road.user->picture(spot) != fill; }, patience), road);
            times.push_back(pull(isReached));
            ++answered;
        }
        print(mark, std::move(times));
    }
}

void measurePieces()
{
    Road road;
    require(road.begin(), road);
    QPointer<localcloud::LiveAnswer> answer;
    localcloud::Answer live;
    live.live = [&](localcloud::LiveAnswer &started) { answer = &started; };
    road.server.enqueue(live);
    require(road.open(Editor::Toolkit::Gtk, u"请发一下报价"_s), road);
    road.pull(Trigger::DoubleShift);
    require(waitUntil([&] { return !answer.isNull(); }, patience), road);

    const auto send = [&](const QString &piece) {
        answer->send("data: " + localcloud::pieceEvent(piece) + "\n\n");
    };
    answer->start(200, {{"Content-Type", "text/event-stream"}});
    send(u"一"_s);
    QString shown = u"一"_s;
    require(road.product->waitForTranslation(shown, patience), road);
    const auto area = road.product->control(u"译文"_s);
    require(area.has_value(), road);

    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        const QRect rectangle = area->frame();
        const auto before = road.user->picture(rectangle);
        // Nothing else moves there: what changes next is the piece.
        const auto changes = [&] { return road.user->picture(rectangle) != before; };
        require(!before.isNull() && !waitUntil(changes, 40ms), road);
        const auto sent = Clock::now();
        send(u"二"_s);
        require(waitUntil(changes, patience, fine), road);
        times.push_back(millisecondsBetween(sent, Clock::now()));
        shown += u'二';
        require(road.product->waitForTranslation(shown, patience), road);
    }
    print("a piece to the screen", std::move(times));
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    measureTriggers();
    measurePieces();
    return 0;
}
