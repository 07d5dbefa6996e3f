// Calls the product many times on a desktop where everything fails now and then, and
// says whether it kept its promises: by what it prints and by its exit status. The
// arguments are the number of triggers (default 300), the seed (default 1) and the
// minutes after which it ends in any case (default 120).

#include "soak.h"

#include <QCoreApplication>

#include <cstdio>

using namespace nivora;

namespace {

// Triggers, or half of them where there are fewer: once everything has happened.
constexpr int warmUp = 1000;
constexpr qint64 longestGrowth = 2048; // KiB
constexpr int reportPeriod = 500;
constexpr int mostProblems = 10;

void print(const QString &line)
{
    std::printf("%s\n", qUtf8Printable(line));
    std::fflush(stdout);
}

bool isNoMore(const char *what, qint64 before, qint64 after, qint64 allowed)
{
    if (after - before <= allowed)
        return true;
    print(QStringLiteral("BROKEN: %1 %2 after the warm-up, %3 at the end")
              .arg(QLatin1StringView(what))
              .arg(before)
              .arg(after));
    return false;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const int triggers = argc > 1 ? QByteArray(argv[1]).toInt() : 300;
    const quint32 seed = argc > 2 ? QByteArray(argv[2]).toUInt() : 1;
    const double minutes = argc > 3 ? QByteArray(argv[3]).toDouble() : 120;
    print(QStringLiteral("%1 triggers, seed %2").arg(triggers).arg(seed));
    const auto begin = test::Clock::now();
    const auto isLate = [&] {
        return test::millisecondsBetween(begin, test::Clock::now()) > minutes * 60'000;
    };

    bench::Soak soak(seed);
    if (!soak.prepare())
        return 2;
    soak.runTo(std::min(warmUp, triggers / 2));
    const bench::ProcessState before = soak.settle({});
    print(QStringLiteral("after %1 triggers, settled: %2").arg(soak.triggers()).arg(before.text()));

    const auto start = test::Clock::now();
    const int first = soak.triggers();
    while (soak.triggers() < triggers && soak.problems() < mostProblems && !isLate()) {
        const int next = (soak.triggers() / reportPeriod + 1) * reportPeriod;
        soak.runTo(std::min(next, triggers));
        print(QStringLiteral("after %1 triggers: %2; %3 ms each")
                  .arg(soak.triggers())
                  .arg(soak.state().text())
                  .arg(test::millisecondsBetween(start, test::Clock::now()) /
                           (soak.triggers() - first),
                       0, 'f', 0));
    }
    const bench::ProcessState after = soak.settle(before);
    print(QStringLiteral("after %1 triggers, settled: %2").arg(soak.triggers()).arg(after.text()));
    soak.checkHistory();
    soak.journal().printTimes();

    bool kept = soak.problems() == 0;
    kept &= isNoMore("private memory, KiB:", before.privateKiB, after.privateKiB, longestGrowth);
    kept &= isNoMore("descriptors:", before.descriptors, after.descriptors, 0);
    kept &= isNoMore("threads:", before.threads, after.threads, 0);
    kept &=
        isNoMore("resources of the X server:", before.serverResources, after.serverResources, 0);
    print(kept ? QStringLiteral("every promise was kept")
               : QStringLiteral("%1 problems").arg(soak.problems()));
    return kept ? 0 : 1;
}
