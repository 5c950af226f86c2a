#include "RequestPair.h"

#include "support/Background.h"

#include <zvutil/signalling/basic_receiver.h>
#include <zvutil/stop_source.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QMetaMethod>
#include <QPointer>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

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
using zvutil::stop_token;
using namespace zvutil::libzvutil;

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
        const QRegularExpression form("^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$");
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

    void workRunsBetweenItsSignals()
    {
        Journal journal;
        Request request([&journal](Request& self) {
            journal.write("work while " + zvtest::nameOf(self.status()));
            Q_EMIT self.completed();
        });
        zvtest::record(request, journal);
        request.start();
        QCOMPARE(journal.lines(), (Lines{"started", "work while started", "completed"}));
    }

    void messageCrossesAsItIs()
    {
        const std::string message("a\0b\xFF\xC3\xA4", 6);
        Pair pair(true, failing(message));
        pair.start();
        QCOMPARE(pair.responseLines().back(), "failed: " + message);
    }

    void abortTwiceWhileStarted()
    {
        Pair pair(false, &leaveOpen);
        pair.start();
        pair.abort();
        QVERIFY(pair.request().abort_requested());
        pair.abort();
        QVERIFY(pair.request().abort_requested());
        QCOMPARE(pair.requestLines(), (Lines{"started", "aborted", "aborted"}));
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
        QCOMPARE(journal.lines(), (Lines{"started", "completed"}));
        request.reset();
        QCOMPARE(journal.lines(), (Lines{"started", "completed", "finished as completed"}));
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
        QCOMPARE(journal.lines(), (Lines{"started", "aborted", "failed: asked before it began"}));
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
        QCOMPARE(pair.requestLines(), (Lines{"started", "completed"}));
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
        QCOMPARE(journal.lines(), Lines{"completed"});
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
        if (when == "before") {
            source.request_stop();
            attach();
        } else if (when == "while the token is attached") {
            response.onChild = [&] { source.request_stop(); };
            attach();
        } else if (when == "by a receiver before it") {
            using Receiver = zvutil::signalling::basic_receiver<decltype(attach)>;
            const auto registration =
                source.get_token().connect_receiver(std::make_unique<Receiver>(attach));
            source.request_stop();
        } else {
            attach();
            QCOMPARE(abortsIn(journal.lines()), 0);
            source.request_stop();
            if (when == "afterwards, twice")
                source.request_stop();
        }
        QCOMPARE(journal.lines(), (Lines{"started", "aborted"}));
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
};

QTEST_GUILESS_MAIN(tst_abstract_request)
#include "tst_abstract_request.moc"
