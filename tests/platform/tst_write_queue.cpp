#include "platform/write_queue.h"

#include <QElapsedTimer>
#include <QTest>

#include <latch>

using namespace nivora::platform;

class TestWriteQueue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nobodyWaitsLongForWhatKeepsItsOrder()
    {
        const auto written = std::make_shared<std::string>();
        const auto disk = std::make_shared<std::latch>(1);
        {
            WriteQueue queue;
            QVERIFY(queue.run([=] { *written += 'a'; }));
            QCOMPARE(*written, "a");

            QElapsedTimer elapsed;
            elapsed.start();
            QVERIFY(!queue.run([=] {
                disk->wait();
                *written += 'b';
            }));
            QVERIFY(elapsed.elapsed() >= 49 && elapsed.restart() < 500);
            for (const char sign : {'c', 'd'})
                QVERIFY(!queue.run([=] { *written += sign; }));
            QVERIFY(!queue.replace([=] { *written += 'e'; }));
            QVERIFY(!queue.run([=] { *written += 'f'; }));
            QVERIFY(elapsed.elapsed() < 40 && !queue.isIdle());

            disk->count_down();
            QVERIFY(queue.isIdle(std::chrono::seconds(5)));
            QCOMPARE(*written, "abef");
            queue.start([=] { *written += 'g'; });
        } // whose end waits
        QCOMPARE(*written, "abefg");
    }

    void theEndIsBounded()
    {
        const auto disk = std::make_shared<std::latch>(1);
        QElapsedTimer elapsed;
        {
            WriteQueue queue;
            queue.start([=] { disk->wait(); });
            elapsed.start();
        }
        QVERIFY(elapsed.elapsed() >= 1900 && elapsed.elapsed() < 4000);
        disk->count_down();
    }
};

QTEST_GUILESS_MAIN(TestWriteQueue)
#include "tst_write_queue.moc"
