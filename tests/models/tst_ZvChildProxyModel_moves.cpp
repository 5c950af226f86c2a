// Rows and columns that the source moves.

#include "Trees.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using zvtest::at;
using zvtest::MovableTree;
using zvtest::Proxy;
using zvtest::shown;
using zvtest::Signals;

class tst_ZvChildProxyModel_moves : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void movesOfTheTopLevelWithoutRoot()
    {
        MovableTree source(3);
        Proxy proxy;
        proxy.setSourceModel(&source);
        const Signals announced(proxy);
        QVERIFY(source.move(QModelIndex(), 0, QModelIndex(), 2));
        QVERIFY(source.move(at(source, "0"), 0, at(source, "1"), 0));
        QCOMPARE(announced.names(), (QStringList{"about to move", "moved"}));
        QVERIFY(source.move(at(source, "0"), 0, QModelIndex(), 0));
        QCOMPARE(announced.names().mid(2), (QStringList{"about to reset", "reset"}));
    }

    void moves_data()
    {
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<int>("row");
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<int>("place");
        QTest::addColumn<QString>("announced");
        QTest::addColumn<QString>("text");
        const QString before = "10 (100 101 102) 11 (110 111 112) 12 (120 121 122)";
        QTest::newRow("at the top") << QByteArray("1") << 0 << QByteArray("1") << 3 << "moved"
                                    << "11 (110 111 112) 12 (120 121 122) 10 (100 101 102)";
        QTest::newRow("further down") << QByteArray("10") << 2 << QByteArray("12") << 0 << "moved"
                                      << "10 (100 101) 11 (110 111 112) 12 (102 120 121 122)";
        QTest::newRow("up") << QByteArray("11") << 1 << QByteArray("1") << 3 << "moved"
                            << "10 (100 101 102) 11 (110 112) 12 (120 121 122) 111";
        QTest::newRow("out of the branch")
            << QByteArray("1") << 0 << QByteArray("0") << 0 << "reset"
            << "11 (110 111 112) 12 (120 121 122)";
        QTest::newRow("into the branch")
            << QByteArray("0") << 0 << QByteArray("1") << 1 << "reset"
            << "10 (100 101 102) 00 (000 001 002) 11 (110 111 112) 12 (120 121 122)";
        QTest::newRow("beside it") << QByteArray("0") << 0 << QByteArray("2") << 1 << "" << before;
        QTest::newRow("the root itself")
            << QByteArray() << 1 << QByteArray("0") << 0 << "" << before;
    }

    void moves()
    {
        QFETCH(QByteArray, from);
        QFETCH(int, row);
        QFETCH(QByteArray, to);
        QFETCH(int, place);
        QFETCH(QString, announced);
        QFETCH(QString, text);
        MovableTree source(3);
        Proxy proxy;
        proxy.setSourceModel(&source);
        proxy.setRootModelIndex(at(source, "1"));
        const QAbstractItemModelTester tester(&proxy);
        const Signals told(proxy);
        QVERIFY(source.move(at(source, from), row, at(source, to), place));
        QCOMPARE(shown(proxy), text);
        const QStringList expected = {
            announced == "moved" ? QString("about to move") : QString("about to reset"), announced};
        QCOMPARE(told.names(), announced.isEmpty() ? QStringList() : expected);
    }

    void movesOfAnEarlierSourceAreNotHeard()
    {
        MovableTree earlier(3);
        MovableTree source(3);
        Proxy proxy;
        proxy.setSourceModel(&earlier);
        proxy.setSourceModel(&source);
        proxy.setRootModelIndex(at(source, "1"));
        QSignalSpy moved(&proxy, &QAbstractItemModel::rowsMoved);
        QSignalSpy reset(&proxy, &QAbstractItemModel::modelReset);
        QVERIFY(earlier.move(at(earlier, "1"), 0, at(earlier, "1"), 3));
        QVERIFY(earlier.move(at(earlier, "1"), 0, at(earlier, "0"), 0));
        earlier.tellOfColumns(at(earlier, "0"), at(earlier, "2"));
        QCOMPARE(moved.count() + reset.count(), 0);
        // Set twice, it is heard once.
        proxy.setSourceModel(&source);
        proxy.setRootModelIndex(at(source, "1"));
        reset.clear();
        QVERIFY(source.move(at(source, "1"), 0, at(source, "1"), 3));
        QVERIFY(source.move(at(source, "0"), 0, at(source, "1"), 0));
        QCOMPARE(moved.count(), 1);
        QCOMPARE(reset.count(), 1);
    }

    void movesOfColumns()
    {
        MovableTree source(3);
        Proxy proxy;
        proxy.setSourceModel(&source);
        proxy.setRootModelIndex(at(source, "1"));
        QSignalSpy moved(&proxy, &QAbstractItemModel::columnsMoved);
        QSignalSpy reset(&proxy, &QAbstractItemModel::modelReset);
        source.tellOfColumns(at(source, "10"), at(source, "12"));
        QCOMPARE(moved.count(), 1);
        QCOMPARE(reset.count(), 0);
        source.tellOfColumns(at(source, "0"), at(source, "2"));
        QCOMPARE(reset.count(), 0);
        source.tellOfColumns(at(source, "0"), at(source, "1"));
        QCOMPARE(moved.count(), 1);
        QCOMPARE(reset.count(), 1);
    }
};

QTEST_MAIN(tst_ZvChildProxyModel_moves)
#include "tst_ZvChildProxyModel_moves.moc"
