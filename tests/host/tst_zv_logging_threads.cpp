// The log of several threads.

#include "LogTest.h"

#include <zv_logging/host.h>
#include <zv_logging/zv_logging.h>

#include <QTest>

#include <string>
#include <thread>
#include <vector>

namespace logging = zvutil::logging;

class tst_zv_logging_threads : public zvtest::LogTest
{
    Q_OBJECT

private Q_SLOTS:
    void severalThreadsLoseNothing()
    {
        add_sink(2);
        const int lines = 2'000;
        const auto work = [](int begin) {
            for (int i = begin; i < begin + lines; ++i)
                logging::write(2, "test", std::to_string(i).c_str());
        };
        std::thread first(work, 0);
        std::thread second(work, lines);
        add_sink(1);
        set_log_level(1, 5);
        first.join();
        second.join();
        std::vector<int> seen(2 * lines, 0);
        for (const auto& record : logging::host::records())
            ++seen[static_cast<std::size_t>(std::stoi(record.text))];
        QCOMPARE(seen, std::vector<int>(2 * lines, 1));
    }
};

QTEST_GUILESS_MAIN(tst_zv_logging_threads)
#include "tst_zv_logging_threads.moc"
