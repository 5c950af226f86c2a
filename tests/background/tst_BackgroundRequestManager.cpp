#include "support/Background.h"

#include <zvutil/libzvutil/background_impl.h>
#include <zvutil/stop_source.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMetaMethod>
#include <QProcess>
#include <QSemaphore>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#ifdef Q_OS_LINUX
#include <pthread.h>
#endif
#ifdef _MSC_VER
#include <intrin.h>
#endif

using namespace zvutil::libzvutil;
using zvtest::Journal;
using zvtest::Lines;
using zvtest::Managed;
using zvtest::Request;

namespace {

void leaveOpen(Request& /*request*/)
{
}

/// A request that writes its signals to \p journal.
std::shared_ptr<Request> recorded(Journal& journal, const std::string& name,
                                  Request::Work work = &Request::complete)
{
    auto request = std::make_shared<Request>(std::move(work));
    zvtest::record(*request, journal, name + ": ");
    return request;
}

/// Handles the events of this thread until \p journal has \p count lines.
void waitForLines(const Journal& journal, std::size_t count)
{
    while (journal.size() < count) {
        QCoreApplication::processEvents();
        QThread::yieldCurrentThread();
    }
}

/// The worker handles events before it starts a request, so what is sent to it may come first.
void waitUntilStarted(Managed& managed, const Request& request)
{
    bool isStarted = false;
    while (!isStarted)
        zvtest::runOn(managed.context(), [&] { isStarted = !request.is_pending(); });
}

/// Keeps a worker from handling events, so that several can be made to wait for it.
class Gate
{
public:
    explicit Gate(Managed& managed)
    {
        QMetaObject::invokeMethod(&managed.context(), [this] {
            m_closed.release();
            m_open.acquire();
        });
        m_closed.acquire();
    }

    void open() { m_open.release(); }

private:
    QSemaphore m_closed;
    QSemaphore m_open;
};

/// Work that ends when it is told to, and handles no events until then.
class BlockingWork
{
public:
    Request::Work work()
    {
        return [this](Request& request) {
            m_started.release();
            m_mayEnd.acquire();
            Q_EMIT request.completed();
        };
    }

    void waitUntilStarted() { m_started.acquire(); }
    void end() { m_mayEnd.release(); }

private:
    QSemaphore m_started;
    QSemaphore m_mayEnd;
};

/// How far the stack of a thread reaches, told from inside what runs on it.
class StackReach
{
public:
    void look()
    {
#ifdef _MSC_VER
        const auto address = reinterpret_cast<std::uintptr_t>(_AddressOfReturnAddress());
#else
        // Not that of a variable, which a sanitizer may put elsewhere.
        const auto address = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
#endif
        m_lowest = std::min(m_lowest, address);
        m_highest = std::max(m_highest, address);
    }

    std::size_t bytes() const
    {
        return m_highest - m_lowest;
    }

private:
    std::uintptr_t m_lowest = UINTPTR_MAX;
    std::uintptr_t m_highest = 0;
};

/// The size of stack that new threads get, for as long as the object lives.
class StackSize
{
public:
    explicit StackSize([[maybe_unused]] std::size_t bytes)
    {
#ifdef Q_OS_LINUX
        pthread_attr_t attributes;
        pthread_getattr_default_np(&attributes);
        pthread_attr_getstacksize(&attributes, &m_before);
        set(bytes);
        pthread_attr_destroy(&attributes);
#endif
    }

    ~StackSize()
    {
#ifdef Q_OS_LINUX
        set(m_before);
#endif
    }

    StackSize(const StackSize&) = delete;
    StackSize& operator=(const StackSize&) = delete;

private:
#ifdef Q_OS_LINUX
    static void set(std::size_t bytes)
    {
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setstacksize(&attributes, bytes);
        pthread_setattr_default_np(&attributes);
        pthread_attr_destroy(&attributes);
    }

    std::size_t m_before = 0;
#endif
};

/// An application that lives with what its event handlers throw.
class Application : public QCoreApplication
{
public:
    using QCoreApplication::QCoreApplication;

    bool notify(QObject* receiver, QEvent* event) override
    {
        if (!catches)
            return QCoreApplication::notify(receiver, event);
        try {
            return QCoreApplication::notify(receiver, event);
        } catch (const std::runtime_error&) {
            ++caught;
            return false;
        }
    }

    static std::atomic<bool> catches;
    static std::atomic<int> caught;
};

std::atomic<bool> Application::catches{false};
std::atomic<int> Application::caught{0};

/// Waits for the end of a request on the worker's own thread.
using Wait = std::function<void(abstract_response& response)>;

constexpr char throwingArgument[] = "--let-work-throw";
constexpr char thrownText[] = "thrown by the work";

/// What the program does when it is started as its own subject.
int letWorkThrow()
{
    BackgroundRequestManager manager;
    manager.add(std::make_shared<Request>([](Request&) { throw std::runtime_error(thrownText); }));
    QTimer::singleShot(60'000, QCoreApplication::instance(), &QCoreApplication::quit);
    QCoreApplication::exec();
    return 0;
}

} // namespace

Q_DECLARE_METATYPE(Wait)

class tst_BackgroundRequestManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shapes()
    {
        const QMetaObject& meta = background_impl::staticMetaObject;
        QCOMPARE(meta.className(), "zvutil::libzvutil::background_impl");
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);
        const QMetaMethod add = meta.method(meta.methodOffset());
        QCOMPARE(add.methodSignature(), QByteArray("add(request_ptr)"));
        QCOMPARE(add.access(), QMetaMethod::Public);
        QCOMPARE(add.methodType(), QMetaMethod::Slot);
        const QMetaMethod runNext = meta.method(meta.methodOffset() + 1);
        QCOMPARE(runNext.methodSignature(), QByteArray("run_next()"));
        QCOMPARE(runNext.access(), QMetaMethod::Private);
        QCOMPARE(runNext.methodType(), QMetaMethod::Slot);
        static_assert(std::is_same_v<request_ptr, std::shared_ptr<abstract_request>>);

        using Basic = basic_request_manager<background_impl>;
        static_assert(std::is_base_of_v<QObject, abstract_request_manager>);
        static_assert(std::is_base_of_v<abstract_request_manager, Basic>);
        static_assert(std::is_base_of_v<Basic, BackgroundRequestManager>);
        static_assert(std::has_virtual_destructor_v<BackgroundRequestManager>);
    }

    void managersHaveNoMetaObject()
    {
        QObject parent;
        auto* const base = new abstract_request_manager(&parent);
        QCOMPARE(base->parent(), &parent);
        QCOMPARE(base->metaObject(), &QObject::staticMetaObject);
        Managed managed;
        QCOMPARE(managed.manager().metaObject(), &QObject::staticMetaObject);
        managed.manager().setParent(&parent);
        QCOMPARE(managed.manager().parent(), &parent);
        managed.manager().setParent(nullptr);
    }

    void requestComesToLiveOnTheWorker()
    {
        BlockingWork blocking;
        QObject parent;
        Managed managed;
        auto request = std::make_shared<Request>(blocking.work(), &parent);
        managed.add(request);
        QCOMPARE(request->parent(), static_cast<QObject*>(nullptr));
        QVERIFY(parent.children().isEmpty());
        QVERIFY(request->thread() != thread());
        QCOMPARE(request->thread(), managed.thread());
        QVERIFY(managed.thread()->isRunning());
        QCOMPARE(managed.thread()->thread(), thread());
        QCOMPARE(managed.thread()->metaObject(), &QThread::staticMetaObject);
        blocking.end();
    }

    void workerHasThePriorityOfItsMaker()
    {
        Managed managed;
        QCOMPARE(managed.thread()->priority(), QThread::InheritPriority);
    }

    void nothingIsNoHarm()
    {
        Managed managed;
        managed.add(nullptr);
        managed.settle();
    }

    void completionComesBackToTheCaller()
    {
        Journal onRequest;
        Journal onResponse;
        Managed managed;
        auto request = recorded(onRequest, "1");
        abstract_response response(request.get());
        zvtest::record(response, onResponse);
        managed.add(std::move(request));
        waitForLines(onResponse, 3);
        QCOMPARE(onRequest.lines(), (Lines{"1: started 1", "1: completed 2", "1: finished 2"}));
        QCOMPARE(onResponse.lines(), (Lines{"started 1", "completed 2", "finished 2"}));
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
        Managed managed;
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
            const std::string name = std::to_string(i);
            managed.add(recorded(journal, name, work));
            const std::string status = fails ? " 3" : " 2";
            for (const std::string& line :
                 {std::string("started 1"), (fails ? "failed (x)" : "completed") + status,
                  "finished" + status})
                expected.push_back(std::string(name).append(": ").append(line));
        }
        waitForLines(journal, expected.size());
        QCOMPARE(journal.lines(), expected);
    }

    void nextStartsOnlyWhenTheRunningOneHasEnded()
    {
        Journal journal;
        Managed managed;
        auto first = recorded(journal, "1", &leaveOpen);
        managed.add(first);
        waitUntilStarted(managed, *first);
        managed.add(recorded(journal, "2"));
        waitForLines(journal, 1);
        managed.settle();
        QCOMPARE(journal.lines(), Lines{"1: started 1"});
        zvtest::runOn(managed.context(), [&] {
            Q_EMIT first->completed();
            first.reset();
        });
        waitForLines(journal, 6);
        managed.settle();
        QCOMPARE(journal.lines(),
                 (Lines{"1: started 1", "1: completed 2", "1: finished 2", "2: started 1",
                        "2: completed 2", "2: finished 2"}));
    }

    void requestThatNeverEndsBlocksTheLaterOnes()
    {
        Journal journal;
        Managed managed;
        managed.add(recorded(journal, "1", &leaveOpen));
        for (int i = 2; i < 5; ++i)
            managed.add(recorded(journal, std::to_string(i)));
        waitForLines(journal, 1);
        managed.settle();
        QCOMPARE(journal.lines(), Lines{"1: started 1"});
        managed.end();
        QCOMPARE(journal.size(), std::size_t(9));
    }

    void requestThatEndsTwiceEndsTheNextOne()
    {
        Journal journal;
        Managed managed;
        auto first = recorded(journal, "1");
        auto second = recorded(journal, "2", &leaveOpen);
        managed.add(first);
        managed.add(second);
        managed.add(recorded(journal, "3"));
        waitForLines(journal, 3);
        zvtest::runOn(managed.context(), [&] { Q_EMIT first->failed("as well"); });
        waitForLines(journal, 7);
        managed.settle();
        // The third has run, though the second hasn't ended.
        QCOMPARE(journal.lines(),
                 (Lines{"1: started 1", "1: completed 2", "2: started 1", "1: failed (as well) 3",
                        "3: started 1", "3: completed 2", "3: finished 2"}));
        QCOMPARE(second->status(), request_started);
        zvtest::runOn(managed.context(), [&] {
            first.reset();
            second.reset();
        });
    }

    void endedRequestIsReleasedFromTheEventLoop()
    {
        // It still lives while its work is on the stack, though nobody else holds it.
        Journal journal;
        Managed managed;
        managed.add(recorded(journal, "1", [&](Request& request) {
            Q_EMIT request.completed();
            journal.write("still there");
        }));
        waitForLines(journal, 4);
        QCOMPARE(journal.lines(),
                 (Lines{"1: started 1", "1: completed 2", "still there", "1: finished 2"}));
    }

    void workThatHandlesEventsAfterItsEndIsHeld()
    {
        Journal journal;
        Managed managed;
        managed.add(recorded(journal, "1", [&](Request& request) {
            Q_EMIT request.completed();
            QCoreApplication::sendPostedEvents();
            journal.write("status " + std::to_string(request.status()));
        }));
        waitForLines(journal, 4);
        QCOMPARE(journal.lines(),
                 (Lines{"1: started 1", "1: completed 2", "status 2", "1: finished 2"}));
    }

    void abortOfAWaitingRequest()
    {
        Journal journal;
        BlockingWork blocking;
        Managed managed;
        auto first = recorded(journal, "1",
                              [&, work = blocking.work()](Request& request) { work(request); });
        managed.add(std::move(first));
        auto second = recorded(journal, "2");
        abstract_response response(second.get());
        managed.add(std::move(second));
        managed.add(recorded(journal, "3"));
        blocking.waitUntilStarted();
        response.abort();
        blocking.end();
        waitForLines(journal, 8);
        QCOMPARE(journal.lines(),
                 (Lines{"1: started 1", "1: completed 2", "2: failed (abort requested) 3",
                        "1: finished 2", "2: finished 3", "3: started 1", "3: completed 2",
                        "3: finished 2"}));
        response.wait();
        QCOMPARE(response.status(), request_failed);
    }

    void abortOfAWaitingRequestIsHeardAtOnce()
    {
        // The running request leaves the event loop free; the waiting one fails, but stays in the
        // queue until the running one has ended.
        Journal journal;
        Managed managed;
        auto first = recorded(journal, "1", &leaveOpen);
        managed.add(first);
        waitUntilStarted(managed, *first);
        auto second = recorded(journal, "2");
        abstract_response response(second.get());
        managed.add(std::move(second));
        response.abort();
        response.wait();
        waitForLines(journal, 2);
        managed.settle();
        QCOMPARE(journal.lines(), (Lines{"1: started 1", "2: failed (abort requested) 3"}));
        zvtest::runOn(managed.context(), [&] {
            Q_EMIT first->completed();
            first.reset();
        });
        waitForLines(journal, 5);
        managed.settle();
        QCOMPARE(journal.lines(),
                 (Lines{"1: started 1", "2: failed (abort requested) 3", "1: completed 2",
                        "1: finished 2", "2: finished 3"}));
    }

    void allThatHasLeftTheQueueIsRemovedInOnePass()
    {
        // Also from behind a request that goes on waiting.
        Journal journal;
        Managed managed;
        auto first = recorded(journal, "1", &leaveOpen);
        managed.add(first);
        waitUntilStarted(managed, *first);
        managed.add(recorded(journal, "2", &leaveOpen));
        std::vector<std::shared_ptr<Request>> waiting;
        for (int i = 3; i < 9; ++i) {
            waiting.push_back(recorded(journal, std::to_string(i)));
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
        managed.settle();
        QCOMPARE(
            journal.lines(),
            (Lines{"1: started 1", "4: failed (abort requested) 3", "5: failed (abort requested) 3",
                   "7: failed (abort requested) 3", "1: completed 2", "1: finished 2",
                   "4: finished 3", "5: finished 3", "7: finished 3", "2: started 1"}));
    }

    void requestsThatLeaveTheQueueOtherwise_data()
    {
        QTest::addColumn<QString>("how");
        for (const char* how : {"started", "completed", "failed", "aborted before it was added"})
            QTest::newRow(how) << QString::fromLatin1(how);
    }

    void requestsThatLeaveTheQueueOtherwise()
    {
        QFETCH(QString, how);
        Journal journal;
        Managed managed;
        auto running = std::make_shared<Request>(&leaveOpen);
        managed.add(running);
        waitUntilStarted(managed, *running);
        managed.add(std::make_shared<Request>(&leaveOpen));
        auto subject = std::make_shared<Request>();
        if (how == QLatin1String("aborted before it was added"))
            subject->abort();
        connect(subject.get(), &abstract_request::finished, [&] { journal.write("finished"); });
        managed.add(subject);
        zvtest::runOn(managed.context(), [&] {
            if (how == QLatin1String("started"))
                subject->start();
            else if (how == QLatin1String("completed"))
                Q_EMIT subject->completed();
            else if (how == QLatin1String("failed"))
                Q_EMIT subject->failed("x");
            subject.reset();
            QVERIFY(journal.lines().empty());
            Q_EMIT running->completed();
            running.reset();
        });
        waitForLines(journal, 1);
        managed.settle();
        // It is gone though the one before it in the queue has only begun.
        QCOMPARE(journal.lines(), Lines{"finished"});
    }

    void requestThatIsAddedTwiceRunsOnce()
    {
        Journal journal;
        Managed managed;
        Gate gate(managed);
        auto request = recorded(journal, "1");
        managed.add(request);
        managed.add(std::move(request));
        managed.add(recorded(journal, "2"));
        gate.open();
        waitForLines(journal, 6);
        Lines lines = journal.lines();
        lines.erase(std::remove(lines.begin(), lines.end(), "1: finished 2"), lines.end());
        QCOMPARE(lines,
                 (Lines{"1: started 1", "1: completed 2", "2: started 1", "2: completed 2",
                        "2: finished 2"}));
    }

    void requestThatIsAddedTwiceIsReleasedWhenItHasRun_data()
    {
        QTest::addColumn<bool>("isHeld");
        QTest::newRow("by the manager alone") << false;
        QTest::newRow("held elsewhere") << true;
    }

    void requestThatIsAddedTwiceIsReleasedWhenItHasRun()
    {
        // Its second entry isn't kept until its turn, which comes after work that takes long.
        QFETCH(bool, isHeld);
        Journal journal;
        BlockingWork work;
        Managed managed;
        Gate gate(managed);
        auto twice = recorded(journal, "1");
        std::shared_ptr<Request> second = twice;
        const std::weak_ptr<Request> watched = twice;
        managed.add(std::move(twice));
        managed.add(std::make_shared<Request>(work.work()));
        QMetaObject::invokeMethod(&managed.context(),
                                  [&managed, &second] { managed.add(std::move(second)); });
        std::shared_ptr<Request> holder = isHeld ? watched.lock() : nullptr;
        gate.open();
        work.waitUntilStarted();
        const long owners = watched.use_count();
        work.end();
        QCOMPARE(owners, isHeld ? 1L : 0L);
        QCOMPARE(journal.lines().size(), isHeld ? std::size_t(2) : std::size_t(3));
    }

    void requestThatIsAddedTwiceWhileItRunsIsReleased()
    {
        Journal journal;
        BlockingWork work;
        Managed managed;
        std::weak_ptr<Request> running;
        auto first = recorded(journal, "1", [&](Request& request) {
            managed.add(running.lock());
            Q_EMIT request.completed();
        });
        running = first;
        managed.add(std::move(first));
        managed.add(std::make_shared<Request>(work.work()));
        work.waitUntilStarted();
        const Lines lines = journal.lines();
        work.end();
        QCOMPARE(lines, (Lines{"1: started 1", "1: completed 2", "1: finished 2"}));
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
        Managed managed;
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
        Managed managed;
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

    void abortThatWaitsAlongWithTheAddIsDeliveredFirst()
    {
        // All of it waits before the worker looks at the first add.
        Journal journal;
        Managed managed;
        Gate gate(managed);
        auto first = recorded(journal, "1");
        abstract_response response(first.get());
        managed.add(std::move(first));
        managed.add(recorded(journal, "2"));
        response.abort();
        managed.add(recorded(journal, "3"));
        gate.open();
        waitForLines(journal, 8);
        QCOMPARE(journal.lines(),
                 (Lines{"1: failed (abort requested) 3", "1: finished 3", "2: started 1",
                        "2: completed 2", "2: finished 2", "3: started 1", "3: completed 2",
                        "3: finished 2"}));
    }

    void allThatWaitsIsDeliveredBeforeTheFirstStart()
    {
        Journal journal;
        Managed managed;
        Gate gate(managed);
        for (int i = 0; i < 3; ++i) {
            managed.add(recorded(journal, std::to_string(i)));
            QMetaObject::invokeMethod(&managed.context(), [&journal] { journal.write("event"); });
        }
        gate.open();
        waitForLines(journal, 12);
        QCOMPARE(journal.lines(),
                 (Lines{"event", "event", "event", "0: started 1", "0: completed 2",
                        "0: finished 2", "1: started 1", "1: completed 2", "1: finished 2",
                        "2: started 1", "2: completed 2", "2: finished 2"}));
    }

    void requestThatIsAbortedByTheReleaseOfAnother()
    {
        // The front has been seen to be pending when what was removed before is released.
        Journal journal;
        Managed managed;
        auto running = std::make_shared<Request>(&leaveOpen);
        managed.add(running);
        waitUntilStarted(managed, *running);
        auto front = recorded(journal, "1");
        auto second = recorded(journal, "2");
        connect(second.get(), &abstract_request::finished, [&] {
            front->abort();
            front.reset();
        });
        managed.add(front);
        managed.add(second);
        managed.add(recorded(journal, "3"));
        zvtest::runOn(managed.context(), [&] {
            second->abort();
            second.reset();
            Q_EMIT running->completed();
            running.reset();
        });
        waitForLines(journal, 7);
        managed.settle();
        QCOMPARE(journal.lines(),
                 (Lines{"2: failed (abort requested) 3", "2: finished 3",
                        "1: failed (abort requested) 3", "1: finished 3", "3: started 1",
                        "3: completed 2", "3: finished 2"}));
    }

    void choiceOfManyAbortedRequestsIsALoop()
    {
        // Each release aborts the next front, so that each choice finds one that has left.
        constexpr int count = 3'000;
        Managed managed;
        auto running = std::make_shared<Request>(&leaveOpen);
        managed.add(running);
        waitUntilStarted(managed, *running);
        std::vector<std::shared_ptr<Request>> chain;
        chain.reserve(count);
        for (int i = 0; i < count; ++i)
            chain.push_back(std::make_shared<Request>());
        StackReach stack;
        for (int i = 0; i < count; ++i) {
            Request* const next = i + 1 < count ? chain[std::size_t(i) + 1].get() : nullptr;
            connect(chain[std::size_t(i)].get(), &abstract_request::finished, [&stack, next] {
                stack.look();
                if (next)
                    next->abort();
            });
        }
        Request* const first = chain.front().get();
        for (std::shared_ptr<Request>& request : chain)
            managed.add(std::move(request));
        Journal journal;
        managed.add(recorded(journal, "last"));
        zvtest::runOn(managed.context(), [&] {
            first->abort();
            Q_EMIT running->completed();
            running.reset();
        });
        waitForLines(journal, 3);
        QVERIFY2(stack.bytes() < 65'536, qPrintable(QString::number(stack.bytes())));
    }

    void requestThatIsAddedOnTheWorkerWaitsForItsTurn()
    {
        Journal journal;
        Managed managed;
        managed.add(recorded(journal, "1", [&](Request& request) {
            managed.add(recorded(journal, "2"));
            journal.write("still at work");
            Q_EMIT request.completed();
        }));
        waitForLines(journal, 7);
        QCOMPARE(journal.lines(),
                 (Lines{"1: started 1", "still at work", "1: completed 2", "1: finished 2",
                        "2: started 1", "2: completed 2", "2: finished 2"}));
    }

    void requestsFromSeveralThreadsKeepTheirOrder()
    {
        constexpr int count = 500;
        Journal journals[3];
        Managed managed;
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
        Managed first;
        Managed second;
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
        Managed managed;
        managed.add(recorded(journal, "0", &leaveOpen));
        std::vector<std::unique_ptr<abstract_response>> responses;
        for (int i = 1; i < 4; ++i) {
            auto request = recorded(journal, std::to_string(i));
            responses.push_back(std::make_unique<abstract_response>(request.get()));
            managed.add(std::move(request));
        }
        waitForLines(journal, 1);
        managed.destroyManager();
        waitForLines(journal, 9);
        managed.settle();
        const std::string before = ": failed (request terminated before starting) 3";
        QCOMPARE(journal.lines(),
                 (Lines{"0: started 1", "0: failed (request terminated before completing) 3",
                        "0: finished 3", "3" + before, "3: finished 3", "2" + before,
                        "2: finished 3", "1" + before, "1: finished 3"}));
        for (const auto& response : responses) {
            response->wait();
            QCOMPARE(response->status(), request_failed);
        }
        // Nobody has ended the thread.
        QVERIFY(managed.thread()->isRunning());
    }

    void requestThatIsHeldElsewhereOutlivesTheManager()
    {
        Journal journal;
        Managed managed;
        managed.add(recorded(journal, "1", &leaveOpen));
        auto held = recorded(journal, "2");
        managed.add(held);
        managed.settle();
        managed.destroyManager();
        waitForLines(journal, 3);
        managed.settle();
        QCOMPARE(held->status(), request_pending);
        QCOMPARE(journal.size(), std::size_t(3));
        zvtest::runOn(managed.context(), [&] { held.reset(); });
        QCOMPARE(journal.size(), std::size_t(5));
    }

    void requestThatIsReleasedMayHandleEventsAndAddOthers()
    {
        // Whatever it does, nothing is started any more.
        Journal journal;
        Managed managed;
        managed.add(std::make_shared<Request>(&leaveOpen));
        for (int i = 1; i < 4; ++i) {
            auto request = recorded(journal, std::to_string(i));
            connect(request.get(), &abstract_request::finished, [&managed] {
                QMetaObject::invokeMethod(
                    &managed.context(), [] {}, Qt::QueuedConnection);
                QCoreApplication::sendPostedEvents();
                QCoreApplication::processEvents();
            });
            managed.add(std::move(request));
        }
        managed.settle();
        managed.destroyManager();
        waitForLines(journal, 6);
        managed.settle();
        QCOMPARE(journal.size(), std::size_t(6));
        for (const std::string& line : journal.lines())
            QVERIFY(line.find("started") == std::string::npos);
    }

    void requestTellsItsWorkerAsSoonAsItIsAdded()
    {
        // So a manager that has had none can be let go, too.
        auto manager = std::make_unique<BackgroundRequestManager>();
        const auto request = std::make_shared<Request>(&Request::complete);
        QCOMPARE(request->thread(), QThread::currentThread());
        manager->add(request);
        QThread* const worker = request->thread();
        QVERIFY(worker != QThread::currentThread());
        manager.reset();
        do
            worker->quit();
        while (!worker->wait(100));
        QVERIFY(worker->isFinished());
    }

    void destructorDoesNotWaitForTheWork()
    {
        Journal journal;
        BlockingWork blocking;
        Managed managed;
        managed.add(recorded(journal, "1", blocking.work()));
        managed.add(recorded(journal, "2"));
        blocking.waitUntilStarted();
        managed.destroyManager();
        QCOMPARE(journal.lines(), Lines{"1: started 1"});
        blocking.end();
        waitForLines(journal, 5);
        managed.settle();
        // The work has ended first, and its manager went before it came to the next.
        Lines lines = journal.lines();
        QCOMPARE(lines.size(), std::size_t(5));
        QCOMPARE(lines[1], std::string("1: completed 2"));
        QCOMPARE(std::count(lines.begin(), lines.end(), "1: finished 2"), 1);
        QCOMPARE(std::count(lines.begin(), lines.end(), "2: finished 3"), 1);
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
        Managed managed;
        managed.add(recorded(journal, "1", [&](Request& request) {
            while (!released)
                QCoreApplication::processEvents();
            // The manager has gone; the request is still there.
            journal.write("status " + std::to_string(request.status()));
            if (completes)
                Q_EMIT request.completed();
        }));
        auto second = recorded(journal, "2");
        connect(second.get(), &abstract_request::finished, [&] { released = true; });
        managed.add(std::move(second));
        waitForLines(journal, 1);
        managed.destroyManager();
        waitForLines(journal, 6);
        const Lines end = completes
            ? Lines{"status 1", "1: completed 2", "1: finished 2"}
            : Lines{"status 1", "1: failed (request terminated before completing) 3",
                    "1: finished 3"};
        Lines expected{"1: started 1", "2: failed (request terminated before starting) 3",
                       "2: finished 3"};
        expected.insert(expected.end(), end.begin(), end.end());
        QCOMPARE(journal.lines(), expected);
    }

    void managerGoesBeforeTheWorkerLooksAtTheAdds()
    {
        Journal journal;
        Managed managed;
        Gate gate(managed);
        for (int i = 1; i < 4; ++i)
            managed.add(recorded(journal, std::to_string(i)));
        managed.destroyManager();
        gate.open();
        waitForLines(journal, 6);
        managed.settle();
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
        Managed managed;
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
        managed.add(recorded(journal, "1"));
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
        managed.settle();
        QCOMPARE(journal.lines(),
                 (Lines{"1: failed (request terminated before starting) 3", "1: finished 3",
                        "released"}));
    }

    void unusedManagersComeAndGo()
    {
        for (int i = 0; i < 20; ++i)
            Managed managed;
    }

    void busyWorkerTakesAMillionRequests_data()
    {
        QTest::addColumn<int>("stack");
        QTest::newRow("1 MB of stack") << (1 << 20);
#ifdef Q_OS_LINUX // Elsewhere a stack has the size that the program was linked with.
        QTest::newRow("8 MB of stack") << (8 << 20);
#endif
    }

    void busyWorkerTakesAMillionRequests()
    {
        QFETCH(int, stack);
        const StackSize size(static_cast<std::size_t>(stack));
        StackReach reach;
        int next = 0;
        int outOfTurn = 0;
        QSemaphore done;
        Managed managed;
        Gate gate(managed);
        for (int i = 0; i < waitingRequests; ++i) {
            managed.add(std::make_shared<Request>([&, i](Request& request) {
                reach.look();
                if (i != next++)
                    ++outOfTurn;
                if (next == waitingRequests)
                    done.release();
                Q_EMIT request.completed();
            }));
            if (i % 1'000 == 0)
                QMetaObject::invokeMethod(&managed.context(), [&reach] { reach.look(); });
        }
        gate.open();
        done.acquire();
        managed.settle();
        QCOMPARE(next, waitingRequests);
        QCOMPARE(outOfTurn, 0);
        QVERIFY2(reach.bytes() < 65'536, qPrintable(QString::number(reach.bytes())));
    }

    void workThatThrowsEndsTheProgramLoudly()
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QCoreApplication::applicationFilePath(),
                      {QString::fromLatin1(throwingArgument)});
        QVERIFY(process.waitForFinished(120'000));
        const QByteArray output = process.readAll();
        QVERIFY2(process.exitStatus() == QProcess::CrashExit || process.exitCode() != 0, output);
        QVERIFY2(output.contains(thrownText) || output.contains("Qt has caught an exception"),
                 output);
    }

    void workThatThrowsIsStillRunningForAnApplicationThatCatches()
    {
        Journal journal;
        Managed managed;
        Application::caught = 0;
        Application::catches = true;
        managed.add(recorded(journal, "1", [](Request&) { throw std::runtime_error(thrownText); }));
        managed.add(recorded(journal, "2"));
        while (Application::caught == 0)
            QCoreApplication::processEvents();
        managed.settle();
        Application::catches = false;
        QCOMPARE(journal.lines(), Lines{"1: started 1"});
        managed.end();
        QCOMPARE(Application::caught.load(), 1);
        QCOMPARE(journal.lines(),
                 (Lines{"1: started 1", "1: failed (request terminated before completing) 3",
                        "1: finished 3", "2: failed (request terminated before starting) 3",
                        "2: finished 3"}));
    }

private:
#ifdef Q_OS_WIN
    // Enough to overflow a stack that grows; under Wine each event asks another process several times.
    static constexpr int waitingRequests = 20'000;
#elif defined(__SANITIZE_THREAD__)
    static constexpr int waitingRequests = 100'000;
#else
    static constexpr int waitingRequests = 1'000'000;
#endif
};

int main(int argc, char* argv[])
{
    Application application(argc, argv);
    if (argc > 1 && std::string(argv[1]) == throwingArgument)
        return letWorkThrow();
    tst_BackgroundRequestManager test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_BackgroundRequestManager.moc"
