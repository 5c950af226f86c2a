// A request and its response on one thread and on two.

#include "RequestPair.h"

#include "support/Background.h"

#include <zvutil/stop_source.h>

#include <QCoreApplication>
#include <QMetaMethod>
#include <QSemaphore>
#include <QTest>

#include <atomic>
#include <memory>
#include <string>
#include <thread>

using zvtest::abortsIn;
using zvtest::failing;
using zvtest::InterruptedResponse;
using zvtest::Journal;
using zvtest::leaveOpen;
using zvtest::Lines;
using zvtest::Pair;
using zvtest::Request;
using zvtest::signaturesOf;
using zvutil::stop_source;
using namespace zvutil::libzvutil;

namespace {

/// Work that handles events until it is aborted.
void runUntilAborted(Request& request)
{
    while (!request.abort_requested())
        QCoreApplication::processEvents();
    Q_EMIT request.failed("ended early");
}

} // namespace

class tst_abstract_request_threads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void normal_data() { onOneAndTwoThreads_data(); }

    void normal()
    {
        QFETCH(bool, onTwoThreads);
        Pair pair(onTwoThreads);
        pair.start();
        QCOMPARE(pair.requestLines(), (Lines{"started", "completed"}));
        QCOMPARE(pair.responseLines(), (Lines{"started", "completed"}));
        QCOMPARE(pair.response().status(), request_completed);
        QVERIFY(!pair.request().has_failed());
        pair.destroyRequest();
        QCOMPARE(pair.requestLines(), (Lines{"started", "completed", "finished as completed"}));
        QCOMPARE(pair.responseLines(), (Lines{"started", "completed", "finished as completed"}));
    }

    void workFails_data() { onOneAndTwoThreads_data(); }

    void workFails()
    {
        QFETCH(bool, onTwoThreads);
        Pair pair(onTwoThreads, failing("no luck"));
        pair.start();
        QVERIFY(pair.request().has_failed());
        pair.destroyRequest();
        const Lines expected{"started", "failed: no luck", "finished as failed"};
        QCOMPARE(pair.requestLines(), expected);
        QCOMPARE(pair.responseLines(), expected);
        QCOMPARE(pair.response().status(), request_failed);
    }

    void workEndsLater_data() { onOneAndTwoThreads_data(); }

    void workEndsLater()
    {
        QFETCH(bool, onTwoThreads);
        Pair pair(onTwoThreads, &leaveOpen);
        pair.start();
        QCOMPARE(pair.requestLines(), Lines{"started"});
        QCOMPARE(pair.responseLines(), Lines{"started"});
        pair.emitCompleted();
        pair.destroyRequest();
        QCOMPARE(pair.requestLines(), (Lines{"started", "completed", "finished as completed"}));
        QCOMPARE(pair.responseLines(), (Lines{"started", "completed", "finished as completed"}));
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
        const Lines expected{"failed: abort requested", "finished as failed"};
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
        QCOMPARE(pair.requestLines(), (Lines{"started", "aborted"}));
        QCOMPARE(pair.responseLines(), (Lines{"started"}));
        std::string end = "completed";
        if (completes) {
            pair.emitCompleted();
        } else {
            pair.emitFailed("was asked to");
            end = "failed: was asked to";
        }
        pair.destroyRequest();
        const std::string finished = completes ? "finished as completed" : "finished as failed";
        QCOMPARE(pair.requestLines(), (Lines{"started", "aborted", end, finished}));
        QCOMPARE(pair.responseLines(), (Lines{"started", end, finished}));
    }

    void destroyedWhilePending_data() { onOneAndTwoThreads_data(); }

    void destroyedWhilePending()
    {
        QFETCH(bool, onTwoThreads);
        Pair pair(onTwoThreads);
        pair.destroyRequest();
        const Lines expected{"failed: request terminated before starting", "finished as failed"};
        QCOMPARE(pair.requestLines(), expected);
        QCOMPARE(pair.responseLines(), expected);
        QCOMPARE(pair.response().status(), request_failed);
    }

    void destroyedWhileStarted_data() { onOneAndTwoThreads_data(); }

    void destroyedWhileStarted()
    {
        QFETCH(bool, onTwoThreads);
        Pair pair(onTwoThreads, &leaveOpen);
        pair.start();
        pair.destroyRequest();
        const Lines expected{"started", "failed: request terminated before completing",
                             "finished as failed"};
        QCOMPARE(pair.requestLines(), expected);
        QCOMPARE(pair.responseLines(), expected);
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
        QCOMPARE(journal.lines(), (Lines{"started", "completed", "finished as completed"}));
    }

    void responseWithEventsOnTheirWayMayGo()
    {
        Pair pair(true);
        auto response = std::make_unique<abstract_response>(&pair.request());
        pair.start();
        response.reset();
        QCOMPARE(pair.responseLines(), (Lines{"started", "completed"}));
    }

    void requestMayGoFirst()
    {
        Pair pair(true);
        pair.destroyRequest();
        pair.response().abort();
        stop_source source;
        pair.response().attachStopToken(source.get_token());
        source.request_stop();
        QCOMPARE(pair.responseLines().back(), std::string("finished as failed"));
    }

    void abortThroughTheResponseRunsOnTheRequestsThread()
    {
        Pair pair(true, &leaveOpen);
        pair.start();
        pair.response().abort();
        QCOMPARE(pair.requestLines(), (Lines{"started", "aborted"}));
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
                 (Lines{"started", "aborted", "failed: ended early", "finished as failed"}));
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
        QCOMPARE(journal.lines(), (Lines{"started", "completed", "finished as completed"}));
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
        QCOMPARE(pair.responseLines(), (Lines{"started", "failed: x"}));
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
                 (Lines{"started", "aborted", "failed: ended early", "finished as failed"}));
    }

    void stopBeforeTheStartFailsTheRequest()
    {
        Pair pair(true);
        stop_source source;
        source.request_stop();
        pair.response().attachStopToken(source.get_token());
        pair.deliverPending();
        pair.start();
        QCOMPARE(pair.requestLines(), Lines{"failed: abort requested"});
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
            worker.deliverPending();
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

private:
    void onOneAndTwoThreads_data()
    {
        QTest::addColumn<bool>("onTwoThreads");
        QTest::newRow("two threads") << true;
        QTest::newRow("one thread") << false;
    }
};

QTEST_GUILESS_MAIN(tst_abstract_request_threads)
#include "tst_abstract_request_threads.moc"
