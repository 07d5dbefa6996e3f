#include "platform_linux/core_dumps.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

class TestCoreDumps : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // What the kernel says of a process that was allowed any core dump and has crashed.
    void aCrashLeavesOneUnlessForbidden()
    {
        const QTemporaryDir folder;
        const auto leavesDump = [&](bool forbidden) {
            const pid_t child = fork();
            if (child == 0) {
                const rlimit any = {RLIM_INFINITY, RLIM_INFINITY};
                setrlimit(RLIMIT_CORE, &any);
                if (forbidden)
                    nivora::linuxdesktop::forbidCoreDumps();
                std::signal(SIGSEGV, SIG_DFL);
                if (chdir(qPrintable(folder.path())) == 0)
                    raise(SIGSEGV);
                _exit(1);
            }
            int status = 0;
            waitpid(child, &status, 0);
            return WIFSIGNALED(status) && WCOREDUMP(status);
        };
        QVERIFY(!leavesDump(true));
        QVERIFY(QDir(folder.path()).isEmpty());
        if (!leavesDump(false))
            QSKIP("This system keeps no core dump of anything.");
    }
};

QTEST_GUILESS_MAIN(TestCoreDumps)
#include "tst_core_dumps.moc"
