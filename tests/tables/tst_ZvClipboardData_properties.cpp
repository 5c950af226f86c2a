// Reading CSV against the plain rules, on texts that are rich in what the rules speak of.

#include <zvutil/ZvClipboardData.h>

#include "support/CsvOracle.h"
#include "support/Tables.h"
#include "support/rapidcheck.h"

#include <QByteArray>
#include <QMimeData>
#include <QTest>

#include <optional>
#include <stdexcept>
#include <string>

using zvtest::CsvOracle;
using zvtest::hasStorage;

namespace {

ZvTable tableFrom(const std::string& text)
{
    QMimeData data;
    data.setData("text/csv", QByteArray(text.data(), static_cast<int>(text.size())));
    return ZvClipboardData(&data).csvData();
}

std::optional<CsvOracle> oracleOf(const std::string& text)
{
    try {
        return CsvOracle(text);
    } catch (const std::invalid_argument&) {
        return std::nullopt;
    }
}

void compareTables(const std::string& text)
{
    const std::optional<CsvOracle> expected = oracleOf(text);
    const ZvTable table = tableFrom(text);
    RC_ASSERT(hasStorage(table) == expected.has_value());
    if (!expected)
        return;
    RC_ASSERT(table.rows() == expected->rows());
    RC_ASSERT(table.columns() == expected->columns());
    for (std::size_t row = 0; row < expected->rows(); ++row) {
        for (std::size_t column = 0; column < expected->columns(); ++column) {
            const QVariant& cell = table.value(row, column).data();
            RC_ASSERT(cell.userType() == int(QMetaType::QString));
            RC_ASSERT(cell.toString() == QString::fromUtf8(expected->cell(row, column).c_str()));
        }
    }
}

rc::Gen<std::string> genText(const rc::Gen<char>& unit)
{
    return rc::gen::scale(3, rc::gen::container<std::string>(unit));
}

/// Mostly records that are no longer than the first one.
rc::Gen<std::string> genLines()
{
    const auto field = rc::gen::weightedElement<std::string>({{6, "a"},
                                                              {3, ""},
                                                              {2, " b "},
                                                              {2, "\"c\""},
                                                              {2, "\"d,\n\"\"e\""},
                                                              {1, "\"\"\"\""},
                                                              {1, "\xC3\xA4"},
                                                              {1, "f\"g\"h"},
                                                              {1, "i\rj"},
                                                              {1, "\""}});
    const auto end = rc::gen::weightedElement<std::string>({{4, "\n"}, {3, "\r\n"}, {1, "\r"}});
    return rc::gen::mapcat(rc::gen::inRange(1, 20), [field, end](int columns) {
        const auto line = rc::gen::mapcat(
            rc::gen::weightedOneOf<int>({{6, rc::gen::just(columns)},
                                         {3, rc::gen::inRange(1, columns + 1)},
                                         {1, rc::gen::just(columns + 1)}}),
            [field, end](int count) {
                return rc::gen::map(
                    rc::gen::pair(rc::gen::container<std::vector<std::string>>(
                                      static_cast<std::size_t>(count), field),
                                  end),
                    [](const std::pair<std::vector<std::string>, std::string>& parts) {
                        std::string text;
                        for (const std::string& part : parts.first)
                            text += (text.empty() ? "" : ",") + part;
                        return text + parts.second;
                    });
            });
        return rc::gen::map(rc::gen::scale(0.4, rc::gen::container<std::vector<std::string>>(line)),
                            [](const std::vector<std::string>& lines) {
                                std::string text;
                                for (const std::string& part : lines)
                                    text += part;
                                return text;
                            });
    });
}

} // namespace

class tst_ZvClipboardData_properties : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void equalsThePlainRules()
    {
        QVERIFY(rc::check("bytes that mean something", [] {
            const auto unit = rc::gen::weightedElement<char>({{6, 'a'},
                                                              {4, ','},
                                                              {3, '\n'},
                                                              {3, '\r'},
                                                              {5, '"'},
                                                              {3, ' '},
                                                              {1, '\t'},
                                                              {1, '\0'},
                                                              {1, '\xC3'},
                                                              {1, '\xA4'},
                                                              {1, '\xFF'}});
            for (int i = 0; i < 50; ++i)
                compareTables(*genText(unit));
        }));
        QVERIFY(rc::check("any bytes", [] {
            for (int i = 0; i < 10; ++i)
                compareTables(*genText(rc::gen::arbitrary<char>()));
        }));
        QVERIFY(rc::check("records", [] {
            for (int i = 0; i < 10; ++i)
                compareTables(*genLines());
        }));
    }
};

QTEST_APPLESS_MAIN(tst_ZvClipboardData_properties)
#include "tst_ZvClipboardData_properties.moc"
