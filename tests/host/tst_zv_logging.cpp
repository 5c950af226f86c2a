#include "LogTest.h"

#include <zv_logging/host.h>
#include <zv_logging/zv_logging.h>

#include <QFile>
#include <QTest>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace logging = zvutil::logging;

class tst_zv_logging : public zvtest::LogTest
{
    Q_OBJECT

private Q_SLOTS:
    void withoutASinkNothingIsKept()
    {
        logging::write(4, "test", "lost");
        QVERIFY(logging::host::records().empty());
        QVERIFY(logging::host::sinks().empty());
    }

    void addingASinkAgainChangesNothing()
    {
        add_sink(2);
        add_sink(2);
        logging::write(2, "test", "once");
        QCOMPARE(logging::host::sinks(), std::vector{2});
        QCOMPARE(logging::host::records().size(), std::size_t(1));
    }

    void levelAdmitsFromItselfUpwards_data()
    {
        QTest::addColumn<int>("level");
        for (int level = 0; level <= 5; ++level)
            QTest::addRow("level %d", level) << level;
    }

    void levelAdmitsFromItselfUpwards()
    {
        QFETCH(int, level);
        set_log_level(2, level);
        add_sink(2);
        for (int written = 0; written <= 5; ++written)
            logging::write(written, "test", "line");
        const auto records = logging::host::records();
        QCOMPARE(records.size(), std::size_t(6 - level));
        QCOMPARE(records.front().level, level);
    }

    void sinkStartsAtInformation()
    {
        add_sink(2);
        logging::write(1, "test", "progress");
        logging::write(2, "test", "information");
        QCOMPARE(logging::host::records().size(), std::size_t(1));
    }

    void looksAtWhatIsNew()
    {
        const std::uint64_t before = logging::host::recordsSince(0).count;
        add_sink(2);
        QVERIFY(logging::host::recordsSince(before).records.empty());
        logging::write(2, "test", "one");
        logging::write(0, "test", "not kept");
        logging::write(4, "test", "two");
        const logging::host::NewRecords both = logging::host::recordsSince(before);
        QCOMPARE(both.count, before + 2);
        QCOMPARE(both.records.size(), std::size_t(2));
        QCOMPARE(both.records[0].text, std::string("one"));
        QCOMPARE(both.records[1].level, 4);
        const logging::host::NewRecords second = logging::host::recordsSince(before + 1);
        QCOMPARE(second.records.size(), std::size_t(1));
        QCOMPARE(second.records[0].text, std::string("two"));
        QCOMPARE(second.records[0].category, std::string("test"));
        QVERIFY(logging::host::recordsSince(both.count).records.empty());
        QVERIFY(logging::host::recordsSince(both.count + 100).records.empty());
    }

    void whatIsNewIsBoundedByWhatIsKept()
    {
        add_sink(2);
        const std::uint64_t before = logging::host::recordsSince(0).count;
        for (int i = 0; i < 10'050; ++i)
            logging::write(2, "test", std::to_string(i).c_str());
        const logging::host::NewRecords all = logging::host::recordsSince(before);
        QCOMPARE(all.count, before + 10'050);
        QCOMPARE(all.records.size(), std::size_t(10'000));
        QCOMPARE(all.records.front().text, std::string("50"));
        QCOMPARE(all.records.back().text, std::string("10049"));
        logging::host::reset();
        QCOMPARE(logging::host::recordsSince(before).count, before + 10'050);
        QVERIFY(logging::host::recordsSince(before).records.empty());
    }

    void levelOutsideTheScaleIsTheNearest()
    {
        add_sink(2);
        set_log_level(2, 0);
        logging::write(-7, "test", "low");
        logging::write(99, "test", "high");
        QCOMPARE(logging::host::records()[0].level, 0);
        QCOMPARE(logging::host::records()[1].level, 5);
    }

    void unknownNumbersAreRefused()
    {
        QVERIFY_EXCEPTION_THROWN(add_sink(3), std::invalid_argument);
        QVERIFY_EXCEPTION_THROWN(add_sink(-1), std::invalid_argument);
        QVERIFY_EXCEPTION_THROWN(set_log_level(3, 1), std::invalid_argument);
        QVERIFY_EXCEPTION_THROWN(set_log_level(0, 6), std::invalid_argument);
        QVERIFY_EXCEPTION_THROWN(set_log_level(0, -1), std::invalid_argument);
    }

    void fileSinkWritesLines()
    {
        add_sink(1);
        logging::write(2, "category", "the text {} %s");
        logging::host::reset();
        QFile log(file());
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QByteArray line = log.readAll();
        QVERIFY2(line.contains("category") && line.contains("the text {} %s"), line.constData());
    }

    void fileThatCannotBeOpenedIsNoSink()
    {
        // A file where a directory would have to be.
        QFile obstacle(m_directory.filePath("obstacle"));
        QVERIFY(obstacle.open(QIODevice::WriteOnly));
        logging::host::setLogFile(obstacle.fileName().toStdString() + "/zv.log");
        add_sink(1);
        QVERIFY(logging::host::sinks().empty());
    }

    void memoryKeepsTheLastLines()
    {
        add_sink(2);
        for (int i = 0; i < 10'050; ++i)
            logging::write(2, "test", std::to_string(i).c_str());
        const auto records = logging::host::records();
        QCOMPARE(records.size(), std::size_t(10'000));
        QCOMPARE(records.front().text, std::string("50"));
        QCOMPARE(records.back().text, std::string("10049"));
    }
};

QTEST_GUILESS_MAIN(tst_zv_logging)
#include "tst_zv_logging.moc"
