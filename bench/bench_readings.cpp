#include "core/reading_service.h"
#include "platform_linux/mecab_tokenizer.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <unistd.h>

using namespace nivora;
using namespace nivora::linuxdesktop;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto always = [] { return true; };

// 200 characters in one sentence, as a business letter has them.
QString sentence()
{
    const QString part =
        u"先日ご依頼いただきましたお見積もりの件につきまして、担当部署で内容を検討した結果、来週の"
        "金曜日までに正式な書類を郵送できる見込みとなりましたので、"_s;
    return part.repeated(3).first(199) + u"。"_s;
}

void readSentence(benchmark::State &state)
{
    MecabTokenizer tokenizer;
    const ReadingService readings(tokenizer);
    const QString text = sentence().repeated(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(readings.read(text, ReadingForm(state.range(1))));
    state.SetItemsProcessed(state.iterations() * text.size());
}
BENCHMARK(readSentence)
    ->ArgNames({"sentences", "hiragana"})
    ->ArgsProduct({{1, 100}, {0, 1}})
    ->Unit(benchmark::kMicrosecond);

// The first reading of a process. Where `cold`, the dictionary's files were put
// out of the page cache before.
void firstReading(benchmark::State &state)
{
    const QString text = sentence();
    for (auto _ : state) {
        state.PauseTiming();
        const QDir dictionary(MecabTokenizer::defaultDictionary());
        for (const auto &file : dictionary.entryList(QDir::Files)) {
            const int fd =
                ::open(QFile::encodeName(dictionary.filePath(file)), O_RDONLY | O_CLOEXEC);
            if (state.range(0))
                ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
            ::close(fd);
        }
        auto tokenizer = std::make_unique<MecabTokenizer>();
        state.ResumeTiming();
        if (state.range(1))
            benchmark::DoNotOptimize(tokenizer->prepare());
        else
            benchmark::DoNotOptimize(tokenizer->tokenize(text, always));
        state.PauseTiming();
        tokenizer.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(firstReading)
    ->ArgNames({"cold", "onlyPrepare"})
    ->ArgsProduct({{0, 1}, {0, 1}})
    ->UseRealTime()
    ->Iterations(10)
    ->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
