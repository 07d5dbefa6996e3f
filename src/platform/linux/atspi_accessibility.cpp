#include "platform_linux/atspi_accessibility.h"

#include "atspi_worker.h"
#include "platform/window_system.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace nivora::linuxdesktop {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto readBound = 300ms;
constexpr auto firstAnswerWait = 300ms;
// How often isTrusted() has a missing service looked for.
constexpr auto refreshPause = 1000ms;

using Element = AtspiWorker::Element;

// The worker's answer or, when that does not come in time, none.
class ReadOperation final : public platform::Operation
{
public:
    ReadOperation(const QFuture<Element> &future, std::function<void(Element)> done)
        : m_done(std::move(done))
    {
        connect(&m_watcher, &QFutureWatcherBase::finished, this, [this] {
            const auto watched = m_watcher.future();
            const auto element = watched.resultCount() > 0 ? watched.result() : Element();
            finish([&] { m_done(element); });
        });
        connect(&m_timer, &QTimer::timeout, this,
                [this] { finish([this] { m_done(std::nullopt); }); });
        m_timer.setSingleShot(true);
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.start(readBound);
        m_watcher.setFuture(future);
    }

private:
    void stop() override { m_timer.stop(); }

    QFutureWatcher<Element> m_watcher;
    QTimer m_timer;
    std::function<void(Element)> m_done;
};

// The name of the program file: stable, where what windows say of themselves may
// be translated.
QString programOf(qint64 process)
{
    return QFileInfo(QFileInfo(u"/proc/%1/exe"_s.arg(process)).symLinkTarget()).fileName();
}

} // namespace

AtspiAccessibility::AtspiAccessibility(const QString &sessionBus,
                                       const platform::WindowSystem &windows,
                                       std::function<int(qint64)> gtkScale)
    : m_windows(windows)
    , m_gtkScale(std::move(gtkScale))
    , m_status(std::make_shared<AtspiStatus>())
    , m_worker(new AtspiWorker(sessionBus, m_status))
{
    m_worker->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.setObjectName(u"accessibility"_s);
    m_thread.start();
    const auto process = activeForeignProcess().value_or(0);
    QMetaObject::invokeMethod(m_worker, [worker = m_worker, process] { worker->start(process); });
}

AtspiAccessibility::~AtspiAccessibility()
{
    m_thread.quit();
    m_thread.wait();
}

bool AtspiAccessibility::isTrusted() const
{
    const bool isFirst = !std::exchange(m_hasWaited, true);
    const bool trusted = m_status->trusted(isFirst ? firstAnswerWait : 0ms);
    const bool mayRefresh =
        !m_sinceRefresh.isValid() || m_sinceRefresh.hasExpired(refreshPause.count());
    if (!trusted && !isFirst && mayRefresh) {
        m_sinceRefresh.start();
        QMetaObject::invokeMethod(m_worker, &AtspiWorker::refresh);
    }
    return trusted;
}

void AtspiAccessibility::requestTrust()
{
    QMetaObject::invokeMethod(m_worker, &AtspiWorker::switchOn);
}

platform::Task AtspiAccessibility::readFocusedElement(
    std::function<void(std::optional<platform::FocusedElement>)> done)
{
    const auto process = activeForeignProcess();
    if (!process)
        return platform::delay(0ms, [done = std::move(done)] { done(std::nullopt); });

    auto promise = std::make_shared<QPromise<Element>>();
    auto future = promise->future();
    QMetaObject::invokeMethod(m_worker, [worker = m_worker, process = *process,
                                         scale = *process != 0 ? m_gtkScale(*process) : 1,
                                         promise = std::move(promise),
                                         deadline = QDeadlineTimer(readBound, Qt::PreciseTimer)] {
        worker->read(process, scale, deadline, *promise);
    });
    return platform::Task(new ReadOperation(future, [done = std::move(done)](Element element) {
        if (element)
            element->applicationId = programOf(element->processId);
        done(std::move(element));
    }));
}

bool AtspiAccessibility::requestExposure(qint64)
{
    return false;
}

std::optional<qint64> AtspiAccessibility::activeForeignProcess() const
{
    const auto window = m_windows.activeWindow();
    if (!window || window->processId == 0)
        return std::nullopt;
    return window->processId == QCoreApplication::applicationPid() ? 0 : window->processId;
}

} // namespace nivora::linuxdesktop
