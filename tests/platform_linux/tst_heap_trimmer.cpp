#include "platform_linux/heap_trimmer.h"

#include <QFile>
#include <QGuiApplication>
#include <QTest>

#include <array>
#include <memory>
#include <unistd.h>
#include <vector>

using namespace nivora;
using namespace std::chrono_literals;

class TestHeapTrimmer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void freeMemoryGoesBackOnceNoWindowIsInUse();
};

// In bytes.
static qint64 residentMemory()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    // In pages: all that is mapped, what is resident of it.
    return file.open(QIODevice::ReadOnly)
               ? file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE)
               : 0;
}

void TestHeapTrimmer::freeMemoryGoesBackOnceNoWindowIsInUse()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    QSKIP("This build has a heap of its own.");
#endif
    constexpr int size = 8 << 10;
    constexpr int count = 4000;
    const linuxdesktop::HeapTrimmer trimmer(*qGuiApp, 10ms);
    // What is freed below a block in use stays with the heap.
    std::vector<std::unique_ptr<std::array<char, size>>> blocks;
    for (int i = 0; i < count; ++i)
        (blocks.emplace_back(new std::array<char, size>))->fill(1);
    const auto last = std::move(blocks.back());
    blocks.clear();
    const qint64 full = residentMemory();
    QVERIFY(full > size * count);

    Q_EMIT qGuiApp->focusWindowChanged(nullptr);
    QTRY_VERIFY(residentMemory() < full - size * count / 4 * 3);
}

QTEST_MAIN(TestHeapTrimmer)
#include "tst_heap_trimmer.moc"
