// A process that other threads start and stop.

#include "RecordingProcess.h"

#include <zvutil/ZvAbstractIterativeProcess.h>

#include <QTest>

#include <thread>

using zvtest::deliver;
using zvtest::Process;

class tst_ZvAbstractIterativeProcess_threads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void otherThreadsStartStopAndRestart()
    {
        Process process(1'000'000'000);
        process.events.reserve(1'000);
        const std::thread::id own = std::this_thread::get_id();
        std::thread::id steppedOn;
        process.onStep = [&] {
            steppedOn = std::this_thread::get_id();
            process.events.pop_back();
        };
        for (int round = 0; round < 20; ++round) {
            std::thread starting([&] { process.start(); });
            starting.join();
            QVERIFY(!process.running());
            std::thread stopping;
            const auto began =
                connect(&process, &ZvAbstractIterativeProcess::started, &process, [&] {
                    // A restart's start that came behind the end of the run.
                    if (stopping.joinable())
                        return process.stop();
                    stopping = std::thread([&] {
                        if (round % 2 == 0)
                            process.stop();
                        else
                            process.restart();
                    });
                });
            deliver();
            stopping.join();
            disconnect(began);
            QVERIFY(!process.running());
            process.setSteps(0);
            deliver();
            process.setSteps(1'000'000'000);
        }
        QCOMPARE(steppedOn, own);
    }
};

QTEST_GUILESS_MAIN(tst_ZvAbstractIterativeProcess_threads)
#include "tst_ZvAbstractIterativeProcess_threads.moc"
