// A table of short texts, and one with numbers among them: its text against the loop that only asks each cell for its
// own, and its cells against a vector of `QVariant`. "peak" is bytes of memory per cell, for the texts
// per byte of the result.

#include "support/Quick.h"
#include "support/memory.h"

#include "support/Tables.h"

#include <zvutil/ZvTable.h>
#include <zvutil/ZvVariant.h>

#include <QString>
#include <QVariant>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <vector>

namespace {

constexpr unsigned columns = 10;

unsigned rows()
{
    return zvbench::isQuick() ? 1000 : 1000000;
}

/// Nine characters, as each cell's own; a comma in one of five.
QVariant cellText(unsigned row, unsigned column)
{
    QString text = QStringLiteral("%1").arg(row * columns + column, 9, 10, QLatin1Char('x'));
    if ((row + column) % 5 == 0)
        text[4] = QLatin1Char(',');
    return text;
}

/// A text, or in three columns of ten a number.
QVariant mixedCell(unsigned row, unsigned column)
{
    if (column < 2)
        return row * columns + column;
    return column == 2 ? QVariant(row / 7.0) : cellText(row, column);
}

template <QVariant (*Cell)(unsigned row, unsigned column)>
const ZvTable& sample()
{
    static const ZvTable table = [] {
        ZvTable made(rows(), columns, libzvutil::ZvVariant());
        for (unsigned row = 0; row < rows(); ++row) {
            for (unsigned column = 0; column < columns; ++column)
                made.value(row, column) = Cell(row, column);
        }
        return made;
    }();
    return table;
}

std::size_t lengthOfTexts(const ZvTable& table)
{
    std::size_t length = 0;
    for (unsigned long long row = 0; row < table.rows(); ++row) {
        for (unsigned long long column = 0; column < table.columns(); ++column)
            length += static_cast<std::size_t>(table.value(row, column).data().toString().size());
    }
    return length;
}

template <typename Make>
void contend(const char* name, Make make, double (*size)())
{
    benchmark::RegisterBenchmark(name, [make, size](benchmark::State& state) {
        size();
        for (auto _ : state) {
            const zvbench::PeakMemory peak;
            auto made = make();
            benchmark::DoNotOptimize(made);
            state.PauseTiming();
            state.counters["peak"] = static_cast<double>(peak.bytes()) / size();
            state.ResumeTiming();
        }
    });
}

double cellCount()
{
    return static_cast<double>(rows()) * columns;
}

template <QVariant (*Cell)(unsigned row, unsigned column)>
double textSize()
{
    static const std::size_t size = sample<Cell>().toCSV().size();
    return static_cast<double>(size);
}

const bool registered = [] {
    contend(
        "texts/floor", [] { return lengthOfTexts(sample<cellText>()); }, &textSize<cellText>);
    contend(
        "texts/library", [] { return sample<cellText>().toCSV(); }, &textSize<cellText>);
    contend(
        "texts/library, tabs", [] { return sample<cellText>().toTSV(); }, &textSize<cellText>);
    contend(
        "texts/step by step", [] { return zvtest::plainText(sample<cellText>(), ','); },
        &textSize<cellText>);
    contend(
        "mixed/floor", [] { return lengthOfTexts(sample<mixedCell>()); }, &textSize<mixedCell>);
    contend(
        "mixed/library", [] { return sample<mixedCell>().toCSV(); }, &textSize<mixedCell>);
    contend(
        "mixed/step by step", [] { return zvtest::plainText(sample<mixedCell>(), ','); },
        &textSize<mixedCell>);

    contend(
        "empty cells/floor",
        [] { return std::vector<QVariant>(std::size_t(rows()) * columns, QVariant()); },
        &cellCount);
    contend(
        "empty cells/library", [] { return ZvTable(rows(), columns, libzvutil::ZvVariant()); },
        &cellCount);
    contend(
        "text cells/floor",
        [] {
            std::vector<QVariant> cells(std::size_t(rows()) * columns, QVariant());
            for (unsigned i = 0; i < rows() * columns; ++i)
                cells[i] = cellText(i / columns, i % columns);
            return cells;
        },
        &cellCount);
    contend(
        "text cells/library",
        [] {
            ZvTable cells(rows(), columns, libzvutil::ZvVariant());
            for (unsigned i = 0; i < rows() * columns; ++i)
                cells.value(i / columns, i % columns) = cellText(i / columns, i % columns);
            return cells;
        },
        &cellCount);
    return true;
}();

} // namespace
