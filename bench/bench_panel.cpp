#include "core/reading_service.h"
#include "core/translation_engine.h"
#include "localcloud/event_stream.h"
#include "localcloud/server.h"
#include "platform_linux_network/qt_http_client.h"
#include "platform_memory/memory_desktop.h"
#include "session/translation_view_model.h"
#include "stores/settings_store.h"
#include "windows/floating_panel.h"
#include "windows/floating_panel_controller.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPlainTextEdit>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;

namespace {

// The panel over a desktop in memory, with a server that sends pieces when told.
struct Bench
{
    localcloud::Server server;
    memory::MemoryDesktop desktop;
    KeychainStore keychain{desktop.secrets};
    SettingsStore settings{desktop.preferences, keychain, QUrl(u"http://127.0.0.1"_s)};
    linuxdesktop::QtHttpClient network;
    TranslationEngine engine{network};
    ReadingService readings{desktop.japaneseTokenizer};
    TranslationViewModel session{{.engine = engine,
                                  .settings = settings,
                                  .readings = readings,
                                  .clipboard = desktop.clipboard,
                                  .settingsPanes = desktop.settingsPanes}};
    FloatingPanelController controller{session, settings, desktop.windowSystem};
};

// A stream of this many pieces into the shown panel, painted, without a line end
// in the whole text. Time is per piece.
void streamPieces(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        {
            Bench bench;
            bench.server.listen();
            bench.settings.useCustomBackend.set(true);
            bench.settings.apiBaseURLString.set(bench.server.url().toString());
            QStringList pieces;
            for (int i = 0; i < state.range(0); ++i)
                pieces << u"译文"_s;
            bench.server.enqueue(localcloud::eventStream(pieces));
            bench.session.setSource(u"hello"_s, true, std::nullopt);
            bench.controller.show(PanelMode::Selection, std::nullopt);
            state.ResumeTiming();
            while (bench.session.phase().kind != Phase::Kind::Done &&
                   bench.session.phase().kind != Phase::Kind::Error)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            state.PauseTiming();
            if (bench.session.translatedText().size() != 2 * state.range(0))
                state.SkipWithError("not the whole text has arrived");
        }
        state.ResumeTiming();
    }
    state.counters["per piece"] =
        benchmark::Counter(double(state.iterations() * state.range(0)),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(streamPieces)->Arg(1)->Arg(1000)->Arg(50'000)->Unit(benchmark::kMillisecond);

// One piece onto a text of this many pieces, laid out and painted.
void paintOnePieceMore(benchmark::State &state)
{
    Bench bench;
    bench.session.historyLookup = [&](const QString &, Language) {
        return std::optional(QString(u"译文"_s).repeated(int(state.range(0))));
    };
    bench.session.setSource(u"hello"_s, true, std::nullopt);
    bench.controller.show(PanelMode::Selection, std::nullopt);
    QCoreApplication::processEvents();
    FloatingPanel *panel = bench.controller.panel();
    for (auto _ : state) {
        Q_EMIT bench.session.translatedTextAppended(u"译文"_s);
        // The view lays out once a frame; the wait for the frame is not the cost.
        QElapsedTimer frame;
        state.PauseTiming();
        frame.start();
        while (frame.elapsed() < 16)
            continue;
        state.ResumeTiming();
        QCoreApplication::processEvents();
        panel->repaint();
    }
}
BENCHMARK(paintOnePieceMore)
    ->Arg(1)
    ->Arg(1000)
    ->Arg(50'000)
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(50);

// One key more in the editor of a text of so many characters, laid out and painted:
// in lines of eighty, or in one.
void typeOneKeyMore(benchmark::State &state)
{
    Bench bench;
    bench.session.prepareManualInput(false, std::nullopt);
    bench.controller.show(PanelMode::Compose, std::nullopt);
    FloatingPanel *panel = bench.controller.panel();
    auto *editor = panel->findChild<QPlainTextEdit *>();
    QString text(state.range(0), u'a');
    for (qsizetype at = 80; state.range(1) && at < text.size(); at += 81)
        text[at] = u'\n';
    bench.session.editSource(text);
    QCoreApplication::processEvents();
    for (auto _ : state) {
        editor->insertPlainText(u"b"_s);
        QCoreApplication::processEvents();
        panel->repaint();
    }
}
BENCHMARK(typeOneKeyMore)
    ->ArgsProduct({{100, 10'000, 170'000}, {true, false}})
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(50);

// Show and hide, painted.
void showPanel(benchmark::State &state)
{
    Bench bench;
    bench.session.historyLookup = [](const QString &, Language) {
        return std::optional(u"译文"_s);
    };
    bench.session.setSource(u"hello"_s, true, std::nullopt);
    bench.controller.prepare();
    for (auto _ : state) {
        bench.controller.show(PanelMode::Selection, std::nullopt);
        QCoreApplication::processEvents();
        bench.controller.hide();
        QCoreApplication::processEvents();
    }
}
BENCHMARK(showPanel)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
