#include "ManagedRequests.h"

#include "support/Background.h"

#include <zvutil/libzvutil/background_impl.h>
#include <zvutil/stop_source.h>

#include <QCoreApplication>
#include <QMetaMethod>
#include <QProcess>
#include <QSemaphore>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#ifdef Q_OS_LINUX
#include <pthread.h>
#endif

#ifdef _MSC_VER
#include <intrin.h>
#endif

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
        ManagerWithWorker managed;
        QCOMPARE(managed.manager().metaObject(), &QObject::staticMetaObject);
        managed.manager().setParent(&parent);
        QCOMPARE(managed.manager().parent(), &parent);
        managed.manager().setParent(nullptr);
    }

    void requestComesToLiveOnTheWorker()
    {
        BlockingWork blocking;
        QObject parent;
        ManagerWithWorker managed;
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
        ManagerWithWorker managed;
        QCOMPARE(managed.thread()->priority(), QThread::InheritPriority);
    }

    void nothingIsNoHarm()
    {
        ManagerWithWorker managed;
        managed.add(nullptr);
        managed.deliverPending();
    }

    void nextStartsOnlyWhenTheRunningOneHasEnded()
    {
        Journal journal;
        ManagerWithWorker managed;
        auto first = recorded(journal, "first", &leaveOpen);
        managed.add(first);
        waitUntilStarted(managed, *first);
        managed.add(recorded(journal, "second"));
        waitForLines(journal, 1);
        managed.deliverPending();
        QCOMPARE(journal.lines(), Lines{"first started"});
        zvtest::runOn(managed.context(), [&] {
            Q_EMIT first->completed();
            first.reset();
        });
        waitForLines(journal, 6);
        managed.deliverPending();
        QCOMPARE(journal.lines(),
                 (Lines{"first started", "first completed", "first finished as completed",
                        "second started", "second completed", "second finished as completed"}));
    }

    void requestThatNeverEndsBlocksTheLaterOnes()
    {
        Journal journal;
        ManagerWithWorker managed;
        managed.add(recorded(journal, "request 1", &leaveOpen));
        for (int i = 2; i < 5; ++i)
            managed.add(recorded(journal, "request " + std::to_string(i)));
        waitForLines(journal, 1);
        managed.deliverPending();
        QCOMPARE(journal.lines(), Lines{"request 1 started"});
        managed.end();
        QCOMPARE(journal.size(), std::size_t(9));
    }

    void requestThatEndsTwiceEndsTheNextOne()
    {
        Journal journal;
        ManagerWithWorker managed;
        auto first = recorded(journal, "first");
        auto second = recorded(journal, "second", &leaveOpen);
        managed.add(first);
        managed.add(second);
        managed.add(recorded(journal, "third"));
        waitForLines(journal, 3);
        zvtest::runOn(managed.context(), [&] { Q_EMIT first->failed("as well"); });
        waitForLines(journal, 7);
        managed.deliverPending();
        // The third has run, though the second hasn't ended.
        QCOMPARE(
            journal.lines(),
            (Lines{"first started", "first completed", "second started", "first failed: as well",
                   "third started", "third completed", "third finished as completed"}));
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
        ManagerWithWorker managed;
        managed.add(recorded(journal, "first", [&](Request& request) {
            Q_EMIT request.completed();
            journal.write("still there");
        }));
        waitForLines(journal, 4);
        QCOMPARE(journal.lines(),
                 (Lines{"first started", "first completed", "still there",
                        "first finished as completed"}));
    }

    void workThatHandlesEventsAfterItsEndIsHeld()
    {
        Journal journal;
        ManagerWithWorker managed;
        managed.add(recorded(journal, "first", [&](Request& request) {
            Q_EMIT request.completed();
            QCoreApplication::sendPostedEvents();
            journal.write("status is " + zvtest::nameOf(request.status()));
        }));
        waitForLines(journal, 4);
        QCOMPARE(journal.lines(),
                 (Lines{"first started", "first completed", "status is completed",
                        "first finished as completed"}));
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
        ManagerWithWorker managed;
        auto running = std::make_shared<Request>(&leaveOpen);
        managed.add(running);
        waitUntilStarted(managed, *running);
        managed.add(std::make_shared<Request>(&leaveOpen));
        auto subject = std::make_shared<Request>();
        if (how == "aborted before it was added")
            subject->abort();
        connect(subject.get(), &abstract_request::finished, [&] { journal.write("finished"); });
        managed.add(subject);
        zvtest::runOn(managed.context(), [&] {
            if (how == "started")
                subject->start();
            else if (how == "completed")
                Q_EMIT subject->completed();
            else if (how == "failed")
                Q_EMIT subject->failed("x");
            subject.reset();
            QVERIFY(journal.lines().empty());
            Q_EMIT running->completed();
            running.reset();
        });
        waitForLines(journal, 1);
        managed.deliverPending();
        // It is gone though the one before it in the queue has only begun.
        QCOMPARE(journal.lines(), Lines{"finished"});
    }

    void requestThatIsAddedTwiceRunsOnce()
    {
        Journal journal;
        ManagerWithWorker managed;
        Gate gate(managed);
        auto request = recorded(journal, "first");
        managed.add(request);
        managed.add(std::move(request));
        managed.add(recorded(journal, "second"));
        gate.open();
        waitForLines(journal, 6);
        Lines lines = journal.lines();
        lines.erase(std::remove(lines.begin(), lines.end(), "first finished as completed"),
                    lines.end());
        QCOMPARE(lines,
                 (Lines{"first started", "first completed", "second started", "second completed",
                        "second finished as completed"}));
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
        ManagerWithWorker managed;
        Gate gate(managed);
        auto twice = recorded(journal, "first");
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
        ManagerWithWorker managed;
        std::weak_ptr<Request> running;
        auto first = recorded(journal, "first", [&](Request& request) {
            managed.add(running.lock());
            Q_EMIT request.completed();
        });
        running = first;
        managed.add(std::move(first));
        managed.add(std::make_shared<Request>(work.work()));
        work.waitUntilStarted();
        const Lines lines = journal.lines();
        work.end();
        QCOMPARE(lines, (Lines{"first started", "first completed", "first finished as completed"}));
    }

    void allThatWaitsIsDeliveredBeforeTheFirstStart()
    {
        Journal journal;
        ManagerWithWorker managed;
        Gate gate(managed);
        for (int i = 0; i < 3; ++i) {
            managed.add(recorded(journal, "request " + std::to_string(i)));
            QMetaObject::invokeMethod(&managed.context(), [&journal] { journal.write("event"); });
        }
        gate.open();
        waitForLines(journal, 12);
        QCOMPARE(
            journal.lines(),
            (Lines{"event", "event", "event", "request 0 started", "request 0 completed",
                   "request 0 finished as completed", "request 1 started", "request 1 completed",
                   "request 1 finished as completed", "request 2 started", "request 2 completed",
                   "request 2 finished as completed"}));
    }

    void requestThatIsAbortedByTheReleaseOfAnother()
    {
        // The front has been seen to be pending when what was removed before is released.
        Journal journal;
        ManagerWithWorker managed;
        auto running = std::make_shared<Request>(&leaveOpen);
        managed.add(running);
        waitUntilStarted(managed, *running);
        auto front = recorded(journal, "first");
        auto second = recorded(journal, "second");
        connect(second.get(), &abstract_request::finished, [&] {
            front->abort();
            front.reset();
        });
        managed.add(front);
        managed.add(second);
        managed.add(recorded(journal, "third"));
        zvtest::runOn(managed.context(), [&] {
            second->abort();
            second.reset();
            Q_EMIT running->completed();
            running.reset();
        });
        waitForLines(journal, 7);
        managed.deliverPending();
        QCOMPARE(journal.lines(),
                 (Lines{"second failed: abort requested", "second finished as failed",
                        "first failed: abort requested", "first finished as failed",
                        "third started", "third completed", "third finished as completed"}));
    }

    void choiceOfManyAbortedRequestsIsALoop()
    {
        // Each release aborts the next front, so that each choice finds one that has left.
        constexpr int count = 3'000;
        ManagerWithWorker managed;
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

    void requestThatIsHeldElsewhereOutlivesTheManager()
    {
        Journal journal;
        ManagerWithWorker managed;
        managed.add(recorded(journal, "first", &leaveOpen));
        auto held = recorded(journal, "second");
        managed.add(held);
        managed.deliverPending();
        managed.destroyManager();
        waitForLines(journal, 3);
        managed.deliverPending();
        QCOMPARE(held->status(), request_pending);
        QCOMPARE(journal.size(), std::size_t(3));
        zvtest::runOn(managed.context(), [&] { held.reset(); });
        QCOMPARE(journal.size(), std::size_t(5));
    }

    void requestThatIsReleasedMayHandleEventsAndAddOthers()
    {
        // Whatever it does, nothing is started any more.
        Journal journal;
        ManagerWithWorker managed;
        managed.add(std::make_shared<Request>(&leaveOpen));
        for (int i = 1; i < 4; ++i) {
            auto request = recorded(journal, "request " + std::to_string(i));
            connect(request.get(), &abstract_request::finished, [&managed] {
                QMetaObject::invokeMethod(
                    &managed.context(), [] {}, Qt::QueuedConnection);
                QCoreApplication::sendPostedEvents();
                QCoreApplication::processEvents();
            });
            managed.add(std::move(request));
        }
        managed.deliverPending();
        managed.destroyManager();
        waitForLines(journal, 6);
        managed.deliverPending();
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
        ManagerWithWorker managed;
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
        managed.deliverPending();
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
        ManagerWithWorker managed;
        Application::caught = 0;
        Application::catches = true;
        managed.add(
            recorded(journal, "first", [](Request&) { throw std::runtime_error(thrownText); }));
        managed.add(recorded(journal, "second"));
        while (Application::caught == 0)
            QCoreApplication::processEvents();
        managed.deliverPending();
        Application::catches = false;
        QCOMPARE(journal.lines(), Lines{"first started"});
        managed.end();
        QCOMPARE(Application::caught.load(), 1);
        QCOMPARE(
            journal.lines(),
            (Lines{"first started", "first failed: request terminated before completing",
                   "first finished as failed", "second failed: request terminated before starting",
                   "second finished as failed"}));
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
