// What the history window costs the main thread, beside a history of a million
// entries.

#include "long_history.h"

#include "platform_memory/memory_clipboard.h"
#include "windows/history_window_controller.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <optional>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 small = 10'000;
constexpr qint64 large = 1'000'000;

// Takes the time of each turn in which the event loop hands out an event.
class MeteredApplication : public QApplication
{
public:
    using QApplication::QApplication;

    double total = 0; // milliseconds
    double longest = 0;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (m_depth > 0)
            return QApplication::notify(receiver, event);
        QElapsedTimer timer;
        timer.start();
        ++m_depth;
        const bool result = QApplication::notify(receiver, event);
        --m_depth;
        const double took = double(timer.nsecsElapsed()) / 1e6;
        total += took;
        longest = std::max(longest, took);
        return result;
    }

private:
    int m_depth = 0;
};

MeteredApplication *application = nullptr;

struct Window
{
    explicit Window(qint64 rows)
        : history(rows)
    {
    }

    void open()
    {
        controller.emplace(history.store(), clipboard);
        controller->show();
        settle();
    }
    // Until what was asked for last shows, down to its last row.
    void settle()
    {
        bool answered = !history.store().isReading();
        while (!answered || list().model()->rowCount() != int(history.store().entries().size())) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            answered = !history.store().isReading();
        }
        QCoreApplication::processEvents();
    }
    QWidget &window() const { return *QApplication::topLevelWidgets().first(); }
    QListView &list() const { return *window().findChild<QListView *>(); }
    QLineEdit &field() const { return *window().findChild<QLineEdit *>(); }
    void type(const QString &text) const
    {
        QKeyEvent press(QEvent::KeyPress, text.isEmpty() ? Qt::Key_Backspace : Qt::Key_unknown, {},
                        text);
        QCoreApplication::sendEvent(&field(), &press);
    }

    bench::LongHistory history;
    memory::MemoryClipboard clipboard;
    std::optional<HistoryWindowController> controller;
};

void report(benchmark::State &state)
{
    const auto iterations = double(state.iterations());
    state.counters["main_thread_ms"] = application->total / iterations;
    state.counters["longest_turn_ms"] = application->longest;
}

void begin()
{
    application->total = 0;
    application->longest = 0;
}

// One key after the other, each once the answer to the one before shows.
void searchKeystroke(benchmark::State &state)
{
    Window window(state.range(0));
    window.open();
    begin();
    window.type(u"会议"_s);
    for (auto _ : state) {
        window.settle();
        window.type(window.field().text().size() == 2 ? u"室"_s : QString());
    }
    window.settle();
    report(state);
}
BENCHMARK(searchKeystroke)->Arg(small)->Arg(large)->Unit(benchmark::kMillisecond)->UseRealTime();

// Ten keys without a pause.
void typing(benchmark::State &state)
{
    Window window(state.range(0));
    window.open();
    begin();
    for (auto _ : state) {
        window.field().clear();
        for (const QChar each : u"99999季度的预算"_s) {
            window.type(each);
            QCoreApplication::processEvents();
        }
        window.settle();
    }
    report(state);
}
BENCHMARK(typing)->Arg(small)->Arg(large)->Unit(benchmark::kMillisecond)->UseRealTime();

// To the first rows on the screen.
void openWindow(benchmark::State &state)
{
    Window window(state.range(0));
    begin();
    for (auto _ : state) {
        window.controller.emplace(window.history.store(), window.clipboard);
        window.controller->show();
        do
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        while (window.history.store().isReading());
        window.list().repaint();
        state.PauseTiming();
        window.settle();
        window.controller.reset();
        state.ResumeTiming();
    }
    report(state);
}
BENCHMARK(openWindow)
    ->Arg(small)
    ->Arg(large)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);

// A new width, until what shows has taken it up.
void resizeWindow(benchmark::State &state)
{
    Window window(small);
    window.open();
    QWidget &widget = window.window();
    const int width = widget.width();
    begin();
    for (auto _ : state) {
        widget.resize(widget.width() == width ? width + 40 : width, widget.height());
        QCoreApplication::processEvents();
    }
    report(state);
}
BENCHMARK(resizeWindow)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    MeteredApplication metered(argc, argv);
    application = &metered;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
