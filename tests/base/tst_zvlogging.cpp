#include "support/StdString.h"

#include <zv_logging/host.h>
#include <zv_logging/zv_logging.h>

#include <QLibrary>
#include <QTemporaryDir>
#include <QTest>

#include <string>
#include <vector>

namespace logging = zvutil::logging::host;

class tst_zvlogging : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLibrary library(ZVUTIL_FILE);
        QVERIFY2(library.load(), qPrintable(library.errorString()));
        // By their plain names, as the application asks for them.
        m_enableLogging = library.resolve("zvlogging_EnableLogging");
        m_enableDiagnosticMode = library.resolve("zvlogging_EnableDiagnosticMode");
        QVERIFY(m_enableLogging);
        QVERIFY(m_enableDiagnosticMode);
        QVERIFY(m_directory.isValid());
    }

    void init()
    {
        logging::reset();
        logging::setLogFile(m_directory.filePath("zv.log").toStdString());
        m_calls.clear();
        logging::setObserver([this](const std::string& call) { m_calls.push_back(call); });
    }

    void cleanup() { logging::setObserver({}); }
    void cleanupTestCase() { logging::reset(); }

    void nothingIsLoggedUntilAsked() { QCOMPARE(m_calls, Calls()); }

    void enableLogging()
    {
        m_enableLogging();
        QCOMPARE(
            m_calls,
            (Calls{"add_sink 2", "add_sink 1", "add_sink 0", "write 2 init: Logging initialised"}));
        QCOMPARE(logging::sinks(), (std::vector{2, 1, 0}));
        const auto records = logging::records();
        QCOMPARE(records.size(), std::size_t(1));
        QCOMPARE(records[0].level, 2);
        QCOMPARE(records[0].category, std::string("init"));
        QCOMPARE(records[0].text, std::string("Logging initialised"));
    }

    void enableDiagnosticMode()
    {
        m_enableDiagnosticMode();
        QCOMPARE(m_calls, (Calls{"set_log_level 0 1", "set_log_level 2 1"}));
    }

    void enablingTwiceWritesTwice()
    {
        m_enableLogging();
        m_enableLogging();
        QCOMPARE(m_calls.size(), std::size_t(8));
        QCOMPARE(logging::records().size(), std::size_t(2));
        QCOMPARE(logging::records()[1].text, std::string("Logging initialised"));
    }

    void eitherOrder_data()
    {
        QTest::addColumn<bool>("loggingFirst");
        QTest::newRow("logging first") << true;
        QTest::newRow("diagnostic mode first") << false;
    }

    void eitherOrder()
    {
        QFETCH(bool, loggingFirst);
        (loggingFirst ? m_enableLogging : m_enableDiagnosticMode)();
        (loggingFirst ? m_enableDiagnosticMode : m_enableLogging)();
        zvutil::logging::write(1, "test", "progress");
        QCOMPARE(logging::records().size(), std::size_t(2));
        QCOMPARE(logging::records()[1].text, std::string("progress"));
    }

private:
    using Calls = std::vector<std::string>;

    QTemporaryDir m_directory;
    Calls m_calls;
    QFunctionPointer m_enableLogging = nullptr;
    QFunctionPointer m_enableDiagnosticMode = nullptr;
};

QTEST_GUILESS_MAIN(tst_zvlogging)
#include "tst_zvlogging.moc"
