#include "child_process.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace nivora::test {

std::unique_ptr<QProcess> makeChildProcess()
{
    auto process = std::make_unique<QProcess>();
    const pid_t parent = getpid();
    process->setChildProcessModifier([parent] {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        // The parent may have died before the line above took effect.
        if (getppid() != parent)
            _exit(1);
    });
    return process;
}

void endProcess(QProcess &process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (!process.waitForFinished(1000)) {
        process.kill();
        process.waitForFinished(1000);
    }
}

} // namespace nivora::test
