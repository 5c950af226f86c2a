// Many requests of several makers, aborted at random, while managers come and go.

#include "Stopper.h"

#include "support/Background.h"

#include <zvutil/stop_source.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QSemaphore>
#include <QTest>
#include <QTimer>

#include <array>
#include <atomic>
#include <memory>
#include <optional>
#include <random>
#include <unordered_map>
#include <utility>
#include <vector>

#if defined(__GLIBC__) && !defined(ZV_SANITIZED)
#include <malloc.h>
#endif

using namespace zvutil::libzvutil;
using zvtest::Stopper;
using zvutil::stop_source;

namespace {

/// How often a request has said what.
struct Tally
{
    std::atomic<int> starts{0};
    std::atomic<int> ends{0};
    std::atomic<int> finishes{0};
};

/// How its work goes on.
enum class Work { CompletesAtOnce, FailsAtOnce, EndsLater, HandlesEvents };
constexpr int works = 4;

/// Whether and when a request is aborted, and by what.
enum class Abort {
    Never,
    BeforeTheAdd,
    AfterTheAdd,
    WhenStarted,
    WhenEnded,
    TokenStoppedBefore,
    TokenStoppedElsewhere,
    TokenStoppedLater,
    ResponseGoesMeanwhile,
};
constexpr int aborts = 9;

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
        if (abort_requested())
            Q_EMIT failed("ended early");
        else
            Q_EMIT completed();
    }

    Work m_work;
};

std::atomic<int> CountedRequest::living{0};

/// A manager of the thread that makes it. It ends its worker, as it has to under a running loop.
class OwnedManager
{
public:
    OwnedManager()
    {
        QSemaphore known;
        m_manager.add(std::make_shared<zvtest::Request>([&](zvtest::Request& request) {
            m_worker = QThread::currentThread();
            Q_EMIT request.completed();
            known.release();
        }));
        known.acquire();
    }

    ~OwnedManager()
    {
        // Not a member's turn yet: the thread has to end behind what its end destroys.
        m_managed.reset();
        zvtest::endThread(*m_worker);
    }

    OwnedManager(const OwnedManager&) = delete;
    OwnedManager& operator=(const OwnedManager&) = delete;

    BackgroundRequestManager& manager() { return m_manager; }

private:
    std::unique_ptr<BackgroundRequestManager> m_managed =
        std::make_unique<BackgroundRequestManager>();
    BackgroundRequestManager& m_manager = *m_managed;
    QThread* m_worker = nullptr;
};

/// What all makers share.
struct Soak
{
    explicit Soak(std::size_t count)
        : tallies(count)
    {
    }

    std::vector<Tally> tallies;
    OwnedManager common;
    Stopper stopper;
    /// Responses that haven't heard exactly one end.
    std::atomic<int> lostEnds{0};
};

/// Makes requests on a thread of its own, a hundred at a time, until they have all come to their
/// end; then the thread ends, too.
class Maker : public QObject
{
public:
    Maker(Soak& soak, std::size_t begin, std::size_t end, unsigned seed)
        : m_soak(soak)
        , m_random(seed)
        , m_next(begin)
        , m_end(end)
        , m_left(end - begin)
    {
        moveToThread(&m_thread);
        QMetaObject::invokeMethod(
            this,
            [this] {
                for (int i = 0; i < 100; ++i)
                    makeOne();
            },
            Qt::QueuedConnection);
    }

    ~Maker() override { zvtest::endThread(m_thread); }

    QThread& thread() { return m_thread; }

private:
    struct Followed
    {
        std::unique_ptr<abstract_response> response;
        std::shared_ptr<abstract_request> kept;
        bool isOwn = false;
        int ends = 0;
    };

    int random(int count) { return std::uniform_int_distribution(0, count - 1)(m_random); }

    /// The manager for the next request, which is that of \p followed.
    BackgroundRequestManager& manager(Followed& followed)
    {
        if (random(3) == 0)
            return m_soak.common.manager();
        followed.isOwn = true;
        if (!m_own || ++m_added % 300 == 0)
            replaceOwn();
        return m_own->manager();
    }

    /// Ends the own manager with requests in it, as a rule, waiting and running.
    void replaceOwn()
    {
        m_own.reset();
        m_own.emplace();
        // What it has left to its other owner. News of what has ended is on its way.
        std::vector<std::shared_ptr<abstract_request>> kept;
        for (auto& [index, followed] : m_followed) {
            if (followed.isOwn && followed.kept && followed.kept->status() <= request_started)
                kept.push_back(std::move(followed.kept));
        }
    }

    void makeOne()
    {
        if (m_next == m_end)
            return;
        const std::size_t index = m_next++;
        auto request = std::make_shared<CountedRequest>(static_cast<Work>(random(works)),
                                                        m_soak.tallies[index]);
        Followed& followed = m_followed[index];
        followed.response = std::make_unique<abstract_response>(request.get());
        const auto heardEnd = [this, index] {
            Followed& its = m_followed.at(index);
            ++its.ends;
            its.kept.reset();
        };
        connect(followed.response.get(), &abstract_response::completed, this, heardEnd);
        connect(followed.response.get(), &abstract_response::failed, this, heardEnd);
        // Behind the response's connection, so that this is heard last.
        connect(request.get(), &abstract_request::finished, this, [this, index] { over(index); });
        add(std::move(request), followed, static_cast<Abort>(random(aborts)));
    }

    void add(std::shared_ptr<CountedRequest> request, Followed& followed, Abort how)
    {
        abstract_response* const response = followed.response.get();
        const stop_source source;
        if (how >= Abort::TokenStoppedElsewhere)
            response->attachStopToken(source.get_token());
        switch (how) {
        case Abort::Never:
            // Its last owner may be this thread.
            if (random(2) == 0)
                followed.kept = request;
            break;
        case Abort::BeforeTheAdd:
            request->abort();
            break;
        case Abort::WhenStarted:
            connect(response, &abstract_response::started, response, &abstract_response::abort);
            break;
        case Abort::WhenEnded:
            connect(response, &abstract_response::completed, response, &abstract_response::abort);
            connect(response, &abstract_response::failed, response, &abstract_response::abort);
            break;
        case Abort::TokenStoppedBefore:
            source.request_stop();
            response->attachStopToken(source.get_token());
            break;
        case Abort::TokenStoppedLater:
            QMetaObject::invokeMethod(
                this, [source] { source.request_stop(); }, Qt::QueuedConnection);
            break;
        default:
            break;
        }
        manager(followed).add(std::move(request));
        if (how == Abort::AfterTheAdd)
            response->abort();
        if (how == Abort::TokenStoppedElsewhere || how == Abort::ResponseGoesMeanwhile)
            m_soak.stopper.stop(source);
        if (how == Abort::ResponseGoesMeanwhile)
            followed.response.reset();
    }

    void over(std::size_t index)
    {
        const auto followed = m_followed.find(index);
        if (followed->second.response && followed->second.ends != 1)
            ++m_soak.lostEnds;
        m_followed.erase(followed);
        if (--m_left > 0)
            return makeOne();
        m_own.reset();
        m_thread.quit();
    }

    Soak& m_soak;
    std::mt19937 m_random;
    std::size_t m_next;
    std::size_t m_end;
    std::size_t m_left;
    std::size_t m_added = 0;
    std::unordered_map<std::size_t, Followed> m_followed;
    std::optional<OwnedManager> m_own;
    QThread m_thread;
};

/// Runs \p count requests under the event loop of this thread, and checks what became of them.
void soak(std::size_t count, unsigned seed)
{
    constexpr std::size_t makers = 4;
    Soak soak(count);
    QEventLoop loop;
    std::atomic<std::size_t> running{makers};
    std::array<std::unique_ptr<Maker>, makers> made;
    for (std::size_t i = 0; i < makers; ++i) {
        made[i] = std::make_unique<Maker>(soak, i * count / makers, (i + 1) * count / makers,
                                          seed + static_cast<unsigned>(i));
    }
    for (auto& maker : made)
        QObject::connect(&maker->thread(), &QThread::finished, &loop, [&] {
            if (--running == 0)
                loop.quit();
        });
    for (auto& maker : made)
        maker->thread().start();
    loop.exec();
    made = {};
    QCOMPARE(soak.lostEnds.load(), 0);
    for (const Tally& tally : soak.tallies) {
        QVERIFY(tally.starts <= 1);
        QCOMPARE(tally.ends.load(), 1);
        QCOMPARE(tally.finishes.load(), 1);
    }
}

} // namespace

class tst_background_soak : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyRequestEndsOnce()
    {
        soak(ZV_SOAK_REQUESTS, 20261121);
        QCOMPARE(CountedRequest::living.load(), 0);
    }

    void memoryReturnsToWhereItBegan()
    {
#if defined(__GLIBC__) && !defined(ZV_SANITIZED)
        const auto inUse = [] {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            const struct mallinfo2 info = mallinfo2();
            return static_cast<qint64>(info.uordblks + info.hblkhd);
        };
        soak(2'000, 1);
        const qint64 before = inUse();
        soak(10'000, 2);
        const qint64 more = inUse() - before;
        // Less than seven bytes for each request: nothing stays that comes with them.
        QVERIFY2(more < 65'536, qPrintable(QString::number(more)));
#else
        QSKIP("The C library doesn't tell what is in use; under a sanitizer its leak check does");
#endif
    }
};

QTEST_GUILESS_MAIN(tst_background_soak)
#include "tst_background_soak.moc"
