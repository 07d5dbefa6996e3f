#include "program_run.h"

#include "platform/log.h"

#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

namespace {

constexpr qint64 maxOutput = 1024 * 1024;
constexpr qsizetype maxLogged = 400;
// A process that was killed is gone as soon as the kernel gets to it.
constexpr int killLimit = 200; // milliseconds

std::unique_ptr<QProcess> startedProcess(const Program &program)
{
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const auto &[name, value] : program.variables)
        environment.insert(name, value);
    process->setProcessEnvironment(environment);
    process->start(QCoreApplication::applicationDirPath() + QStringLiteral("/" NIVORA_HELPERS "/") +
                       program.name,
                   program.arguments);
    return process;
}

void endProcess(std::unique_ptr<QProcess> process)
{
    if (!process || process->state() == QProcess::NotRunning)
        return;
    process->kill();
    if (process->waitForFinished(killLimit))
        return;
    // Its destructor would wait longer.
    QProcess *left = process.release();
    QObject::connect(left, &QProcess::finished, left, &QObject::deleteLater);
}

class ProgramOperation final : public platform::Operation
{
public:
    ProgramOperation(std::unique_ptr<QProcess> process, const Program &program,
                     std::function<void(ProgramEnd)> done)
        : m_name(program.name)
        , m_done(std::move(done))
        , m_process(std::move(process))
    {
        if (program.bound) {
            m_bound = platform::delay(*program.bound, [this] {
                qCWarning(log::app).noquote() << m_name << "took too long and was ended";
                end(false);
            });
        }
        // A start that failed at once has told of it already.
        if (m_process->state() == QProcess::NotRunning) {
            m_failure = platform::delay(std::chrono::milliseconds(0), [this] { failToStart(); });
            return;
        }
        // Queued: what they call destroys the process.
        connect(
            m_process.get(), &QProcess::finished, this,
            [this](int status, QProcess::ExitStatus exit) {
                end(exit == QProcess::NormalExit && status == 0);
            },
            Qt::QueuedConnection);
        connect(
            m_process.get(), &QProcess::errorOccurred, this,
            [this](QProcess::ProcessError error) {
                if (error == QProcess::FailedToStart)
                    failToStart();
            },
            Qt::QueuedConnection);
        m_process->write(program.input);
        m_process->closeWriteChannel();
    }

private:
    void end(bool succeeded)
    {
        if (!isRunning())
            return;
        const ProgramEnd result{succeeded, succeeded ? m_process->read(maxOutput) : QByteArray()};
        logErrors();
        finish([&] { m_done(result); });
    }

    void failToStart()
    {
        if (!isRunning())
            return;
        qCWarning(log::app).noquote() << m_name << "cannot be started";
        end(false);
    }

    void logErrors()
    {
        const QByteArray said = m_process->readAllStandardError().left(maxLogged).trimmed();
        for (const QByteArray &line : said.split('\n')) {
            if (!line.isEmpty())
                qCWarning(log::app).noquote() << m_name + u':' << line;
        }
    }

    void stop() override
    {
        m_bound.cancel();
        m_failure.cancel();
        m_process->disconnect(this);
        endProcess(std::move(m_process));
    }

    QString m_name;
    std::function<void(ProgramEnd)> m_done;
    std::unique_ptr<QProcess> m_process;
    platform::Task m_bound;
    platform::Task m_failure;
};

} // namespace

ReadyProgram::ReadyProgram(const Program &program)
    : m_process(startedProcess(program))
{
}

ReadyProgram::~ReadyProgram()
{
    endProcess(std::move(m_process));
}

platform::Task runProgram(std::unique_ptr<ReadyProgram> ready, const Program &program,
                          std::function<void(ProgramEnd)> done)
{
    std::unique_ptr<QProcess> process = ready ? std::move(ready->m_process) : nullptr;
    if (!process || process->state() == QProcess::NotRunning)
        process = startedProcess(program);
    return platform::Task(new ProgramOperation(std::move(process), program, std::move(done)));
}

platform::Task runProgram(const Program &program, std::function<void(ProgramEnd)> done)
{
    return runProgram(nullptr, program, std::move(done));
}

} // namespace nivora::linuxdesktop
