#include <zvutil/ZvTable.h>

#include "support/StdString.h"
#include "support/Tables.h"

#include <QDate>
#include <QStringList>
#include <QTest>

#include <limits>
#include <stdexcept>
#include <type_traits>
#include <utility>

using libzvutil::ZvVariant;
using zvtest::bytesOf;
using zvtest::Grid;
using zvtest::gridOf;
using zvtest::hasStorage;
using zvtest::plainText;
using zvtest::Row;
using zvtest::tableOf;
using namespace std::string_literals;

namespace {

static_assert(sizeof(ZvTable) == sizeof(void*));
static_assert(!std::is_polymorphic_v<ZvTable>);
static_assert(std::is_nothrow_default_constructible_v<ZvTable>);
static_assert(std::is_nothrow_move_constructible_v<ZvTable>);
static_assert(!std::is_copy_assignable_v<ZvTable> && !std::is_move_assignable_v<ZvTable>);

/// A text that may hold NULs.
QString text(const std::string& utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size()));
}

} // namespace

class tst_ZvTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultHasNoStorage()
    {
        const ZvTable table;
        QVERIFY(!hasStorage(table));
    }

    void sizes_data()
    {
        QTest::addColumn<unsigned long long>("rows");
        QTest::addColumn<unsigned long long>("columns");
        QTest::newRow("none") << 0ULL << 0ULL;
        QTest::newRow("no rows") << 0ULL << 5ULL;
        QTest::newRow("no columns") << 5ULL << 0ULL;
        QTest::newRow("one cell") << 1ULL << 1ULL;
        QTest::newRow("row") << 1ULL << 3ULL;
        QTest::newRow("column") << 3ULL << 1ULL;
        QTest::newRow("grid") << 2ULL << 3ULL;
        QTest::newRow("more rows than can be counted through")
            << std::numeric_limits<unsigned long long>::max() << 0ULL;
    }

    void sizes()
    {
        QFETCH(unsigned long long, rows);
        QFETCH(unsigned long long, columns);
        const ZvTable table(rows, columns, ZvVariant("x"));
        QVERIFY(hasStorage(table));
        QCOMPARE(table.rows(), rows);
        QCOMPARE(table.columns(), columns);
        if (columns == 0)
            QCOMPARE(table.toCSV().size(), std::size_t(0));
        else
            QCOMPARE(gridOf(table), Grid(int(rows), Row(int(columns), "x")));

        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
        const ZvTable copy(table);
        QVERIFY(hasStorage(copy));
        QCOMPARE(copy.rows(), rows);
        QCOMPARE(copy.columns(), columns);
    }

    void tooManyCells_data()
    {
        QTest::addColumn<unsigned long long>("rows");
        QTest::addColumn<unsigned long long>("columns");
        QTest::newRow("more than a vector holds") << (1ULL << 31) << (1ULL << 31);
        QTest::newRow("more than there are numbers for") << (1ULL << 32) << (1ULL << 32);
        QTest::newRow("that come out as a few") << (1ULL << 63) + 1 << 2ULL;
    }

    void tooManyCells()
    {
        QFETCH(unsigned long long, rows);
        QFETCH(unsigned long long, columns);
        QVERIFY_EXCEPTION_THROWN(ZvTable(rows, columns, ZvVariant()), std::length_error);
    }

    void cells()
    {
        ZvTable table(2, 3, ZvVariant(7));
        int number = 0;
        for (unsigned row = 0; row < 2; ++row) {
            for (unsigned column = 0; column < 3; ++column) {
                QCOMPARE(table.value(row, column).data(), QVariant(7));
                table.value(row, column) = QVariant(number++);
            }
        }
        QCOMPARE(gridOf(table), (Grid{{0, 1, 2}, {3, 4, 5}}));
        const ZvTable& constant = table;
        QVERIFY(&constant.value(1, 2) == &table.value(1, 2));
        // Row by row.
        for (unsigned row = 0; row < 2; ++row) {
            for (unsigned column = 0; column < 3; ++column)
                QVERIFY(&table.value(row, column) == &table.value(0, 0) + (row * 3 + column));
        }
    }

    void copiesShareNothing()
    {
        ZvTable source = tableOf({{1, 2}, {3, 4}});
        const ZvTable copy(source);
        source.value(1, 1) = QVariant(5);
        QCOMPARE(gridOf(copy), (Grid{{1, 2}, {3, 4}}));
        QCOMPARE(gridOf(source), (Grid{{1, 2}, {3, 5}}));
    }

    void moves()
    {
        ZvTable source = tableOf({{1, 2}});
        const ZvVariant* const place = &source.value(0, 0);
        const ZvTable target(std::move(source));
        QVERIFY(&target.value(0, 0) == place);
        QVERIFY(!hasStorage(source)); // NOLINT(bugprone-use-after-move)
        // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
        const ZvTable next(std::move(source));
        QVERIFY(!hasStorage(next));
    }

    void texts_data()
    {
        QTest::addColumn<Grid>("grid");
        QTest::addColumn<std::string>("csv");
        QTest::addColumn<std::string>("tsv");
        const QString a = text("a");
        const QString b = text("b");
        const QString none = text("");
        QTest::newRow("nothing") << Grid{} << ""s
                                 << ""s;
        QTest::newRow("rows without columns") << Grid{{}, {}, {}} << ""s
                                              << ""s;
        QTest::newRow("an empty cell") << Grid{{none}} << ""s
                                       << ""s;
        QTest::newRow("two rows of an empty cell") << Grid{{none}, {none}} << "\n"s
                                                   << "\n"s;
        QTest::newRow("three empty cells") << Grid{{none, none, none}} << ",,"s
                                           << "\t\t"s;
        QTest::newRow("two rows of them")
            << Grid{{none, none, none}, {none, none, none}} << ",,\n,,"s
            << "\t\t\n\t\t"s;
        QTest::newRow("cells") << Grid{{a, b}, {b, a}} << "a,b\nb,a"s
                               << "a\tb\nb\ta"s;
        QTest::newRow("comma") << Grid{{text("a,b"), b}} << "\"a,b\",b"s
                               << "a,b\tb"s;
        QTest::newRow("tab") << Grid{{text("a\tb"), b}} << "a\tb,b"s
                             << "\"a\tb\"\tb"s;
        QTest::newRow("both") << Grid{{text("a,\tb")}} << "\"a,\tb\""s
                              << "\"a,\tb\""s;
        QTest::newRow("only a comma") << Grid{{text(",")}} << "\",\""s
                                      << ","s;
        QTest::newRow("quote") << Grid{{text("a\"b"), b}} << "a\"b,b"s
                               << "a\"b\tb"s;
        QTest::newRow("quote and comma") << Grid{{text("a\",b"), b}} << "\"a\",b\",b"s
                                         << "a\",b\tb"s;
        QTest::newRow("line feed") << Grid{{text("a\nb"), b}} << "a\nb,b"s
                                   << "a\nb\tb"s;
        QTest::newRow("carriage return") << Grid{{text("a\r"), b}} << "a\r,b"s
                                         << "a\r\tb"s;
        QTest::newRow("blanks") << Grid{{text(" a "), b}} << " a ,b"s
                                << " a \tb"s;
        QTest::newRow("other types")
            << Grid{{1, 1.5, true, QVariant(), QDate(2026, 11, 21), QByteArray("x")}}
            << "1,1.5,true,,2026-11-21,x"s
            << "1\t1.5\ttrue\t\t2026-11-21\tx"s;
        QTest::newRow("type without a text") << Grid{{QStringList{a, b}, b}} << ",b"s
                                             << "\tb"s;
        QTest::newRow("UTF-8") << Grid{{text("x\xC3\xA4\xF0\x9D\x84\x9E"), text("\xE2\x82\xAC,")}}
                               << "x\xC3\xA4\xF0\x9D\x84\x9E,\"\xE2\x82\xAC,\""s
                               << "x\xC3\xA4\xF0\x9D\x84\x9E\t\xE2\x82\xAC,"s;
        QTest::newRow("long cells")
            << Grid{{text("abcdefghijklmnopqrstuvwx"), text("abcdefgh,ijklmnop"),
                     text("abcdefghijklmnopq\xC3\xA4rstuvwxyz,")}}
            << "abcdefghijklmnopqrstuvwx,\"abcdefgh,ijklmnop\",\"abcdefghijklmnopq\xC3\xA4rstuvwxyz,\""s
            << "abcdefghijklmnopqrstuvwx\tabcdefgh,ijklmnop\tabcdefghijklmnopq\xC3\xA4rstuvwxyz,"s;
        QTest::newRow("unpaired surrogates")
            << Grid{{QString(QChar(0xD834)), QString(QChar(0xDD1E))}} << "?,?"s
            << "?\t?"s;

        // A NUL cuts off what comes behind it in its cell, quote and separator included; so the last
        // byte of what is there goes in the separator's place.
        QTest::newRow("NUL") << Grid{{text("a\0x"s), b}} << "ab"s
                             << "ab"s;
        QTest::newRow("NUL in the last cell") << Grid{{a, text("bc\0x"s)}} << "a,b"s
                                              << "a\tb"s;
        QTest::newRow("NUL behind a comma") << Grid{{text("a,\0x"s), b}} << "\"a,b"s
                                            << "a,b"s;
        QTest::newRow("NUL before a comma") << Grid{{text("a\0,"s), b}} << "\"ab"s
                                            << "ab"s;
        QTest::newRow("NUL behind two bytes") << Grid{{text("\xC3\xA4\0x"s)}} << "\xC3"s
                                              << "\xC3"s;
        QTest::newRow("NUL before two bytes")
            << Grid{{text("a\0\xC3\xA4"s), text("\xC3\xA4"s)}} << "a\xC3\xA4"s
            << "a\xC3\xA4"s;
        QTest::newRow("row that begins with a NUL") << Grid{{a}, {text("\0x"s)}, {b}} << "a\nb"s
                                                    << "a\nb"s;
        QTest::newRow("first row that begins with a NUL") << Grid{{text("\0x"s)}, {b}} << "\nb"s
                                                          << "\nb"s;
    }

    void texts()
    {
        QFETCH(Grid, grid);
        QFETCH(std::string, csv);
        QFETCH(std::string, tsv);
        const ZvTable table = tableOf(grid);
        QCOMPARE(bytesOf(table.toCSV()), csv);
        QCOMPARE(bytesOf(table.toTSV()), tsv);
        QCOMPARE(plainText(table, ','), csv);
        QCOMPARE(plainText(table, '\t'), tsv);
    }

    void longTables_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("later");
        QTest::newRow("rows of one length") << 10 << 10;
        QTest::newRow("long rows first") << 1000 << 1;
        QTest::newRow("short rows first") << 0 << 100;
    }

    void longTables()
    {
        QFETCH(int, first);
        QFETCH(int, later);
        Grid grid;
        for (int row = 0; row < 3000; ++row)
            grid.append({QString(row < 1500 ? first : later, QLatin1Char('x')), row});
        const ZvTable table = tableOf(grid);
        QCOMPARE(bytesOf(table.toCSV()), plainText(table, ','));
        QCOMPARE(bytesOf(table.toTSV()), plainText(table, '\t'));
    }

    void noRowsHaveNoText()
    {
        const ZvTable table(0, 5, ZvVariant("x"));
        QCOMPARE(bytesOf(table.toCSV()), ""s);
        QCOMPARE(bytesOf(table.toTSV()), ""s);
    }
};

QTEST_APPLESS_MAIN(tst_ZvTable)
#include "tst_ZvTable.moc"
