// Handing work to another thread and hearing of its end: the library against bare queued calls,
// against just the queued calls that a request needs, alone and along with the connections that it needs,
// and against Qt's concurrent run. Stopping:
// the library against the standard library's stop source, which is why this program is C++20.

#include "support/Quick.h"

#include <zvutil/libzvutil/BackgroundRequestManager.h>
#include <zvutil/libzvutil/abstract_response.h>
#include <zvutil/signalling/basic_receiver.h>
#include <zvutil/stop_source.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QFutureWatcher>
#include <QSemaphore>
#include <QThread>
#include <QtConcurrent>

#include <benchmark/benchmark.h>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace {

using namespace zvutil::libzvutil;

constexpr int many = 10'000;
constexpr int receivers = 1'000;

void makeApplication()
{
    static int count = 1;
    static char name[] = "bench_background";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication application(count, arguments);
}

/// An object on a thread of its own, for as long as the program runs.
QObject& elsewhere()
{
    static QThread thread;
    static QObject* const object = [] {
        auto* const made = new QObject;
        made->moveToThread(&thread);
        thread.start();
        std::atexit([] {
            thread.quit();
            thread.wait();
        });
        return made;
    }();
    return *object;
}

/// An object on the main thread, for as long as the program runs.
QObject& here()
{
    static auto* const object = new QObject;
    return *object;
}

BackgroundRequestManager& manager()
{
    static auto* const made = new BackgroundRequestManager;
    return *made;
}

class EmptyRequest : public abstract_request
{
protected:
    void perform() override { Q_EMIT completed(); }
};

/// An object on the manager's thread.
QObject& onManagersThread()
{
    static QObject* const object = [] {
        const auto request = std::make_shared<EmptyRequest>();
        manager().add(request);
        auto* const made = new QObject;
        made->moveToThread(request->thread());
        return made;
    }();
    return *object;
}

template <typename Work>
void send(QObject& to, Work work)
{
    QMetaObject::invokeMethod(&to, std::move(work), Qt::QueuedConnection);
}

/// Keeps the thread of an object busy until it is opened, so that all that is sent there waits. For
/// one call alone there is no need to.
class Gate
{
public:
    Gate(QObject& object, int count)
    {
        if (count > 1)
            send(object, [this] { m_semaphore.acquire(); });
    }

    void open() { m_semaphore.release(); }

private:
    QSemaphore m_semaphore;
};

/// Counts what comes back on this thread, and ends the wait for it.
class Arrivals
{
public:
    explicit Arrivals(int expected)
        : m_left(expected)
    {
    }

    void arrived()
    {
        if (--m_left == 0)
            m_loop.quit();
    }

    void wait()
    {
        if (m_left > 0)
            m_loop.exec();
    }

    QObject& context() { return m_loop; }

private:
    QEventLoop m_loop;
    int m_left;
};

/// The queued calls that a request takes, without requests: two there, three back, and the events
/// handled before each choice.
class Sketch
{
public:
    /// Lives as long as the program, since its last call may outlast the last arrival.
    static Sketch& instance()
    {
        static auto* const made = new Sketch;
        return *made;
    }

    /// With an object that goes with the call, if there is one.
    void add(Arrivals& arrivals, std::shared_ptr<QObject> object = nullptr)
    {
        send(elsewhere(), [this, &arrivals, object = std::move(object)]() mutable {
            m_queue.push_back({&arrivals, std::move(object)});
            runNext();
        });
    }

private:
    struct Item
    {
        Arrivals* arrivals = nullptr;
        std::shared_ptr<QObject> object;
    };

    void runNext()
    {
        if (m_pumping)
            return;
        m_pumping = true;
        QCoreApplication::processEvents();
        m_pumping = false;
        if (m_running.arrivals || m_queue.empty())
            return;
        m_running = std::move(m_queue.front());
        m_queue.pop_front();
        Arrivals& arrivals = *m_running.arrivals;
        for (int end = 0; m_running.object && end < 2; ++end)
            QObject::connect(
                m_running.object.get(), &QObject::objectNameChanged, &elsewhere(), [] {},
                Qt::QueuedConnection);
        send(here(), [] { benchmark::ClobberMemory(); });
        send(elsewhere(), [this] {
            m_running = Item();
            send(here(), [] { benchmark::ClobberMemory(); });
            runNext();
        });
        send(arrivals.context(), [&arrivals] { arrivals.arrived(); });
    }

    std::deque<Item> m_queue;
    Item m_running;
    bool m_pumping = false;
};

/// What the sketch leaves out and a request needs as well: an object that moves there, with three
/// connections of its own and five with an object on this thread; two more there, which the worker makes;
/// and their release on the worker. The signals stand for those of requests, and nobody emits them.
class ConnectedSketch
{
public:
    explicit ConnectedSketch(int count)
    {
        for (int i = 0; i < count; ++i) {
            m_requests.push_back(std::make_shared<QObject>());
            m_responses.push_back(std::make_unique<QObject>());
            QObject& request = *m_requests.back();
            for (int self = 0; self < 3; ++self)
                QObject::connect(&request, &QObject::objectNameChanged, &request, [] {});
            for (int away = 0; away < 4; ++away)
                QObject::connect(&request, &QObject::objectNameChanged, m_responses.back().get(),
                                 [] {});
            QObject::connect(m_responses.back().get(), &QObject::objectNameChanged, &request,
                             [] {});
        }
    }

    void add(Arrivals& arrivals)
    {
        for (std::shared_ptr<QObject>& request : m_requests) {
            request->setParent(nullptr);
            request->moveToThread(elsewhere().thread());
            Sketch::instance().add(arrivals, std::move(request));
        }
    }

private:
    std::vector<std::shared_ptr<QObject>> m_requests;
    std::vector<std::unique_ptr<QObject>> m_responses;
};

/// Requests with responses that tell of their completion.
class Requests
{
public:
    Requests(int count, Arrivals& arrivals)
    {
        for (int i = 0; i < count; ++i) {
            m_requests.push_back(std::make_shared<EmptyRequest>());
            m_responses.push_back(std::make_unique<abstract_response>(m_requests.back().get()));
            QObject::connect(m_responses.back().get(), &abstract_response::completed,
                             &arrivals.context(), [&arrivals] { arrivals.arrived(); });
        }
    }

    void add()
    {
        for (std::shared_ptr<abstract_request>& request : m_requests)
            manager().add(std::move(request));
    }

private:
    std::vector<std::shared_ptr<abstract_request>> m_requests;
    std::vector<std::unique_ptr<abstract_response>> m_responses;
};

/// Handles on all threads what the calls before have left there, which are the last signals of requests: who
/// adds a request looks at each event that waits here.
void handleWhatIsLeft()
{
    for (QObject* const object : {&elsewhere(), &onManagersThread()})
        QMetaObject::invokeMethod(
            object, [] {}, Qt::BlockingQueuedConnection);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // This takes the events that have been handled out of the list as well.
    QCoreApplication::sendPostedEvents();
}

/// What the library's requests are made and released in, outside of the time that counts. The others have
/// to spend it as well: a thread that has waited longer takes longer to wake.
void spendTheTimeOfMaking(benchmark::State& state, int count)
{
    state.PauseTiming();
    {
        Arrivals arrivals(count);
        const Requests requests(count, arrivals);
    }
    handleWhatIsLeft();
    state.ResumeTiming();
}

void thereAndBack(benchmark::State& state)
{
    makeApplication();
    const auto count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        spendTheTimeOfMaking(state, count);
        Arrivals arrivals(count);
        Gate gate(elsewhere(), count);
        for (int i = 0; i < count; ++i)
            send(elsewhere(),
                 [&arrivals] { send(arrivals.context(), [&arrivals] { arrivals.arrived(); }); });
        gate.open();
        arrivals.wait();
    }
}

void sketch(benchmark::State& state)
{
    makeApplication();
    const auto count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        spendTheTimeOfMaking(state, count);
        Arrivals arrivals(count);
        Gate gate(elsewhere(), count);
        for (int i = 0; i < count; ++i)
            Sketch::instance().add(arrivals);
        gate.open();
        arrivals.wait();
    }
}

void connectedSketch(benchmark::State& state)
{
    makeApplication();
    const auto count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        Arrivals arrivals(count);
        auto requests = std::make_unique<ConnectedSketch>(count);
        state.ResumeTiming();
        Gate gate(elsewhere(), count);
        requests->add(arrivals);
        gate.open();
        arrivals.wait();
        state.PauseTiming();
        requests.reset();
        handleWhatIsLeft();
        state.ResumeTiming();
    }
}

void library(benchmark::State& state)
{
    makeApplication();
    const auto count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        Arrivals arrivals(count);
        auto requests = std::make_unique<Requests>(count, arrivals);
        state.ResumeTiming();
        Gate gate(onManagersThread(), count);
        requests->add();
        gate.open();
        arrivals.wait();
        state.PauseTiming();
        requests.reset();
        handleWhatIsLeft();
        state.ResumeTiming();
    }
}

void libraryWithMaking(benchmark::State& state)
{
    makeApplication();
    const auto count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        Arrivals arrivals(count);
        auto requests = std::make_unique<Requests>(count, arrivals);
        Gate gate(onManagersThread(), count);
        requests->add();
        gate.open();
        arrivals.wait();
        requests.reset();
        state.PauseTiming();
        handleWhatIsLeft();
        state.ResumeTiming();
    }
}

void concurrentRun(benchmark::State& state)
{
    makeApplication();
    const auto count = static_cast<int>(state.range(0));
    QThreadPool pool;
    pool.setMaxThreadCount(1);
    for (auto _ : state) {
        Arrivals arrivals(count);
        std::vector<std::unique_ptr<QFutureWatcher<void>>> watchers;
        QSemaphore gate;
        if (count > 1)
            QtConcurrent::run(&pool, [&gate] { gate.acquire(); });
        for (int i = 0; i < count; ++i) {
            watchers.push_back(std::make_unique<QFutureWatcher<void>>());
            QObject::connect(watchers.back().get(), &QFutureWatcher<void>::finished,
                             &arrivals.context(), [&arrivals] { arrivals.arrived(); });
            watchers.back()->setFuture(QtConcurrent::run(&pool, [] {}));
        }
        gate.release();
        arrivals.wait();
    }
}

/// The time of one request, by how many wait along with it.
void waiting(benchmark::State& state)
{
    makeApplication();
    const int count = zvbench::isQuick() ? 1'000 : static_cast<int>(state.range(0));
    for (auto _ : state) {
        std::atomic<int> left{count};
        std::vector<std::shared_ptr<abstract_request>> requests;
        Arrivals arrivals(1);
        for (int i = 0; i < count; ++i) {
            requests.push_back(std::make_shared<EmptyRequest>());
            QObject::connect(requests.back().get(), &abstract_request::finished, [&] {
                if (--left == 0)
                    send(arrivals.context(), [&arrivals] { arrivals.arrived(); });
            });
        }
        const auto begin = std::chrono::steady_clock::now();
        for (std::shared_ptr<abstract_request>& request : requests)
            manager().add(std::move(request));
        arrivals.wait();
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
        state.SetIterationTime(taken.count() / count);
    }
}

struct Count
{
    int* calls;
    void operator()() const { ++*calls; }
};

using Receiver = zvutil::signalling::parameterised_abstract_receiver<>;
using CountReceiver = zvutil::signalling::basic_receiver<Count>;

void check(benchmark::State& state, int calls)
{
    if (calls != receivers)
        state.SkipWithError("not all receivers were called");
}

/// Plain virtual calls of what is registered in a vector.
void stopFloor(benchmark::State& state)
{
    for (auto _ : state) {
        int calls = 0;
        std::vector<std::unique_ptr<Receiver>> registered;
        for (int i = 0; i < receivers; ++i)
            registered.push_back(std::make_unique<CountReceiver>(Count{&calls}));
        for (const auto& receiver : registered)
            receiver->receive();
        check(state, calls);
    }
}

/// The registry that is needed, by hand.
void stopSketch(benchmark::State& state)
{
    for (auto _ : state) {
        int calls = 0;
        std::atomic<bool> flag{false};
        std::deque<std::weak_ptr<Receiver>> registry;
        std::vector<std::shared_ptr<Receiver>> registered;
        for (int i = 0; i < receivers; ++i) {
            registered.emplace_back(std::make_unique<CountReceiver>(Count{&calls}));
            registry.push_back(registered.back());
        }
        flag.exchange(true);
        for (const auto& receiver : registry) {
            if (const auto locked = receiver.lock())
                locked->receive();
        }
        check(state, calls);
    }
}

void stopLibrary(benchmark::State& state)
{
    for (auto _ : state) {
        int calls = 0;
        const zvutil::stop_source source;
        const zvutil::stop_token token = source.get_token();
        std::vector<std::shared_ptr<Receiver>> registered;
        for (int i = 0; i < receivers; ++i)
            registered.push_back(
                token.connect_receiver(std::make_unique<CountReceiver>(Count{&calls})));
        source.request_stop();
        check(state, calls);
    }
}

void stopStandard(benchmark::State& state)
{
    for (auto _ : state) {
        int calls = 0;
        std::stop_source source;
        const std::stop_token token = source.get_token();
        std::deque<std::stop_callback<Count>> registered;
        for (int i = 0; i < receivers; ++i)
            registered.emplace_back(token, Count{&calls});
        source.request_stop();
        check(state, calls);
    }
}

void registerExchange(const std::string& name, int count)
{
    const std::pair<const char*, void (*)(benchmark::State&)> contenders[] = {
        {"floor", &thereAndBack},
        {"sketch", &sketch},
        {"sketch, connections counted", &connectedSketch},
        {"library", &library},
        {"library, making counted", &libraryWithMaking},
        {"QtConcurrent::run", &concurrentRun},
    };
    for (const auto& [contender, run] : contenders)
        benchmark::RegisterBenchmark((name + '/' + contender).c_str(), run)
            ->Arg(count)
            ->UseRealTime();
}

const bool registered = [] {
    registerExchange("one at a time", 1);
    registerExchange("10,000 at once", many);
    const std::pair<const char*, int> counts[] = {
        {"10,000", 10'000}, {"100,000", 100'000}, {"1,000,000", 1'000'000}};
    for (const auto& [name, count] : counts)
        benchmark::RegisterBenchmark((std::string("each of as many/") + name).c_str(), &waiting)
            ->Arg(count)
            ->UseManualTime()
            ->Iterations(1)
            ->Repetitions(3);
    benchmark::RegisterBenchmark("stop 1,000/floor", &stopFloor);
    benchmark::RegisterBenchmark("stop 1,000/sketch", &stopSketch);
    benchmark::RegisterBenchmark("stop 1,000/library", &stopLibrary);
    benchmark::RegisterBenchmark("stop 1,000/std::stop_source", &stopStandard);
    return true;
}();

} // namespace
