#include <zvutil/ZvClipboard.h>

#include "support/StdString.h"
#include "support/Tables.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>
#include <QUrl>

#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>

using zvtest::bytesOf;
using zvtest::Grid;
using zvtest::hasStorage;
using zvtest::tableOf;
using zvutil::mime_type;
using namespace std::string_literals;

namespace {

static_assert(std::is_empty_v<ZvClipboard> && !std::is_polymorphic_v<ZvClipboard>);
static_assert(std::is_default_constructible_v<ZvClipboard>);
static_assert(!std::is_copy_constructible_v<ZvClipboard>);
static_assert(!std::is_move_constructible_v<ZvClipboard>);
static_assert(std::is_copy_assignable_v<ZvClipboard> && std::is_move_assignable_v<ZvClipboard>);

const QString csv = "text/csv";
const QString windowsCsv = "application/x-qt-windows-mime;value=\"Csv\"";
const QString plain = "text/plain";

/// Patience with another process on a busy machine.
constexpr int patience = 60000;

const QMimeData* content()
{
    return QGuiApplication::clipboard()->mimeData();
}

/// Puts on the clipboard what another library might.
void setContent(const QString& format, const QByteArray& bytes)
{
    auto data = std::make_unique<QMimeData>();
    data->setData(format, bytes);
    QGuiApplication::clipboard()->setMimeData(data.release());
}

/// Text that says "text/plain" to nobody who asks for it by name, only to `QMimeData::text`.
class OtherText : public QMimeData
{
protected:
    QVariant retrieveData(const QString& /*format*/, QVariant::Type type) const override
    {
        return type == QVariant::String ? QVariant("x") : QVariant();
    }
};

/// A cell whose text can't be had, once it has been given a number of times.
class Failing
{
public:
    Failing() { ++alive; }
    Failing(const Failing& /*other*/) { ++alive; }
    Failing& operator=(const Failing&) = default;
    ~Failing() { --alive; }

    static QString text(const Failing& /*cell*/)
    {
        if (left-- == 0)
            throw std::runtime_error("no text");
        return "x";
    }

    static inline int alive = 0;
    static inline int left = 0;
};

/// Only there other programs share the clipboard with this one.
bool isShared()
{
    return QGuiApplication::platformName() == "xcb" || QGuiApplication::platformName() == "windows";
}

const QString peer = PEER_FILE;

/// A program on the clipboard of Windows, as xclip is one on that of X11; empty elsewhere.
const QString stranger = STRANGER_FILE;

QString xclip()
{
    return QStandardPaths::findExecutable("xclip");
}

/// Why nothing can be exchanged with a program; null if it can.
const char* hindrance(const QString& program)
{
    if (!isShared())
        return "Other programs share the clipboard on a display only";
    return program.isEmpty() ? "There is no such program on this platform" : nullptr;
}

/// The cells of the table that is there; none if there is none.
Grid gridOf(const ZvClipboard& clipboard)
{
    const ZvTable table = clipboard.tableData();
    return hasStorage(table) ? zvtest::gridOf(table) : Grid();
}

/// What a program prints that may ask this one for clipboard content.
QByteArray outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    // The process' requests are events of this one.
    if (!QTest::qWaitFor([&process] { return process.state() == QProcess::NotRunning; }, patience))
        return "it doesn't end";
    return process.exitCode() == 0 ? process.readAllStandardOutput()
                                   : process.readAllStandardError();
}

QByteArray xclipOutput(const QString& target)
{
    return outputOf(xclip(), {"-selection", "clipboard", "-o", "-t", target});
}

/// A process that offers something on the clipboard as long as it runs. When it is ready, word of it may
/// still be on its way to this one.
class Peer
{
public:
    explicit Peer(const QStringList& arguments)
    {
        m_process.start(peer, arguments);
        m_isReady = QTest::qWaitFor([this] { return m_process.canReadLine(); }, patience)
            && m_process.readLine() == "ready\n"
            && QTest::qWaitFor([] { return !QGuiApplication::clipboard()->ownsClipboard(); },
                               patience);
    }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    ~Peer()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    bool isReady() const { return m_isReady; }

private:
    QProcess m_process;
    bool m_isReady = false;
};

} // namespace

Q_DECLARE_METATYPE(Failing)

class tst_ZvClipboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QGuiApplication::clipboard()->clear(); }

    void cleanupTestCase() { QGuiApplication::clipboard()->clear(); }

    void emptyClipboard()
    {
        const ZvClipboard clipboard;
        QVERIFY(!clipboard.hasTableData() && !clipboard.hasText());
        QVERIFY(!clipboard.hasType(ZvInternalMimeType::table));
        QVERIFY(!hasStorage(clipboard.tableData()));
        QCOMPARE(bytesOf(clipboard.stringData()), ""s);
    }

    void tableComesBackAsItWas_data()
    {
        QTest::addColumn<bool>("isMoved");
        QTest::newRow("copied") << false;
        QTest::newRow("moved") << true;
    }

    void tableComesBackAsItWas()
    {
        QFETCH(bool, isMoved);
        const Grid grid{{1, "a,b"}, {QVariant(), 1.5}};
        ZvTable table = tableOf(grid);
        const libzvutil::ZvVariant* const place = &table.value(0, 0);
        ZvClipboard clipboard;
        if (isMoved)
            clipboard.setData(std::move(table));
        else
            clipboard.setData(table);
        QCOMPARE(hasStorage(table), !isMoved); // NOLINT(bugprone-use-after-move)
        if (!isMoved)
            table.value(0, 0) = QVariant(2);

        QVERIFY(clipboard.hasTableData() && clipboard.hasText());
        QVERIFY(clipboard.hasType(ZvInternalMimeType::table));
        QVERIFY(clipboard.hasType(mime_type::csv) && clipboard.hasType(mime_type::windows_csv));
        QVERIFY(clipboard.hasType(mime_type::text));
        QVERIFY(!clipboard.hasType(mime_type::xml_spreadsheet));
        const ZvTable back = clipboard.tableData();
        QCOMPARE(zvtest::gridOf(back), grid);
        QVERIFY(&back.value(0, 0) != place);
        for (int row = 0; row < 2; ++row) {
            for (int column = 0; column < 2; ++column)
                QCOMPARE(back.value(unsigned(row), unsigned(column)).data().userType(),
                         grid[row][column].userType());
        }

        QCOMPARE(content()->data(csv), QByteArray("1,\"a,b\"\n,1.5"));
        QCOMPARE(content()->data(windowsCsv), QByteArray("1,\"a,b\"\n,1.5"));
        QCOMPARE(content()->text(), QString("1\ta,b\n\t1.5"));
        QCOMPARE(bytesOf(clipboard.stringData()), "1\ta,b\n\t1.5"s);
    }

    void tableWithoutCells()
    {
        ZvClipboard clipboard;
        clipboard.setData(ZvTable(0, 5, 0));
        QVERIFY(clipboard.hasTableData() && clipboard.hasText());
        QCOMPARE(clipboard.tableData().rows(), 0ULL);
        QCOMPARE(clipboard.tableData().columns(), 5ULL);
        QCOMPARE(bytesOf(clipboard.stringData()), ""s);
    }

    void tableThatThrowsLeavesTheClipboard_data()
    {
        QTest::addColumn<int>("texts");
        QTest::newRow("while its first text is made") << 0;
        QTest::newRow("while its second text is made") << 1;
    }

    void tableThatThrowsLeavesTheClipboard()
    {
        QFETCH(int, texts);
        static const bool isRegistered =
            QMetaType::registerConverter<Failing, QString>(&Failing::text);
        QVERIFY(isRegistered);
        ZvClipboard clipboard;
        clipboard.setData(ZvTable(1, 1, 7));
        const QMimeData* const before = content();
        const ZvClipboardData view = clipboard.clipboardData();
        for (const bool isMoved : {false, true}) {
            {
                ZvTable table(1, 1, 0);
                table.value(0, 0) = QVariant::fromValue(Failing());
                Failing::left = texts;
                if (isMoved)
                    QVERIFY_EXCEPTION_THROWN(clipboard.setData(std::move(table)),
                                             std::runtime_error);
                else
                    QVERIFY_EXCEPTION_THROWN(clipboard.setData(table), std::runtime_error);
            }
            QVERIFY(content() == before && view.isValid());
            QCOMPARE(gridOf(clipboard), (Grid{{7}}));
            QCOMPARE(bytesOf(clipboard.stringData()), "7"s);
            // What was to take its place has gone, and the table with it.
            QCOMPARE(Failing::alive, 0);
        }
    }

    void foreignText()
    {
        const ZvClipboard clipboard;
        setContent(plain, "a,b\nc\td");
        QVERIFY(clipboard.hasText() && !clipboard.hasTableData());
        QVERIFY(!hasStorage(clipboard.tableData()));
        QCOMPARE(bytesOf(clipboard.stringData()), "a,b\nc\td"s);
    }

    void foreignCsv()
    {
        const ZvClipboard clipboard;
        setContent(csv, "a,b\n");
        QVERIFY(clipboard.hasTableData() && !clipboard.hasText());
        QVERIFY(!clipboard.hasType(ZvInternalMimeType::table));
        QCOMPARE(gridOf(clipboard), (Grid{{"a", "b"}}));
        QCOMPARE(bytesOf(clipboard.stringData()), ""s);
    }

    void text_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<std::string>("expected");
        QTest::newRow("UTF-8") << QByteArray("\xC3\xA4") << "\xC3\xA4"s;
        QTest::newRow("no UTF-8") << QByteArray("a\xFF") << "a\xFF"s;
        QTest::newRow("NUL") << QByteArray("a\0b", 3) << "a"s;
        QTest::newRow("line ends") << QByteArray("a\r\nb") << "a\r\nb"s;
        QTest::newRow("nothing") << QByteArray("") << ""s;
        // Such bytes have no NUL behind them.
        QTest::newRow("part of other bytes") << QByteArray::fromRawData("abc", 2) << "ab"s;
    }

    void text()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(std::string, expected);
        setContent(plain, bytes);
        QCOMPARE(bytesOf(ZvClipboard().stringData()), expected);
    }

    void textIsAskedForByItsName()
    {
        QGuiApplication::clipboard()->setMimeData(new OtherText);
        QCOMPARE(content()->text(), QString("x"));
        QCOMPARE(bytesOf(ZvClipboard().stringData()), ""s);
    }

    void addressesAreText()
    {
        // Qt makes text of them where there is no other, though the format isn't among those offered.
        const auto set = [](const QList<QUrl>& urls) {
            auto* const data = new QMimeData;
            data->setUrls(urls);
            QGuiApplication::clipboard()->setMimeData(data);
        };
        const QUrl file("file:///a%20b/\u00E4");
        const QUrl page("http://host/x?y#z");
        const ZvClipboard clipboard;
        set({file});
        QCOMPARE(bytesOf(clipboard.stringData()), "file:///a b/\xC3\xA4"s);
        QVERIFY(!clipboard.hasText());
        set({file, page});
        QCOMPARE(bytesOf(clipboard.stringData()), "file:///a b/\xC3\xA4\nhttp://host/x?y#z\n"s);
        QCOMPARE(bytesOf(clipboard.stringData()),
                 content()->data(QString("text/plain")).toStdString());
    }

    void assignmentDoesNothing()
    {
        ZvClipboard clipboard;
        clipboard.setData(ZvTable(1, 1, 7));
        ZvClipboard other;
        QVERIFY(&(clipboard = other) == &clipboard);
        QVERIFY(&(clipboard = std::move(other)) == &clipboard);
        QCOMPARE(gridOf(clipboard), (Grid{{7}}));
    }

    void viewOutlivesItsContent()
    {
        ZvClipboard clipboard;
        clipboard.setData(ZvTable(1, 1, 1));
        int count = 0;
        const ZvClipboardData view = clipboard.clipboardData();
        connect(&view, &ZvClipboardData::invalidated, [&count] { ++count; });
        QVERIFY(view.isValid() && view.hasTableData());
        QCOMPARE(zvtest::gridOf(view.tableData()), (Grid{{1}}));
        clipboard.setData(ZvTable(1, 1, 2));
        QCOMPARE(count, 1);
        QVERIFY(!view.isNull() && !view.isValid());
        QVERIFY(!view.hasTableData() && !hasStorage(view.tableData()));
        QCOMPARE(gridOf(clipboard), (Grid{{2}}));
    }

    void otherProgramsReadATable_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("CSV") << csv << QByteArray("\"a,b\",\xC3\xA4\n1,");
        QTest::newRow("Windows CSV") << windowsCsv << QByteArray("\"a,b\",\xC3\xA4\n1,");
        QTest::newRow("text") << "text/plain" << QByteArray("a,b\t\xC3\xA4\n1\t");
        QTest::newRow("UTF-8 text") << "UTF8_STRING" << QByteArray("a,b\t\xC3\xA4\n1\t");
        QTest::newRow("Latin-1 text") << "STRING" << QByteArray("a,b\t\xE4\n1\t");
    }

    void otherProgramsReadATable()
    {
        if (const char* const reason = hindrance(xclip()))
            QSKIP(reason);
        QFETCH(QString, target);
        QFETCH(QByteArray, expected);
        ZvClipboard().setData(tableOf({{"a,b", QString(QChar(0xE4))}, {1, QVariant()}}));
        QCOMPARE(xclipOutput(target), expected);
    }

    void otherProgramsSeeTheFormats()
    {
        if (const char* const reason = hindrance(xclip()))
            QSKIP(reason);
        ZvClipboard().setData(ZvTable(1, 1, 0));
        const QList<QByteArray> targets = xclipOutput("TARGETS").split('\n');
        for (const QString& format : {csv, windowsCsv, plain})
            QVERIFY2(targets.contains(format.toUtf8()), qPrintable(format));
        QVERIFY(!targets.join().contains("XML Spreadsheet"));
    }

    void programsOfWindowsReadATable_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("CSV") << csv << QByteArray("\"a,b\",\xC3\xA4\n1,");
        // Qt takes the format's whole name for that of the clipboard.
        QTest::newRow("Windows CSV") << windowsCsv << QByteArray("\"a,b\",\xC3\xA4\n1,");
        // Qt makes the line ends of Windows.
        QTest::newRow("text") << "CF_UNICODETEXT" << QByteArray("a,b\t\xC3\xA4\r\n1\t");
    }

    void programsOfWindowsReadATable()
    {
        if (const char* const reason = hindrance(stranger))
            QSKIP(reason);
        QFETCH(QString, format);
        QFETCH(QByteArray, expected);
        ZvClipboard().setData(tableOf({{"a,b", QString(QChar(0xE4))}, {1, QVariant()}}));
        QCOMPARE(outputOf(stranger, {"read", format}), expected);
    }

    void programsOfWindowsSeeTheFormats()
    {
        if (const char* const reason = hindrance(stranger))
            QSKIP(reason);
        ZvClipboard().setData(ZvTable(1, 1, 0));
        const QList<QByteArray> formats = outputOf(stranger, {"formats"}).split('\n');
        for (const QString& format : {csv, windowsCsv, QString("CF_UNICODETEXT")})
            QVERIFY2(formats.contains(format.toUtf8()), qPrintable(format));
    }

    void programsOfWindowsOffer_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<Grid>("expected");
        QTest::addColumn<std::string>("text");
        const Grid cells{{"a,b", "1"}, {"c", "2"}};
        QTest::newRow("CSV") << csv << QByteArray("\"a,b\",1\r\nc,2\r\n") << cells << ""s;
        QTest::newRow("Windows CSV") << "Csv" << QByteArray("\"a,b\",1\r\nc,2\r\n") << cells << ""s;
        QTest::newRow("text") << "CF_UNICODETEXT" << QByteArray("a\t\xC3\xA4\r\n") << Grid()
                              << "a\t\xC3\xA4\n"s;
    }

    void programsOfWindowsOffer()
    {
        if (const char* const reason = hindrance(stranger))
            QSKIP(reason);
        QFETCH(QString, format);
        QFETCH(QByteArray, bytes);
        QFETCH(Grid, expected);
        QFETCH(std::string, text);
        QProcess process;
        process.start(stranger, {"offer", format});
        process.write(bytes);
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitCode(), 0);
        const ZvClipboard clipboard;
        QTRY_COMPARE_WITH_TIMEOUT(gridOf(clipboard), expected, patience);
        QTRY_COMPARE_WITH_TIMEOUT(bytesOf(clipboard.stringData()), text, patience);
    }

    void anotherProcessReadsATable()
    {
        if (const char* const reason = hindrance(peer))
            QSKIP(reason);
        ZvClipboard().setData(tableOf({{1, "a,b"}, {QVariant(), 1.5}}));
        QCOMPARE(outputOf(peer, {"read"}),
                 QByteArray("table 1 own 0 text 1\n1,\"a,b\"\n,1.5\n--\n1\ta,b\n\t1.5\n"));
    }

    void anotherProgramOffers_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<Grid>("expected");
        QTest::addColumn<std::string>("text");
        const auto row = [](const char* name, const QString& target, const char* cell,
                            bool isText) {
            const QByteArray bytes = "\"a,b\", " + QByteArray(cell) + "\xC3\xA4 \r\n";
            const Grid grid{{"a,b", QString::fromUtf8(cell) + QChar(0xE4)}};
            QTest::newRow(name) << target << bytes << (isText ? Grid() : grid)
                                << (isText ? bytes.toStdString() : ""s);
        };
        row("CSV", csv, "1", false);
        row("Windows CSV", windowsCsv, "2", false);
        row("text", plain, "3", true);
        row("UTF-8 text", "UTF8_STRING", "4", true);
    }

    void anotherProgramOffers()
    {
        if (const char* const reason = hindrance(xclip()))
            QSKIP(reason);
        QFETCH(QString, target);
        QFETCH(QByteArray, bytes);
        QFETCH(Grid, expected);
        QFETCH(std::string, text);
        // It goes to the background once it has read its input, and ends when another takes over.
        QProcess process;
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(xclip(), {"-selection", "clipboard", "-i", "-t", target});
        process.write(bytes);
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished(patience));

        const ZvClipboard clipboard;
        QTRY_COMPARE_WITH_TIMEOUT(gridOf(clipboard), expected, patience);
        QTRY_COMPARE_WITH_TIMEOUT(bytesOf(clipboard.stringData()), text, patience);
        QCOMPARE(clipboard.hasTableData(), !expected.isEmpty());
        QCOMPARE(clipboard.hasText(), !text.empty());
    }

    void anotherProcessOffersBothFormats()
    {
        if (const char* const reason = hindrance(peer))
            QSKIP(reason);
        if (!stranger.isEmpty())
            QSKIP("Qt reads this format under another name than it offers it on Windows");
        const Peer other({"offer", csv, "a,b", windowsCsv, "c,d", plain, "e"});
        QVERIFY(other.isReady());
        const ZvClipboard clipboard;
        QTRY_COMPARE_WITH_TIMEOUT(gridOf(clipboard), (Grid{{"c", "d"}}), patience);
        QCOMPARE(bytesOf(clipboard.stringData()), "e"s);
    }

    void anotherProcessOffersATable()
    {
        if (const char* const reason = hindrance(peer))
            QSKIP(reason);
        const Peer other({"table", "a,b", "1"});
        QVERIFY(other.isReady());
        // There it is its own, here it is a text like any other.
        const ZvClipboard clipboard;
        QTRY_COMPARE_WITH_TIMEOUT(gridOf(clipboard), (Grid{{"a,b", "1"}}), patience);
        QVERIFY(!clipboard.hasType(ZvInternalMimeType::table));
        QCOMPARE(bytesOf(clipboard.stringData()), "a,b\t1"s);
    }

    void viewOnAnotherProcessShowsThePresent()
    {
        if (const char* const reason = hindrance(peer))
            QSKIP(reason);
        auto first = std::make_unique<Peer>(QStringList{"offer", csv, "a"});
        QVERIFY(first->isReady());
        int count = 0;
        const ZvClipboardData view = ZvClipboard().clipboardData();
        connect(&view, &ZvClipboardData::invalidated, [&count] { ++count; });
        QTRY_VERIFY_WITH_TIMEOUT(view.hasTableData(), patience);
        // Qt has one object for the content of all others.
        first.reset();
        QTRY_VERIFY_WITH_TIMEOUT(!view.hasTableData(), patience);
        const Peer second({"table", "b", "c"});
        QVERIFY(second.isReady());
        QTRY_VERIFY_WITH_TIMEOUT(view.hasTableData(), patience);
        QCOMPARE(zvtest::gridOf(view.tableData()), (Grid{{"b", "c"}}));
        QVERIFY(view.isValid());
        QCOMPARE(count, 0);
    }
};

QTEST_MAIN(tst_ZvClipboard)
#include "tst_ZvClipboard.moc"
