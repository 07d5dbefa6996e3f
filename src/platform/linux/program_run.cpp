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

class ProgramOperation final : public platform::Operation
{
public:
    ProgramOperation(const Program &program, std::function<void(ProgramEnd)> done)
        : m_name(program.name)
        , m_done(std::move(done))
        , m_process(std::make_unique<QProcess>())
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const auto &[name, value] : program.variables)
            environment.insert(name, value);
        m_process->setProcessEnvironment(environment);
        // Queued: a start that fails says so at once.
        connect(
            m_process.get(), &QProcess::finished, this,
            [this](int status, QProcess::ExitStatus exit) {
                end(exit == QProcess::NormalExit && status == 0);
            },
            Qt::QueuedConnection);
        connect(
            m_process.get(), &QProcess::errorOccurred, this,
            [this](QProcess::ProcessError error) {
                if (error != QProcess::FailedToStart)
                    return;
                qCWarning(log::app).noquote() << m_name << "cannot be started";
                end(false);
            },
            Qt::QueuedConnection);
        if (program.bound) {
            m_bound = platform::delay(*program.bound, [this] {
                qCWarning(log::app).noquote() << m_name << "took too long and was ended";
                end(false);
            });
        }
        m_process->start(QCoreApplication::applicationDirPath() +
                             QStringLiteral("/" NIVORA_HELPERS "/") + program.name,
                         program.arguments);
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
        m_process->disconnect(this);
        if (m_process->state() == QProcess::NotRunning)
            return;
        m_process->kill();
        if (m_process->waitForFinished(killLimit))
            return;
        // Its destructor would wait longer.
        QProcess *process = m_process.release();
        connect(process, &QProcess::finished, process, &QObject::deleteLater);
    }

    QString m_name;
    std::function<void(ProgramEnd)> m_done;
    std::unique_ptr<QProcess> m_process;
    platform::Task m_bound;
};

} // namespace

platform::Task runProgram(const Program &program, std::function<void(ProgramEnd)> done)
{
    return platform::Task(new ProgramOperation(program, std::move(done)));
}

} // namespace nivora::linuxdesktop
