// Eight threads add, abort, stop and wait for requests while their managers come and go; slots on the workers
// wait for other requests of the same manager, deep on each other's stack.
//
// ZV_SOAK_SECONDS sets how long the rounds go on (one round goes to its end), ZV_SOAK_SEED what they do.
// tools/soak runs this under the thread sanitizer for as long as it is told.

#include "Stopper.h"

#include "support/Background.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSemaphore>
#include <QTest>
#include <QTimer>

#include <array>
#include <atomic>
#include <cstdio>
#include <functional>
#include <memory>
#include <mutex>
#include <random>
#include <utility>
#include <vector>

using namespace zvutil::libzvutil;
using zvtest::Stopper;
using zvutil::stop_source;

namespace {

constexpr std::size_t makerCount = 8;
constexpr int stepsOfARound = 400;
constexpr int roundsByDefault = 3;
/// Slots that wait lie on each other's stack.
constexpr int maxDepth = 8;
constexpr std::size_t maxPooled = 40;

/// What all rounds have done so far.
struct Progress
{
    std::atomic<int> requests{0};
    std::atomic<int> managers{0};
    std::atomic<int> waitsOnWorkers{0};
    std::atomic<int> deepWaits{0};
    std::atomic<int> waitsOfReleases{0};
    /// Responses that haven't heard exactly one end.
    std::atomic<int> lostEnds{0};
};

Progress progress;

/// How much work, and how many slots that wait, lie on this thread's stack.
thread_local int worksOnStack = 0;
thread_local int waitsOnStack = 0;

class OnStack
{
public:
    explicit OnStack(int& count)
        : m_count(++count)
    {
    }

    ~OnStack() { --m_count; }

    OnStack(const OnStack&) = delete;
    OnStack& operator=(const OnStack&) = delete;

private:
    int& m_count;
};

/// How often a request has said what.
struct Tally
{
    std::atomic<int> starts{0};
    std::atomic<int> ends{0};
    std::atomic<int> finishes{0};
};

/// How its work goes on.
enum class Work { CompletesAtOnce, FailsAtOnce, EndsLater, EndsMuchLater, HandlesEvents };
constexpr int works = 5;

class CountedRequest : public abstract_request
{
public:
    CountedRequest(Work work, Tally& tally)
        : m_work(work)
    {
        ++living;
        connect(this, &abstract_request::started, [&tally] { ++tally.starts; });
        connect(this, &abstract_request::completed, [&tally] { ++tally.ends; });
        connect(this, &abstract_request::failed, [&tally] { ++tally.ends; });
        connect(this, &abstract_request::finished, [&tally] { ++tally.finishes; });
    }

    ~CountedRequest() override { --living; }

    static std::atomic<int> living;

protected:
    void perform() override
    {
        const OnStack work(worksOnStack);
        switch (m_work) {
        case Work::CompletesAtOnce:
            Q_EMIT completed();
            break;
        case Work::FailsAtOnce:
            Q_EMIT failed("no luck");
            break;
        case Work::EndsLater:
            QTimer::singleShot(0, this, &CountedRequest::end);
            break;
        case Work::EndsMuchLater:
            QTimer::singleShot(0, this,
                               [this] { QTimer::singleShot(1, this, &CountedRequest::end); });
            break;
        case Work::HandlesEvents:
            for (int i = 0; i < 3 && !abort_requested(); ++i)
                QCoreApplication::processEvents();
            end();
            break;
        }
    }

private:
    void end()
    {
        // What hears of the end is called by work.
        const OnStack work(worksOnStack);
        if (abort_requested())
            Q_EMIT failed("ended early");
        else
            Q_EMIT completed();
    }

    Work m_work;
};

std::atomic<int> CountedRequest::living{0};

/// A number below \p count.
int pick(std::mt19937& random, int count)
{
    return std::uniform_int_distribution(0, count - 1)(random);
}

unsigned seedFrom(std::mt19937& random)
{
    return static_cast<unsigned>(random());
}

/// Waits as callers do; 0 is the way of the library. An event loop that is entered while its thread ends
/// returns at once.
void waitFor(abstract_response& response, int way)
{
    const auto isOver = [&response] { return response.status() >= request_completed; };
    if (way == 0) {
        response.wait();
    } else if (way == 1) {
        while (!isOver())
            QCoreApplication::processEvents();
    } else if (!isOver()) {
        QEventLoop loop;
        QObject::connect(&response, &abstract_response::completed, &loop, &QEventLoop::quit);
        QObject::connect(&response, &abstract_response::failed, &loop, &QEventLoop::quit);
        loop.exec();
    }
}
constexpr int ways = 3;

/// A response that counts the ends it hears.
class CountedResponse
{
public:
    explicit CountedResponse(abstract_request& request)
        : m_response(&request)
    {
        const auto count = [this] { ++m_ends; };
        QObject::connect(&m_response, &abstract_response::completed, &m_response, count);
        QObject::connect(&m_response, &abstract_response::failed, &m_response, count);
    }

    ~CountedResponse()
    {
        if (m_ends != (m_response.status() >= request_completed ? 1 : 0))
            ++progress.lostEnds;
    }

    CountedResponse(const CountedResponse&) = delete;
    CountedResponse& operator=(const CountedResponse&) = delete;

    abstract_response& operator*() { return m_response; }
    abstract_response* operator->() { return &m_response; }

private:
    abstract_response m_response;
    int m_ends = 0;
};

using Pool = std::vector<std::shared_ptr<CountedResponse>>;

/// What the threads of a round share: the tallies of its requests.
class Tallies
{
public:
    Tally& makeOne()
    {
        const std::lock_guard lock(m_mutex);
        ++progress.requests;
        return *m_tallies.emplace_back(std::make_unique<Tally>());
    }

    void check() const
    {
        for (const auto& tally : m_tallies) {
            QVERIFY(tally->starts <= 1);
            QCOMPARE(tally->ends.load(), 1);
            QCOMPARE(tally->finishes.load(), 1);
        }
    }

private:
    std::mutex m_mutex;
    std::vector<std::unique_ptr<Tally>> m_tallies;
};

/// A manager to which any thread may add until the thread that made it ends it, and slots on its
/// worker that wait for its requests.
class SoakedManager
{
public:
    SoakedManager(Tallies& tallies, unsigned seed)
        : m_tallies(tallies)
        , m_random(seed)
    {
        QSemaphore known;
        m_manager->add(std::make_shared<zvtest::Request>([&](zvtest::Request& request) {
            m_worker = QThread::currentThread();
            Q_EMIT request.completed();
            known.release();
        }));
        known.acquire();
        m_context->moveToThread(m_worker);
        ++progress.managers;
    }

    ~SoakedManager() { end(); }

    SoakedManager(const SoakedManager&) = delete;
    SoakedManager& operator=(const SoakedManager&) = delete;

    /// Ends manager and worker, in the midst of what they do, on the thread that made them.
    void end()
    {
        if (!m_manager)
            return;
        m_isEnding = true;
        // An add on the worker handles events before it returns.
        while (m_adds > 0)
            QThread::yieldCurrentThread();
        m_manager.reset();
        // Responses belong to the worker, which destroys what they leave behind.
        zvtest::runOn(*m_context, [this] { m_pool.clear(); });
        zvtest::endThread(*m_worker);
        m_context.reset();
    }

    /// Lets go of a request that comes too late.
    void add(std::shared_ptr<abstract_request> request)
    {
        ++m_adds;
        if (!m_isEnding)
            m_manager->add(std::move(request));
        --m_adds;
    }

    /// Has the worker do something, unless it ends.
    void postStep()
    {
        ++m_adds;
        if (!m_isEnding)
            QMetaObject::invokeMethod(
                m_context.get(), [this] { step(); }, Qt::QueuedConnection);
        --m_adds;
    }

    /// What the manager releases may wait, too, where it is released on the worker.
    void stepWhenReleased(abstract_request& request)
    {
        QObject::connect(&request, &abstract_request::finished, [this] {
            if (QThread::currentThread() != m_worker || !mayWait())
                return;
            ++progress.waitsOfReleases;
            step();
        });
    }

private:
    bool mayWait() const { return !m_isEnding && worksOnStack == 0 && waitsOnStack < maxDepth; }

    void step()
    {
        switch (pick(m_random, 5)) {
        case 0:
            pool(makeRequest());
            break;
        case 1:
            wait(makeRequest(), pick(m_random, ways));
            break;
        case 2:
        case 3:
            if (!m_pool.empty())
                wait(takeFromPool(), 0);
            break;
        case 4:
            if (!m_pool.empty())
                (*takeFromPool())->abort();
            break;
        }
    }

    std::shared_ptr<CountedResponse> makeRequest()
    {
        auto request = std::make_shared<CountedRequest>(static_cast<Work>(pick(m_random, works)),
                                                        m_tallies.makeOne());
        if (pick(m_random, 4) == 0)
            stepWhenReleased(*request);
        auto response = std::make_shared<CountedResponse>(*request);
        add(std::move(request));
        return response;
    }

    void pool(std::shared_ptr<CountedResponse> response)
    {
        if (m_isEnding)
            return;
        if (m_pool.size() == maxPooled)
            takeFromPool();
        m_pool.push_back(std::move(response));
    }

    std::shared_ptr<CountedResponse> takeFromPool()
    {
        const auto place = m_pool.begin() + pick(m_random, static_cast<int>(m_pool.size()));
        std::shared_ptr<CountedResponse> response = std::move(*place);
        m_pool.erase(place);
        return response;
    }

    /// For a request that the slot hasn't just added the way is that of the library: GLib's event loop,
    /// entered from a slot, passes over what was posted before.
    void wait(const std::shared_ptr<CountedResponse>& response, int way)
    {
        if (!mayWait() || (*response)->status() >= request_completed)
            return;
        const OnStack waiting(waitsOnStack);
        ++progress.waitsOnWorkers;
        if (waitsOnStack > 1)
            ++progress.deepWaits;
        waitFor(**response, way);
    }

    Tallies& m_tallies;
    std::unique_ptr<BackgroundRequestManager> m_manager =
        std::make_unique<BackgroundRequestManager>();
    std::unique_ptr<QObject> m_context = std::make_unique<QObject>();
    QThread* m_worker = nullptr;
    std::atomic<bool> m_isEnding{false};
    std::atomic<int> m_adds{0};
    // Only the worker uses the members below while it runs.
    std::mt19937 m_random;
    Pool m_pool;
};

/// The managers of a round, one for each maker. Their makers replace them.
class Managers
{
public:
    std::shared_ptr<SoakedManager> at(std::size_t index) const
    {
        const std::lock_guard lock(m_mutex);
        return m_managers[index];
    }

    void set(std::size_t index, std::shared_ptr<SoakedManager> manager)
    {
        const std::lock_guard lock(m_mutex);
        m_managers[index].swap(manager);
    }

private:
    mutable std::mutex m_mutex;
    std::array<std::shared_ptr<SoakedManager>, makerCount> m_managers;
};

struct Round
{
    Tallies tallies;
    Managers managers;
    Stopper stopper;
};

/// Adds requests on a thread of its own, to its own manager and to those of others.
class Maker
{
public:
    Maker(Round& round, std::size_t index, unsigned seed)
        : m_round(round)
        , m_index(index)
        , m_random(seed)
    {
    }

    void run()
    {
        renewOwn();
        for (int i = 0; i < stepsOfARound; ++i) {
            step();
            QCoreApplication::processEvents();
        }
        for (const auto& response : std::exchange(m_pool, {}))
            (*response)->wait();
        endOwn();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

private:
    void endOwn()
    {
        const std::shared_ptr<SoakedManager> own = m_round.managers.at(m_index);
        m_round.managers.set(m_index, nullptr);
        if (own)
            own->end();
    }

    void renewOwn()
    {
        endOwn();
        m_round.managers.set(m_index,
                             std::make_shared<SoakedManager>(m_round.tallies, seedFrom(m_random)));
    }

    void step()
    {
        const int what = pick(m_random, 100);
        if (what < 1)
            renewOwn();
        else if (what < 40)
            addOne();
        else if (what < 80)
            postOne();
        else if (!m_pool.empty())
            useOne(what);
    }

    void postOne()
    {
        if (const std::shared_ptr<SoakedManager> manager = any())
            manager->postStep();
    }

    void useOne(int what)
    {
        const std::shared_ptr<CountedResponse> response = takeFromPool();
        if (what < 90)
            waitFor(**response, pick(m_random, ways));
        else if (what < 95)
            (*response)->abort();
    }

    void addOne()
    {
        const std::shared_ptr<SoakedManager> manager = any();
        if (!manager)
            return;
        auto request = std::make_shared<CountedRequest>(static_cast<Work>(pick(m_random, works)),
                                                        m_round.tallies.makeOne());
        if (pick(m_random, 4) == 0)
            manager->stepWhenReleased(*request);
        auto response = std::make_shared<CountedResponse>(*request);
        const stop_source source;
        const int stops = pick(m_random, 4);
        if (stops == 0)
            (*response)->attachStopToken(source.get_token());
        if (pick(m_random, 4) == 0)
            QObject::connect(&**response, &abstract_response::started, &**response,
                             &abstract_response::abort);
        manager->add(std::move(request));
        if (stops == 0)
            m_round.stopper.stop(source);
        if (m_pool.size() == maxPooled)
            takeFromPool();
        m_pool.push_back(std::move(response));
    }

    std::shared_ptr<SoakedManager> any()
    {
        const bool isOwn = pick(m_random, 2) == 0;
        return m_round.managers.at(
            isOwn ? m_index
                  : static_cast<std::size_t>(pick(m_random, static_cast<int>(makerCount))));
    }

    std::shared_ptr<CountedResponse> takeFromPool()
    {
        const auto place = m_pool.begin() + pick(m_random, static_cast<int>(m_pool.size()));
        std::shared_ptr<CountedResponse> response = std::move(*place);
        m_pool.erase(place);
        return response;
    }

    Round& m_round;
    std::size_t m_index;
    std::mt19937 m_random;
    Pool m_pool;
};

void runRound(std::mt19937& random)
{
    Round round;
    std::array<std::unique_ptr<QThread>, makerCount> threads;
    for (std::size_t i = 0; i < makerCount; ++i)
        threads[i].reset(
            QThread::create([&round, i, seed = seedFrom(random)] { Maker(round, i, seed).run(); }));
    for (const auto& thread : threads)
        thread->start();
    for (const auto& thread : threads)
        thread->wait();
    round.tallies.check();
}

void report(int rounds, const QElapsedTimer& since)
{
    std::fprintf(stderr,
                 "%lld s: %d rounds, %d requests, %d managers, %d waits on workers "
                 "(%d deep, %d of releases)\n",
                 static_cast<long long>(since.elapsed() / 1000), rounds, progress.requests.load(),
                 progress.managers.load(), progress.waitsOnWorkers.load(),
                 progress.deepWaits.load(), progress.waitsOfReleases.load());
}

} // namespace

class tst_background_soak_waits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyWaitReturns()
    {
        bool isSeed = false;
        unsigned seed = qEnvironmentVariable("ZV_SOAK_SEED").toUInt(&isSeed);
        if (!isSeed)
            seed = 20261121;
        const qint64 milliseconds = 1000 * qEnvironmentVariableIntValue("ZV_SOAK_SECONDS");
        std::fprintf(stderr, "seed %u\n", seed);
        std::mt19937 random(seed);
        QElapsedTimer since;
        since.start();
        int rounds = 0;
        qint64 reported = 0;
        while (rounds < roundsByDefault || since.elapsed() < milliseconds) {
            runRound(random);
            if (QTest::currentTestFailed())
                return;
            QCOMPARE(CountedRequest::living.load(), 0);
            QCOMPARE(progress.lostEnds.load(), 0);
            ++rounds;
            if (since.elapsed() - reported >= 10'000) {
                reported = since.elapsed();
                report(rounds, since);
            }
        }
        report(rounds, since);
        QVERIFY(progress.deepWaits > 0);
        QVERIFY(progress.waitsOfReleases > 0);
    }
};

QTEST_GUILESS_MAIN(tst_background_soak_waits)
#include "tst_background_soak_waits.moc"
