#pragma once

#include "support/desktop_session.h"
#include "support/wait.h"
#include "support/x11_driver.h"

#include <QHash>
#include <QString>

#include <deque>

namespace nivora::bench {

// What the user of a soak has done lately, and what the desktop looks like when
// something goes wrong; and for each kind of deed the time that went by until the
// next one.
class SoakJournal
{
public:
    SoakJournal(const test::DesktopSession &session, const std::optional<test::X11Driver> &user);

    void note(const QString &deed, const QString &object = {});
    // Prints the last deeds, who has the keyboard, the windows and the end of this
    // log, and keeps a picture of the screen.
    void testify(const QString &log);
    // The kinds of deeds, the longest in all first.
    void printTimes() const;

private:
    struct Time
    {
        double sum = 0; // milliseconds
        int count = 0;
    };

    const test::DesktopSession &m_session;
    const std::optional<test::X11Driver> &m_user;
    std::deque<QString> m_lines;
    QHash<QString, Time> m_times;
    QString m_current;
    test::Clock::time_point m_since = test::Clock::now();
    int m_pictures = 0;
};

} // namespace nivora::bench
