#include "NumberFilter.h"

#include "support/FilterResult.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QMetaMethod>
#include <QStandardItemModel>
#include <QStringListModel>
#include <QTest>
#include <QThread>

#include <memory>
#include <stdexcept>
#include <type_traits>

using zvtest::Filter;
using zvtest::FilterResult;
using zvtest::numbers;
using zvtest::post;
using zvtest::upTo;

class tst_AbstractBackgroundListFilter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shape()
    {
        const QMetaObject& meta = AbstractBackgroundListFilter::staticMetaObject;
        QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
        const QByteArrayList expected = {"accepted(ModelIndexVectorPtr)", "progress(int,int)",
                                         "reset()", "searchCriteriaChanged()"};
        QByteArrayList actual;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            QCOMPARE(meta.method(i).methodType(), QMetaMethod::Signal);
            actual.append(meta.method(i).methodSignature());
        }
        QCOMPARE(actual, expected);
        static_assert(std::is_abstract_v<AbstractBackgroundListFilter>);
        static_assert(std::is_same_v<AbstractBackgroundListFilter::ModelIndexVectorPtr,
                                     std::shared_ptr<std::vector<QModelIndex>>>);
        static_assert(AbstractBackgroundListFilter::source_clean == 0);
        static_assert(AbstractBackgroundListFilter::source_changing == 1);
        static_assert(AbstractBackgroundListFilter::source_changed == 2);
    }

    void argumentIsRegisteredUnderBothNames()
    {
        const int id = qMetaTypeId<AbstractBackgroundListFilter::ModelIndexVectorPtr>();
        QCOMPARE(QMetaType::type("ModelIndexVectorPtr"), id);
        QCOMPARE(QMetaType::type("AbstractBackgroundListFilter::ModelIndexVectorPtr"), id);
        QCOMPARE(QMetaType::typeName(id), "AbstractBackgroundListFilter::ModelIndexVectorPtr");
    }

    void beginning()
    {
        QObject parent;
        auto* const filter = new Filter(&parent);
        QCOMPARE(filter->parent(), &parent);
        const FilterResult result(*filter);
        QCOMPARE(result.timer().interval(), 50);
        QCOMPARE(result.timer().parent(), filter);
        QVERIFY(!result.timer().isActive());
        QVERIFY(!filter->sourceModel());
        QVERIFY(!filter->isPaused());
        QVERIFY(filter->isSourceDirty());
        QCOMPARE(filter->sourceState(), 2);
        const Filter other(7, nullptr);
        QCOMPARE(FilterResult(const_cast<Filter&>(other)).timer().interval(), 7);
        QCOMPARE(filter->searches + result.resets, 0);
    }

    void withoutSourceThePassHasNoRows()
    {
        Filter filter(1, nullptr);
        const FilterResult result(filter);
        filter.recheck();
        QCOMPARE(filter.searches, 1);
        QCOMPARE(result.resets, 1);
        QVERIFY(!filter.isSourceDirty());
        QVERIFY(result.timer().isActive());
        QVERIFY(result.settles());
        QCOMPARE(result.progress, (QList<QPair<int, int>>{{0, 0}}));
        QCOMPARE(result.batches, QList<int>());
        // Nothing is new.
        filter.recheck();
        QCOMPARE(filter.searches, 1);
    }

    void goesThroughAllRowsOnce()
    {
        Filter filter(1, nullptr);
        const FilterResult result(filter);
        const std::unique_ptr<QStringListModel> source(numbers(20));
        filter.accepts = [](int row) { return row % 3 == 0; };
        filter.setSourceModel(source.get());
        QCOMPARE(filter.sourceModel(), source.get());
        QCOMPARE(filter.asked, upTo(20));
        QVERIFY(result.settles());
        QCOMPARE(result.rows, (QList<int>{0, 3, 6, 9, 12, 15, 18}));
        QCOMPARE(result.resets, 1);
        QVERIFY(!filter.isSourceDirty());
        // The last tick tells of progress, too.
        QCOMPARE(result.progress.back(), qMakePair(20, 20));
    }

    void onlyTheTopLevelAndItsFirstColumn()
    {
        QStandardItemModel source(2, 3);
        auto* const item = new QStandardItem;
        item->appendRow(new QStandardItem);
        source.setItem(0, 0, item);
        Filter filter(1, nullptr);
        std::vector<QModelIndex> accepted;
        connect(&filter, &Filter::accepted, this,
                [&](const Filter::ModelIndexVectorPtr& indexes) { accepted = *indexes; });
        filter.setSourceModel(&source);
        QTRY_COMPARE_WITH_TIMEOUT(accepted.size(), std::size_t(2), 60'000);
        QCOMPARE(accepted[0], source.index(0, 0));
        QCOMPARE(accepted[1], source.index(1, 0));
    }

    void deliversAThousandAtEachTick_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<QList<int>>("batches");
        QTest::newRow("none") << 0 << QList<int>();
        QTest::newRow("one") << 1 << QList<int>{1};
        QTest::newRow("a thousand") << 1000 << QList<int>{1000};
        QTest::newRow("one more") << 1001 << QList<int>{1000, 1};
        QTest::newRow("2500") << 2500 << QList<int>{1000, 1000, 500};
    }

    void deliversAThousandAtEachTick()
    {
        QFETCH(int, rows);
        QFETCH(QList<int>, batches);
        // No tick comes before the pass has ended.
        Filter filter(3'600'000, nullptr);
        FilterResult result(filter);
        const std::unique_ptr<QStringListModel> source(numbers(rows));
        filter.setSourceModel(source.get());
        QVERIFY(result.timer().isActive());
        QCOMPARE(result.batches, QList<int>());
        result.timer().setInterval(1);
        int ticks = 0;
        connect(&result.timer(), &QTimer::timeout, this, [&] {
            ++ticks;
            // One batch in each, until there is none.
            QCOMPARE(result.batches, batches.mid(0, ticks));
            QCOMPARE(result.timer().isActive(), ticks <= batches.size());
        });
        QVERIFY(result.settles());
        QCOMPARE(ticks, batches.size() + 1);
        QCOMPARE(result.rows, upTo(rows));
        QCOMPARE(result.progress.size(), ticks);
        for (const auto& progress : qAsConst(result.progress))
            QCOMPARE(progress, qMakePair(rows, rows));
    }

    void ticksDuringThePassKeepTheTimerRunning()
    {
        Filter filter(1, nullptr);
        const FilterResult result(filter);
        const std::unique_ptr<QStringListModel> source(numbers(3));
        filter.accepts = [&](int row) {
            // Ticks that find nothing, since nothing is accepted.
            const int before = result.progress.size();
            while (result.progress.size() < before + 2) {
                QThread::msleep(1);
                QCoreApplication::processEvents();
            }
            return result.timer().isActive() && result.progress.back() == qMakePair(row, 3)
                && row == 2;
        };
        filter.setSourceModel(source.get());
        QVERIFY(result.settles());
        QCOMPARE(result.rows, QList<int>{2});
    }

    void guardKeepsPassesFromNesting()
    {
        Filter filter(1, nullptr);
        const std::unique_ptr<QStringListModel> source(numbers(3));
        int depth = 0;
        int deepest = 0;
        filter.accepts = [&](int) {
            deepest = std::max(deepest, ++depth);
            filter.recheck();
            if (filter.searches == 1)
                filter.search();
            --depth;
            return true;
        };
        filter.setSourceModel(source.get());
        QTRY_COMPARE_WITH_TIMEOUT(filter.asked, upTo(1) + upTo(3), 60'000);
        QCOMPARE(deepest, 1);
    }

    void pausingCutsThePassOff()
    {
        const std::unique_ptr<QStringListModel> source(numbers(10));
        Filter filter(1, nullptr);
        const FilterResult result(filter);
        filter.accepts = [&](int row) {
            if (row == 4 && filter.searches == 1)
                post(&filter, [&filter] { filter.pause(); });
            return true;
        };
        filter.setSourceModel(source.get());
        QVERIFY(filter.isPaused());
        QCOMPARE(filter.asked, upTo(5));
        // What was accepted is delivered.
        QVERIFY(result.settles());
        QCOMPARE(result.rows, upTo(5));
        QCOMPARE(result.progress.back(), qMakePair(5, 10));
        // Resuming doesn't continue.
        filter.setPaused(false);
        QVERIFY(!filter.isPaused());
        QCOMPARE(filter.asked, upTo(5));
        QCOMPARE(result.resets, 1);
        filter.search();
        QCOMPARE(filter.asked, upTo(5) + upTo(10));
        QVERIFY(result.settles());
        QCOMPARE(result.rows, upTo(10));
    }

    void resumingBeginsAPassThatIsDue()
    {
        Filter filter(1, nullptr);
        const FilterResult result(filter);
        filter.setPaused(true);
        QCOMPARE(filter.searches, 0);
        filter.setPaused(false);
        QCOMPARE(filter.searches, 1);
        QCOMPARE(result.resets, 1);
        // So do criteria that nobody has told of.
        filter.setPaused(true);
        filter.isPending = true;
        filter.setPaused(true);
        QCOMPARE(filter.searches, 1);
        filter.setPaused(false);
        QCOMPARE(filter.searches, 2);
    }

    void whatWaitedBeforeThePassIsHeard()
    {
        const std::unique_ptr<QStringListModel> source(numbers(1000));
        Filter filter(nullptr);
        QEventLoop loop;
        post(&filter, [&] { filter.setSourceModel(source.get()); });
        post(&filter, [&] { filter.pause(); });
        post(&filter, [&] { loop.quit(); });
        loop.exec();
        QCOMPARE(filter.asked, QList<int>{0});
    }

    void rowIsCountedBehindItsEvents()
    {
        const std::unique_ptr<QStringListModel> source(numbers(3));
        Filter filter(nullptr);
        QList<int> counts;
        connect(&filter, &AbstractBackgroundListFilter::progress, this,
                [&counts](int value) { counts.append(value); });
        // The filter's only timer ticks when it is told to.
        auto* const timer = filter.findChild<QTimer*>();
        timer->setInterval(3'600'000);
        filter.accepts = [&](int) {
            post(&filter, [timer] { QMetaObject::invokeMethod(timer, "timeout"); });
            return false;
        };
        filter.setSourceModel(source.get());
        QCOMPARE(counts, (QList<int>{0, 1, 2}));
    }

    void criteriaThatComeWhilePausedAreTakenOverButFindNothing()
    {
        const std::unique_ptr<QStringListModel> source(numbers(10));
        Filter filter(1, nullptr);
        const FilterResult result(filter);
        filter.setPaused(true);
        QVERIFY(filter.isPaused());
        filter.setSourceModel(source.get());
        filter.search();
        QCOMPARE(filter.searches, 2);
        QCOMPARE(result.resets, 2);
        QCOMPARE(filter.asked, QList<int>());
        filter.setPaused(false);
        QCOMPARE(filter.searches, 2);
        QVERIFY(result.settles());
        QCOMPARE(result.rows, QList<int>());
        source->setStringList({"a"});
        QVERIFY(result.settles());
        QCOMPARE(result.rows, QList<int>{0});
    }

    void exceptionsGoOnAndLeaveTheFilterUsable()
    {
        const std::unique_ptr<QStringListModel> source(numbers(3));
        Filter filter(1, nullptr);
        const FilterResult result(filter);
        filter.accepts = [](int row) {
            if (row == 1)
                throw std::runtime_error("no");
            return true;
        };
        QVERIFY_EXCEPTION_THROWN(filter.setSourceModel(source.get()), std::runtime_error);
        filter.accepts = {};
        filter.search();
        QVERIFY(result.settles());
        QCOMPARE(result.rows, upTo(3));
    }
};

QTEST_GUILESS_MAIN(tst_AbstractBackgroundListFilter)
#include "tst_AbstractBackgroundListFilter.moc"
