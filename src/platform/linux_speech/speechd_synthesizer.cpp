#include "platform_linux_speech/speechd_synthesizer.h"

#include "platform/log.h"

#include "speechd_worker.h"

#include <QThread>
#include <QTimer>

#include <csignal>

namespace nivora::linuxdesktop {

using namespace std::chrono_literals;

namespace {

// Starting the service, with its modules, takes a second or two.
constexpr auto answerLimit = 10s;
constexpr auto endLimit = 2s;

// The worker's thread. The library writes to a socket whose other end may be gone,
// and must not end the program by that.
class SpeechdThread final : public QThread
{
    void run() override
    {
        sigset_t pipe;
        sigemptyset(&pipe);
        sigaddset(&pipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
        exec();
    }
};

// A request under way, which fails when nothing is heard of it for too long.
class Request : public platform::Operation
{
public:
    Request(SpeechdWorker &worker, quint64 number)
        : m_worker(worker)
        , m_number(number)
    {
        m_limit.setSingleShot(true);
        m_limit.callOnTimeout(this, [this] {
            qCWarning(log::app, "The speech service does not answer");
            m_worker.interrupt();
            fail();
        });
        m_limit.start(answerLimit);
    }

protected:
    virtual void fail() = 0;
    void heard() { m_limit.stop(); }
    void stop() override { m_limit.stop(); }

    SpeechdWorker &m_worker;
    const quint64 m_number;

private:
    QTimer m_limit;
};

class VoiceRequest final : public Request
{
public:
    using Done = std::function<void(SpeechdWorker::Voices)>;

    VoiceRequest(SpeechdWorker &worker, quint64 number, Done done)
        : Request(worker, number)
        , m_done(std::move(done))
    {
        connect(&worker, &SpeechdWorker::voicesRead, this,
                [this](quint64 request, const SpeechdWorker::Voices &voices) {
                    if (request == m_number)
                        finish([&] { m_done(voices); });
                });
        QMetaObject::invokeMethod(&worker, [&worker, number] { worker.readVoices(number); });
    }

private:
    void fail() override
    {
        finish([this] { m_done(std::nullopt); });
    }

    Done m_done;
};

class SpeechRequest final : public Request
{
public:
    using End = platform::SpeechSynthesizer::End;

    SpeechRequest(SpeechdWorker &worker, quint64 number, const platform::Utterance &utterance,
                  std::function<void()> started, std::function<void(End)> ended)
        : Request(worker, number)
        , m_started(std::move(started))
        , m_ended(std::move(ended))
    {
        connect(&worker, &SpeechdWorker::started, this, [this](quint64 request) {
            if (request != m_number)
                return;
            heard();
            deliver(m_started);
        });
        connect(&worker, &SpeechdWorker::ended, this, [this](quint64 request, End end) {
            if (request == m_number)
                finish([&] { m_ended(end); });
        });
        worker.setWanted(number);
        QMetaObject::invokeMethod(
            &worker, [&worker, number, utterance] { worker.speak(number, utterance); });
    }

private:
    void fail() override
    {
        finish([this] { m_ended(End::Failed); });
    }
    void stop() override
    {
        Request::stop();
        m_worker.dropWanted(m_number);
        QMetaObject::invokeMethod(
            &m_worker, [&worker = m_worker, number = m_number] { worker.cancel(number); });
    }

    std::function<void()> m_started;
    std::function<void(End)> m_ended;
};

} // namespace

struct SpeechdSynthesizer::Parts
{
    platform::JapaneseTokenizer &tokenizer;
    quint64 requests = 0;
    std::unique_ptr<SpeechdThread> thread = {};
    SpeechdWorker *worker = nullptr; // lives in the thread and ends with it

    SpeechdWorker &running();
};

SpeechdWorker &SpeechdSynthesizer::Parts::running()
{
    if (!worker) {
        thread = std::make_unique<SpeechdThread>();
        thread->setObjectName(u"speech");
        worker = new SpeechdWorker(tokenizer);
        worker->moveToThread(thread.get());
        QObject::connect(thread.get(), &QThread::finished, worker, &QObject::deleteLater);
        thread->start();
    }
    return *worker;
}

SpeechdSynthesizer::SpeechdSynthesizer(platform::JapaneseTokenizer &tokenizer)
    : m_parts(new Parts{tokenizer})
{
}

SpeechdSynthesizer::~SpeechdSynthesizer()
{
    if (!m_parts->worker)
        return;
    m_parts->worker->setWanted(0);
    QMetaObject::invokeMethod(m_parts->worker, [worker = m_parts->worker] { worker->end(); });
    m_parts->thread->quit();
    if (m_parts->thread->wait(QDeadlineTimer(endLimit / 2)))
        return;
    m_parts->worker->interrupt();
    if (m_parts->thread->wait(QDeadlineTimer(endLimit / 2)))
        return;
    // A thread that the library holds cannot be ended, nor may its object be.
    qCWarning(log::app, "The speech service's thread does not end");
    m_parts->worker->abandon();
    m_parts->thread.release();
}

platform::Task SpeechdSynthesizer::readVoices(
    std::function<void(std::optional<std::vector<platform::SpeechVoice>>)> done)
{
    return platform::Task(
        new VoiceRequest(m_parts->running(), ++m_parts->requests, std::move(done)));
}

platform::Task SpeechdSynthesizer::speak(const platform::Utterance &utterance,
                                         std::function<void()> started,
                                         std::function<void(End)> ended)
{
    return platform::Task(new SpeechRequest(m_parts->running(), ++m_parts->requests, utterance,
                                            std::move(started), std::move(ended)));
}

} // namespace nivora::linuxdesktop
