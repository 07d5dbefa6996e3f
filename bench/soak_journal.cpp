#include "soak_journal.h"

#include "support/x11_peer.h"

#include <QDir>
#include <QImage>
#include <QTime>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace nivora::bench {

using namespace Qt::Literals::StringLiterals;
using namespace nivora::test;

namespace {

constexpr std::size_t mostLines = 30;
constexpr qsizetype logEnd = 4000;

void print(const QString &line)
{
    std::printf("    %s\n", qUtf8Printable(line));
}

QString now()
{
    return QTime::currentTime().toString(u"hh:mm:ss.zzz"_s);
}

} // namespace

SoakJournal::SoakJournal(const DesktopSession &session, const std::optional<X11Driver> &user)
    : m_session(session)
    , m_user(user)
{
}

void SoakJournal::note(const QString &deed, const QString &object)
{
    const auto time = Clock::now();
    Time &last = m_times[m_current];
    last.sum += millisecondsBetween(m_since, time);
    ++last.count;
    m_current = deed;
    m_since = time;
    m_lines.push_back(now() + u' ' + deed + u' ' + object);
    if (m_lines.size() > mostLines)
        m_lines.pop_front();
}

void SoakJournal::testify(const QString &log)
{
    for (const QString &line : m_lines)
        print(line);
    const X11Peer eyes(m_session.displayName());
    const auto focus = X11Peer::hold(
        xcb_get_input_focus_reply(eyes.xcb(), xcb_get_input_focus(eyes.xcb()), nullptr));
    const auto keys =
        X11Peer::hold(xcb_query_keymap_reply(eyes.xcb(), xcb_query_keymap(eyes.xcb()), nullptr));
    const bool isHeld = keys && std::ranges::any_of(keys->keys, [](uint8_t each) { return each; });
    print(u"%1: focus %2, active %3, %4"_s.arg(now(), QString::number(focus ? focus->focus : 0, 16),
                                               QString::number(m_user->activeWindow(), 16),
                                               isHeld ? u"keys are held"_s : u"no key"_s));
    for (const auto &each : m_user->windows()) {
        if (each.mapped)
            print(u"%1 %2 \"%3\" %4 %5,%6 %7x%8"_s
                      .arg(QString::number(each.id, 16), each.className, each.title, each.role)
                      .arg(each.geometry.x())
                      .arg(each.geometry.y())
                      .arg(each.geometry.width())
                      .arg(each.geometry.height()));
    }
    const auto lines = log.right(logEnd).split(u'\n');
    for (const QString &line : lines)
        print(line);
    const QString picture =
        QDir::temp().filePath(u"soak-%1-%2.png"_s.arg(getpid()).arg(++m_pictures));
    if (m_session.screenshot().save(picture))
        print(picture);
    std::fflush(stdout);
}

void SoakJournal::printTimes() const
{
    std::vector<std::pair<QString, Time>> times;
    for (auto each = m_times.begin(); each != m_times.end(); ++each)
        times.emplace_back(each.key(), each.value());
    std::ranges::sort(times,
                      [](const auto &a, const auto &b) { return a.second.sum > b.second.sum; });
    for (const auto &[deed, time] : times)
        print(u"%1 s, %2 times %3 ms: %4"_s.arg(time.sum / 1000, 0, 'f', 1)
                  .arg(time.count)
                  .arg(time.sum / time.count, 0, 'f', 1)
                  .arg(deed));
}

} // namespace nivora::bench
