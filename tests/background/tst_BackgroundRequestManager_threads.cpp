// Requests that come, wait and end on the threads of their managers.

#include "ManagedRequests.h"

#include "support/Background.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using zvtest::BlockingWork;
using zvtest::Gate;
using zvtest::Journal;
using zvtest::leaveOpen;
using zvtest::Lines;
using zvtest::ManagerWithWorker;
using zvtest::recorded;
using zvtest::Request;
using zvtest::waitForLines;
using zvtest::waitUntilStarted;
using namespace zvutil::libzvutil;

namespace {

/// Waits for the end of a request on the worker's own thread.
using Wait = std::function<void(abstract_response& response)>;

} // namespace

Q_DECLARE_METATYPE(Wait)

class tst_BackgroundRequestManager_threads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void completionComesBackToTheCaller()
    {
        Journal onRequest;
        Journal onResponse;
        ManagerWithWorker managed;
        auto request = recorded(onRequest, "first");
        abstract_response response(request.get());
        zvtest::record(response, onResponse);
        managed.add(std::move(request));
        waitForLines(onResponse, 3);
        QCOMPARE(onRequest.lines(),
                 (Lines{"first started", "first completed", "first finished as completed"}));
        QCOMPARE(onResponse.lines(), (Lines{"started", "completed", "finished as completed"}));
    }

    void requestsRunOneAfterTheOther_data()
    {
        QTest::addColumn<bool>("later");
        QTest::addColumn<bool>("fails");
        QTest::newRow("complete at once") << false << false;
        QTest::newRow("fail at once") << false << true;
        QTest::newRow("complete later") << true << false;
        QTest::newRow("fail later") << true << true;
    }

    void requestsRunOneAfterTheOther()
    {
        QFETCH(bool, later);
        QFETCH(bool, fails);
        Journal journal;
        ManagerWithWorker managed;
        const auto end = [fails](Request& request) {
            if (fails)
                Q_EMIT request.failed("x");
            else
                Q_EMIT request.completed();
        };
        const auto work = [&](Request& request) {
            if (!later)
                return end(request);
            // The event loop goes on meanwhile, long enough for others to begin if they could.
            QTimer::singleShot(0, &request, [&request, end] {
                QTimer::singleShot(0, &request, [&request, end] { end(request); });
            });
        };
        Lines expected;
        for (int i = 0; i < 20; ++i) {
            const std::string name = "request " + std::to_string(i);
            managed.add(recorded(journal, name, work));
            expected.push_back(name + " started");
            expected.push_back(name + (fails ? " failed: x" : " completed"));
            expected.push_back(name + (fails ? " finished as failed" : " finished as completed"));
        }
        waitForLines(journal, expected.size());
        QCOMPARE(journal.lines(), expected);
    }

    void abortOfAWaitingRequest()
    {
        Journal journal;
        BlockingWork blocking;
        ManagerWithWorker managed;
        auto first = recorded(journal, "first",
                              [&, work = blocking.work()](Request& request) { work(request); });
        managed.add(std::move(first));
        auto second = recorded(journal, "second");
        abstract_response response(second.get());
        managed.add(std::move(second));
        managed.add(recorded(journal, "third"));
        blocking.waitUntilStarted();
        response.abort();
        blocking.end();
        waitForLines(journal, 8);
        QCOMPARE(journal.lines(),
                 (Lines{"first started", "first completed", "second failed: abort requested",
                        "first finished as completed", "second finished as failed", "third started",
                        "third completed", "third finished as completed"}));
        response.wait();
        QCOMPARE(response.status(), request_failed);
    }

    void abortOfAWaitingRequestIsHeardAtOnce()
    {
        // The running request leaves the event loop free; the waiting one fails, but stays in the
        // queue until the running one has ended.
        Journal journal;
        ManagerWithWorker managed;
        auto first = recorded(journal, "first", &leaveOpen);
        managed.add(first);
        waitUntilStarted(managed, *first);
        auto second = recorded(journal, "second");
        abstract_response response(second.get());
        managed.add(std::move(second));
        response.abort();
        response.wait();
        waitForLines(journal, 2);
        managed.deliverPending();
        QCOMPARE(journal.lines(), (Lines{"first started", "second failed: abort requested"}));
        zvtest::runOn(managed.context(), [&] {
            Q_EMIT first->completed();
            first.reset();
        });
        waitForLines(journal, 5);
        managed.deliverPending();
        QCOMPARE(journal.lines(),
                 (Lines{"first started", "second failed: abort requested", "first completed",
                        "first finished as completed", "second finished as failed"}));
    }

    void allThatHasLeftTheQueueIsRemovedInOnePass()
    {
        // Also from behind a request that goes on waiting.
        Journal journal;
        ManagerWithWorker managed;
        auto first = recorded(journal, "request 1", &leaveOpen);
        managed.add(first);
        waitUntilStarted(managed, *first);
        managed.add(recorded(journal, "request 2", &leaveOpen));
        std::vector<std::shared_ptr<Request>> waiting;
        for (int i = 3; i < 9; ++i) {
            waiting.push_back(recorded(journal, "request " + std::to_string(i)));
            managed.add(waiting.back());
        }
        zvtest::runOn(managed.context(), [&] {
            for (const std::size_t i : {1u, 2u, 4u})
                waiting[i]->abort();
            waiting.clear();
            Q_EMIT first->completed();
            first.reset();
        });
        waitForLines(journal, 10);
        managed.deliverPending();
        QCOMPARE(journal.lines(),
                 (Lines{"request 1 started", "request 4 failed: abort requested",
                        "request 5 failed: abort requested", "request 7 failed: abort requested",
                        "request 1 completed", "request 1 finished as completed",
                        "request 4 finished as failed", "request 5 finished as failed",
                        "request 7 finished as failed", "request 2 started"}));
    }

    void slotsThatThePumpCallsMayWait_data()
    {
        QTest::addColumn<Wait>("wait");
        QTest::newRow("by the response")
            << Wait([](abstract_response& response) { response.wait(); });
        QTest::newRow("by handling events") << Wait([](abstract_response& response) {
            while (response.status() != request_completed)
                QCoreApplication::processEvents();
        });
        QTest::newRow("by an event loop") << Wait([](abstract_response& response) {
            QEventLoop loop;
            connect(&response, &abstract_response::completed, &loop, &QEventLoop::quit);
            loop.exec();
        });
    }

    void slotsThatThePumpCallsMayWait()
    {
        QFETCH(Wait, wait);
        Journal journal;
        QSemaphore hasEnded;
        QSemaphore mayReturn;
        ManagerWithWorker managed;
        managed.add(std::make_shared<Request>([&](Request& request) {
            Q_EMIT request.completed();
            hasEnded.release();
            mayReturn.acquire();
        }));
        // Behind the event by which the manager goes on, so it is the pump that calls them, each from
        // the loop in which the one before waits.
        hasEnded.acquire();
        constexpr int slotCount = 20;
        for (int i = 0; i < slotCount; ++i) {
            QMetaObject::invokeMethod(&managed.context(), [&] {
                auto request = std::make_shared<Request>();
                abstract_response response(request.get());
                managed.add(std::move(request));
                wait(response);
                journal.write("waited");
            });
        }
        mayReturn.release();
        waitForLines(journal, slotCount);
        // The manager is as before.
        managed.add(recorded(journal, "last"));
        waitForLines(journal, slotCount + 3);
    }

    void slotsThatThePumpCallsMayWaitWhileOthersAdd()
    {
        constexpr int count = 300;
        Journal journal;
        ManagerWithWorker managed;
        std::thread other([&] {
            for (int i = 0; i < 10 * count; ++i)
                managed.add(std::make_shared<Request>());
        });
        for (int i = 0; i < count; ++i) {
            managed.add(std::make_shared<Request>());
            QMetaObject::invokeMethod(&managed.context(), [&] {
                auto request = std::make_shared<Request>();
                abstract_response response(request.get());
                managed.add(std::move(request));
                response.wait();
                journal.write("waited");
            });
            // Slots that wait lie on each other's stack.
            if (i % 20 == 19)
                waitForLines(journal, std::size_t(i) + 1);
        }
        other.join();
        waitForLines(journal, count);
    }

    void slotsMayWaitForWhatIsQueuedAlready_data()
    {
        QTest::addColumn<bool>("endsFirst");
        QTest::addColumn<bool>("isReleased");
        QTest::newRow("called by the pump") << true << false;
        QTest::newRow("called by the release of the running request") << true << true;
        QTest::newRow("called by the release of an aborted request") << false << true;
    }

    void slotsMayWaitForWhatIsQueuedAlready()
    {
        // Nothing arrives any more when they begin to wait.
        QFETCH(bool, endsFirst);
        QFETCH(bool, isReleased);
        Journal journal;
        ManagerWithWorker managed;
        auto first = std::make_shared<Request>(&leaveOpen);
        managed.add(first);
        waitUntilStarted(managed, *first);
        auto aborted = std::make_shared<Request>();
        managed.add(aborted);
        std::unique_ptr<abstract_response> response;
        const auto wait = [&] {
            response->wait();
            journal.write("waited");
        };
        zvtest::runOn(managed.context(), [&] {
            auto request = std::make_shared<Request>();
            response = std::make_unique<abstract_response>(request.get());
            managed.add(std::move(request));
            Request& released = endsFirst ? *first : *aborted;
            if (isReleased)
                connect(&released, &abstract_request::finished, wait);
            if (!endsFirst)
                aborted->abort();
            aborted.reset();
            Q_EMIT first->completed();
            first.reset();
            if (!isReleased)
                QMetaObject::invokeMethod(&managed.context(), wait, Qt::QueuedConnection);
        });
        waitForLines(journal, 1);
        zvtest::runOn(managed.context(), [&] { response.reset(); });
    }

    void abortThatWaitsAlongWithTheAddIsDeliveredFirst()
    {
        // All of it waits before the worker looks at the first add.
        Journal journal;
        ManagerWithWorker managed;
        Gate gate(managed);
        auto first = recorded(journal, "first");
        abstract_response response(first.get());
        managed.add(std::move(first));
        managed.add(recorded(journal, "second"));
        response.abort();
        managed.add(recorded(journal, "third"));
        gate.open();
        waitForLines(journal, 8);
        QCOMPARE(journal.lines(),
                 (Lines{"first failed: abort requested", "first finished as failed",
                        "second started", "second completed", "second finished as completed",
                        "third started", "third completed", "third finished as completed"}));
    }

    void requestThatIsAddedOnTheWorkerWaitsForItsTurn()
    {
        Journal journal;
        ManagerWithWorker managed;
        managed.add(recorded(journal, "first", [&](Request& request) {
            managed.add(recorded(journal, "second"));
            journal.write("still at work");
            Q_EMIT request.completed();
        }));
        waitForLines(journal, 7);
        QCOMPARE(journal.lines(),
                 (Lines{"first started", "still at work", "first completed",
                        "first finished as completed", "second started", "second completed",
                        "second finished as completed"}));
    }

    void requestsFromSeveralThreadsKeepTheirOrder()
    {
        constexpr int count = 500;
        Journal journals[3];
        ManagerWithWorker managed;
        std::vector<std::thread> threads;
        for (Journal& journal : journals)
            threads.emplace_back([&managed, &journal] {
                for (int i = 0; i < count; ++i) {
                    auto request = std::make_shared<Request>();
                    connect(request.get(), &abstract_request::started,
                            [&journal, i] { journal.write(std::to_string(i)); });
                    managed.add(std::move(request));
                }
            });
        for (std::thread& thread : threads)
            thread.join();
        for (const Journal& journal : journals) {
            waitForLines(journal, count);
            const Lines lines = journal.lines();
            for (int i = 0; i < count; ++i)
                QCOMPARE(lines[std::size_t(i)], std::to_string(i));
        }
    }

    void managersRunSideBySide()
    {
        // Each waits for the other.
        QSemaphore one;
        QSemaphore two;
        ManagerWithWorker first;
        ManagerWithWorker second;
        auto a = std::make_shared<Request>([&](Request& request) {
            one.release();
            two.acquire();
            Q_EMIT request.completed();
        });
        auto b = std::make_shared<Request>([&](Request& request) {
            two.release();
            one.acquire();
            Q_EMIT request.completed();
        });
        abstract_response responses[] = {abstract_response(a.get()), abstract_response(b.get())};
        first.add(std::move(a));
        second.add(std::move(b));
        for (abstract_response& response : responses)
            response.wait();
    }

    void waitingRequestsAreReleasedFromTheBack()
    {
        Journal journal;
        ManagerWithWorker managed;
        managed.add(recorded(journal, "request 0", &leaveOpen));
        std::vector<std::unique_ptr<abstract_response>> responses;
        for (int i = 1; i < 4; ++i) {
            auto request = recorded(journal, "request " + std::to_string(i));
            responses.push_back(std::make_unique<abstract_response>(request.get()));
            managed.add(std::move(request));
        }
        waitForLines(journal, 1);
        managed.destroyManager();
        waitForLines(journal, 9);
        managed.deliverPending();
        const std::string before = " failed: request terminated before starting";
        QCOMPARE(
            journal.lines(),
            (Lines{"request 0 started", "request 0 failed: request terminated before completing",
                   "request 0 finished as failed", "request 3" + before,
                   "request 3 finished as failed", "request 2" + before,
                   "request 2 finished as failed", "request 1" + before,
                   "request 1 finished as failed"}));
        for (const auto& response : responses) {
            response->wait();
            QCOMPARE(response->status(), request_failed);
        }
        // Nobody has ended the thread.
        QVERIFY(managed.thread()->isRunning());
    }

    void destructorDoesNotWaitForTheWork()
    {
        Journal journal;
        BlockingWork blocking;
        ManagerWithWorker managed;
        managed.add(recorded(journal, "first", blocking.work()));
        managed.add(recorded(journal, "second"));
        blocking.waitUntilStarted();
        managed.destroyManager();
        QCOMPARE(journal.lines(), Lines{"first started"});
        blocking.end();
        waitForLines(journal, 5);
        managed.deliverPending();
        // The work has ended first, and its manager went before it came to the next.
        Lines lines = journal.lines();
        QCOMPARE(lines.size(), std::size_t(5));
        QCOMPARE(lines[1], std::string("first completed"));
        QCOMPARE(std::count(lines.begin(), lines.end(), "first finished as completed"), 1);
        QCOMPARE(std::count(lines.begin(), lines.end(), "second finished as failed"), 1);
    }

    void managerGoesWhileTheWorkHandlesEvents_data()
    {
        QTest::addColumn<bool>("completes");
        QTest::newRow("completes") << true;
        QTest::newRow("never ends") << false;
    }

    void managerGoesWhileTheWorkHandlesEvents()
    {
        QFETCH(bool, completes);
        Journal journal;
        std::atomic<bool> released{false};
        ManagerWithWorker managed;
        managed.add(recorded(journal, "first", [&](Request& request) {
            while (!released)
                QCoreApplication::processEvents();
            // The manager has gone; the request is still there.
            journal.write("status is " + zvtest::nameOf(request.status()));
            if (completes)
                Q_EMIT request.completed();
        }));
        auto second = recorded(journal, "second");
        connect(second.get(), &abstract_request::finished, [&] { released = true; });
        managed.add(std::move(second));
        waitForLines(journal, 1);
        managed.destroyManager();
        waitForLines(journal, 6);
        const Lines end = completes
            ? Lines{"status is started", "first completed", "first finished as completed"}
            : Lines{"status is started", "first failed: request terminated before completing",
                    "first finished as failed"};
        Lines expected{"first started", "second failed: request terminated before starting",
                       "second finished as failed"};
        expected.insert(expected.end(), end.begin(), end.end());
        QCOMPARE(journal.lines(), expected);
    }

    void managerGoesBeforeTheWorkerLooksAtTheAdds()
    {
        Journal journal;
        ManagerWithWorker managed;
        Gate gate(managed);
        for (int i = 1; i < 4; ++i)
            managed.add(recorded(journal, "request " + std::to_string(i)));
        managed.destroyManager();
        gate.open();
        waitForLines(journal, 6);
        managed.deliverPending();
        // Its end was among the events that waited, and came before the choice.
        QCOMPARE(journal.size(), std::size_t(6));
        for (const std::string& line : journal.lines())
            QVERIFY2(line.find("started") == std::string::npos
                         || line.find("before starting") != std::string::npos,
                     line.c_str());
    }

    void managerGoesWhileItReleasesARequest()
    {
        Journal journal;
        ManagerWithWorker managed;
        auto running = std::make_shared<Request>(&leaveOpen);
        managed.add(running);
        waitUntilStarted(managed, *running);
        auto aborted = std::make_shared<Request>();
        QSemaphore destroyed;
        QSemaphore releasing;
        connect(aborted.get(), &abstract_request::finished, [&] {
            releasing.release();
            destroyed.acquire();
            QMetaObject::invokeMethod(
                &managed.context(), [] {}, Qt::QueuedConnection);
            QCoreApplication::sendPostedEvents();
            journal.write("released");
        });
        managed.add(aborted);
        managed.add(recorded(journal, "first"));
        QMetaObject::invokeMethod(&managed.context(), [&] {
            aborted->abort();
            aborted.reset();
            Q_EMIT running->completed();
            running.reset();
        });
        releasing.acquire();
        managed.destroyManager();
        destroyed.release();
        waitForLines(journal, 3);
        managed.deliverPending();
        QCOMPARE(journal.lines(),
                 (Lines{"first failed: request terminated before starting",
                        "first finished as failed", "released"}));
    }

    void unusedManagersComeAndGo()
    {
        for (int i = 0; i < 20; ++i)
            ManagerWithWorker managed;
    }
};

QTEST_GUILESS_MAIN(tst_BackgroundRequestManager_threads)
#include "tst_BackgroundRequestManager_threads.moc"
