#include <zvutil/ModelTest.h>

#include <QAbstractItemModelTester>
#include <QMetaMethod>
#include <QPointer>
#include <QStandardItemModel>
#include <QStringList>
#include <QTest>

#include <functional>
#include <memory>
#include <type_traits>

namespace {

static_assert(std::is_base_of_v<QObject, ModelTest>);
static_assert(!std::is_constructible_v<ModelTest, QAbstractItemModel*>);

using Token = std::shared_ptr<int>;

/// A tree in which each cell of the first column has the same number of rows, down to a depth. It
/// writes down what is asked of it. An index holds its depth.
class Model : public QAbstractItemModel
{
public:
    Model(int rows, int columns, int depth)
        : m_rows(rows)
        , m_columns(columns)
        , m_depth(depth)
    {
    }

    QModelIndex index(int row, int column, const QModelIndex& parent) const override
    {
        note(QString("index %1 %2 %3").arg(row).arg(column).arg(nameOf(parent)));
        const bool exists =
            row >= 0 && row < rowsBelow(parent) && column >= 0 && column < m_columns;
        return exists ? indexOn(row, column, levelOf(parent) + 1) : QModelIndex();
    }

    QModelIndex parent(const QModelIndex& child) const override
    {
        note("parent " + nameOf(child));
        // All parents are in the first row, which is all that the tests look at.
        return levelOf(child) > 1 ? indexOn(0, 0, levelOf(child) - 1) : QModelIndex();
    }

    int rowCount(const QModelIndex& parent) const override
    {
        note("rowCount " + nameOf(parent));
        return rowsBelow(parent);
    }

    int columnCount(const QModelIndex& parent) const override
    {
        note("columnCount " + nameOf(parent));
        return m_columns;
    }

    bool hasChildren(const QModelIndex& parent) const override
    {
        note("hasChildren " + nameOf(parent));
        return rowsBelow(parent) > 0;
    }

    QVariant data(const QModelIndex& index, int role) const override
    {
        note(QString("data %1 %2").arg(nameOf(index)).arg(role));
        return values.value(role);
    }

    bool setData(const QModelIndex& index, const QVariant& value, int role) override
    {
        note(QString("setData %1 %2 %3").arg(nameOf(index)).arg(value.isValid()).arg(role));
        return false;
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        note(QString("headerData %1 %2 %3").arg(section).arg(orientation).arg(role));
        return {};
    }

    bool setHeaderData(int section, Qt::Orientation orientation, const QVariant& value,
                       int role) override
    {
        note(QString("setHeaderData %1 %2 %3 %4")
                 .arg(section)
                 .arg(orientation)
                 .arg(value.isValid())
                 .arg(role));
        return false;
    }

    QMap<int, QVariant> itemData(const QModelIndex& index) const override
    {
        note("itemData " + nameOf(index));
        return {};
    }

    QStringList mimeTypes() const override
    {
        note("mimeTypes");
        return {};
    }

    Qt::DropActions supportedDropActions() const override
    {
        note("supportedDropActions");
        return {};
    }

    bool canFetchMore(const QModelIndex& parent) const override
    {
        note("canFetchMore " + nameOf(parent));
        return canFetch;
    }

    void fetchMore(const QModelIndex& parent) override
    {
        note("fetchMore " + nameOf(parent));
        if (onFetch)
            onFetch();
    }

    Qt::ItemFlags flags(const QModelIndex& index) const override
    {
        note("flags " + nameOf(index));
        return {};
    }

    QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits,
                          Qt::MatchFlags matchFlags) const override
    {
        note(QString("match %1 %2 %3 %4 %5")
                 .arg(nameOf(start))
                 .arg(role)
                 .arg(value.isValid())
                 .arg(hits)
                 .arg(int(matchFlags)));
        return {};
    }

    QSize span(const QModelIndex& index) const override
    {
        note("span " + nameOf(index));
        return {};
    }

    QModelIndex sibling(int row, int column, const QModelIndex& index) const override
    {
        note(QString("sibling %1 %2 %3").arg(row).arg(column).arg(nameOf(index)));
        return {};
    }

    void insertAt(int row, const std::function<void()>& between = {})
    {
        beginInsertRows(QModelIndex(), row, row);
        if (between)
            between();
        ++m_rows;
        endInsertRows();
    }

    void removeAt(int first, int last)
    {
        beginRemoveRows(QModelIndex(), first, last);
        m_rows -= last - first + 1;
        endRemoveRows();
    }

    void announceColumns()
    {
        beginInsertColumns(QModelIndex(), 0, 0);
        endInsertColumns();
        beginRemoveColumns(QModelIndex(), 0, 0);
        endRemoveColumns();
    }

    void reset()
    {
        beginResetModel();
        endResetModel();
    }

    QStringList takeCalls() { return std::exchange(m_calls, {}); }

    QMap<int, QVariant> values;
    /// The names of the signals that somebody has connected to, one for each connection.
    QByteArrayList connected;
    bool canFetch = false;
    std::function<void()> onFetch;

protected:
    void connectNotify(const QMetaMethod& signal) override { connected.append(signal.name()); }

private:
    void note(const QString& call) const { m_calls.append(call); }

    QModelIndex indexOn(int row, int column, int level) const
    {
        return createIndex(row, column, static_cast<quintptr>(level));
    }

    static int levelOf(const QModelIndex& index) { return static_cast<int>(index.internalId()); }

    int rowsBelow(const QModelIndex& parent) const
    {
        return parent.column() <= 0 && levelOf(parent) < m_depth ? m_rows : 0;
    }

    static QString nameOf(const QModelIndex& index)
    {
        if (!index.isValid())
            return "-";
        return QString("(%1,%2)/%3").arg(index.row()).arg(index.column()).arg(levelOf(index));
    }

    int m_rows;
    int m_columns;
    int m_depth;
    mutable QStringList m_calls;
};

QStringList lines(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char('\n'));
}

const QStringList basicCalls = lines("canFetchMore -\n"
                                     "fetchMore -\n"
                                     "flags -\n"
                                     "hasChildren -\n"
                                     "rowCount -\n" // these two for hasIndex
                                     "columnCount -\n"
                                     "headerData 0 1 0\n"
                                     "index 0 0 -\n"
                                     "itemData -\n"
                                     "match - -1 0 1 34\n"
                                     "mimeTypes\n"
                                     "parent -\n"
                                     "setData - 0 -1\n"
                                     "setHeaderData -1 1 0 2\n"
                                     "setHeaderData 999999 1 0 2\n"
                                     "sibling 0 0 -\n"
                                     "span -\n"
                                     "supportedDropActions");

} // namespace

Q_DECLARE_METATYPE(Token)

class tst_ModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void slotsInTheirOrder()
    {
        const QMetaObject& meta = ModelTest::staticMetaObject;
        QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
        const QByteArrayList expected = {
            "private nonDestructiveBasicTest()",
            "private rowCount()",
            "private columnCount()",
            "private hasIndex()",
            "private index()",
            "private parent()",
            "private data()",
            "protected runAllTests()",
            "protected layoutAboutToBeChanged()",
            "protected layoutChanged()",
            "protected rowsAboutToBeInserted(QModelIndex,int,int)",
            "protected rowsInserted(QModelIndex,int,int)",
            "protected rowsAboutToBeRemoved(QModelIndex,int,int)",
            "protected rowsRemoved(QModelIndex,int,int)",
        };
        QByteArrayList actual;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            const QMetaMethod method = meta.method(i);
            QCOMPARE(method.methodType(), QMetaMethod::Slot);
            actual.append((method.access() == QMetaMethod::Private ? "private " : "protected ")
                          + method.methodSignature());
        }
        QCOMPARE(actual, expected);
    }

    void connectsInTheOrderOfItsList()
    {
        Model model(1, 1, 1);
        const ModelTest test(&model, nullptr);
        QCOMPARE(model.connected,
                 (QByteArrayList{"columnsAboutToBeInserted", "columnsAboutToBeRemoved",
                                 "columnsInserted", "columnsRemoved", "dataChanged",
                                 "headerDataChanged", "layoutAboutToBeChanged", "layoutChanged",
                                 "modelReset", "rowsAboutToBeInserted", "rowsAboutToBeRemoved",
                                 "rowsInserted", "rowsRemoved",
                                 // These once more, for what is done behind the tests.
                                 "layoutAboutToBeChanged", "layoutChanged", "rowsAboutToBeInserted",
                                 "rowsAboutToBeRemoved", "rowsInserted", "rowsRemoved"}));
    }

    void callsOnAModelWithoutRows()
    {
        Model model(0, 3, 1);
        const ModelTest test(&model, nullptr);
        QStringList calls = basicCalls;
        // Without rows nobody asks for columns.
        calls.removeAt(5);
        QCOMPARE(model.takeCalls(),
                 calls
                     + lines("index 0 0 -\nrowCount -\nindex 0 0 -\n" // rowCount
                             "index 0 0 -\nindex 0 0 -\n" // columnCount
                             "rowCount -\ncolumnCount -\n" // hasIndex
                             "rowCount -\ncolumnCount -\n" // index
                             "rowCount -\n" // parent
                             "rowCount -")); // data
    }

    void callsOnOneCell()
    {
        Model model(1, 1, 1);
        model.values[Qt::TextAlignmentRole] = 4;
        model.values[Qt::CheckStateRole] = 2;
        const ModelTest test(&model, nullptr);
        QCOMPARE(model.takeCalls(),
                 basicCalls
                     + lines("index 0 0 -\nrowCount (0,0)/1\nindex 0 0 (0,0)/1\n" // rowCount
                             "index 0 0 -\nindex 0 0 (0,0)/1\n" // columnCount
                             "rowCount -\ncolumnCount -\n" // hasIndex
                             "rowCount -\ncolumnCount -\n" // index
                             "index 1 1 -\nindex 0 0 -\nindex 0 0 -\nindex 0 0 -\n"
                             "rowCount -\nindex 0 0 -\nparent (0,0)/1\n" // parent
                             "rowCount (0,0)/1\nindex 0 1 -\nrowCount -\nindex 0 0 -\n"
                             "canFetchMore -\nrowCount -\ncolumnCount -\n" // checkChildren
                             "canFetchMore -\nindex 0 0 -\nindex 0 0 -\nindex 0 0 -\n"
                             "index 0 0 -\nparent (0,0)/1\nhasChildren (0,0)/1\nindex 0 0 -\n"
                             "rowCount -\nindex 0 0 -\n" // data
                             "data (0,0)/1 3\ndata (0,0)/1 4\ndata (0,0)/1 5\n"
                             "data (0,0)/1 13\ndata (0,0)/1 6\ndata (0,0)/1 7\n"
                             "data (0,0)/1 8\ndata (0,0)/1 9\ndata (0,0)/1 10"));
    }

    void callsOnATree()
    {
        Model model(1, 2, 2);
        const ModelTest test(&model, nullptr);
        const QStringList calls = model.takeCalls();
        // One level down the parent is asked for, and the second column is looked at.
        const QStringList parents = lines("parent (0,0)/1\nrowCount (0,0)/1\nindex 0 0 (0,0)/1\n"
                                          "parent (0,0)/2\nindex 0 1 -\nrowCount (0,1)/1\n"
                                          "canFetchMore -");
        QVERIFY2(calls.join(QLatin1Char('\n')).contains(parents.join(QLatin1Char('\n'))),
                 qPrintable(calls.join(QLatin1Char('\n'))));
        const QString children = lines("hasChildren (0,0)/1\n"
                                       "canFetchMore (0,0)/1\nrowCount (0,0)/1\n"
                                       "columnCount (0,0)/1\ncanFetchMore (0,0)/1\n"
                                       "index 0 0 (0,0)/1")
                                     .join(QLatin1Char('\n'));
        QVERIFY2(calls.join(QLatin1Char('\n')).contains(children),
                 qPrintable(calls.join(QLatin1Char('\n'))));
        // The cell is taken once more behind its children.
        QCOMPARE(calls.count(QString("index 0 0 -")), 1 + 2 + 3 + 1 + 4 + 1 + 1);
        QCOMPARE(calls.count(QString("index 0 1 -")), 1 + 4 + 1);
    }

    void secondColumnMayHaveChildren()
    {
        QStandardItemModel model(2, 2);
        model.item(0, 0);
        auto* const item = new QStandardItem;
        item->appendRow(new QStandardItem);
        model.setItem(0, 1, item);
        const ModelTest test(&model, nullptr);
        QCOMPARE(model.rowCount(model.index(0, 1)), 1);
    }

    void descentsAreLimited_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("descents");
        // With one row each level takes one of the ten. With two, a call on the level n still has
        // 10 - n, of which the first leaves its own call with one less than the second.
        QTest::newRow("one row") << 1 << 10;
        QTest::newRow("two rows") << 2 << descentsBelow(0, 2);
        QTest::newRow("three rows") << 3 << descentsBelow(0, 3);
        QTest::newRow("twelve rows") << 12 << descentsBelow(0, 12);
    }

    void descentsAreLimited()
    {
        QFETCH(int, rows);
        QFETCH(int, descents);
        Model model(rows, 1, 1'000'000);
        const ModelTest test(&model, nullptr);
        const QStringList calls = model.takeCalls();
        const auto walked = std::count_if(calls.begin(), calls.end(), [](const QString& call) {
            return call.startsWith("columnCount ");
        });
        // Three for the tests of the top level itself, one for the walk of the top level.
        QCOMPARE(walked - 4, descents);
    }

    void announcedChangesRunTheTests_data()
    {
        QTest::addColumn<int>("change");
        QTest::addColumn<int>("runs");
        QTest::newRow("columns inserted and removed") << 0 << 4;
        QTest::newRow("data") << 1 << 1;
        QTest::newRow("header data") << 2 << 1;
        QTest::newRow("layout") << 3 << 2;
        QTest::newRow("reset") << 4 << 1;
        QTest::newRow("rows inserted") << 5 << 2;
        QTest::newRow("rows removed") << 6 << 2;
    }

    void announcedChangesRunTheTests()
    {
        QFETCH(int, change);
        QFETCH(int, runs);
        Model model(3, 1, 1);
        const ModelTest test(&model, nullptr);
        model.takeCalls();
        switch (change) {
        case 0:
            model.announceColumns();
            break;
        case 1:
            Q_EMIT model.dataChanged(QModelIndex(), QModelIndex());
            break;
        case 2:
            Q_EMIT model.headerDataChanged(Qt::Horizontal, 0, 0);
            break;
        case 3:
            Q_EMIT model.layoutAboutToBeChanged();
            Q_EMIT model.layoutChanged();
            break;
        case 4:
            model.reset();
            break;
        case 5:
            model.insertAt(1);
            break;
        default:
            model.removeAt(0, 1);
            break;
        }
        QCOMPARE(model.takeCalls().count(QString("mimeTypes")), runs);
    }

    void changesReadTheRowsOnEitherSide()
    {
        Model model(5, 1, 1);
        const ModelTest test(&model, nullptr);
        model.takeCalls();
        QStringList atOnce;
        model.insertAt(2, [&] { atOnce = model.takeCalls(); });
        const QString inserted = lines("rowCount -\nindex 1 0 -\ndata (1,0)/1 0\nindex 2 0 -\n"
                                       "data (2,0)/1 0")
                                     .join(QLatin1Char('\n'));
        QString calls = atOnce.join(QLatin1Char('\n'));
        QVERIFY(calls.contains(inserted));
        // Behind the tests.
        QCOMPARE(calls.left(calls.indexOf(inserted)).count(QString("mimeTypes")), 1);
        model.takeCalls();
        model.removeAt(1, 3);
        const QString removed = lines("rowCount -\nindex 0 0 -\ndata (0,0)/1 0\nindex 4 0 -\n"
                                      "data (4,0)/1 0")
                                    .join(QLatin1Char('\n'));
        calls = model.takeCalls().join(QLatin1Char('\n'));
        QVERIFY(calls.contains(removed));
        QCOMPARE(calls.left(calls.indexOf(removed)).count(QString("mimeTypes")), 1);
    }

    void whatIsKeptOfAChangeGoesWithIt()
    {
        const auto token = std::make_shared<int>();
        Model model(3, 1, 1);
        model.values[Qt::DisplayRole] = QVariant::fromValue(token);
        const ModelTest test(&model, nullptr);
        const auto before = token.use_count();
        long during = 0;
        model.insertAt(1, [&] { during = token.use_count(); });
        // One QVariant, which the rows share, is held on either side.
        QVERIFY(during >= before);
        QCOMPARE(token.use_count(), before);
        model.values.clear();
        QCOMPARE(token.use_count(), 1);
        model.removeAt(1, 1);
    }

    void layoutChangesReadTheFirstHundredRowsBack_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("read");
        QTest::newRow("none") << 0 << 0;
        QTest::newRow("few") << 3 << 3;
        QTest::newRow("one hundred") << 100 << 100;
        QTest::newRow("more") << 250 << 100;
    }

    void layoutChangesReadTheFirstHundredRowsBack()
    {
        QFETCH(int, rows);
        QFETCH(int, read);
        Model model(rows, 1, 1);
        const ModelTest test(&model, nullptr);
        for (int i = 0; i < 2; ++i) {
            Q_EMIT model.layoutAboutToBeChanged();
            QStringList taken;
            for (int row = 0; row < read; ++row)
                taken.append(QString("index %1 0 -").arg(row));
            QStringList calls = model.takeCalls();
            QCOMPARE(calls.mid(calls.size() - read), taken);
            Q_EMIT model.layoutChanged();
            calls = model.takeCalls();
            const QStringList tail = calls.mid(calls.lastIndexOf("data (0,0)/1 10") + 1);
            QStringList expected;
            for (int row = 0; row < read; ++row) {
                expected.append(QString("parent (%1,0)/1").arg(row));
                expected.append(QString("index %1 0 -").arg(row));
            }
            if (rows > 0)
                QCOMPARE(tail, expected);
        }
    }

    void fetchingSetsOffNoTests()
    {
        Model model(1, 1, 1);
        int fetched = 0;
        model.onFetch = [&] {
            if (++fetched <= 5)
                model.insertAt(0);
        };
        model.canFetch = true;
        ModelTest test(&model, nullptr);
        QCOMPARE(model.takeCalls().count(QString("mimeTypes")), 1);
        QVERIFY(fetched >= 3);
        // Afterwards it hears again.
        model.insertAt(0);
        QCOMPARE(model.takeCalls().count(QString("mimeTypes")), 2);
    }

    void fetchThatThrowsLeavesItListening()
    {
        Model model(1, 1, 1);
        const ModelTest test(&model, nullptr);
        model.onFetch = [] { throw 1; };
        QVERIFY_EXCEPTION_THROWN(model.reset(), int);
        model.onFetch = {};
        model.takeCalls();
        model.reset();
        QCOMPARE(model.takeCalls().count(QString("mimeTypes")), 1);
    }

    void modelThatBehavesIsNotChanged()
    {
        QStandardItemModel plain;
        QStandardItemModel tested;
        const QAbstractItemModelTester tester(&tested);
        const ModelTest test(&tested, nullptr);
        for (QStandardItemModel* model : {&plain, &tested}) {
            for (int i = 0; i < 5; ++i) {
                auto* const item = new QStandardItem(QString::number(i));
                item->appendRow({new QStandardItem("a"), new QStandardItem});
                item->appendRow(new QStandardItem("b"));
                model->appendRow(item);
            }
            model->removeRow(2);
            model->insertColumn(0);
            model->sort(1, Qt::DescendingOrder);
            model->item(0, 1)->removeRow(0);
        }
        QCOMPARE(textOf(tested), textOf(plain));
        QVERIFY(!textOf(plain).isEmpty());
    }

    void attachedBetweenTwoSignalsItHearsTheSecondAlone()
    {
        Model model(2, 1, 1);
        std::unique_ptr<ModelTest> test;
        model.insertAt(0, [&] { test = std::make_unique<ModelTest>(&model, nullptr); });
        model.insertAt(0);
        model.removeAt(0, 0);
        test.reset();
        model.insertAt(0);
    }

    void modelMayGoFirst()
    {
        auto model = std::make_unique<Model>(1, 1, 1);
        QObject parent;
        QPointer<ModelTest> test(new ModelTest(model.get(), &parent));
        QCOMPARE(test->QObject::parent(), &parent);
        model.reset();
        QVERIFY(test);
    }

private:
    /// How often a call on a level descends, itself and below, in a tree without end.
    static int descentsBelow(int depth, int rows)
    {
        int descents = 0;
        for (int row = 0; row < rows && depth < 10; ++row)
            descents += 1 + descentsBelow(++depth, rows);
        return descents;
    }

    static QString textOf(const QAbstractItemModel& model, const QModelIndex& parent = {})
    {
        QString text;
        for (int row = 0; row < model.rowCount(parent); ++row) {
            for (int column = 0; column < model.columnCount(parent); ++column) {
                const QModelIndex index = model.index(row, column, parent);
                text += index.data().toString() + QLatin1Char('(') + textOf(model, index)
                    + QLatin1Char(')');
            }
        }
        return text;
    }
};

QTEST_GUILESS_MAIN(tst_ModelTest)
#include "tst_ModelTest.moc"
