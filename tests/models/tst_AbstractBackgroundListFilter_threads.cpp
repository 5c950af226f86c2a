// A filter that other threads speak to and hear of.

#include "NumberFilter.h"

#include "support/FilterResult.h"

#include <QScopeGuard>
#include <QStringListModel>
#include <QTest>
#include <QThread>

#include <memory>

using zvtest::Filter;
using zvtest::FilterResult;
using zvtest::numbers;

class tst_AbstractBackgroundListFilter_threads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void acceptedCrossesToAnotherThread()
    {
        const std::unique_ptr<QStringListModel> source(numbers(3));
        Filter filter(1, nullptr);
        QThread thread;
        QObject receiver;
        receiver.moveToThread(&thread);
        std::atomic<std::size_t> received{0};
        std::atomic<bool> isElsewhere{true};
        // In one batch or several.
        connect(&filter, &Filter::accepted, &receiver,
                [&](const Filter::ModelIndexVectorPtr& indexes) {
                    isElsewhere = isElsewhere && QThread::currentThread() == &thread;
                    received += indexes->size();
                });
        thread.start();
        const auto end = qScopeGuard([&thread] {
            thread.quit();
            thread.wait();
        });
        filter.setSourceModel(source.get());
        QTRY_COMPARE_WITH_TIMEOUT(received.load(), std::size_t(3), 60'000);
        QVERIFY(isElsewhere);
    }

    void recheckFromAnotherThreadRunsOnTheFiltersOwn()
    {
        Filter filter(1, nullptr);
        const FilterResult result(filter);
        const std::unique_ptr<QThread> thread(QThread::create([&filter] { filter.recheck(); }));
        thread->start();
        thread->wait();
        QCOMPARE(filter.searches, 0);
        QTRY_COMPARE_WITH_TIMEOUT(filter.searches, 1, 60'000);
    }
};

QTEST_GUILESS_MAIN(tst_AbstractBackgroundListFilter_threads)
#include "tst_AbstractBackgroundListFilter_threads.moc"
