#include "support/Background.h"

#include <zvutil/signalling/basic_receiver.h>
#include <zvutil/stop_source.h>

#include <QChildEvent>
#include <QCoreApplication>
#include <QEventLoop>
#include <QMetaMethod>
#include <QPointer>
#include <QRegularExpression>
#include <QSemaphore>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

using namespace zvutil::libzvutil;
using zvtest::Journal;
using zvtest::Lines;
using zvtest::Request;
using zvutil::stop_source;
using zvutil::stop_token;

namespace {

/// A request and its response, on two threads or on one.
class Pair
{
public:
    explicit Pair(bool onTwoThreads, Request::Work work = &Request::complete)
        : m_request(std::make_shared<Request>(std::move(work)))
        , m_response(m_request.get())
    {
        zvtest::record(*m_request, m_onRequest);
        zvtest::record(m_response, m_onResponse);
        if (onTwoThreads) {
            m_worker.emplace();
            m_request->moveToThread(m_worker->thread());
        }
    }

    ~Pair() { destroyRequest(); }

    Request& request() { return *m_request; }
    abstract_response& response() { return m_response; }

    void start()
    {
        onRequestsThread([this] { m_request->start(); });
    }

    void abort()
    {
        onRequestsThread([this] { m_request->abort(); });
    }

    void emitCompleted()
    {
        onRequestsThread([this] { Q_EMIT m_request->completed(); });
    }

    void emitFailed(const std::string& message)
    {
        onRequestsThread([this, message] { Q_EMIT m_request->failed(message); });
    }

    void destroyRequest()
    {
        onRequestsThread([this] { m_request.reset(); });
    }

    template <typename Work>
    void onRequestsThread(Work work)
    {
        if (m_worker)
            m_worker->run(work);
        else
            work();
    }

    /// What happened on the request's side.
    Lines requestLines()
    {
        settle();
        return m_onRequest.lines();
    }

    /// What happened on the response's side, all of it delivered.
    Lines responseLines()
    {
        settle();
        return m_onResponse.lines();
    }

    /// Has both sides handle what was sent to them.
    void settle()
    {
        for (int i = 0; i < 3; ++i) {
            QCoreApplication::processEvents();
            if (m_worker)
                m_worker->settle();
        }
        QCoreApplication::processEvents();
    }

private:
    Journal m_onRequest;
    Journal m_onResponse;
    std::optional<zvtest::Worker> m_worker;
    std::shared_ptr<Request> m_request;
    abstract_response m_response;
};

void leaveOpen(Request& /*request*/)
{
}

Request::Work failing(std::string message)
{
    return [message = std::move(message)](Request& request) { Q_EMIT request.failed(message); };
}

/// Work that handles events until it is aborted.
void runUntilAborted(Request& request)
{
    while (!request.abort_requested())
        QCoreApplication::processEvents();
    Q_EMIT request.failed("ended early");
}

int abortsIn(const Lines& lines)
{
    return static_cast<int>(std::count(lines.begin(), lines.end(), "aborted 1"));
}

QByteArrayList signaturesOf(const QMetaObject& meta, QMetaMethod::MethodType type)
{
    QByteArrayList result;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == type)
            result += meta.method(i).methodSignature();
    }
    return result;
}

/// Does something when it gets a child, which is when a token is being attached.
class InterruptedResponse : public abstract_response
{
public:
    using abstract_response::abstract_response;

    std::function<void()> onChild;

protected:
    void childEvent(QChildEvent* event) override
    {
        if (event->added() && onChild)
            onChild();
    }
};

} // namespace

class tst_abstract_request : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // Nobody here makes the type known; the classes have to.
        QCOMPARE(QMetaType::type("std::string"), int(QMetaType::UnknownType));
    }

    void metaObjects()
    {
        const QMetaObject& request = abstract_request::staticMetaObject;
        QCOMPARE(request.className(), "zvutil::libzvutil::abstract_request");
        QCOMPARE(signaturesOf(request, QMetaMethod::Signal),
                 (QByteArrayList{"aborted()", "started()", "completed()", "failed(std::string)",
                                 "finished()"}));
        QCOMPARE(signaturesOf(request, QMetaMethod::Slot), (QByteArrayList{"abort()", "start()"}));
        QCOMPARE(request.method(request.indexOfSignal("failed(std::string)")).parameterNames(),
                 QByteArrayList{"errorMessage"});

        const QMetaObject& response = abstract_response::staticMetaObject;
        QCOMPARE(response.className(), "zvutil::libzvutil::abstract_response");
        QCOMPARE(signaturesOf(response, QMetaMethod::Signal),
                 (QByteArrayList{"started()", "completed()", "failed(std::string)", "finished()"}));
        QCOMPARE(signaturesOf(response, QMetaMethod::Slot), QByteArrayList{"abort()"});
        for (const QMetaObject* meta : {&request, &response}) {
            for (int i = meta->methodOffset(); i < meta->methodCount(); ++i)
                QCOMPARE(meta->method(i).access(), QMetaMethod::Public);
        }
    }

    void statusValues()
    {
        QCOMPARE(int(request_pending), 0);
        QCOMPARE(int(request_started), 1);
        QCOMPARE(int(request_completed), 2);
        QCOMPARE(int(request_failed), 3);
        static_assert(sizeof(request_status) == sizeof(int));
        static_assert(std::is_abstract_v<abstract_request>);
    }

    void freshRequest()
    {
        QObject parent;
        auto* const request = new Request(&Request::complete, &parent);
        QCOMPARE(request->parent(), &parent);
        QCOMPARE(request->status(), request_pending);
        QVERIFY(request->is_pending());
        QVERIFY(!request->has_failed());
        QVERIFY(!request->abort_requested());
        const QString id = QString::fromStdString(request->id().text());
        const QRegularExpression form(
            QStringLiteral("^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"));
        QVERIFY2(form.match(id).hasMatch(), qPrintable(id));
        QVERIFY(Request().id() != Request().id());
    }

    void freshResponse()
    {
        Request request;
        const abstract_response response(&request);
        QCOMPARE(response.parent(), static_cast<QObject*>(nullptr));
        QCOMPARE(response.status(), request_pending);
        QVERIFY(response.requestID() == request.id());
    }

    void typeOfTheMessageIsKnownWithoutTheCallersHelp()
    {
        // Each of the two classes is enough.
        const abstract_response response(nullptr);
        QVERIFY(QMetaType::type("std::string") != int(QMetaType::UnknownType));
    }

    void onOneAndTwoThreads_data()
    {
        QTest::addColumn<bool>("onTwoThreads");
        QTest::newRow("two threads") << true;
        QTest::newRow("one thread") << false;
    }

    void normal_data() { onOneAndTwoThreads_data(); }

    void normal()
    {
        QFETCH(bool, onTwoThreads);
        Pair pair(onTwoThreads);
        pair.start();
        QCOMPARE(pair.requestLines(), (Lines{"started 1", "completed 2"}));
        QCOMPARE(pair.responseLines(), (Lines{"started 1", "completed 2"}));
        QCOMPARE(pair.response().status(), request_completed);
        QVERIFY(!pair.request().has_failed());
        pair.destroyRequest();
        QCOMPARE(pair.requestLines(), (Lines{"started 1", "completed 2", "finished 2"}));
        QCOMPARE(pair.responseLines(), (Lines{"started 1", "completed 2", "finished 2"}));
    }

    void workRunsBetweenItsSignals()
    {
        Journal journal;
        Request request([&journal](Request& self) {
            journal.write("work " + std::to_string(self.status()));
            Q_EMIT self.completed();
        });
        zvtest::record(request, journal);
        request.start();
        QCOMPARE(journal.lines(), (Lines{"started 1", "work 1", "completed 2"}));
    }

    void workFails_data() { onOneAndTwoThreads_data(); }

    void workFails()
    {
        QFETCH(bool, onTwoThreads);
        Pair pair(onTwoThreads, failing("no luck"));
        pair.start();
        QVERIFY(pair.request().has_failed());
        pair.destroyRequest();
        const Lines expected{"started 1", "failed (no luck) 3", "finished 3"};
        QCOMPARE(pair.requestLines(), expected);
        QCOMPARE(pair.responseLines(), expected);
        QCOMPARE(pair.response().status(), request_failed);
    }

    void messageCrossesAsItIs()
    {
        const std::string message("a\0b\xFF\xC3\xA4", 6);
        Pair pair(true, failing(message));
        pair.start();
        QCOMPARE(pair.responseLines().back(), "failed (" + message + ") 3");
    }

    void workEndsLater_data() { onOneAndTwoThreads_data(); }

    void workEndsLater()
    {
        QFETCH(bool, onTwoThreads);
        Pair pair(onTwoThreads, &leaveOpen);
        pair.start();
        QCOMPARE(pair.requestLines(), Lines{"started 1"});
        QCOMPARE(pair.responseLines(), Lines{"started 1"});
        pair.emitCompleted();
        pair.destroyRequest();
        QCOMPARE(pair.requestLines(), (Lines{"started 1", "completed 2", "finished 2"}));
        QCOMPARE(pair.responseLines(), (Lines{"started 1", "completed 2", "finished 2"}));
    }

    void abortWhilePending_data() { onOneAndTwoThreads_data(); }

    void abortWhilePending()
    {
        QFETCH(bool, onTwoThreads);
        Pair pair(onTwoThreads);
        pair.abort();
        QVERIFY(!pair.request().abort_requested());
        pair.abort();
        pair.start();
        pair.destroyRequest();
        const Lines expected{"failed (abort requested) 3", "finished 3"};
        QCOMPARE(pair.requestLines(), expected);
        QCOMPARE(pair.responseLines(), expected);
    }

    void abortWhileStarted_data()
    {
        QTest::addColumn<bool>("onTwoThreads");
        QTest::addColumn<bool>("completes");
        for (const bool onTwoThreads : {true, false}) {
            QTest::addRow("on %s, completes", onTwoThreads ? "two threads" : "one thread")
                << onTwoThreads << true;
            QTest::addRow("on %s, fails", onTwoThreads ? "two threads" : "one thread")
                << onTwoThreads << false;
        }
    }

    void abortWhileStarted()
    {
        QFETCH(bool, onTwoThreads);
        QFETCH(bool, completes);
        Pair pair(onTwoThreads, &leaveOpen);
        pair.start();
        QVERIFY(!pair.request().abort_requested());
        pair.abort();
        QVERIFY(pair.request().abort_requested());
        QCOMPARE(pair.request().status(), request_started);
        QCOMPARE(pair.requestLines(), (Lines{"started 1", "aborted 1"}));
        QCOMPARE(pair.responseLines(), (Lines{"started 1"}));
        std::string end = "completed 2";
        if (completes) {
            pair.emitCompleted();
        } else {
            pair.emitFailed("was asked to");
            end = "failed (was asked to) 3";
        }
        pair.destroyRequest();
        const std::string finished = "finished " + end.substr(end.size() - 1);
        QCOMPARE(pair.requestLines(), (Lines{"started 1", "aborted 1", end, finished}));
        QCOMPARE(pair.responseLines(), (Lines{"started 1", end, finished}));
    }

    void abortTwiceWhileStarted()
    {
        Pair pair(false, &leaveOpen);
        pair.start();
        pair.abort();
        QVERIFY(pair.request().abort_requested());
        pair.abort();
        QVERIFY(pair.request().abort_requested());
        QCOMPARE(pair.requestLines(), (Lines{"started 1", "aborted 1", "aborted 1"}));
    }

    void stopIsRequestedWhenAbortedIsTold()
    {
        Request request(&leaveOpen);
        std::vector<bool> seen;
        connect(&request, &abstract_request::aborted,
                [&] { seen.push_back(request.abort_requested()); });
        request.start();
        request.abort();
        QCOMPARE(seen, std::vector<bool>{true});
    }

    void signalsAreNotQueuedOnOneThread()
    {
        auto request = std::make_unique<Request>();
        const abstract_response response(request.get());
        Journal journal;
        zvtest::record(response, journal);
        request->start();
        QCOMPARE(journal.lines(), (Lines{"started 1", "completed 2"}));
        request.reset();
        QCOMPARE(journal.lines(), (Lines{"started 1", "completed 2", "finished 2"}));
    }

    void abortFromAStartedSlotComesBeforeTheWork()
    {
        bool requested = false;
        Journal journal;
        Request request([&](Request& self) {
            requested = self.abort_requested();
            Q_EMIT self.failed("asked before it began");
        });
        zvtest::record(request, journal);
        connect(&request, &abstract_request::started, &request, &abstract_request::abort);
        request.start();
        QVERIFY(requested);
        QCOMPARE(journal.lines(),
                 (Lines{"started 1", "aborted 1", "failed (asked before it began) 3"}));
    }

    void abortOfAnEndedRequestDoesNothing_data()
    {
        QTest::addColumn<bool>("completes");
        QTest::newRow("completed") << true;
        QTest::newRow("failed") << false;
    }

    void abortOfAnEndedRequestDoesNothing()
    {
        QFETCH(bool, completes);
        Pair pair(true, completes ? Request::Work(&Request::complete) : failing("x"));
        pair.start();
        const Lines before = pair.requestLines();
        pair.abort();
        pair.response().abort();
        QCOMPARE(pair.requestLines(), before);
        QVERIFY(!pair.request().abort_requested());
    }

    void abortIsVirtual()
    {
        struct Stubborn : Request
        {
            void abort() override { ++aborts; }
            int aborts = 0;
        };
        Stubborn request;
        abstract_response response(&request);
        response.abort();
        QCOMPARE(request.aborts, 1);
        QVERIFY(request.is_pending());
    }

    void requestRunsOnce()
    {
        int runs = 0;
        Pair pair(true, [&](Request& request) {
            ++runs;
            Q_EMIT request.completed();
        });
        pair.start();
        pair.start();
        QCOMPARE(runs, 1);
        QCOMPARE(pair.requestLines(), (Lines{"started 1", "completed 2"}));
    }

    void startWhileRunningDoesNothing()
    {
        int runs = 0;
        Request request([&](Request& self) {
            ++runs;
            self.start();
        });
        request.start();
        request.start();
        QCOMPARE(runs, 1);
    }

    void destroyedWhilePending_data() { onOneAndTwoThreads_data(); }

    void destroyedWhilePending()
    {
        QFETCH(bool, onTwoThreads);
        Pair pair(onTwoThreads);
        pair.destroyRequest();
        const Lines expected{"failed (request terminated before starting) 3", "finished 3"};
        QCOMPARE(pair.requestLines(), expected);
        QCOMPARE(pair.responseLines(), expected);
        QCOMPARE(pair.response().status(), request_failed);
    }

    void whatTheDestructorEmitsComesBehindTheSubclass_data()
    {
        QTest::addColumn<bool>("letsGo");
        QTest::newRow("connected") << false;
        QTest::newRow("lets go of itself") << true;
    }

    void whatTheDestructorEmitsComesBehindTheSubclass()
    {
        QFETCH(bool, letsGo);
        class SelfMade : public Request
        {
        public:
            SelfMade(Lines& lines, bool letsGo)
                : Request(&Request::complete)
                , m_lines(lines)
                , m_letsGo(letsGo)
            {
                // Nothing of this object is touched there.
                connect(this, &abstract_request::failed, this,
                        [&lines] { lines.push_back("failed"); });
                connect(this, &abstract_request::finished, this,
                        [&lines] { lines.push_back("finished"); });
            }
            ~SelfMade() override
            {
                m_lines.push_back("gone");
                if (m_letsGo)
                    disconnect(this, nullptr, this, nullptr);
            }

        private:
            Lines& m_lines;
            const bool m_letsGo;
        };
        Lines lines;
        QObject other;
        bool isHeard = false;
        {
            SelfMade request(lines, letsGo);
            connect(&request, &abstract_request::finished, &other, [&isHeard] { isHeard = true; });
        }
        QCOMPARE(lines, letsGo ? Lines{"gone"} : (Lines{"gone", "failed", "finished"}));
        QVERIFY(isHeard);
    }

    void destroyedWhileStarted_data() { onOneAndTwoThreads_data(); }

    void destroyedWhileStarted()
    {
        QFETCH(bool, onTwoThreads);
        Pair pair(onTwoThreads, &leaveOpen);
        pair.start();
        pair.destroyRequest();
        const Lines expected{"started 1", "failed (request terminated before completing) 3",
                             "finished 3"};
        QCOMPARE(pair.requestLines(), expected);
        QCOMPARE(pair.responseLines(), expected);
    }

    void responseWithoutARequest()
    {
        abstract_response response(nullptr);
        Journal journal;
        zvtest::record(response, journal);
        QCOMPARE(response.requestID().text(), std::string("unknown"));
        QCOMPARE(response.status(), request_pending);
        response.abort();
        stop_source source;
        response.attachStopToken(source.get_token());
        source.request_stop();
        QCoreApplication::processEvents();
        QCOMPARE(response.status(), request_pending);
        QCOMPARE(journal.lines(), Lines());
    }

    void responseThatComesLateKnowsNothingOfThePast()
    {
        Request request(&leaveOpen);
        request.start();
        Journal journal;
        const abstract_response response(&request);
        zvtest::record(const_cast<abstract_response&>(response), journal);
        QCOMPARE(response.status(), request_pending);
        Q_EMIT request.completed();
        QCOMPARE(response.status(), request_completed);
        QCOMPARE(journal.lines(), Lines{"completed 2"});
    }

    void severalResponsesFollowOneRequest()
    {
        Request request;
        const abstract_response first(&request);
        const abstract_response second(&request);
        request.start();
        QCOMPARE(first.status(), request_completed);
        QCOMPARE(second.status(), request_completed);
    }

    void responseMayGoFirst()
    {
        zvtest::Worker worker;
        Journal journal;
        auto request = std::make_shared<Request>(&leaveOpen);
        zvtest::record(*request, journal);
        auto response = std::make_unique<abstract_response>(request.get());
        request->moveToThread(worker.thread());
        worker.run([&] { request->start(); });
        response.reset();
        QCoreApplication::processEvents();
        worker.run([&] {
            Q_EMIT request->completed();
            request.reset();
        });
        QCOMPARE(journal.lines(), (Lines{"started 1", "completed 2", "finished 2"}));
    }

    void responseWithEventsOnTheirWayMayGo()
    {
        Pair pair(true);
        auto response = std::make_unique<abstract_response>(&pair.request());
        pair.start();
        response.reset();
        QCOMPARE(pair.responseLines(), (Lines{"started 1", "completed 2"}));
    }

    void requestMayGoFirst()
    {
        Pair pair(true);
        pair.destroyRequest();
        pair.response().abort();
        stop_source source;
        pair.response().attachStopToken(source.get_token());
        source.request_stop();
        QCOMPARE(pair.responseLines().back(), std::string("finished 3"));
    }

    void abortThroughTheResponseRunsOnTheRequestsThread()
    {
        Pair pair(true, &leaveOpen);
        pair.start();
        pair.response().abort();
        QCOMPARE(pair.requestLines(), (Lines{"started 1", "aborted 1"}));
        QVERIFY(pair.request().abort_requested());
    }

    void abortReachesWorkThatHandlesEvents()
    {
        zvtest::Worker worker;
        Journal journal;
        auto request = std::make_shared<Request>(&runUntilAborted);
        zvtest::record(*request, journal);
        abstract_response response(request.get());
        connect(&response, &abstract_response::started, &response, &abstract_response::abort);
        request->moveToThread(worker.thread());
        QMetaObject::invokeMethod(request.get(), &abstract_request::start);
        response.wait();
        QCOMPARE(response.status(), request_failed);
        worker.run([&] { request.reset(); });
        QCOMPARE(journal.lines(),
                 (Lines{"started 1", "aborted 1", "failed (ended early) 3", "finished 3"}));
    }

    void abortComesBehindWorkThatBlocks()
    {
        zvtest::Worker worker;
        Journal journal;
        QSemaphore mayEnd;
        bool requested = true;
        auto request = std::make_shared<Request>([&](Request& self) {
            mayEnd.acquire();
            requested = self.abort_requested();
            Q_EMIT self.completed();
        });
        zvtest::record(*request, journal);
        abstract_response response(request.get());
        request->moveToThread(worker.thread());
        QMetaObject::invokeMethod(request.get(), &abstract_request::start);
        response.abort();
        mayEnd.release();
        response.wait();
        worker.run([&] { request.reset(); });
        QVERIFY(!requested);
        QCOMPARE(response.status(), request_completed);
        QCOMPARE(journal.lines(), (Lines{"started 1", "completed 2", "finished 2"}));
    }

    void waitNeedsNoFinished()
    {
        Pair pair(true, failing("x"));
        pair.onRequestsThread([&] {
            QMetaObject::invokeMethod(
                &pair.request(), [&] { pair.request().start(); }, Qt::QueuedConnection);
        });
        pair.response().wait();
        QCOMPARE(pair.response().status(), request_failed);
        QCOMPARE(pair.responseLines(), (Lines{"started 1", "failed (x) 3"}));
    }

    void responseMayBeDeletedByTheSignalThatEndsItsWait_data()
    {
        QTest::addColumn<bool>("fails");
        QTest::addColumn<bool>("isDeletedAtOnce");
        QTest::newRow("completed, deleted later") << false << false;
        QTest::newRow("failed, deleted later") << true << false;
        QTest::newRow("completed, deleted at once") << false << true;
        QTest::newRow("failed, deleted at once") << true << true;
    }

    void responseMayBeDeletedByTheSignalThatEndsItsWait()
    {
        QFETCH(bool, fails);
        QFETCH(bool, isDeletedAtOnce);
        zvtest::Worker worker;
        auto request =
            std::make_unique<Request>(fails ? failing("x") : Request::Work(&Request::complete));
        const QPointer<abstract_response> response = new abstract_response(request.get());
        request->moveToThread(worker.thread());
        const auto end = [isDeletedAtOnce, object = response.data()] {
            if (isDeletedAtOnce)
                delete object;
            else
                object->deleteLater();
        };
        connect(response, &abstract_response::completed, end);
        connect(response, &abstract_response::failed, end);
        worker.post([&request] { request->start(); });
        response->wait();
        // What is to be deleted later is there until the caller's events are handled.
        QCOMPARE(response.isNull(), isDeletedAtOnce);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(response.isNull());
        worker.run([&request] { request.reset(); });
    }

    void waitHandlesWhatWaitsAlready()
    {
        // The signals lie behind the event that waits for them before that begins.
        Pair pair(true, failing("x"));
        QEventLoop loop;
        bool isOver = false;
        const auto wait = [&] {
            pair.response().wait();
            isOver = true;
            loop.quit();
        };
        QMetaObject::invokeMethod(&loop, wait, Qt::QueuedConnection);
        pair.start();
        loop.exec();
        QVERIFY(isOver);
        QCOMPARE(pair.response().status(), request_failed);
    }

    void waitForWhatIsOverReturnsAtOnce()
    {
        Pair pair(false);
        pair.start();
        bool handled = false;
        QMetaObject::invokeMethod(
            this, [&] { handled = true; }, Qt::QueuedConnection);
        pair.response().wait();
        QVERIFY(!handled);
        QCoreApplication::processEvents();
        QVERIFY(handled);
    }

    void waitHandlesAllEvents()
    {
        // The request is ended by a timer of this thread.
        Pair pair(false, &leaveOpen);
        pair.start();
        QTimer::singleShot(0, this, [&] { pair.emitCompleted(); });
        pair.response().wait();
        QCOMPARE(pair.response().status(), request_completed);
    }

    void waitIsVirtual()
    {
        struct Patient : abstract_response
        {
            using abstract_response::abstract_response;
            void wait() override { ++waits; }
            int waits = 0;
        };
        Patient response(nullptr);
        static_cast<abstract_response&>(response).wait();
        QCOMPARE(response.waits, 1);
    }

    void stopTravelsTheWholeRoad()
    {
        zvtest::Worker worker;
        Journal journal;
        auto request = std::make_shared<Request>(&runUntilAborted);
        zvtest::record(*request, journal);
        InterruptedResponse response(request.get());
        stop_source source;
        response.attachStopToken(source.get_token());

        // Each stage tells the thread on which it runs.
        std::thread::id stopping;
        std::thread::id triggered;
        QObject* const attached = response.children().value(0);
        QCOMPARE(attached->metaObject()->className(), "zvutil::libzvutil::qt_stop_token");
        QCOMPARE(signaturesOf(*attached->metaObject(), QMetaMethod::Signal),
                 QByteArrayList{"triggered()"});
        GenericTrigger onTriggered;
        connect(attached, SIGNAL(triggered()), &onTriggered, SLOT(trigger()), Qt::DirectConnection);
        connect(&onTriggered, &GenericTrigger::signal,
                [&] { triggered = std::this_thread::get_id(); });

        QSemaphore started;
        connect(request.get(), &abstract_request::started, [&] { started.release(); });
        request->moveToThread(worker.thread());
        QMetaObject::invokeMethod(request.get(), &abstract_request::start);
        started.acquire();
        std::thread thread([&] {
            stopping = std::this_thread::get_id();
            source.request_stop();
        });
        thread.join();
        QCOMPARE(triggered, stopping);
        // It is on its way through this thread, which hasn't handled it yet.
        QVERIFY(!request->abort_requested());
        response.wait();
        QVERIFY(request->abort_requested());
        worker.run([&] { request.reset(); });
        QCOMPARE(journal.lines(),
                 (Lines{"started 1", "aborted 1", "failed (ended early) 3", "finished 3"}));
    }

    void stopIsNeverLost_data()
    {
        QTest::addColumn<QString>("when");
        for (const char* when : {"before", "while the token is attached", "by a receiver before it",
                                 "afterwards", "afterwards, twice"})
            QTest::newRow(when) << QString::fromLatin1(when);
    }

    void stopIsNeverLost()
    {
        QFETCH(QString, when);
        Journal journal;
        Request request(&leaveOpen);
        zvtest::record(request, journal);
        request.start();
        InterruptedResponse response(&request);
        stop_source source;
        const auto attach = [&] { response.attachStopToken(source.get_token()); };
        if (when == QLatin1String("before")) {
            source.request_stop();
            attach();
        } else if (when == QLatin1String("while the token is attached")) {
            response.onChild = [&] { source.request_stop(); };
            attach();
        } else if (when == QLatin1String("by a receiver before it")) {
            using Receiver = zvutil::signalling::basic_receiver<decltype(attach)>;
            const auto registration =
                source.get_token().connect_receiver(std::make_unique<Receiver>(attach));
            source.request_stop();
        } else {
            attach();
            QCOMPARE(abortsIn(journal.lines()), 0);
            source.request_stop();
            if (when == QLatin1String("afterwards, twice"))
                source.request_stop();
        }
        QCOMPARE(journal.lines(), (Lines{"started 1", "aborted 1"}));
    }

    void stopBeforeTheStartFailsTheRequest()
    {
        Pair pair(true);
        stop_source source;
        source.request_stop();
        pair.response().attachStopToken(source.get_token());
        pair.settle();
        pair.start();
        QCOMPARE(pair.requestLines(), Lines{"failed (abort requested) 3"});
    }

    void severalTokensOfOneResponse()
    {
        Pair pair(true, &leaveOpen);
        pair.start();
        const stop_source sources[3];
        for (const stop_source& source : sources)
            pair.response().attachStopToken(source.get_token());
        QCOMPARE(pair.response().children().size(), 3);
        sources[1].request_stop();
        QCOMPARE(abortsIn(pair.requestLines()), 1);
        sources[0].request_stop();
        QCOMPARE(abortsIn(pair.requestLines()), 2);
    }

    void oneTokenForSeveralResponses()
    {
        const stop_source source;
        Request first(&leaveOpen);
        Request second(&leaveOpen);
        first.start();
        second.start();
        abstract_response responses[] = {abstract_response(&first), abstract_response(&second)};
        for (abstract_response& response : responses)
            response.attachStopToken(source.get_token());
        source.request_stop();
        QVERIFY(first.abort_requested());
        QVERIFY(second.abort_requested());
    }

    void tokenWithoutASourceDoesNothing()
    {
        Pair pair(false, &leaveOpen);
        pair.start();
        pair.response().attachStopToken(stop_token());
        std::optional<stop_source> gone(std::in_place);
        const stop_token token = gone->get_token();
        gone.reset();
        pair.response().attachStopToken(token);
        QCOMPARE(abortsIn(pair.requestLines()), 0);
    }

    void tokenOfASourceThatStoppedAndWent()
    {
        Pair pair(false, &leaveOpen);
        pair.start();
        std::optional<stop_source> gone(std::in_place);
        const stop_token token = gone->get_token();
        gone->request_stop();
        gone.reset();
        pair.response().attachStopToken(token);
        QCOMPARE(abortsIn(pair.requestLines()), 1);
    }

    void stopDoesNotReachAResponseThatHasGone()
    {
        Request request(&leaveOpen);
        request.start();
        const stop_source source;
        auto response = std::make_unique<abstract_response>(&request);
        response->attachStopToken(source.get_token());
        response.reset();
        QVERIFY(source.request_stop());
        QVERIFY(!request.abort_requested());
    }

    void responseMayGoFromWithinTheStop()
    {
        Request request;
        const stop_source source;
        auto* const response = new abstract_response(&request);
        response->attachStopToken(source.get_token());
        connect(response, &abstract_response::failed, [response] { delete response; });
        QVERIFY(source.request_stop());
        QVERIFY(request.has_failed());
    }

    void responsesGoWhileAnotherThreadStops()
    {
        zvtest::Worker worker;
        for (int round = 0; round < 500; ++round) {
            auto request = std::make_shared<Request>(&leaveOpen);
            auto response = std::make_unique<abstract_response>(request.get());
            request->moveToThread(worker.thread());
            const stop_source source;
            response->attachStopToken(source.get_token());
            std::atomic<bool> go{false};
            std::thread stopping([&] {
                while (!go)
                    std::this_thread::yield();
                source.request_stop();
            });
            go = true;
            response.reset();
            stopping.join();
            worker.run([&] { request.reset(); });
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void requestsGoWhileTheirResponsesAbort()
    {
        zvtest::Worker worker;
        for (int round = 0; round < 500; ++round) {
            auto request = std::make_shared<Request>(&leaveOpen);
            abstract_response response(request.get());
            request->moveToThread(worker.thread());
            worker.post([&request] { request.reset(); });
            response.abort();
            response.wait();
            QCOMPARE(response.status(), request_failed);
            worker.settle();
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

QTEST_GUILESS_MAIN(tst_abstract_request)
#include "tst_abstract_request.moc"
