#include "support/FilterResult.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QMetaMethod>
#include <QScopeGuard>
#include <QStandardItemModel>
#include <QStringListModel>
#include <QTest>
#include <QThread>

#include <functional>
#include <memory>
#include <stdexcept>
#include <type_traits>

namespace {

using zvtest::FilterResult;

/// Accepts what it is told to, and writes down what it is asked.
class Filter : public AbstractBackgroundListFilter
{
public:
    using AbstractBackgroundListFilter::AbstractBackgroundListFilter;

    /// As a subclass with new criteria does.
    void search()
    {
        isPending = true;
        Q_EMIT searchCriteriaChanged();
    }

    bool acceptsRow(int row) override
    {
        asked.append(row);
        // A copy, since it may delete this object.
        const std::function<bool(int row)> test = accepts;
        return !test || test(row);
    }

    void searchStarted() override
    {
        isPending = false;
        ++searches;
    }

    bool criteriaPending() override { return isPending; }

    std::function<bool(int row)> accepts;
    QList<int> asked;
    int searches = 0;
    bool isPending = false;
};

QStringListModel* numbers(int count, QObject* parent = nullptr)
{
    QStringList rows;
    for (int i = 0; i < count; ++i)
        rows.append(QString::number(i));
    return new QStringListModel(rows, parent);
}

QList<int> upTo(int count)
{
    QList<int> rows;
    for (int i = 0; i < count; ++i)
        rows.append(i);
    return rows;
}

/// Runs when the pass next handles events.
template <typename Work>
void post(QObject* context, Work work)
{
    QMetaObject::invokeMethod(context, work, Qt::QueuedConnection);
}

/// Announces any change by hand.
class Announcer : public QAbstractTableModel
{
public:
    int rowCount(const QModelIndex& /*parent*/) const override { return 3; }
    int columnCount(const QModelIndex& /*parent*/) const override { return 3; }
    QVariant data(const QModelIndex& /*index*/, int /*role*/) const override { return {}; }

    using Change = std::function<void(Announcer&)>;

    using QAbstractTableModel::beginInsertColumns;
    using QAbstractTableModel::beginInsertRows;
    using QAbstractTableModel::beginMoveColumns;
    using QAbstractTableModel::beginMoveRows;
    using QAbstractTableModel::beginRemoveColumns;
    using QAbstractTableModel::beginRemoveRows;
    using QAbstractTableModel::beginResetModel;
    using QAbstractTableModel::endInsertColumns;
    using QAbstractTableModel::endInsertRows;
    using QAbstractTableModel::endMoveColumns;
    using QAbstractTableModel::endMoveRows;
    using QAbstractTableModel::endRemoveColumns;
    using QAbstractTableModel::endRemoveRows;
    using QAbstractTableModel::endResetModel;
    using QAbstractTableModel::isSignalConnected;
};

} // namespace

Q_DECLARE_METATYPE(Announcer::Change)

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

    void newCriteriaDuringAPassLeadToOneNewPass()
    {
        Filter filter(1, nullptr);
        const FilterResult result(filter);
        const std::unique_ptr<QStringListModel> source(numbers(10));
        filter.accepts = [&](int row) {
            if (row == 3 && filter.searches == 1) {
                for (int i = 0; i < 5; ++i)
                    post(&filter, [&filter] { filter.search(); });
            }
            return true;
        };
        filter.setSourceModel(source.get());
        // It has left its loop behind the row in which the events came.
        QCOMPARE(filter.asked, upTo(4));
        QCOMPARE(filter.searches, 1);
        QVERIFY(result.settles());
        QCOMPARE(filter.asked, upTo(4) + upTo(10));
        QCOMPARE(filter.searches, 2);
        QCOMPARE(result.resets, 2);
        QCOMPARE(result.rows, upTo(10));
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

    void changesOfTheSourceRestart_data()
    {
        using Change = Announcer::Change;
        const QModelIndex none;
        QTest::addColumn<Change>("begin");
        QTest::addColumn<Change>("end");
        QTest::newRow("rows inserted")
            << Change([none](Announcer& m) { m.beginInsertRows(none, 0, 0); })
            << Change([](Announcer& m) { m.endInsertRows(); });
        QTest::newRow("rows removed")
            << Change([none](Announcer& m) { m.beginRemoveRows(none, 0, 0); })
            << Change([](Announcer& m) { m.endRemoveRows(); });
        QTest::newRow("rows moved")
            << Change([none](Announcer& m) { m.beginMoveRows(none, 0, 0, none, 2); })
            << Change([](Announcer& m) { m.endMoveRows(); });
        QTest::newRow("columns inserted")
            << Change([none](Announcer& m) { m.beginInsertColumns(none, 0, 0); })
            << Change([](Announcer& m) { m.endInsertColumns(); });
        QTest::newRow("columns removed")
            << Change([none](Announcer& m) { m.beginRemoveColumns(none, 0, 0); })
            << Change([](Announcer& m) { m.endRemoveColumns(); });
        QTest::newRow("columns moved")
            << Change([none](Announcer& m) { m.beginMoveColumns(none, 0, 0, none, 2); })
            << Change([](Announcer& m) { m.endMoveColumns(); });
        QTest::newRow("reset") << Change([](Announcer& m) { m.beginResetModel(); })
                               << Change([](Announcer& m) { m.endResetModel(); });
        QTest::newRow("data") << Change() << Change([](Announcer& m) {
            Q_EMIT m.dataChanged(m.index(2, 2), m.index(2, 2));
        });
    }

    void changesOfTheSourceRestart()
    {
        QFETCH(Announcer::Change, begin);
        QFETCH(Announcer::Change, end);
        Announcer source;
        Filter filter(1, nullptr);
        const FilterResult result(filter);
        filter.setSourceModel(&source);
        QCOMPARE(filter.asked, upTo(3));
        if (begin) {
            begin(source);
            QCOMPARE(filter.sourceState(), 1);
            QVERIFY(filter.isSourceDirty());
            // Nothing is done until the change ends, not even for new criteria.
            filter.search();
            filter.recheck();
            QCOMPARE(filter.searches, 1);
            QCOMPARE(result.resets, 1);
        }
        end(source);
        QCOMPARE(filter.sourceState(), 0);
        QCOMPARE(filter.asked, upTo(3) + upTo(3));
        QCOMPARE(filter.searches, 2);
        QCOMPARE(result.resets, 2);
        QVERIFY(result.settles());
        QCOMPARE(result.rows, upTo(3));
    }

    void changesDuringAPassRestartIt()
    {
        Announcer source;
        Filter filter(1, nullptr);
        const FilterResult result(filter);
        filter.accepts = [&](int row) {
            if (row == 1 && filter.searches == 1) {
                post(&filter, [&source] {
                    source.beginInsertRows({}, 0, 0);
                    source.endInsertRows();
                });
            }
            return true;
        };
        filter.setSourceModel(&source);
        QCOMPARE(filter.asked, upTo(2));
        QVERIFY(result.settles());
        QCOMPARE(filter.asked, upTo(2) + upTo(3));
        QCOMPARE(result.rows, upTo(3));
    }

    void otherSignalsOfTheSourceDoNotRestart()
    {
        Announcer source;
        Filter filter(1, nullptr);
        filter.setSourceModel(&source);
        Q_EMIT source.layoutAboutToBeChanged();
        Q_EMIT source.layoutChanged();
        Q_EMIT source.headerDataChanged(Qt::Horizontal, 0, 0);
        QCOMPARE(filter.searches, 1);
        QCOMPARE(filter.sourceState(), 0);
    }

    void rowsThatWaitKeepTheirPlacesWhenTheSourceIsSorted()
    {
        QStandardItemModel source;
        for (const char* text : {"b", "a"})
            source.appendRow(new QStandardItem(QString::fromLatin1(text)));
        // No tick comes before the source has been sorted.
        Filter filter(3'600'000, nullptr);
        filter.accepts = [](int row) { return row == 0; };
        FilterResult result(filter);
        QStringList texts;
        connect(&filter, &AbstractBackgroundListFilter::accepted, this,
                [&texts](const AbstractBackgroundListFilter::ModelIndexVectorPtr& indexes) {
                    for (const QModelIndex& index : *indexes)
                        texts += index.data().toString();
                });
        filter.setSourceModel(&source);
        QCOMPARE(filter.asked, upTo(2));
        source.sort(0);
        QCOMPARE(filter.searches, 1);
        result.timer().setInterval(1);
        QVERIFY(result.settles());
        QCOMPARE(result.rows, upTo(1));
        // It was for the other.
        QCOMPARE(texts, QStringList{QStringLiteral("a")});
    }

    void anotherSource()
    {
        Announcer first;
        Filter filter(1, nullptr);
        const FilterResult result(filter);
        filter.setSourceModel(&first);
        const std::unique_ptr<QStringListModel> second(numbers(5));
        filter.setSourceModel(second.get());
        QCOMPARE(result.resets, 2);
        Q_EMIT first.dataChanged({}, {});
        first.beginResetModel();
        QCOMPARE(filter.sourceState(), 0);
        first.endResetModel();
        QCOMPARE(result.resets, 2);
        QVERIFY(result.settles());
        QCOMPARE(result.rows, upTo(5));

        filter.setSourceModel(nullptr);
        QCOMPARE(result.resets, 3);
        QVERIFY(result.settles());
        QCOMPARE(result.rows, QList<int>());
        QCOMPARE(result.progress.back(), qMakePair(0, 0));
        for (int i = 0; i < first.metaObject()->methodCount(); ++i) {
            const QMetaMethod method = first.metaObject()->method(i);
            if (method.methodType() == QMetaMethod::Signal)
                QVERIFY2(!first.isSignalConnected(method), method.methodSignature());
        }
    }

    void anotherSourceDuringAPass()
    {
        const std::unique_ptr<QStringListModel> first(numbers(100));
        const std::unique_ptr<QStringListModel> second(numbers(5));
        Filter filter(1, nullptr);
        const FilterResult result(filter);
        filter.accepts = [&](int row) {
            if (row == 50)
                post(&filter, [&] { filter.setSourceModel(second.get()); });
            return true;
        };
        filter.setSourceModel(first.get());
        QVERIFY(result.settles());
        QCOMPARE(result.rows, upTo(5));
        QCOMPARE(filter.asked, upTo(51) + upTo(5));
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
        source->setStringList({QStringLiteral("a")});
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

    void sourceMayGoAtAnyMoment_data()
    {
        QTest::addColumn<int>("row");
        for (const int row : {-1, 0, 5, 9})
            QTest::addRow("%d", row) << row;
    }

    void sourceMayGoAtAnyMoment()
    {
        QFETCH(int, row);
        QPointer<QStringListModel> source(numbers(10));
        Filter filter(1, nullptr);
        const FilterResult result(filter);
        bool isDeadDelivered = false;
        connect(&filter, &AbstractBackgroundListFilter::accepted, this,
                [&] { isDeadDelivered = isDeadDelivered || !source; });
        filter.accepts = [&](int asked) {
            if (asked == row)
                post(&filter, [&source, timer = filter.findChild<QTimer*>()] {
                    delete source;
                    QMetaObject::invokeMethod(timer, "timeout");
                });
            return true;
        };
        filter.setSourceModel(source);
        if (row < 0)
            delete source;
        QVERIFY(!filter.sourceModel());
        QVERIFY(result.settles());
        QVERIFY(!isDeadDelivered);
        QCOMPARE(result.rows, QList<int>());
        QCOMPARE(result.resets, 2);
        QCOMPARE(result.progress.back(), qMakePair(0, 0));
    }

    void sourceMayEndOrChangeWithinTheTestOfARow_data()
    {
        QTest::addColumn<int>("change");
        QTest::newRow("it is destroyed") << 0;
        QTest::newRow("it loses its rows") << 1;
        QTest::newRow("there is another") << 2;
        QTest::newRow("there is none any more") << 3;
    }

    void sourceMayEndOrChangeWithinTheTestOfARow()
    {
        QFETCH(int, change);
        std::unique_ptr<QStringListModel> source(numbers(10));
        const std::unique_ptr<QStringListModel> other(numbers(3));
        Filter filter(1, nullptr);
        const FilterResult result(filter);
        bool isDone = false;
        filter.accepts = [&](int row) {
            if (row != 5 || isDone)
                return true;
            isDone = true;
            if (change == 0)
                source.reset();
            else if (change == 1)
                source->removeRows(2, 8);
            else
                filter.setSourceModel(change == 2 ? other.get() : nullptr);
            return true;
        };
        filter.setSourceModel(source.get());
        QVERIFY(result.settles());
        QVERIFY(isDone);
        // What was accepted before isn't of the source as it is now.
        const QList<int> expected[] = {{}, {0, 1}, {0, 1, 2}, {}};
        QCOMPARE(result.rows, expected[change]);
        QVERIFY(!filter.isSourceDirty());
    }

    void filterMayGoAtAnyMoment_data()
    {
        QTest::addColumn<int>("moment");
        QTest::newRow("within the pass") << 0;
        QTest::newRow("from reset") << 1;
        QTest::newRow("from progress") << 2;
        QTest::newRow("from accepted") << 3;
        QTest::newRow("from progress within the pass") << 4;
        QTest::newRow("within the test of a row") << 5;
    }

    void filterMayGoAtAnyMoment()
    {
        QFETCH(int, moment);
        const std::unique_ptr<QStringListModel> source(numbers(10));
        QPointer<Filter> filter(new Filter(1, nullptr));
        const auto end = [&filter] { delete filter; };
        filter->accepts = [&](int row) {
            if (moment == 0 && row == 5)
                post(this, end);
            if (moment == 4)
                QThread::msleep(5);
            if (moment == 5 && row == 5)
                end();
            return true;
        };
        if (moment == 1)
            connect(filter, &Filter::reset, this, end);
        else if (moment == 2 || moment == 4)
            connect(filter, &Filter::progress, this, end);
        else if (moment == 3)
            connect(filter, &Filter::accepted, this, end);
        filter->setSourceModel(source.get());
        QTRY_VERIFY_WITH_TIMEOUT(!filter, 60'000);
    }

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

QTEST_GUILESS_MAIN(tst_AbstractBackgroundListFilter)
#include "tst_AbstractBackgroundListFilter.moc"
