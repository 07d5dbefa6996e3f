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

bool send(int pipe, const void *data, qint64 size)
{
    const char *bytes = static_cast<const char *>(data);
    while (size > 0) {
        const ssize_t written = write(pipe, bytes, size);
        if (written <= 0)
            return false;
        bytes += written;
        size -= written;
    }
    return true;
}

bool receive(int pipe, void *data, qint64 size)
{
    char *bytes = static_cast<char *>(data);
    while (size > 0) {
        const ssize_t count = ::read(pipe, bytes, size);
        if (count <= 0)
            return false;
        bytes += count;
        size -= count;
    }
    return true;
}

struct Size
{
    int width = 0;
    int height = 0;
};

qint64 bytesOf(Pix *picture)
{
    return qint64(sizeof(l_uint32)) * pixGetWpl(picture) * pixGetHeight(picture);
}

bool sendPicture(int pipe, Pix *picture)
{
    const Size size{pixGetWidth(picture), pixGetHeight(picture)};
    return send(pipe, &size, sizeof size) && send(pipe, pixGetData(picture), bytesOf(picture));
}

PixPtr receivePicture(int pipe)
{
    Size size;
    if (!receive(pipe, &size, sizeof size))
        return nullptr;
    PixPtr picture(pixCreateNoInit(size.width, size.height, 8));
    if (!picture || !receive(pipe, pixGetData(picture.get()), bytesOf(picture.get())))
        return nullptr;
    return picture;
}

bool sendLines(int pipe, const QList<Line> &lines)
{
    QByteArray data;
    QDataStream stream(&data, QIODevice::WriteOnly);
    stream << lines;
    const qint64 size = data.size();
    return send(pipe, &size, sizeof size) && send(pipe, data.constData(), size);
}

std::optional<QList<Line>> receiveLines(int pipe)
{
    qint64 size = 0;
    if (!receive(pipe, &size, sizeof size))
        return std::nullopt;
    QByteArray data(size, Qt::Uninitialized);
    if (!receive(pipe, data.data(), size))
        return std::nullopt;
    QList<Line> lines;
    QDataStream stream(data);
    stream >> lines;
    return lines;
}

[[noreturn]] void work(const Job &job, int pictures, int readings)
{
    // Who waits for the readings is gone when the parent is.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // Few systems have models for vertical text, and there is nothing to say of it.
    if (job.vertical && !std::freopen("/dev/null", "w", stderr))
        _exit(1);
    Reader reader(job);
    if (!reader.isLoaded())
        _exit(1);
    while (const PixPtr picture = receivePicture(pictures)) {
        if (!sendLines(readings, reader.read(picture.get())))
            _exit(1);
    }
    _exit(0);
}

} // namespace

Workers::~Workers()
{
    for (Worker &worker : m_workers)
        giveUp(worker);
}

void Workers::giveUp(Worker &worker)
{
    if (worker.process < 0)
        return;
    close(worker.pictures);
    close(worker.readings);
    kill(worker.process, SIGKILL);
    waitpid(worker.process, nullptr, 0);
    worker.process = -1;
}

void Workers::start(const Job &job)
{
    int pictures[2];
    int readings[2];
    if (pipe(pictures) != 0)
        return;
    if (pipe(readings) != 0) {
        close(pictures[0]);
        close(pictures[1]);
        return;
    }
    const pid_t process = fork();
    if (process == 0) {
        close(pictures[1]);
        close(readings[0]);
        work(job, pictures[0], readings[1]);
    }
    // Only the worker keeps its ends, so that one that dies is noticed.
    close(pictures[0]);
    close(readings[1]);
    if (process > 0) {
        m_workers.push_back({job, process, pictures[1], readings[0]});
    } else {
        close(pictures[1]);
        close(readings[0]);
    }
}

std::vector<Reading> Workers::read(Pix *picture,
                                   const std::function<bool(const QByteArray &)> &isAsked)
{
    for (Worker &worker : m_workers) {
        worker.isAsked = worker.process > 0 && isAsked(worker.job.model) &&
                         sendPicture(worker.pictures, picture);
    }
    std::vector<Reading> answers;
    for (Worker &worker : m_workers) {
        if (worker.process < 0 || !isAsked(worker.job.model))
            continue;
        if (auto lines = worker.isAsked ? receiveLines(worker.readings) : std::nullopt) {
            answers.push_back({worker.job.model, std::move(*lines)});
            continue;
        }
        if (!worker.job.vertical)
            std::fprintf(stderr, "the model %s gave no reading\n", worker.job.model.constData());
        giveUp(worker);
    }
    return answers;
}

} // namespace nivora::ocr
