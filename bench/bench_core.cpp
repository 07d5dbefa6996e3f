#include "core/event_stream.h"
#include "core/language_detector.h"
#include "core/translation_options.h"

#include <benchmark/benchmark.h>

// CLD2's header uses FILE without including it.
#include <cstdio>

#include <cld2/public/compact_lang_det.h>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;

namespace {

const QString samples[] = {
    u"我们明天上午十点在会议室讨论下一季度的预算安排，请准时参加。"_s,
    u"請準備報價單並寄給顧客，明天上午十點在會議室討論。"_s,
    u"お見積もりを金曜日までに送ってください。よろしくお願いいたします。"_s,
    u"견적서를 금요일까지 보내 주세요. 감사합니다."_s,
    u"Could you send me the quotation by Friday, please? Thank you for your help."_s,
};

void detectLanguage(benchmark::State &state)
{
    const QString text = samples[state.range(0)].repeated(int(state.range(1)));
    for (auto _ : state)
        benchmark::DoNotOptimize(LanguageDetector::detect(text));
    state.SetBytesProcessed(state.iterations() * text.toUtf8().size());
}
BENCHMARK(detectLanguage)->ArgsProduct({{0, 1, 2, 3, 4}, {1, 100}});

// CLD2's own call on the same text, below which the detection cannot come where it
// asks at all.
void recognizeAlone(benchmark::State &state)
{
    const QByteArray text = samples[state.range(0)].repeated(int(state.range(1))).toUtf8();
    for (auto _ : state) {
        CLD2::Language ranked[3] = {};
        int percent[3] = {};
        double score[3] = {};
        int textBytes = 0;
        int validPrefix = 0;
        bool reliable = false;
        benchmark::DoNotOptimize(CLD2::ExtDetectLanguageSummaryCheckUTF8(
            text.constData(), int(text.size()), true, nullptr, CLD2::kCLDFlagBestEffort, ranked,
            percent, score, nullptr, &textBytes, &reliable, &validPrefix));
    }
    state.SetBytesProcessed(state.iterations() * text.size());
}
BENCHMARK(recognizeAlone)->ArgsProduct({{0, 1, 2, 3, 4}, {1, 100}});

QByteArray eventStream(int events)
{
    QByteArray stream;
    for (int i = 0; i < events; ++i) {
        stream += "data: {\"id\":\"chatcmpl-1\",\"object\":\"chat.completion.chunk\",\"created\":1,"
                  "\"model\":\"m\",\"choices\":[{\"index\":0,\"delta\":{\"content\":\"译文" +
                  QByteArray::number(i) + "\"},\"finish_reason\":null}]}\n\n";
    }
    return stream;
}

void readEvents(benchmark::State &state)
{
    const QByteArray stream = eventStream(1000);
    const qsizetype portion = state.range(0);
    for (auto _ : state) {
        LineSplitter splitter;
        qsizetype length = 0;
        for (qsizetype at = 0; at < stream.size(); at += portion) {
            splitter.feed(stream.sliced(at, std::min(portion, stream.size() - at)),
                          [&](QByteArrayView line) {
                              const auto event = parseEventLine(line);
                              if (event && event->content)
                                  length += event->content->size();
                              return true;
                          });
        }
        benchmark::DoNotOptimize(length);
    }
    state.SetBytesProcessed(state.iterations() * stream.size());
    state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(readEvents)->Arg(16)->Arg(200)->Arg(16'384);

void readOneHugeLine(benchmark::State &state)
{
    const QByteArray line = "data: {\"choices\":[{\"delta\":{\"content\":\"" +
                            QByteArray(10 * 1024 * 1024, 'x') + "\"}}]}\n";
    for (auto _ : state) {
        LineSplitter splitter;
        qsizetype length = 0;
        for (qsizetype at = 0; at < line.size(); at += 16'384) {
            splitter.feed(line.sliced(at, std::min<qsizetype>(16'384, line.size() - at)),
                          [&](QByteArrayView whole) {
                              length = parseEventLine(whole)->content->size();
                              return true;
                          });
        }
        benchmark::DoNotOptimize(length);
    }
    state.SetBytesProcessed(state.iterations() * line.size());
}
BENCHMARK(readOneHugeLine)->Unit(benchmark::kMillisecond);

// 10,000 terms of which a hundredth occurs, against 10,000 characters.
std::vector<GlossaryTerm> glossary()
{
    std::vector<GlossaryTerm> terms;
    for (int i = 0; i < 10'000; ++i) {
        const QString zh = u"术语"_s + QChar(0x4E00 + i % 2000) + QChar(0x5E00 + i / 2000) +
                           QChar(0x6000 + i % 777);
        terms.push_back({QUuid::createUuid(), zh, u"用語"_s + QString::number(i)});
    }
    return terms;
}

QString sourceWith(const std::vector<GlossaryTerm> &terms)
{
    QString text;
    for (std::size_t i = 0; text.size() < 10'000; ++i) {
        text += samples[0];
        if (i % 3 == 0)
            text += terms[i * 31 % terms.size()].zh;
    }
    return text.first(10'000);
}

void matchGlossary(benchmark::State &state)
{
    TranslationOptions options;
    options.glossary = glossary();
    const QString source = sourceWith(options.glossary);
    std::size_t found = 0;
    for (auto _ : state)
        found = options.matchedTerms(source, Language::Japanese).size();
    state.counters["found"] = double(found);
}
BENCHMARK(matchGlossary)->Unit(benchmark::kMillisecond);

// The plain walk, beside it.
void matchGlossaryPlainly(benchmark::State &state)
{
    const auto terms = glossary();
    const QString source = sourceWith(terms);
    std::size_t found = 0;
    for (auto _ : state) {
        found = 0;
        for (const GlossaryTerm &term : terms)
            found += source.contains(term.zh);
    }
    state.counters["found"] = double(found);
}
BENCHMARK(matchGlossaryPlainly)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
