// The hidden classes of what the library puts on the clipboard.

#include "impl/tables/ZvClipboardInternalData.h"
#include "impl/tables/ZvTableClipboardData.h"
#include "impl/tables/mime_type_text.h"

#include "support/Tables.h"

#include <QTest>

#include <type_traits>

using zvtest::Grid;
using zvtest::gridOf;
using zvtest::hasStorage;
using zvtest::tableOf;
using zvutil::mime_type;
using zvutil::impl::mime_type_text;

namespace {

static_assert(std::is_abstract_v<ZvClipboardInternalData>);
static_assert(std::has_virtual_destructor_v<ZvClipboardInternalData>);

class Content : public ZvClipboardInternalData
{
public:
    bool hasInternalMimeType(ZvInternalMimeType /*type*/) const override { return false; }
};

const mime_type types[] = {mime_type::csv, mime_type::xml_spreadsheet, mime_type::text,
                           mime_type::windows_csv, static_cast<mime_type>(4)};

} // namespace

class tst_ZvClipboardInternalData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void typesHaveTexts_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("text");
        QTest::newRow("csv") << 0 << "text/csv";
        QTest::newRow("xml_spreadsheet")
            << 1 << "application/x-qt-windows-mime;value=\"XML Spreadsheet\"";
        QTest::newRow("text") << 2 << "text/plain";
        QTest::newRow("windows_csv") << 3 << "application/x-qt-windows-mime;value=\"Csv\"";
        QTest::newRow("another") << 4 << "unknown";
        QTest::newRow("below") << -1 << "unknown";
    }

    void typesHaveTexts()
    {
        QFETCH(int, type);
        QFETCH(QString, text);
        QCOMPARE(mime_type_text(static_cast<mime_type>(type)), text);

        Content content;
        for (const mime_type other : types)
            QVERIFY(!content.hasMimeType(other));
        content.setData(text, "x");
        QVERIFY(content.hasMimeType(static_cast<mime_type>(type)));
        for (const mime_type other : types)
            QCOMPARE(content.hasMimeType(other), mime_type_text(other) == text);
    }

    void baseHasNoTable()
    {
        const Content content;
        QVERIFY(!hasStorage(content.internalTableData()));
    }

    void tableIsKeptWithItsTypes()
    {
        const Grid grid{{1, "a,b"}, {QVariant(), 1.5}};
        const ZvTableClipboardData data(tableOf(grid));
        QVERIFY(data.hasInternalMimeType(ZvInternalMimeType::table));
        QVERIFY(!data.hasInternalMimeType(static_cast<ZvInternalMimeType>(1)));
        QCOMPARE(gridOf(data.internalTableData()), grid);
        ZvTable copy = data.internalTableData();
        copy.value(0, 0) = QVariant(2);
        QCOMPARE(gridOf(data.internalTableData()), grid);
    }

    void tableHasItsTextsAsFormats()
    {
        const ZvTableClipboardData data(tableOf({{"a,b", 1}, {QVariant(), 2}}));
        const QString csv = mime_type_text(mime_type::csv);
        const QString windowsCsv = mime_type_text(mime_type::windows_csv);
        QCOMPARE(data.formats(), (QStringList{csv, windowsCsv, "text/plain"}));
        QCOMPARE(data.data(csv), QByteArray("\"a,b\",1\n,2"));
        QCOMPARE(data.data(windowsCsv), data.data(csv));
        QCOMPARE(data.text(), QString("a,b\t1\n\t2"));
        QVERIFY(data.hasMimeType(mime_type::text));
        QVERIFY(!data.hasMimeType(mime_type::xml_spreadsheet));
    }
};

QTEST_APPLESS_MAIN(tst_ZvClipboardInternalData)
#include "tst_ZvClipboardInternalData.moc"
