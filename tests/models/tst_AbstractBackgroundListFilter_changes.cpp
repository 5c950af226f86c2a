// Changes of a filter's source and criteria, and their ends.

#include "NumberFilter.h"

#include "support/FilterResult.h"

#include <QMetaMethod>
#include <QStandardItemModel>
#include <QStringListModel>
#include <QTest>
#include <QThread>

#include <functional>
#include <memory>

using zvtest::Filter;
using zvtest::FilterResult;
using zvtest::numbers;
using zvtest::post;
using zvtest::upTo;

namespace {

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

class tst_AbstractBackgroundListFilter_changes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
        QCOMPARE(texts, QStringList{"a"});
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
};

QTEST_GUILESS_MAIN(tst_AbstractBackgroundListFilter_changes)
#include "tst_AbstractBackgroundListFilter_changes.moc"
