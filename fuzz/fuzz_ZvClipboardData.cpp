// Any bytes as CSV on the clipboard: the table is the one by the plain rules.

#include <zvutil/ZvClipboardData.h>
#include <zvutil/ZvVariant.h>

#include "support/CsvOracle.h"
#include "support/Tables.h"

#include <QByteArray>
#include <QMimeData>
#include <QString>
#include <QVariant>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>

using zvtest::CsvOracle;

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

std::optional<CsvOracle> oracleOf(const std::string& text)
{
    try {
        return CsvOracle(text);
    } catch (const std::invalid_argument&) {
        return std::nullopt;
    }
}

/// Many short records behind a long one make a table that is far larger than the text.
bool isHuge(const std::string& text)
{
    const auto commas = std::count(text.begin(), text.end(), ',');
    const auto lineFeeds = std::count(text.begin(), text.end(), '\n');
    return (commas + 1) * (lineFeeds + 1) > 100000;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(data, data + size);
    if (isHuge(text))
        return 0;
    QMimeData content;
    content.setData(QStringLiteral("text/csv"),
                    QByteArray(text.data(), static_cast<int>(text.size())));
    const ZvTable table = ZvClipboardData(&content).csvData();
    const std::optional<CsvOracle> expected = oracleOf(text);
    require(zvtest::hasStorage(table) == expected.has_value());
    if (!expected)
        return 0;
    require(table.rows() == expected->rows() && table.columns() == expected->columns());
    for (std::size_t row = 0; row < expected->rows(); ++row) {
        for (std::size_t column = 0; column < expected->columns(); ++column) {
            const QString cell = QString::fromUtf8(expected->cell(row, column).c_str());
            require(table.value(row, column).data() == QVariant(cell));
        }
    }
    return 0;
}
