// A table's text against the plain steps, on cells that are rich in what could tell the two apart.

#include <zvutil/ZvTable.h>

#include "support/Tables.h"
#include "support/rapidcheck.h"

#include <QString>
#include <QTest>
#include <QVariant>

#include <string>
#include <vector>

using zvtest::bytesOf;
using zvtest::plainText;

namespace {

rc::Gen<QString> genPiece()
{
    const auto unit = rc::gen::weightedElement<char16_t>({{6, u'a'},
                                                          {3, u','},
                                                          {3, u'\t'},
                                                          {2, u'"'},
                                                          {1, u'\n'},
                                                          {1, u'\r'},
                                                          {1, u' '},
                                                          {1, u'\0'},
                                                          {1, char16_t(0x01)},
                                                          {1, char16_t(0x7F)},
                                                          {1, char16_t(0x80)},
                                                          {1, char16_t(0xE4)},
                                                          {1, char16_t(0x20AC)},
                                                          {1, char16_t(0xD834)},
                                                          {1, char16_t(0xDD1E)},
                                                          {1, char16_t(0xFEFF)},
                                                          {1, char16_t(0xFFFF)}});
    return rc::gen::weightedOneOf<QString>(
        {{4, rc::gen::map(unit, [](char16_t u) { return QString(QChar(u)); })},
         {1, rc::gen::just(QString("of eight units or more"))}});
}

rc::Gen<QVariant> genCell()
{
    const auto text =
        rc::gen::map(rc::gen::scale(0.3, rc::gen::container<std::vector<QString>>(genPiece())),
                     [](const std::vector<QString>& pieces) {
                         QString joined;
                         for (const QString& piece : pieces)
                             joined += piece;
                         return QVariant(joined);
                     });
    return rc::gen::weightedOneOf<QVariant>(
        {{8, text},
         {1, rc::gen::map(rc::gen::arbitrary<int>(), [](int n) { return QVariant(n); })},
         {1, rc::gen::map(rc::gen::arbitrary<double>(), [](double n) { return QVariant(n); })},
         {1, rc::gen::just(QVariant())}});
}

ZvTable arbitraryTable()
{
    const auto rows = *rc::gen::inRange<unsigned>(0, 6);
    const auto columns = *rc::gen::inRange<unsigned>(0, 6);
    ZvTable table(rows, columns, 0);
    for (unsigned row = 0; row < rows; ++row) {
        for (unsigned column = 0; column < columns; ++column)
            table.value(row, column) = *genCell();
    }
    return table;
}

} // namespace

class tst_ZvTable_properties : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsEqualThePlainSteps()
    {
        QVERIFY(rc::check("CSV and TSV", [] {
            for (int i = 0; i < 10; ++i) {
                const ZvTable table = arbitraryTable();
                RC_ASSERT(bytesOf(table.toCSV()) == plainText(table, ','));
                RC_ASSERT(bytesOf(table.toTSV()) == plainText(table, '\t'));
            }
        }));
    }
};

QTEST_APPLESS_MAIN(tst_ZvTable_properties)
#include "tst_ZvTable_properties.moc"
