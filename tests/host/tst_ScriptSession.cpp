// The sessions of scripts that zvhost offers to windows.

#include <ThreadScriptSession.h>

#include <HostSupport/ComConstruct.h>
#include <HostSupport/FuncConstruct.h>
#include <HostSupport/YString.h>
#include <HostSupport/host.h>

#include <QCoreApplication>
#include <QObject>
#include <QStringList>
#include <QTest>
#include <QThread>

#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>

namespace {

const QThread* callersThread = nullptr;
std::function<void()> duringCall;

FUNC_ERROR twice(const FuncArgsMinimal& arguments, FuncResultMinimal* result,
                 YRef<MessageHandler> messages)
{
    callersThread = QThread::currentThread();
    if (duringCall)
        duringCall();
    const std::string text = *static_cast<const char* const*>(arguments.value(0));
    if (text == "bad")
        throw std::runtime_error("this one not");
    messages->message("twice was called");
    result->allotStrings(1)[0] = YString((text + text).c_str()).detach();
    return FUNC_OK;
}

COMERROR tell(int wordCount, char** words, YRef<MessageHandler> messages,
              const ScpParseContext& context)
{
    for (int i = 1; i < wordCount; ++i)
        messages->message(words[i]);
    messages->message(context.source);
    return COM_OK;
}

/// A session, and all that it has told.
class Recorder
{
public:
    Recorder()
        : session(std::make_unique<ThreadScriptSession>(
            registeredNames(),
            host::ScriptListener{[this](const std::string& text) {
                                     this->lines +=
                                         QString::fromStdString(text).split(QLatin1Char('\n'));
                                 },
                                 [this](const host::ScriptOutcome& result) {
                                     outcome = result;
                                     ++finished;
                                     if (atEnd)
                                         atEnd();
                                 }}))
    {
    }

    bool wait(int runs = 1)
    {
        return QTest::qWaitFor([this, runs] { return finished >= runs; }, 30'000);
    }

    bool run(const char* text)
    {
        const int runs = finished + 1;
        session->run(text, "here");
        return wait(runs);
    }

    bool evaluate(const QString& text)
    {
        const int runs = finished + 1;
        session->evaluate(text.toStdString());
        return wait(runs);
    }

    QStringList lines;
    host::ScriptOutcome outcome;
    int finished = 0;
    std::function<void()> atEnd;
    std::unique_ptr<ThreadScriptSession> session;
};

} // namespace

class tst_ScriptSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        static const argType text = ARG_STRING;
        static const FuncConstruct function("Twice", &text, 1, 1, &twice);
        static const ComConstruct command("tell", &tell, 0);
    }

    void cleanup() { duringCall = nullptr; }

    void outputComesBeforeTheEnd()
    {
        Recorder recorder;
        recorder.atEnd = [&recorder] { QCOMPARE(recorder.lines.size(), 2); };
        QVERIFY(recorder.run("print('a', 1); print()"));
        QCOMPARE(recorder.lines, (QStringList{"a 1", QString()}));
        QVERIFY(recorder.outcome.error.empty());
        QVERIFY(recorder.outcome.value.empty());
        QVERIFY(!recorder.outcome.isStopped);
    }

    void muchOutputIsComplete()
    {
        Recorder recorder;
        QVERIFY(recorder.run("for (var i = 0; i < 50000; ++i) print(i)"));
        QCOMPARE(recorder.lines.size(), 50'000);
        for (int i = 0; i < recorder.lines.size(); ++i)
            QCOMPARE(recorder.lines.at(i), QString::number(i));
    }

    void values_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("value");
        QTest::newRow("number") << "1 + 2"
                                << "3";
        QTest::newRow("text") << "'a\"b'"
                              << "\"a\\\"b\"";
        QTest::newRow("object") << "({a: 1, b: [2, 'x']})"
                                << "{\"a\":1,\"b\":[2,\"x\"]}";
        QTest::newRow("null") << "null"
                              << "null";
        QTest::newRow("truth") << "1 == 1"
                               << "true";
        QTest::newRow("undefined") << "undefined"
                                   << "";
        QTest::newRow("declaration") << "var unused = 3"
                                     << "";
        QTest::newRow("circular") << "var a = {}; a.a = a; a"
                                  << "[object Object]";
        QTest::newRow("function's result") << "Twice('ab')"
                                           << "\"abab\"";
    }

    void values()
    {
        QFETCH(QString, text);
        QFETCH(QString, value);
        Recorder recorder;
        QVERIFY(recorder.evaluate(text));
        QCOMPARE(QString::fromStdString(recorder.outcome.error), QString());
        QCOMPARE(QString::fromStdString(recorder.outcome.value), value);
    }

    void definitionsStay_data()
    {
        QTest::addColumn<QString>("definition");
        QTest::newRow("var") << "var x = 5";
        QTest::newRow("global") << "x = 5";
    }

    void definitionsStay()
    {
        QFETCH(QString, definition);
        Recorder recorder;
        QVERIFY(recorder.evaluate(definition));
        QVERIFY(recorder.evaluate("x * 2"));
        QCOMPARE(recorder.outcome.value, std::string("10"));
    }

    void failures_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("error");
        QTest::addColumn<int>("line");
        QTest::newRow("thrown") << "\nthrow new Error('no')"
                                << "Error: no" << 2;
        QTest::newRow("syntax") << "\n\nx = = 3"
                                << "SyntaxError: Unexpected token `='" << 3;
        QTest::newRow("thrown value") << "throw 3"
                                      << "uncaught exception: 3" << 0;
        QTest::newRow("function") << "\nTwice('bad')"
                                  << "Error: this one not" << 2;
        QTest::newRow("wrong argument")
            << "Twice(1)"
            << "Error: Twice expects 1 argument (string); argument 1 is a number" << 1;
    }

    void failures()
    {
        QFETCH(QString, text);
        QFETCH(QString, error);
        QFETCH(int, line);
        Recorder recorder;
        QVERIFY(recorder.run(text.toUtf8().constData()));
        QCOMPARE(QString::fromStdString(recorder.outcome.error), error);
        QCOMPARE(recorder.outcome.line, line);
        QVERIFY(!recorder.outcome.isStopped);
    }

    void thrownValuesAreNoValues()
    {
        Recorder recorder;
        QVERIFY(recorder.evaluate("throw 3"));
        QCOMPARE(recorder.outcome.error, std::string("uncaught exception: 3"));
        QVERIFY(recorder.outcome.value.empty());
    }

    void functionsRunOnTheMakersThread()
    {
        Recorder recorder;
        QVERIFY(recorder.run("print(Twice('x'))"));
        QCOMPARE(callersThread, QThread::currentThread());
        QCOMPARE(recorder.lines, (QStringList{"twice was called", "xx"}));
    }

    void commandsTellTheSource()
    {
        Recorder recorder;
        QVERIFY(recorder.run("tell('one two', 3)"));
        QCOMPARE(recorder.lines, (QStringList{"one two", "3", "here"}));
    }

    void secondTextAtOnceIsRefused()
    {
        Recorder recorder;
        recorder.session->evaluate("1");
        QVERIFY_EXCEPTION_THROWN(recorder.session->evaluate("2"), std::logic_error);
        QVERIFY(recorder.wait());
        QCOMPARE(recorder.outcome.value, std::string("1"));
        QVERIFY(recorder.evaluate("2"));
        QCOMPARE(recorder.outcome.value, std::string("2"));
    }

    void stops_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isUnderWay");
        for (const bool isUnderWay : {false, true}) {
            const char* const when = isUnderWay ? "under way" : "at once";
            QTest::addRow("loop, %s", when) << "while (true) {}" << isUnderWay;
            QTest::addRow("output, %s", when) << "while (true) print('more')" << isUnderWay;
            QTest::addRow("calls, %s", when) << "while (true) Twice('x')" << isUnderWay;
            QTest::addRow("caught, %s", when)
                << "while (true) { try { Twice('x') } catch (e) {} }" << isUnderWay;
        }
    }

    void stops()
    {
        QFETCH(QString, text);
        QFETCH(bool, isUnderWay);
        Recorder recorder;
        recorder.session->run("print('begun'); " + text.toStdString(), "here");
        if (isUnderWay)
            QVERIFY(QTest::qWaitFor([&recorder] { return !recorder.lines.isEmpty(); }, 30'000));
        QCOMPARE(recorder.finished, 0);
        recorder.session->stop();
        QVERIFY(recorder.wait());
        QVERIFY(recorder.outcome.isStopped);
        QVERIFY(!recorder.outcome.error.empty());
        // And goes on with the next.
        QVERIFY(recorder.evaluate("1 + 1"));
        QCOMPARE(recorder.outcome.value, std::string("2"));
        QVERIFY(!recorder.outcome.isStopped);
    }

    void stopWithoutATextDoesNothing()
    {
        Recorder recorder;
        recorder.session->stop();
        QVERIFY(recorder.evaluate("1"));
        recorder.session->stop();
        QVERIFY(recorder.evaluate("2"));
        QCOMPARE(recorder.outcome.value, std::string("2"));
    }

    void endsAtAnyMoment_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing runs") << "";
        QTest::newRow("loop") << "while (true) {}";
        QTest::newRow("output") << "while (true) print('more')";
        QTest::newRow("calls") << "while (true) Twice('x')";
    }

    void endsAtAnyMoment()
    {
        QFETCH(QString, text);
        for (int delay = 0; delay < 20; ++delay) {
            Recorder recorder;
            recorder.session->run(text.toStdString(), "here");
            if (delay > 0)
                QTest::qWait(delay);
            const int finished = recorder.finished;
            recorder.session.reset();
            const QStringList lines = recorder.lines;
            QCoreApplication::processEvents();
            QCOMPARE(recorder.finished, finished);
            QCOMPARE(recorder.lines, lines);
        }
    }

    void endsDuringACall()
    {
        Recorder recorder;
        duringCall = [&recorder] { recorder.session.reset(); };
        recorder.session->run("Twice('x')", "here");
        QVERIFY(QTest::qWaitFor([&recorder] { return !recorder.session; }, 30'000));
        QCoreApplication::processEvents();
        QCOMPARE(recorder.finished, 0);
    }

    void endsWhenItHasFinished()
    {
        Recorder recorder;
        recorder.atEnd = [&recorder] { recorder.session.reset(); };
        recorder.session->evaluate("1");
        QVERIFY(recorder.wait());
        QVERIFY(!recorder.session);
    }

    void sessionsAreApart()
    {
        Recorder first;
        Recorder second;
        QVERIFY(first.evaluate("var x = 1"));
        QVERIFY(second.evaluate("typeof x"));
        QCOMPARE(second.outcome.value, std::string("\"undefined\""));
    }

    void hostsWithoutScriptsSaySo()
    {
        QVERIFY_EXCEPTION_THROWN(host::makeScriptSession({}), host::CallError);
        host::setScriptSessionMaker([](host::ScriptListener listener) {
            return std::make_unique<ThreadScriptSession>(registeredNames(), std::move(listener));
        });
        std::string value;
        const std::unique_ptr<host::ScriptSession> session = host::makeScriptSession(
            {nullptr, [&value](const host::ScriptOutcome& outcome) { value = outcome.value; }});
        session->evaluate("6 * 7");
        QVERIFY(QTest::qWaitFor([&value] { return !value.empty(); }, 30'000));
        QCOMPARE(value, std::string("42"));
        host::setScriptSessionMaker({});
    }
};

QTEST_GUILESS_MAIN(tst_ScriptSession)
#include "tst_ScriptSession.moc"
