#include "workers.h"

#include <QDataStream>
#include <QIODevice>

#include <csignal>
#include <cstdio>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace nivora::ocr {

static QDataStream &operator<<(QDataStream &stream, const Symbol &symbol)
{
    return stream << symbol.text << symbol.confidence << symbol.box;
}

static QDataStream &operator>>(QDataStream &stream, Symbol &symbol)
{
    return stream >> symbol.text >> symbol.confidence >> symbol.box;
}

static QDataStream &operator<<(QDataStream &stream, const Line &line)
{
    return stream << line.text << line.confidence << line.box << line.symbols;
}

static QDataStream &operator>>(QDataStream &stream, Line &line)
{
    return stream >> line.text >> line.confidence >> line.box >> line.symbols;
}

namespace {

struct Worker
{
    Job job;
    pid_t process = -1;
    int output = -1;
    QByteArray data = {};
};

[[noreturn]] void work(Pix *picture, const Job &job, int output)
{
    // Who waits for the reading is gone when the parent is.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // Few systems have models for vertical text, and there is nothing to say of it.
    if (job.vertical && !std::freopen("/dev/null", "w", stderr))
        _exit(1);
    const auto reading = read(picture, job);
    if (!reading)
        _exit(1);
    QByteArray data;
    QDataStream stream(&data, QIODevice::WriteOnly);
    stream << reading->lines;
    for (qsizetype sent = 0; sent < data.size();) {
        const ssize_t written = write(output, data.constData() + sent, data.size() - sent);
        if (written <= 0)
            _exit(1);
        sent += written;
    }
    _exit(0);
}

void start(Worker &worker, Pix *picture)
{
    int ends[2];
    if (pipe(ends) != 0)
        return;
    worker.process = fork();
    if (worker.process == 0) {
        close(ends[0]);
        work(picture, worker.job, ends[1]);
    }
    close(ends[1]);
    worker.output = ends[0];
}

// Waits until the worker closes its end; the others go on meanwhile.
void collect(Worker &worker)
{
    if (worker.output < 0)
        return;
    char buffer[4096];
    ssize_t count = 0;
    while ((count = ::read(worker.output, buffer, sizeof buffer)) > 0)
        worker.data.append(buffer, count);
    close(worker.output);
}

bool hasSucceeded(const Worker &worker)
{
    int status = 0;
    return worker.process > 0 && waitpid(worker.process, &status, 0) > 0 && WIFEXITED(status) &&
           WEXITSTATUS(status) == 0;
}

} // namespace

std::vector<Reading> readAll(Pix *picture, const std::vector<Job> &jobs)
{
    std::vector<Worker> workers;
    for (const Job &job : jobs)
        start(workers.emplace_back(Worker{job}), picture);
    std::vector<Reading> readings;
    for (Worker &worker : workers) {
        collect(worker);
        if (!hasSucceeded(worker)) {
            if (!worker.job.vertical)
                std::fprintf(stderr, "the model %s gave no reading\n",
                             worker.job.model.constData());
            continue;
        }
        Reading reading{worker.job.model, {}};
        QDataStream stream(worker.data);
        stream >> reading.lines;
        readings.push_back(std::move(reading));
    }
    return readings;
}

} // namespace nivora::ocr
