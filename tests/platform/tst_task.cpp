#include "platform/task.h"

#include <QPromise>
#include <QTest>

using namespace nivora::platform;
using namespace std::chrono_literals;

class tst_task : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void callsBackOnceAndNeverFromWithinTheStart()
    {
        int calls = 0;
        const auto task = delay(0ms, [&] { ++calls; });
        QCOMPARE(calls, 0);
        QVERIFY(task.isRunning());
        QTRY_COMPARE(calls, 1);
        QVERIFY(!task.isRunning());
    }

    void nothingIsDeliveredAfterTheHandle_data()
    {
        QTest::addColumn<int>("how");
        QTest::newRow("cancelled") << 0;
        QTest::newRow("dropped") << 1;
        QTest::newRow("replaced") << 2;
    }

    void nothingIsDeliveredAfterTheHandle()
    {
        QFETCH(const int, how);
        bool delivered = false;
        bool later = false;
        Task task = delay(0ms, [&] { delivered = true; });
        if (how == 0)
            task.cancel();
        else if (how == 1)
            Task(std::move(task)).cancel();
        else
            task = Task();
        QVERIFY(!task.isRunning());
        const auto end = delay(20ms, [&] { later = true; });
        QTRY_VERIFY(later);
        QVERIFY(!delivered);
    }

    void callbackMayDropItsOwnHandle()
    {
        auto task = std::make_unique<Task>();
        bool delivered = false;
        *task = delay(0ms, [&] {
            task.reset();
            delivered = true;
        });
        QTRY_VERIFY(delivered);
        QVERIFY(!task);
    }

    void answerOfAWorkerArrives()
    {
        QPromise<int> promise;
        promise.start();
        int answer = 0;
        const auto task = whenFinished<int>(promise.future(), [&](int value) { answer = value; });
        promise.addResult(42);
        promise.finish();
        QCOMPARE(answer, 0);
        QTRY_COMPARE(answer, 42);
    }

    void workerThatGivesUpAnswersNothing()
    {
        std::optional<int> answer;
        Task task;
        {
            QPromise<std::optional<int>> promise;
            promise.start();
            answer = 1;
            task = whenFinished<std::optional<int>>(
                promise.future(), [&](std::optional<int> value) { answer = value; });
        }
        QTRY_VERIFY(!answer);
        QVERIFY(!task.isRunning());
    }
};

QTEST_GUILESS_MAIN(tst_task)
#include "tst_task.moc"
