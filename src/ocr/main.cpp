// Reads the text in a picture: the picture, in any usual format, on standard
// input; the text in UTF-8, line by line, on standard output.
//
//   nivora-ocr ja-JP zh-Hans zh-Hant en-US
//
// Exit status: 0 the picture was read, and may hold no text; 1 it could not be
// read, which standard error explains; 2 wrong arguments.
//
// It is to be started with OMP_THREAD_LIMIT=1: the engine's own threads make it
// several times slower, and cannot be kept out from here.

#include "choice.h"
#include "parts.h"
#include "picture.h"
#include "workers.h"

#include <csignal>
#include <cstdio>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace nivora::ocr;

namespace {

// Of each process: a picture of the greatest size with its copies, and a model.
constexpr rlim_t memoryLimit = 1'536ul * 1024 * 1024;
constexpr rlim_t secondsOfWork = 60;
// As large as the greatest picture is in memory.
constexpr qint64 maxInput = 256ll * 1024 * 1024;

struct LanguageModel
{
    const char *language;
    const char *model;
    const char *verticalModel;
};
constexpr LanguageModel models[] = {
    {"ja-JP", "jpn", "jpn_vert"},
    {"zh-Hans", "chi_sim", "chi_sim_vert"},
    {"zh-Hant", "chi_tra", "chi_tra_vert"},
    {"en-US", "eng", nullptr},
};

void limitOurselves()
{
    // What the sanitizers reserve at the start is far above any limit.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    const rlimit memory{memoryLimit, memoryLimit};
    setrlimit(RLIMIT_AS, &memory);
#endif
    const rlimit time{secondsOfWork, secondsOfWork};
    setrlimit(RLIMIT_CPU, &time);
    // What was on the screen shall not lie about.
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

// As far as the limit; the rest of a picture that is larger is missing.
QByteArray standardInput()
{
    QByteArray data;
    char buffer[65536];
    ssize_t count = 0;
    while (data.size() < maxInput && (count = read(STDIN_FILENO, buffer, sizeof buffer)) > 0)
        data.append(buffer, count);
    return data;
}

} // namespace

int main(int argc, char *argv[])
{
    limitOurselves();
    std::vector<const LanguageModel *> wished;
    for (int i = 1; i < argc; ++i) {
        for (const LanguageModel &each : models) {
            if (qstrcmp(each.language, argv[i]) == 0)
                wished.push_back(&each);
        }
    }
    if (wished.empty()) {
        std::fputs("usage: nivora-ocr LANGUAGE... <PICTURE\n", stderr);
        return 2;
    }

    setMsgSeverity(L_SEVERITY_NONE);
    // A worker that is gone shall not take this process with it.
    std::signal(SIGPIPE, SIG_IGN);
    // Models load while the picture is on its way.
    Workers workers;
    for (const LanguageModel *each : wished)
        workers.start({each->model, false});

    PixPtr picture = readablePicture(standardInput());
    if (!picture)
        return 1;
    const Direction direction = directionOf(picture.get());
    if (direction != Direction::Across) {
        for (const LanguageModel *each : wished) {
            if (each->verticalModel)
                workers.start({each->verticalModel, true});
        }
    }
    const std::vector<Reading> readings = readingsOf(workers, picture.get(), direction);
    if (readings.empty())
        return 1;
    const QByteArray text = bestText(readings).toUtf8();
    std::fwrite(text.constData(), 1, text.size(), stdout);
    return std::fflush(stdout) == 0 ? 0 : 1;
}
