#include "RecordingProcess.h"

#include <zvutil/ZvAbstractIterativeProcess.h>

#include <QAbstractEventDispatcher>
#include <QEventLoop>
#include <QMetaMethod>
#include <QTest>
#include <QTimer>
#include <QTimerEvent>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

using zvtest::deliver;
using zvtest::Events;
using zvtest::Process;

namespace {

/// Without what `start` emits itself.
Events withoutRequests(const Events& events)
{
    Events result;
    for (const std::string& event : events) {
        if (event.rfind("startRequested", 0) != 0)
            result.push_back(event);
    }
    return result;
}

} // namespace

class tst_ZvAbstractIterativeProcess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject()
    {
        const QMetaObject& meta = ZvAbstractIterativeProcess::staticMetaObject;
        QCOMPARE(meta.className(), "ZvAbstractIterativeProcess");
        const QByteArray expected[] = {"finished()", "restarted()", "started()", "startRequested()",
                                       "stopRequested()"};
        int index = meta.methodOffset();
        QCOMPARE(meta.methodCount() - index, 5);
        for (const QByteArray& signature : expected) {
            QCOMPARE(meta.method(index).methodSignature(), signature);
            QCOMPARE(meta.method(index++).methodType(), QMetaMethod::Signal);
        }
        static_assert(std::is_abstract_v<ZvAbstractIterativeProcess>);
        static_assert(std::has_virtual_destructor_v<ZvAbstractIterativeProcess>);
    }

    void signalsArePrivate()
    {
        // An emission from outside would need the private type of the last parameter.
        static_assert(!std::is_invocable_v<decltype(&ZvAbstractIterativeProcess::finished),
                                           ZvAbstractIterativeProcess&>);
        static_assert(!std::is_invocable_v<decltype(&ZvAbstractIterativeProcess::restarted),
                                           ZvAbstractIterativeProcess&>);
        static_assert(!std::is_invocable_v<decltype(&ZvAbstractIterativeProcess::started),
                                           ZvAbstractIterativeProcess&>);
        static_assert(!std::is_invocable_v<decltype(&ZvAbstractIterativeProcess::startRequested),
                                           ZvAbstractIterativeProcess&>);
        static_assert(!std::is_invocable_v<decltype(&ZvAbstractIterativeProcess::stopRequested),
                                           ZvAbstractIterativeProcess&>);
    }

    void parentOwns()
    {
        struct Empty : ZvAbstractIterativeProcess
        {
            using ZvAbstractIterativeProcess::ZvAbstractIterativeProcess;
            bool hasMoreWork() override { return false; }
            void processStep() override { }
        };
        QObject parent;
        QCOMPARE((new Empty(&parent))->parent(), &parent);
        QCOMPARE((new Empty(5, &parent))->parent(), &parent);
        QCOMPARE(Empty().parent(), static_cast<QObject*>(nullptr));
        QVERIFY(!Empty().running());
    }

    void startIsQueued()
    {
        Process process(2);
        process.start();
        QCOMPARE(process.events, Events{"startRequested"});
        QVERIFY(!process.running());
        deliver();
        QCOMPARE(process.events,
                 (Events{"startRequested", "started, running", "step", "step", "finished"}));
        QVERIFY(!process.running());
    }

    void eventsAreHandledOnceAfterEachStep()
    {
        Process process(3);
        QObject context;
        process.onStep = [&] {
            QMetaObject::invokeMethod(
                &context, [&] { process.events.push_back("event"); }, Qt::QueuedConnection);
        };
        process.start();
        deliver();
        QCOMPARE(withoutRequests(process.events),
                 (Events{"started, running", "step", "event", "step", "event", "step", "event",
                         "finished"}));
    }

    void allEventTypesAreHandled()
    {
        // Started by the run itself: Windows has timers of no interval fire along with posted events,
        // so one that was there before would find the run not yet begun.
        Process process(1'000'000);
        QObject context;
        bool ticked = false;
        connect(&process, &Process::started, &context, [&] {
            QTimer::singleShot(0, &context, [&] {
                ticked = true;
                process.stop();
            });
        });
        process.start();
        deliver();
        QTRY_VERIFY(ticked && !process.running());
        QCOMPARE(process.events.back(), std::string("finished"));
    }

    void withoutWorkThereIsNoStep()
    {
        Process process(0);
        process.start();
        deliver();
        QCOMPARE(withoutRequests(process.events), (Events{"started, running", "finished"}));
    }

    void secondStartFindsTheFirstRunOver()
    {
        // The first run handles no events, since it has no step, so the second start comes behind
        // it.
        Process process(0);
        process.start();
        process.start();
        deliver();
        QCOMPARE(withoutRequests(process.events),
                 (Events{"started, running", "finished", "started, running", "finished"}));
    }

    void secondStartDuringTheFirstRunIsDropped()
    {
        Process process(2);
        process.start();
        process.start();
        deliver();
        deliver();
        QCOMPARE(withoutRequests(process.events),
                 (Events{"started, running", "step", "step", "finished"}));
    }

    void startFromAFinishedSlotRunsAgain()
    {
        Process process(1);
        bool again = true;
        connect(&process, &ZvAbstractIterativeProcess::finished, &process, [&] {
            if (std::exchange(again, false)) {
                process.setSteps(1);
                process.start();
            }
        });
        process.start();
        deliver();
        deliver();
        QCOMPARE(withoutRequests(process.events),
                 (Events{"started, running", "step", "finished", "started, running", "step",
                         "finished"}));
    }

    void stopBeforeTheStartIsDeliveredHasNoEffect()
    {
        Process process(1);
        process.start();
        process.stop();
        deliver();
        QCOMPARE(
            process.events,
            (Events{"startRequested", "stopRequested", "started, running", "step", "finished"}));
    }

    void stopWhenIdleHasNoEffect()
    {
        Process process(1);
        process.stop();
        deliver();
        QCOMPARE(process.events, Events{"stopRequested"});
        process.start();
        deliver();
        QCOMPARE(process.events.back(), std::string("finished"));
        QCOMPARE(std::count(process.events.begin(), process.events.end(), "step"), 1);
    }

    void stopEndsTheRunBeforeTheQuestionForWork()
    {
        Process process(10);
        int questions = 0;
        process.onQuestion = [&] { ++questions; };
        process.onStep = [&] { process.stop(); };
        process.start();
        deliver();
        QCOMPARE(withoutRequests(process.events),
                 (Events{"started, running", "step", "stopRequested, running", "finished"}));
        QCOMPARE(questions, 1);
    }

    void stopInAStartedSlotPreventsTheFirstStep()
    {
        Process process(10);
        int questions = 0;
        process.onQuestion = [&] { ++questions; };
        connect(&process, &ZvAbstractIterativeProcess::started, &process, [&] { process.stop(); });
        process.start();
        deliver();
        QCOMPARE(withoutRequests(process.events),
                 (Events{"started, running", "stopRequested, running", "finished"}));
        QCOMPARE(questions, 0);
    }

    void stopFromAnEventBetweenSteps()
    {
        Process process(10);
        QObject context;
        process.onStep = [&] {
            QMetaObject::invokeMethod(
                &context, [&] { process.stop(); }, Qt::QueuedConnection);
        };
        process.start();
        deliver();
        QCOMPARE(withoutRequests(process.events),
                 (Events{"started, running", "step", "stopRequested, running", "finished"}));
    }

    void stopThatWaitedBeforeTheRunEndsItBehindTheFirstStep()
    {
        Process process(1000);
        std::thread([&] { process.start(); }).join();
        std::thread([&] { process.stop(); }).join();
        QEventLoop loop;
        connect(&process, &ZvAbstractIterativeProcess::finished, &loop, &QEventLoop::quit);
        loop.exec();
        QCOMPARE(std::count(process.events.begin(), process.events.end(), "step"), 1);
    }

    void restartOutsideARunStarts()
    {
        Process process(1);
        process.restart();
        QCOMPARE(process.events, (Events{"stopRequested", "restarted", "startRequested"}));
        deliver();
        QCOMPARE(process.events,
                 (Events{"stopRequested", "restarted", "startRequested", "started, running", "step",
                         "finished"}));
    }

    void restartWithinARunEndsIt()
    {
        // The queued start is delivered by the very handling of events that ends the run.
        Process process(10);
        process.onStep = [&] { process.restart(); };
        process.start();
        deliver();
        deliver();
        QCOMPARE(withoutRequests(process.events),
                 (Events{"started, running", "step", "stopRequested, running", "restarted, running",
                         "finished"}));
    }

    void restartByAnEventBetweenStepsRunsAgain()
    {
        // The start is posted while events are handled, so it comes after the run has ended.
        Process process(5);
        process.onStep = [&] {
            if (process.events.back() == "step" && process.events.size() == 2)
                QMetaObject::invokeMethod(
                    &process, [&process] { process.restart(); }, Qt::QueuedConnection);
        };
        process.start();
        process.events.clear();
        deliver();
        QVERIFY(!process.running());
        deliver();
        QCOMPARE(process.events,
                 (Events{"started, running", "step", "stopRequested, running", "restarted, running",
                         "startRequested, running", "finished", "started, running", "step", "step",
                         "step", "step", "finished"}));
    }

    void restartInAFinishedSlotRunsAgain()
    {
        Process process(1);
        bool again = true;
        connect(&process, &ZvAbstractIterativeProcess::finished, &process, [&] {
            if (std::exchange(again, false)) {
                process.setSteps(1);
                process.restart();
            }
        });
        process.start();
        deliver();
        deliver();
        QCOMPARE(std::count(process.events.begin(), process.events.end(), "step"), 2);
        QCOMPARE(process.events.back(), std::string("finished"));
    }

    void statusIsReportedAtTheEndOfAShortRun()
    {
        Process process(1, 3'600'000);
        process.start();
        deliver();
        QCOMPARE(withoutRequests(process.events),
                 (Events{"started, running", "step", "last report", "finished"}));
    }

    void statusIsReportedAtEachTick()
    {
        Process process(1'000'000, 0);
        int reports = 0;
        process.onReport = [&] {
            if (++reports == 3)
                process.stop();
        };
        process.start();
        deliver();
        QTRY_VERIFY(!process.running() && reports > 3);
        QCOMPARE(reports, 4);
        QCOMPARE(process.events[process.events.size() - 2], std::string("last report"));
        // No tick comes when the run is over.
        QTest::qWait(1);
        QCOMPARE(reports, 4);
    }

    void withoutAnIntervalThereIsNoReport()
    {
        Process process(3);
        process.start();
        deliver();
        QCOMPARE(std::count(process.events.begin(), process.events.end(), "last report"), 0);
        process.stop();
        QCOMPARE(std::count(process.events.begin(), process.events.end(), "report"), 0);
    }

    void timerRunsDuringTheRunAlone()
    {
        Process process(2, 3'600'000);
        std::vector<int> timers;
        const auto count = [&] {
            timers.push_back(
                QAbstractEventDispatcher::instance()->registeredTimers(&process).size());
        };
        process.onStep = count;
        process.onReport = count;
        process.start();
        deliver();
        // It has been stopped when the last report is made.
        QCOMPARE(timers, (std::vector{1, 1, 0}));
    }

    void everyRunReports()
    {
        Process process(1, 3'600'000);
        for (int run = 0; run < 3; ++run) {
            process.setSteps(1);
            process.start();
            deliver();
        }
        QCOMPARE(std::count(process.events.begin(), process.events.end(), "last report"), 3);
    }

    void timersOfASubclassReachIt()
    {
        struct WithTimer : Process
        {
            using Process::Process;
            void timerEvent(QTimerEvent* event) override
            {
                ticks.push_back(event->timerId());
                Process::timerEvent(event);
            }
            std::vector<int> ticks;
        };
        WithTimer process(0, 3'600'000);
        const int own = process.startTimer(0);
        QTRY_VERIFY(!process.ticks.empty());
        process.killTimer(own);
        QCOMPARE(process.ticks.front(), own);
        QVERIFY(process.events.empty());
    }

    void exceptionEndsTheRunWithoutAWord_data()
    {
        QTest::addColumn<QString>("where");
        for (const char* where : {"started", "hasMoreWork", "processStep", "event"})
            QTest::newRow(where) << QString::fromLatin1(where);
    }

    void exceptionEndsTheRunWithoutAWord()
    {
        QFETCH(QString, where);
        const auto fail = [] { throw std::runtime_error("from the test"); };
        Process process(5, 3'600'000);
        QMetaObject::Connection failing;
        if (where == "started")
            failing = connect(&process, &ZvAbstractIterativeProcess::started, &process, fail);
        else if (where == "hasMoreWork")
            process.onQuestion = fail;
        else if (where == "processStep")
            process.onStep = fail;
        else
            process.onStep = [&] {
                QMetaObject::invokeMethod(&process, fail, Qt::QueuedConnection);
            };
        process.start();
        deliver();
        QVERIFY(!process.running());
        QCOMPARE(std::count(process.events.begin(), process.events.end(), "finished"), 0);
        QCOMPARE(std::count(process.events.begin(), process.events.end(), "last report"), 0);

        // Nothing of it is left behind for the next run.
        disconnect(failing);
        process.onQuestion = nullptr;
        process.onStep = nullptr;
        process.setSteps(1);
        process.events.clear();
        process.start();
        deliver();
        QCOMPARE(withoutRequests(process.events),
                 (Events{"started, running", "step", "last report", "finished"}));
    }

    void afterAnExceptionTheTimerGoesOn()
    {
        Process process(5, 0);
        process.onStep = [] { throw 7; };
        process.start();
        deliver();
        QVERIFY(!process.running());
        // Told apart by `running`: these are ticks, though no run is under way.
        QTRY_VERIFY(std::count(process.events.begin(), process.events.end(), "last report") > 2);
        QCOMPARE(std::count(process.events.begin(), process.events.end(), "finished"), 0);

        process.onStep = nullptr;
        process.start();
        QTRY_COMPARE(process.events.back(), std::string("finished"));
        const std::size_t count = process.events.size();
        QTest::qWait(1);
        QCOMPARE(process.events.size(), count);
    }

    void destroyedWithAnActiveTimer()
    {
        auto process = std::make_unique<Process>(5, 0);
        process->onStep = [] { throw 7; };
        process->start();
        deliver();
        process.reset();
        QTest::qWait(1);
    }

    void destroyedWithAWaitingStart()
    {
        auto process = std::make_unique<Process>(5);
        process->start();
        process.reset();
        deliver();
    }
};

QTEST_GUILESS_MAIN(tst_ZvAbstractIterativeProcess)
#include "tst_ZvAbstractIterativeProcess.moc"
