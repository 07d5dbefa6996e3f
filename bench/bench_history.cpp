#include "long_history.h"

#include "stores/glossary_store.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;

namespace {

QString source(qint64 number)
{
    return u"我们明天上午十点在会议室讨论第%1季度的预算安排，请准时参加。"_s.arg(number);
}

bench::LongHistory &history(benchmark::State &state)
{
    static std::map<qint64, std::unique_ptr<bench::LongHistory>> histories;
    auto &history = histories[state.range(0)];
    if (!history)
        history = std::make_unique<bench::LongHistory>(state.range(0));
    return *history;
}

constexpr qint64 small = 10'000;
constexpr qint64 large = 1'000'000;

// The first use, which is the first trigger's unless the store is made earlier.
void openStore(benchmark::State &state)
{
    const QString path = history(state).path();
    for (auto _ : state)
        HistoryStore store([] { return true; }, path);
}
BENCHMARK(openStore)->Arg(small)->Arg(large)->Unit(benchmark::kMicrosecond);

void findTranslation(benchmark::State &state)
{
    HistoryStore &store = history(state).store();
    qint64 number = 0;
    for (auto _ : state) {
        number = (number + 7919) % state.range(0);
        if (!store.latestTranslation(source(number), Language::Japanese))
            state.SkipWithError("not found");
    }
}
BENCHMARK(findTranslation)->Arg(small)->Arg(large)->Unit(benchmark::kMicrosecond);

// SQLite's own call with a statement that is prepared already: its floor.
void findAlone(benchmark::State &state)
{
    sqlite3 *database = nullptr;
    sqlite3_open(QFile::encodeName(history(state).path()).constData(), &database);
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v2(database,
                       "SELECT translation FROM history WHERE source=? AND to_lang='japanese' "
                       "ORDER BY ts DESC LIMIT 1;",
                       -1, &statement, nullptr);
    qint64 number = 0;
    for (auto _ : state) {
        number = (number + 7919) % state.range(0);
        const QByteArray text = source(number).toUtf8();
        sqlite3_bind_text(statement, 1, text.constData(), int(text.size()), SQLITE_STATIC);
        if (sqlite3_step(statement) != SQLITE_ROW)
            state.SkipWithError("not found");
        sqlite3_reset(statement);
    }
    sqlite3_finalize(statement);
    sqlite3_close(database);
}
BENCHMARK(findAlone)->Arg(small)->Arg(large)->Unit(benchmark::kMicrosecond);

void missTranslation(benchmark::State &state)
{
    HistoryStore &store = history(state).store();
    qint64 number = 0;
    for (auto _ : state) {
        number += 7919;
        benchmark::DoNotOptimize(store.latestTranslation(source(-number), Language::Japanese));
    }
}
BENCHMARK(missTranslation)->Arg(small)->Arg(large)->Unit(benchmark::kMicrosecond);

void recordTranslation(benchmark::State &state)
{
    HistoryStore &store = history(state).store();
    static qint64 number = 0;
    double longest = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        store.record(u"新的句子 %1"_s.arg(++number), u"新しい文"_s, Language::Chinese,
                     Language::Japanese);
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - start;
        longest = std::max(longest, took.count());
    }
    state.counters["longest_ms"] = longest;
}
// Fewer than would be ahead of the disk for long once one of them was late.
BENCHMARK(recordTranslation)
    ->Arg(small)
    ->Arg(large)
    ->Iterations(1000)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();

// What a window waits for after a key in its search field, and how long that
// key keeps the main thread.
void search(benchmark::State &state, const QString &term)
{
    HistoryStore &store = history(state).store();
    QEventLoop loop;
    QObject::connect(&store, &HistoryStore::changed, &loop, &QEventLoop::quit);
    store.setWatched(true);
    loop.exec();
    double main = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        store.applySearch(term);
        const std::chrono::duration<double, std::micro> took =
            std::chrono::steady_clock::now() - start;
        main += took.count();
        loop.exec();
    }
    state.counters["found"] = double(store.entries().size());
    state.counters["main_thread_us"] = main / double(state.iterations());
    store.setWatched(false);
}
BENCHMARK_CAPTURE(search, everything, u""_s)
    ->Arg(small)
    ->Arg(large)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(search, common, u"会议"_s)
    ->Arg(small)
    ->Arg(large)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(search, rare, u"9999季"_s)
    ->Arg(small)
    ->Arg(large)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// One keystroke in the settings' list of terms.
void editTerm(benchmark::State &state)
{
    QTemporaryDir folder;
    const QString path = folder.path() + u"/glossary.json"_s;
    QByteArray json = "[";
    for (qint64 i = 0; i < state.range(0); ++i)
        json += (i ? "," : "") + "{\"id\":\""_ba +
                QUuid::createUuid().toByteArray(QUuid::WithoutBraces) +
                "\",\"zh\":\"报价单\",\"ja\":\"見積書\"}";
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(json + ']') < 0)
        return state.SkipWithError("no file");
    file.close();
    GlossaryStore store(path);
    GlossaryTerm term = store.terms().back();
    for (auto _ : state) {
        term.zh = term.zh == u"甲" ? u"乙"_s : u"甲"_s;
        store.update(term);
    }
}
BENCHMARK(editTerm)->Arg(100)->Arg(10'000)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
