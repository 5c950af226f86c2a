#include <zvutil/ZvClipboardData.h>

#include <zvutil/ZvClipboard.h>

#include "impl/tables/ZvClipboardInternalData.h"

#include "support/StdString.h"
#include "support/Tables.h"

#include <zv_logging/host.h>

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMetaMethod>
#include <QMimeData>
#include <QTest>

#include <locale>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

using zvtest::Grid;
using zvtest::gridOf;
using zvtest::hasStorage;
using zvtest::Row;
using zvtest::tableOf;
using zvutil::mime_type;
using namespace std::string_literals;

namespace {

static_assert(sizeof(ZvClipboardData) == sizeof(QObject) + sizeof(void*));
static_assert(std::is_copy_constructible_v<ZvClipboardData>);
static_assert(std::is_move_constructible_v<ZvClipboardData>);
static_assert(!std::is_copy_assignable_v<ZvClipboardData>);
static_assert(!std::is_move_assignable_v<ZvClipboardData>);

const QString csv = "text/csv";
const QString windowsCsv = "application/x-qt-windows-mime;value=\"Csv\"";
const QString xmlSpreadsheet = "application/x-qt-windows-mime;value=\"XML Spreadsheet\"";

const std::string tooManyFields =
    "write 4 CSV clipboard data invalid format: rows have different number of columns: ";

std::unique_ptr<QMimeData> content(const QString& format, const QByteArray& bytes)
{
    auto data = std::make_unique<QMimeData>();
    data->setData(format, bytes);
    return data;
}

ZvTable tableFrom(const QByteArray& bytes)
{
    const std::unique_ptr<QMimeData> data = content(csv, bytes);
    return ZvClipboardData(data.get()).csvData();
}

/// The calls of the log while \p work runs.
template <typename Work>
std::vector<std::string> logOf(Work work)
{
    std::vector<std::string> calls;
    zvutil::logging::host::setObserver(
        [&calls](const std::string& call) { calls.push_back(call); });
    work();
    zvutil::logging::host::setObserver({});
    return calls;
}

using Texts = std::vector<std::vector<const char*>>;

Grid texts(const Texts& rows)
{
    Grid grid;
    for (const std::vector<const char*>& row : rows) {
        Row cells;
        for (const char* const cell : row)
            cells.append(QString::fromUtf8(cell));
        grid.append(cells);
    }
    return grid;
}

/// Counts what a view says of its end.
class Listener
{
public:
    explicit Listener(const ZvClipboardData& view)
    {
        m_connection =
            QObject::connect(&view, &ZvClipboardData::invalidated, [this] { ++m_count; });
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    ~Listener() { QObject::disconnect(m_connection); }

    int count() const { return m_count; }

private:
    QMetaObject::Connection m_connection;
    int m_count = 0;
};

/// Content that the library takes for its own: the meta-object says so.
class OwnContent : public ZvClipboardInternalData
{
public:
    explicit OwnContent(bool isTable)
        : m_isTable(isTable)
    {
    }

    const QMetaObject* metaObject() const override
    {
        ZvClipboard().setData(ZvTable(0, 0, 0));
        return QGuiApplication::clipboard()->mimeData()->metaObject()->superClass();
    }

    bool hasMimeType(mime_type type) const override
    {
        return ZvClipboardInternalData::hasMimeType(type) || type == claimed;
    }

    bool hasInternalMimeType(ZvInternalMimeType type) const override
    {
        return m_isTable && type == ZvInternalMimeType::table;
    }

    ZvTable internalTableData() const override { return ZvTable(1, 1, 42); }

    mime_type claimed = mime_type::xml_spreadsheet;

private:
    bool m_isTable;
};

/// What others' content tells of itself.
class Content : public QMimeData
{
public:
    using QMimeData::isSignalConnected;
};

// Big enough to show what grows too fast; the sanitizer takes many times the memory.
#if defined(ZV_SANITIZED)
constexpr int million = 10000;
#else
constexpr int million = 1000000;
#endif

} // namespace

class tst_ZvClipboardData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fields_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<Grid>("expected");
        const auto row = [](const char* name, const QByteArray& text, const Texts& rows) {
            QTest::newRow(name) << text << texts(rows);
        };
        row("no byte", "", {});
        row("one byte", "a", {{"a"}});
        row("record with its end", "a,b\n", {{"a", "b"}});
        row("record without an end", "a,b", {{"a", "b"}});
        row("one column with its end", "a\nb\n", {{"a"}, {"b"}, {""}});
        row("one column without an end", "a\nb", {{"a"}, {"b"}});
        row("only a line feed", "\n", {{""}, {""}});
        row("only line feeds", "\n\n\n", {{""}, {""}, {""}, {""}});
        row("only a comma", ",", {{"", ""}});
        row("only commas", ",,,", {{"", "", "", ""}});
        row("only a carriage return", "\r", {{""}});
        row("only blanks", "  ", {{""}});
        row("empty fields", "a,,\n,b,\n", {{"a", "", ""}, {"", "b", ""}});
        row("empty record", "a,b\n\nc,d", {{"a", "b"}, {"", ""}, {"c", "d"}});
        row("empty first record", "\na", {{""}, {"a"}});

        row("CRLF", "a,b\r\nc,d\r\n", {{"a", "b"}, {"c", "d"}});
        row("carriage return within a field", "ab\rcd,e", {{"ab", "e"}});
        row("several", "ab\r\rcd\re,f", {{"ab", "f"}});
        row("carriage return before a comma", "a\r,b", {{"a", "b"}});
        row("carriage return and a quote", "a\rb\"c\"d,e", {{"c", "e"}});
        row("quote and a carriage return", "\"a\"\rb,c", {{"a", "c"}});
        row("carriage return in quotes", "\"a\rb\",c", {{"a\rb", "c"}});
        row("only ends", "\r\n\r\n", {{""}, {""}, {""}});

        row("short record", "a,b,c\nd,e\nf,g,h",
            {{"a", "b", "c"}, {"d", "e", ""}, {"f", "g", "h"}});
        row("short last record", "a,b,c\nd,e,f\ng,h", {{"a", "b", "c"}, {"d", "e", "f"}});
        row("short last record with its end", "a,b\nc\n", {{"a", "b"}, {"c", ""}});
        row("several short records", "a,b\nc\nd\ne,f",
            {{"a", "b"}, {"c", ""}, {"d", ""}, {"e", "f"}});
        row("all but the first short", "a,b\nc\nd\ne", {{"a", "b"}, {"c", ""}, {"d", ""}});

        row("blanks", " a , b\t\n\v\fc,  d d  ", {{"a", "b"}, {"c", "d d"}});
        row("blanks in quotes", "\" a \",\"\tb\n\"", {{"a", "b"}});
        row("blanks around quotes", "  \"a\"  ,b", {{"a", "b"}});
        row("nothing but blanks in quotes", "\"  \",b", {{"", "b"}});

        row("quoted", "\"a\",\"b\"\n", {{"a", "b"}});
        row("quoted comma", "\"a,b\",c", {{"a,b", "c"}});
        row("quoted line feed", "\"a\nb\",c\n\"d\ne\",f", {{"a\nb", "c"}, {"d\ne", "f"}});
        row("quoted comma and line feed", "\"a,\n,b\"", {{"a,\n,b"}});
        row("two quotes", "\"a\"\"b\"", {{"a\"b"}});
        row("nothing but two quotes", "\"\"\"\"", {{"\""}});
        row("four quotes", "\"\"\"\"\"\"", {{"\"\""}});
        row("two quotes at the ends", "\"\"\"a\"\"\",b", {{"\"a\"", "b"}});
        row("two quotes beside blanks", "\" \"\" a \"\" \"", {{"\" a \""}});
        row("quoted nothing", "\"\",a", {{"", "a"}});
        row("quotes at the end", "a,\"\"", {{"a", ""}});
        row("quote within a field", "ab\"c\"", {{"c"}});
        row("text behind a quote", "\"a\"bc,d", {{"a", "d"}});
        row("quotes in a row", "\"a\"b\"c\"d,e", {{"c", "e"}});
        row("two quotes, then a new one", "\"a\"\"b\" \"c\",d", {{"c", "d"}});
        row("two quotes in one field only", "\"a\"\"\",b\"c\",\"d\"", {{"a\"", "c", "d"}});

        row("tabs", "a\tb\nc\td", {{"a\tb"}, {"c\td"}});
        row("semicolons", "a;b\nc;d", {{"a;b"}, {"c;d"}});
        row("numbers stay texts", "1,2.5,true", {{"1", "2.5", "true"}});
        row("UTF-8", "\xC3\xA4,\xF0\x9D\x84\x9E", {{"\xC3\xA4", "\xF0\x9D\x84\x9E"}});
        row("no UTF-8", "\xFF,a", {{"\xEF\xBF\xBD", "a"}});
        row("NUL", QByteArray("a\0b,c\0", 6), {{"a", "c"}});
        row("NUL alone", QByteArray("\0", 1), {{""}});
        row("NUL in quotes", QByteArray("\"\0b\",c", 6), {{"", "c"}});
        row("byte order mark",
            "\xEF\xBB\xBF"
            "a,b",
            {{"a", "b"}});

        // What an open quote gives was left to us.
        row("open quote", "a,\"b", {{"a", "b"}});
        row("open quote over commas and line feeds", "a,\"b,c\nd,e\n", {{"a", "b,c\nd,e"}});
        row("open quote as the last byte", "a,b\"", {{"a", ""}});
        row("open quote and two quotes", "a,\"b\"\"", {{"a", "b\""}});
        row("open quote behind a carriage return", "a,b\r\"c", {{"a", "c"}});
        row("open quote in a short last record", "a,b\n\"c,d", {{"a", "b"}});
    }

    void fields()
    {
        QFETCH(QByteArray, text);
        QFETCH(Grid, expected);
        for (const QString& format : {csv, windowsCsv}) {
            const std::unique_ptr<QMimeData> data = content(format, text);
            const ZvClipboardData view(data.get());
            QVERIFY(view.hasTableData());
            const auto log = logOf([&] {
                QVERIFY(hasStorage(view.csvData()));
                QCOMPARE(gridOf(view.csvData()), expected);
                QCOMPARE(gridOf(view.tableData()), expected);
            });
            QCOMPARE(log, std::vector<std::string>());
        }
    }

    void cellsAreTexts()
    {
        const ZvTable table = tableFrom("1,\n\n");
        QCOMPARE(table.rows(), 2ULL);
        for (const Row& row : gridOf(table)) {
            for (const QVariant& cell : row) {
                QCOMPARE(cell.userType(), int(QMetaType::QString));
                QVERIFY(!cell.isNull());
            }
        }
    }

    void noByteIsATableButNoFormatIsNone()
    {
        const ZvTable table = tableFrom(QByteArray(""));
        QVERIFY(hasStorage(table));
        QCOMPARE(table.rows(), 0ULL);
        QCOMPARE(table.columns(), 0ULL);
        QVERIFY(!hasStorage(tableFrom(QByteArray())));
    }

    void tooManyFields_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("second record") << QByteArray("a,b\nc,d,e");
        QTest::newRow("second record with its end") << QByteArray("a,b\nc,d,e\n");
        QTest::newRow("behind an empty first record") << QByteArray("\na,b");
        QTest::newRow("third record") << QByteArray("a,b\nc\nd,e,f\ng,h");
        QTest::newRow("an empty field") << QByteArray("a,b\nc,d,");
    }

    void tooManyFields()
    {
        QFETCH(QByteArray, text);
        const std::unique_ptr<QMimeData> data = content(csv, text);
        const ZvClipboardData view(data.get());
        QVERIFY(view.hasTableData());
        QCOMPARE(logOf([&] { QVERIFY(!hasStorage(view.csvData())); }),
                 std::vector<std::string>{::tooManyFields});
        QCOMPARE(logOf([&] { QVERIFY(!hasStorage(view.tableData())); }),
                 std::vector<std::string>{::tooManyFields});
    }

    void localeTellsWhatASpaceIs()
    {
        static std::ctype_base::mask masks[std::ctype<char>::table_size] = {};
        masks[static_cast<unsigned char>('_')] = std::ctype_base::space;
        const std::locale before =
            std::locale::global(std::locale(std::locale::classic(), new std::ctype<char>(masks)));
        const Grid grid = gridOf(tableFrom("_a_, b ,\"_c\"\n"));
        std::locale::global(before);
        QCOMPARE(grid, texts({{"a", " b ", "c"}}));
        QCOMPARE(gridOf(tableFrom("_a_, b ,\"_c\"\n")), texts({{"_a_", "b", "_c"}}));
    }

    void windowsFormatWins()
    {
        QMimeData data;
        data.setData(csv, "a");
        data.setData(windowsCsv, "b");
        const ZvClipboardData view(&data);
        QCOMPARE(gridOf(view.csvData()), texts({{"b"}}));
        // An empty one is there all the same.
        data.setData(windowsCsv, QByteArray(""));
        QCOMPARE(view.csvData().rows(), 0ULL);
        data.setData(windowsCsv, QByteArray());
        QCOMPARE(gridOf(view.csvData()), texts({{"a"}}));
    }

    void nothingIsKept()
    {
        QMimeData data;
        const ZvClipboardData view(&data);
        QVERIFY(!view.hasTableData() && !view.hasType(mime_type::csv));
        QVERIFY(!hasStorage(view.tableData()) && !hasStorage(view.csvData()));
        data.setData(csv, "a");
        QVERIFY(view.hasTableData() && view.hasType(mime_type::csv));
        QCOMPARE(gridOf(view.tableData()), texts({{"a"}}));
        data.setData(csv, "b");
        QCOMPARE(gridOf(view.tableData()), texts({{"b"}}));
    }

    void foreignTypes_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("hasTableData");
        QTest::newRow("csv") << csv << 0 << true;
        QTest::newRow("xml_spreadsheet") << xmlSpreadsheet << -1 << false;
        QTest::newRow("text") << "text/plain" << 2 << false;
        QTest::newRow("windows_csv") << windowsCsv << 3 << true;
        QTest::newRow("unknown") << "unknown" << 4 << false;
        QTest::newRow("tabs") << "text/tab-separated-values" << -1 << false;
    }

    void foreignTypes()
    {
        QFETCH(QString, format);
        QFETCH(int, type);
        QFETCH(bool, hasTableData);
        const std::unique_ptr<QMimeData> data = content(format, "a");
        const ZvClipboardData view(data.get());
        for (int other = 0; other < 5; ++other)
            QCOMPARE(view.hasType(static_cast<mime_type>(other)), other == type);
        QVERIFY(!view.hasType(ZvInternalMimeType::table));
        QCOMPARE(view.hasTableData(), hasTableData);
        QCOMPARE(hasStorage(view.tableData()), hasTableData);
    }

    void ownTable()
    {
        const Grid grid{{1, " a "}, {QVariant(), 1.5}};
        ZvClipboard().setData(tableOf(grid));
        const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
        const auto* const own = static_cast<const ZvClipboardInternalData*>(data);
        for (const ZvClipboardData& view : {ZvClipboardData(data), ZvClipboardData(own)}) {
            QVERIFY(view.isValid() && view.mimeData() == data);
            QVERIFY(view.hasTableData() && view.hasType(ZvInternalMimeType::table));
            QVERIFY(!view.hasType(static_cast<ZvInternalMimeType>(1)));
            QVERIFY(view.hasType(mime_type::csv) && view.hasType(mime_type::windows_csv));
            QVERIFY(view.hasType(mime_type::text));
            QCOMPARE(gridOf(view.tableData()), grid);
            // The text says less: no types, and a short last record wouldn't be there.
            QCOMPARE(gridOf(view.csvData()), texts({{"1", "a"}, {"", "1.5"}}));
        }
    }

    void ownSpreadsheetIsNoType()
    {
        ZvClipboard().setData(ZvTable(1, 1, 0));
        auto* const data = const_cast<QMimeData*>(QGuiApplication::clipboard()->mimeData());
        data->setData(xmlSpreadsheet, "x");
        QVERIFY(data->hasFormat(xmlSpreadsheet));
        QVERIFY(!ZvClipboardData(data).hasType(mime_type::xml_spreadsheet));
    }

    void ownContentIsAskedByItsVirtualFunctions()
    {
        OwnContent content(true);
        const ZvClipboardData view(&content);
        QVERIFY(view.hasType(ZvInternalMimeType::table) && view.hasTableData());
        QVERIFY(!view.hasType(mime_type::xml_spreadsheet));
        QVERIFY(!view.hasType(mime_type::csv));
        content.claimed = mime_type::csv;
        QVERIFY(view.hasType(mime_type::csv) && !content.hasFormat(csv));
        QCOMPARE(gridOf(view.tableData()), (Grid{{42}}));
        QVERIFY(!hasStorage(view.csvData()));
    }

    void ownContentThatIsNoTable()
    {
        OwnContent content(false);
        const ZvClipboardData view(&content);
        QVERIFY(!view.hasType(ZvInternalMimeType::table) && !view.hasTableData());
        QVERIFY(!hasStorage(view.tableData()));
        content.setData(csv, "a,b");
        QVERIFY(view.hasTableData());
        QCOMPARE(gridOf(view.tableData()), texts({{"a", "b"}}));
    }

    void nullView()
    {
        const ZvClipboardData view;
        QVERIFY(view.isNull() && !view.isValid());
        QVERIFY(!hasStorage(view.tableData()) && !hasStorage(view.csvData()));
    }

    void viewOnNothingIsStale()
    {
        const ZvClipboardData view(static_cast<const QMimeData*>(nullptr));
        compareStale(view);
        const ZvClipboardData own(static_cast<const ZvClipboardInternalData*>(nullptr));
        compareStale(own);
    }

    void contentDies_data()
    {
        QTest::addColumn<bool>("isOwn");
        QTest::newRow("foreign") << false;
        QTest::newRow("own") << true;
    }

    void contentDies()
    {
        QFETCH(bool, isOwn);
        auto data = isOwn ? std::make_unique<OwnContent>(true) : content(csv, "a,b");
        auto view = std::make_unique<ZvClipboardData>(data.get());
        const Listener listener(*view);
        QVERIFY(!view->isNull() && view->isValid() && view->hasTableData());
        QVERIFY(view->mimeData() == data.get());
        QCOMPARE(listener.count(), 0);
        data.reset();
        QCOMPARE(listener.count(), 1);
        compareStale(*view);
        const ZvClipboardData copy(*view);
        compareStale(copy);
        view.reset();
        QCOMPARE(listener.count(), 1);
    }

    void viewDies()
    {
        const Content data;
        auto view = std::make_unique<ZvClipboardData>(&data);
        const Listener listener(*view);
        const QMetaMethod end = QMetaMethod::fromSignal(&QObject::destroyed);
        QVERIFY(data.isSignalConnected(end));
        const ZvClipboardData* const address = view.get();
        bool stale = false;
        QObject::connect(address, &ZvClipboardData::invalidated,
                         [&] { stale = !address->isNull() && !address->isValid(); });
        view.reset();
        QCOMPARE(listener.count(), 1);
        QVERIFY(stale);
        // Nobody is left to hear of the content's end.
        QVERIFY(!data.isSignalConnected(end));
    }

    void staleWhenItIsTold()
    {
        auto data = content(csv, "a,b");
        int calls = 0;
        const ZvClipboardData view(data.get());
        QObject::connect(&view, &ZvClipboardData::invalidated, [&] {
            ++calls;
            compareStale(view);
        });
        data.reset();
        QCOMPARE(calls, 1);
    }

    void listenerMayDestroyTheView()
    {
        auto data = content(csv, "a,b");
        auto view = std::make_unique<ZvClipboardData>(data.get());
        const Listener listener(*view);
        QObject::connect(view.get(), &ZvClipboardData::invalidated, [&view] { view.reset(); });
        data.reset();
        QVERIFY(!view);
        QCOMPARE(listener.count(), 1);
    }

    void copiesLookAtTheSameContent()
    {
        auto data = content(csv, "a,b");
        auto source = std::make_unique<ZvClipboardData>(data.get());
        const ZvClipboardData copy(*source);
        const Listener ofSource(*source);
        const Listener ofCopy(copy);
        source.reset();
        QCOMPARE(ofSource.count(), 1);
        QCOMPARE(ofCopy.count(), 0);
        QVERIFY(copy.isValid() && copy.mimeData() == data.get());
        QCOMPARE(gridOf(copy.tableData()), texts({{"a", "b"}}));
        data.reset();
        QCOMPARE(ofCopy.count(), 1);
        compareStale(copy);
    }

    void movedViewTakesTheSignalAlong()
    {
        auto data = content(csv, "a,b");
        auto source = std::make_unique<ZvClipboardData>(data.get());
        const Listener ofSource(*source);
        const ZvClipboardData target(std::move(*source));
        const Listener ofTarget(target);
        QVERIFY(source->isNull() && !source->isValid());
        QVERIFY(!hasStorage(source->tableData()) && !hasStorage(source->csvData()));
        QVERIFY(target.isValid());
        data.reset();
        QCOMPARE(ofSource.count(), 0);
        QCOMPARE(ofTarget.count(), 1);
        compareStale(target);
        const ZvClipboardData next(std::move(*source));
        QVERIFY(next.isNull());
        source.reset();
        QCOMPARE(ofSource.count(), 0);
    }

    void oneLongField()
    {
        const QByteArray field(100 * million, 'x');
        const ZvTable table = tableFrom("a," + field);
        QCOMPARE(table.rows(), 1ULL);
        QCOMPARE(table.value(0, 1).data().toString().size(), field.size());
    }

    void manyRows()
    {
        const ZvTable table = tableFrom(QByteArray("a\n").repeated(10 * million));
        QCOMPARE(table.rows(), 10ULL * million + 1);
        QCOMPARE(table.columns(), 1ULL);
        QCOMPARE(table.value(10ULL * million - 1, 0).data(), QVariant("a"));
        QCOMPARE(table.value(10ULL * million, 0).data(), QVariant(QString()));
    }

    void manyColumns()
    {
        const ZvTable table = tableFrom(QByteArray("b,").repeated(million - 1) + "b\nc");
        QCOMPARE(table.rows(), 1ULL);
        QCOMPARE(table.columns(), 1ULL * million);
        QCOMPARE(table.value(0, million - 1).data(), QVariant("b"));
    }

    void longOpenQuote_data()
    {
        QTest::addColumn<QByteArray>("piece");
        QTest::addColumn<int>("length");
        QTest::newRow("text") << QByteArray("x,\n") << 3;
        QTest::newRow("two quotes") << QByteArray("\"\"") << 1;
        QTest::newRow("blanks") << QByteArray(" ") << 0;
    }

    void longOpenQuote()
    {
        QFETCH(QByteArray, piece);
        QFETCH(int, length);
        // The last line feed is whitespace at the field's end.
        const int expected = length == 3 ? 3 * million - 1 : length * million;
        const ZvTable table = tableFrom("a,\"" + piece.repeated(million));
        QCOMPARE(table.value(0, 1).data().toString().size(), expected);
    }

private:
    static void compareStale(const ZvClipboardData& view)
    {
        QVERIFY(!view.isNull() && !view.isValid());
        QVERIFY(!view.mimeData());
        QVERIFY(!view.hasTableData() && !view.hasType(ZvInternalMimeType::table));
        for (int type = 0; type < 5; ++type)
            QVERIFY(!view.hasType(static_cast<mime_type>(type)));
        QVERIFY(!hasStorage(view.tableData()) && !hasStorage(view.csvData()));
    }
};

QTEST_MAIN(tst_ZvClipboardData)
#include "tst_ZvClipboardData.moc"
