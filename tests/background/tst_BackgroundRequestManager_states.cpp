// A manager after any calls of its maker, of another thread and of its worker, compared with a model of its
// requests: their signals, each once and in order, the order of starts, and what responses hear of it.

#include "ManagedRequests.h"

#include "support/Background.h"
#include "support/rapidcheck.h"

#include <zvutil/stop_source.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSemaphore>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace zvutil::libzvutil;
using zvtest::Gate;
using zvtest::Journal;
using zvtest::Lines;
using zvtest::ManagerWithWorker;
using zvtest::Request;
using zvtest::Worker;
using zvutil::stop_source;

enum class Place { Maker, Other, Worker };
const char* const placeNames[] = {"the maker", "another thread", "the worker"};

enum class Work { Completes, Fails, CompletesLater, StaysOpen };
const char* const workNames[] = {"completes", "fails", "completes later", "stays open"};

/// Slots that wait lie on each other's stack.
constexpr std::size_t maxWaits = 5;

/// What has to be known of a request and of its response.
struct Followed
{
    Followed(Work itsWork, Place itsPlace, bool keeps)
        : work(itsWork)
        , place(itsPlace)
        , isKept(keeps)
    {
    }

    Work work;
    Place place;
    bool isKept;
    bool hasResponse = true;
    bool hasReceiver = true;
    bool isStopped = false;
    request_status status = request_pending;
    bool isReleased = false;
    Lines lines;
    Lines heard;
    /// What the response's thread hears when the worker goes on.
    Lines underway;
};

/// What manager, requests and responses have to be. While the worker is held up, all that is called waits;
/// then it handles that before it starts a request.
struct State
{
    std::vector<Followed> requests;
    std::vector<std::size_t> queue;
    std::optional<std::size_t> current;
    std::vector<std::size_t> starts;
    /// Requests for which slots on the worker wait, the innermost last.
    std::vector<std::size_t> waits;
    bool hasManager = true;
    bool isHeldUp = false;
    /// Whether a slot is on its way that uses the manager.
    bool isManagerNeeded = false;

    Followed& at(std::size_t id) { return requests[id]; }

    void tell(std::size_t id, const std::string& line)
    {
        Followed& request = at(id);
        request.lines.push_back(line);
        if (line == "aborted" || !request.hasResponse || !request.hasReceiver)
            return;
        if (isHeldUp && request.place != Place::Worker)
            request.underway.push_back(line);
        else
            request.heard.push_back(line);
    }

    void set(std::size_t id, request_status status, const std::string& line)
    {
        at(id).status = status;
        tell(id, line);
    }

    void abort(std::size_t id)
    {
        if (at(id).isReleased)
            return;
        if (at(id).status == request_pending)
            set(id, request_failed, "failed: abort requested");
        else if (at(id).status == request_started)
            tell(id, "aborted");
    }

    /// Destroys a request that nobody owns any more.
    void releaseIfUnowned(std::size_t id)
    {
        if (at(id).isReleased || at(id).isKept || current == id
            || std::count(queue.begin(), queue.end(), id) > 0)
            return;
        if (at(id).status == request_pending)
            set(id, request_failed, "failed: request terminated before starting");
        else if (at(id).status == request_started)
            set(id, request_failed, "failed: request terminated before completing");
        at(id).isReleased = true;
        tell(id, "finished");
    }

    void releaseAllUnowned()
    {
        for (std::size_t id = 0; id < requests.size(); ++id)
            releaseIfUnowned(id);
    }

    void start(std::size_t id)
    {
        current = id;
        starts.push_back(id);
        set(id, request_started, "started");
        if (at(id).work == Work::Fails)
            set(id, request_failed, "failed: no luck");
        else if (at(id).work != Work::StaysOpen)
            set(id, request_completed, "completed");
    }

    /// Whether the manager has chosen a request, or none is left.
    bool chooses()
    {
        if (current && at(*current).status == request_started)
            return false;
        current.reset();
        const auto isDeparted = [this](std::size_t id) { return at(id).status != request_pending; };
        queue.erase(std::remove_if(queue.begin(), queue.end(), isDeparted), queue.end());
        releaseAllUnowned();
        if (queue.empty())
            return false;
        const std::size_t next = queue.front();
        queue.erase(queue.begin());
        start(next);
        return true;
    }

    /// What comes of it when the worker may go on.
    void settle()
    {
        if (isHeldUp)
            return;
        isManagerNeeded = false;
        for (Followed& request : requests) {
            Lines& heard = request.heard;
            heard.insert(heard.end(), request.underway.begin(), request.underway.end());
            request.underway.clear();
        }
        while (hasManager && chooses())
            ;
        while (!waits.empty() && at(waits.back()).status >= request_completed)
            waits.pop_back();
    }

    void destroyManager()
    {
        hasManager = false;
        current.reset();
        queue.clear();
        releaseAllUnowned();
    }
};

std::string joined(const Lines& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += (text.empty() ? "" : ", ") + line;
    return text;
}

/// The manager, its requests and the threads that use them.
class Scene
{
public:
    ~Scene() { end(); }

    /// Runs \p work there; on the worker when it comes to that.
    void on(Place place, const std::function<void()>& work)
    {
        if (place == Place::Maker)
            work();
        else if (place == Place::Other)
            m_other.run(work);
        else
            QMetaObject::invokeMethod(&m_managed.context(), work, Qt::QueuedConnection);
    }

    void add(std::size_t id, Work work, Place place, bool isKept, bool waits)
    {
        m_entries.push_back(std::make_unique<Entry>());
        Entry& entry = *m_entries.back();
        entry.place = place;
        on(place, [this, &entry, id, work, isKept, waits] {
            auto request = std::make_shared<Request>(workOf(work));
            follow(*request, entry, id);
            entry.request = request.get();
            if (isKept)
                entry.kept = request;
            m_managed.add(std::move(request));
            // An add on the worker handles events, perhaps to the end.
            if (waits && entry.response)
                entry.response->wait();
        });
    }

    void addAgain(std::size_t id)
    {
        on(Place::Worker, [this, &entry = *m_entries[id]] { m_managed.add(entry.kept); });
    }

    void endWork(std::size_t id, bool completes)
    {
        on(Place::Worker, [&entry = *m_entries[id], completes] {
            if (completes)
                Q_EMIT entry.request->completed();
            else
                Q_EMIT entry.request->failed("no luck");
        });
    }

    void abort(std::size_t id, Place place)
    {
        on(place, [&entry = *m_entries[id]] { entry.response->abort(); });
    }

    /// From a thread of its own; the response's thread then handles that.
    void stop(std::size_t id, Place place)
    {
        std::thread([source = m_entries[id]->source] { source.request_stop(); }).join();
        if (place == Place::Maker)
            QCoreApplication::processEvents();
        else if (place == Place::Other)
            m_other.deliverPending();
    }

    void destroyResponse(std::size_t id, Place place)
    {
        on(place, [&entry = *m_entries[id]] { entry.response.reset(); });
    }

    void destroyReceiver(std::size_t id, Place place)
    {
        on(place, [&entry = *m_entries[id]] { entry.receiver.reset(); });
    }

    /// On the maker's thread only what isn't under way.
    void release(std::size_t id, bool isOnWorker)
    {
        on(isOnWorker ? Place::Worker : Place::Maker,
           [&entry = *m_entries[id]] { entry.kept.reset(); });
    }

    void wait(std::size_t id)
    {
        on(Place::Worker, [&entry = *m_entries[id]] { entry.response->wait(); });
    }

    void destroyManager() { m_managed.destroyManager(); }
    void holdUp() { m_gate.emplace(m_managed); }

    /// Lets the worker go on, and waits meanwhile if there is a response to wait for.
    void letGoOn(std::optional<std::size_t> awaited)
    {
        m_other.post([this] { m_gate->open(); });
        if (awaited)
            m_entries[*awaited]->response->wait();
        m_other.deliverPending();
    }

    void check(const State& state)
    {
        if (state.isHeldUp)
            return;
        // Without a word to the worker, which would wake it up.
        QElapsedTimer since;
        since.start();
        while (!isAsIn(state) && since.elapsed() < patience) {
            QCoreApplication::processEvents();
            QThread::yieldCurrentThread();
        }
        if (!isAsIn(state))
            patience = patienceToShrink;
        compare(state);
        RC_ASSERT(deliver());
        compare(state);
        m_gate.reset();
    }

    /// Ends all, and looks whether each request has ended and was destroyed.
    void end()
    {
        if (std::exchange(m_hasEnded, true))
            return;
        if (m_gate)
            m_gate->open();
        // A slot that is on its way may use the manager.
        deliver();
        for (const auto& entry : m_entries)
            on(Place::Worker, [&entry = *entry] { entry.kept.reset(); });
        m_managed.destroyManager();
        // What waits returns now, and what belongs to the worker is destroyed there.
        for (const auto& entry : m_entries)
            on(entry->place, [&entry = *entry] {
                entry.receiver.reset();
                entry.response.reset();
            });
        deliver();
        m_managed.end();
        m_gate.reset();
    }

    void checkEnds() const
    {
        for (const auto& entry : m_entries) {
            const Lines lines = entry->journal.lines();
            RC_LOG() << joined(lines) << '\n';
            RC_ASSERT(std::count(lines.begin(), lines.end(), "finished") == 1);
            RC_ASSERT(lines.back() == "finished");
        }
    }

private:
    /// All members but the journals belong to the thread of the response.
    struct Entry
    {
        Place place = Place::Maker;
        Journal journal;
        Journal heard;
        Request* request = nullptr;
        std::shared_ptr<Request> kept;
        std::unique_ptr<QObject> receiver;
        std::unique_ptr<abstract_response> response;
        stop_source source;
    };

    static Request::Work workOf(Work work)
    {
        switch (work) {
        case Work::Completes:
            return &Request::complete;
        case Work::Fails:
            return [](Request& request) { Q_EMIT request.failed("no luck"); };
        case Work::CompletesLater:
            return [](Request& request) {
                QMetaObject::invokeMethod(
                    &request, [&request] { Q_EMIT request.completed(); }, Qt::QueuedConnection);
            };
        default:
            return &zvtest::leaveOpen;
        }
    }

    void follow(Request& request, Entry& entry, std::size_t id)
    {
        entry.response = std::make_unique<abstract_response>(&request);
        entry.response->attachStopToken(entry.source.get_token());
        entry.receiver = std::make_unique<QObject>();
        writeDown(request, entry.journal, request);
        writeDown(*entry.response, entry.heard, *entry.receiver);
        QObject::connect(&request, &abstract_request::started,
                         [this, id] { m_starts.write(std::to_string(id)); });
        QObject::connect(&request, &abstract_request::aborted,
                         [&entry] { entry.journal.write("aborted"); });
    }

    template <typename Subject>
    static void writeDown(Subject& subject, Journal& journal, QObject& context)
    {
        const auto write = [&](auto signal, const char* line) {
            QObject::connect(
                &subject, signal, &context, [&journal, line] { journal.write(line); },
                Qt::DirectConnection);
        };
        write(&Subject::started, "started");
        write(&Subject::completed, "completed");
        write(&Subject::finished, "finished");
        QObject::connect(
            &subject, &Subject::failed, &context,
            [&journal](const std::string& message) { journal.write("failed: " + message); },
            Qt::DirectConnection);
    }

    bool isAsIn(const State& state) const
    {
        for (std::size_t id = 0; id < m_entries.size(); ++id) {
            if (m_entries[id]->journal.lines() != state.requests[id].lines
                || m_entries[id]->heard.lines() != state.requests[id].heard)
                return false;
        }
        return true;
    }

    void compare(const State& state) const
    {
        for (std::size_t id = 0; id < m_entries.size(); ++id) {
            RC_LOG() << "request " << id << '\n';
            RC_ASSERT(joined(m_entries[id]->journal.lines()) == joined(state.requests[id].lines));
            RC_ASSERT(joined(m_entries[id]->heard.lines()) == joined(state.requests[id].heard));
        }
        Lines starts;
        for (const std::size_t id : state.starts)
            starts.push_back(std::to_string(id));
        RC_ASSERT(joined(m_starts.lines()) == joined(starts));
    }

    /// Whether the worker comes by itself to what is sent to it; else it is woken up, so that it ends.
    bool deliver()
    {
        bool isHeard = true;
        for (int i = 0; i < 4; ++i) {
            const auto heard = std::make_shared<QSemaphore>();
            on(Place::Worker, [heard] { heard->release(); });
            QElapsedTimer since;
            since.start();
            while (!heard->tryAcquire()) {
                // Not an event loop, which would delete the thread of a manager that was destroyed.
                QCoreApplication::processEvents();
                QThread::yieldCurrentThread();
                if (since.elapsed() < patience)
                    continue;
                isHeard = false;
                patience = patienceToShrink;
                QAbstractEventDispatcher::instance(m_managed.thread())->wakeUp();
            }
        }
        m_other.deliverPending();
        QCoreApplication::processEvents();
        return isHeard;
    }

    /// Milliseconds after which something is taken to hang; fewer once something did, to shrink that.
    static qint64 patience;
    static constexpr qint64 patienceToShrink = 300;

    std::vector<std::unique_ptr<Entry>> m_entries;
    Journal m_starts;
    Worker m_other;
    ManagerWithWorker m_managed;
    std::optional<Gate> m_gate;
    bool m_hasEnded = false;
};

qint64 Scene::patience = 10'000;

class Step : public rc::state::Command<State, Scene>
{
public:
    void apply(State& state) const override
    {
        change(state);
        state.settle();
    }

    void run(const State& before, Scene& scene) const override
    {
        act(before, scene);
        scene.check(nextState(before));
    }

protected:
    virtual void change(State& state) const = 0;
    virtual void act(const State& before, Scene& scene) const = 0;
};

class Add : public Step
{
public:
    void checkPreconditions(const State& state) const override
    {
        RC_PRE(state.hasManager);
        RC_PRE(!waits() || state.waits.size() < maxWaits);
    }

    void show(std::ostream& stream) const override
    {
        stream << "add one that " << workNames[int(m_work)] << (m_isKept ? ", kept," : "") << " on "
               << placeNames[int(m_place)] << (waits() ? ", and wait" : "");
    }

protected:
    void change(State& state) const override
    {
        const std::size_t id = state.requests.size();
        state.requests.emplace_back(m_work, m_place, m_isKept);
        state.queue.push_back(id);
        if (waits())
            state.waits.push_back(id);
        state.isManagerNeeded |= m_place == Place::Worker;
    }

    void act(const State& before, Scene& scene) const override
    {
        scene.add(before.requests.size(), m_work, m_place, m_isKept, waits());
    }

private:
    bool waits() const { return m_place == Place::Worker && m_waits; }

    Work m_work = *rc::gen::element(Work::Completes, Work::Fails, Work::CompletesLater,
                                    Work::StaysOpen, Work::StaysOpen);
    Place m_place = *rc::gen::element(Place::Maker, Place::Other, Place::Worker);
    bool m_isKept = *rc::gen::arbitrary<bool>();
    bool m_waits = *rc::gen::arbitrary<bool>();
};

/// Concerns a request that has been added before.
class StepOfOne : public Step
{
public:
    /// One of those that \p isGood names, as a rule.
    template <typename IsGood>
    StepOfOne(const State& state, const char* name, IsGood isGood)
        : m_name(name)
    {
        std::vector<std::size_t> good;
        for (std::size_t id = 0; id < state.requests.size(); ++id) {
            if (isGood(state.requests[id]))
                good.push_back(id);
        }
        if (good.empty())
            m_id = *rc::gen::inRange<std::size_t>(0, state.requests.size() + 1);
        else
            m_id = *rc::gen::elementOf(good);
    }

    void checkPreconditions(const State& state) const final
    {
        RC_PRE(m_id < state.requests.size());
        RC_PRE(isPossible(state, state.requests[m_id]));
    }

    void show(std::ostream& stream) const override { stream << m_name << ' ' << m_id; }

protected:
    virtual bool isPossible(const State& state, const Followed& request) const = 0;

    std::size_t id() const { return m_id; }
    Place placeIn(const State& state) const { return state.requests[m_id].place; }

private:
    std::size_t m_id = 0;
    const char* m_name;
};

class AddAgain : public StepOfOne
{
public:
    explicit AddAgain(const State& state)
        : StepOfOne(state, "add again", [](const Followed& request) {
            return request.isKept && request.status == request_pending;
        })
    {
    }

protected:
    bool isPossible(const State& state, const Followed& request) const override
    {
        return state.hasManager && request.isKept;
    }

    void change(State& state) const override
    {
        state.queue.push_back(id());
        state.isManagerNeeded = true;
    }

    void act(const State& /*before*/, Scene& scene) const override { scene.addAgain(id()); }
};

class EndWork : public StepOfOne
{
public:
    explicit EndWork(const State& state)
        : StepOfOne(state, "end",
                    [](const Followed& request) { return request.status == request_started; })
        , m_completes(*rc::gen::arbitrary<bool>())
    {
    }

protected:
    bool isPossible(const State& /*state*/, const Followed& request) const override
    {
        return request.status == request_started;
    }

    void change(State& state) const override
    {
        if (m_completes)
            state.set(id(), request_completed, "completed");
        else
            state.set(id(), request_failed, "failed: no luck");
    }

    void act(const State& /*before*/, Scene& scene) const override
    {
        scene.endWork(id(), m_completes);
    }

private:
    bool m_completes;
};

class Abort : public StepOfOne
{
public:
    explicit Abort(const State& state)
        : StepOfOne(state, "abort", [](const Followed& request) {
            return request.hasResponse && request.status < request_completed;
        })
    {
    }

protected:
    bool isPossible(const State& /*state*/, const Followed& request) const override
    {
        return request.hasResponse;
    }

    void change(State& state) const override { state.abort(id()); }

    void act(const State& before, Scene& scene) const override
    {
        scene.abort(id(), placeIn(before));
    }
};

class Stop : public StepOfOne
{
public:
    explicit Stop(const State& state)
        : StepOfOne(state, "stop", [](const Followed& request) {
            return request.hasResponse && !request.isStopped;
        })
    {
    }

protected:
    /// One that the worker adds has its token when the worker has come to it.
    bool isPossible(const State& state, const Followed& request) const override
    {
        return !state.isHeldUp || request.place != Place::Worker;
    }

    void change(State& state) const override
    {
        if (!std::exchange(state.at(id()).isStopped, true) && state.at(id()).hasResponse)
            state.abort(id());
    }

    void act(const State& before, Scene& scene) const override
    {
        scene.stop(id(), placeIn(before));
    }
};

class DestroyResponse : public StepOfOne
{
public:
    explicit DestroyResponse(const State& state)
        : StepOfOne(state, "destroy the response of", [](const Followed& request) {
            return request.hasResponse && !request.isReleased;
        })
    {
    }

protected:
    bool isPossible(const State& state, const Followed& request) const override
    {
        return request.hasResponse && std::count(state.waits.begin(), state.waits.end(), id()) == 0;
    }

    void change(State& state) const override
    {
        state.at(id()).hasResponse = false;
        state.at(id()).underway.clear();
    }

    void act(const State& before, Scene& scene) const override
    {
        scene.destroyResponse(id(), placeIn(before));
    }
};

class DestroyReceiver : public StepOfOne
{
public:
    explicit DestroyReceiver(const State& state)
        : StepOfOne(state, "destroy the receiver of", [](const Followed& request) {
            return request.hasReceiver && !request.isReleased;
        })
    {
    }

protected:
    bool isPossible(const State& /*state*/, const Followed& request) const override
    {
        return request.hasReceiver;
    }

    void change(State& state) const override
    {
        state.at(id()).hasReceiver = false;
        state.at(id()).underway.clear();
    }

    void act(const State& before, Scene& scene) const override
    {
        scene.destroyReceiver(id(), placeIn(before));
    }
};

class Release : public StepOfOne
{
public:
    explicit Release(const State& state)
        : StepOfOne(state, "release", [](const Followed& request) {
            return request.isKept && request.status != request_pending;
        })
    {
    }

protected:
    bool isPossible(const State& /*state*/, const Followed& request) const override
    {
        return request.isKept;
    }

    void change(State& state) const override
    {
        state.at(id()).isKept = false;
        state.releaseIfUnowned(id());
    }

    void act(const State& before, Scene& scene) const override
    {
        scene.release(id(), before.isHeldUp || before.requests[id()].status == request_started);
    }
};

class Wait : public StepOfOne
{
public:
    explicit Wait(const State& state)
        : StepOfOne(state, "have a slot wait for", [](const Followed& request) {
            return request.hasResponse && request.place == Place::Worker
                && request.status < request_completed;
        })
    {
    }

protected:
    bool isPossible(const State& state, const Followed& request) const override
    {
        return request.hasResponse && request.place == Place::Worker
            && state.waits.size() < maxWaits;
    }

    void change(State& state) const override { state.waits.push_back(id()); }
    void act(const State& /*before*/, Scene& scene) const override { scene.wait(id()); }
};

class DestroyManager : public Step
{
public:
    void checkPreconditions(const State& state) const override
    {
        RC_PRE(state.hasManager && !state.isManagerNeeded);
    }

    void show(std::ostream& stream) const override { stream << "destroy the manager"; }

protected:
    void change(State& state) const override { state.destroyManager(); }
    void act(const State& /*before*/, Scene& scene) const override { scene.destroyManager(); }
};

class HoldUp : public Step
{
public:
    void checkPreconditions(const State& state) const override { RC_PRE(!state.isHeldUp); }
    void show(std::ostream& stream) const override { stream << "hold the worker up"; }

protected:
    void change(State& state) const override { state.isHeldUp = true; }
    void act(const State& /*before*/, Scene& scene) const override { scene.holdUp(); }
};

class LetGoOn : public Step
{
public:
    explicit LetGoOn(const State& state)
        : m_awaited(*rc::gen::inRange<std::size_t>(0, state.requests.size() + 1))
    {
    }

    void checkPreconditions(const State& state) const override { RC_PRE(state.isHeldUp); }

    void show(std::ostream& stream) const override
    {
        stream << "let the worker go on, waiting for " << m_awaited << " if it ends";
    }

protected:
    void change(State& state) const override { state.isHeldUp = false; }

    void act(const State& before, Scene& scene) const override
    {
        const State after = nextState(before);
        const bool ends = m_awaited < after.requests.size()
            && after.requests[m_awaited].status >= request_completed
            && after.requests[m_awaited].hasResponse
            && after.requests[m_awaited].place == Place::Maker;
        scene.letGoOn(ends ? std::optional(m_awaited) : std::nullopt);
    }

private:
    std::size_t m_awaited;
};

} // namespace

class tst_BackgroundRequestManager_states : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void requestsGoAsTheModelSays()
    {
        QVERIFY(rc::check("requests go as the model says", [] {
            Scene scene;
            const auto commands = *rc::gen::scale(
                1.5,
                rc::state::gen::commands(
                    State(),
                    rc::state::gen::execOneOfWithArgs<
                        Add, Add, Add, Add, AddAgain, AddAgain, EndWork, EndWork, Abort, Stop,
                        DestroyResponse, DestroyReceiver, Release, Release, Wait, Wait,
                        DestroyManager, HoldUp, HoldUp, LetGoOn, LetGoOn>()));
            rc::state::runAll(commands, State(), scene);
            scene.end();
            scene.checkEnds();
        }));
    }
};

QTEST_GUILESS_MAIN(tst_BackgroundRequestManager_states)
#include "tst_BackgroundRequestManager_states.moc"
