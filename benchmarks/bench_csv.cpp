// 100 MB of CSV, one field in five quoted, as a matrix of fields and as a table. The floor of the
// former knows the rules and keeps nothing; that of the latter takes the same steps without the library.
// "peak" is, for `csvData`, bytes of memory per byte of text: all, and beside the finished table. For
// the odd texts it is relative to the finished table.

#include "support/Quick.h"
#include "support/memory.h"

#include "impl/tables/csv_matrix.h"

#include <zvutil/ZvClipboardData.h>
#include <zvutil/ZvVariant.h>

#include <QByteArray>
#include <QMimeData>
#include <QProcess>
#include <QString>
#include <QTemporaryFile>
#include <QVariant>

#include <benchmark/benchmark.h>

#include <csv.h>
// Its own thread would read ahead. Its headers don't pass our warnings.
#define CSV_IO_NO_THREAD
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wstringop-truncation"
#endif
#include <libfccp/csv.h>
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr unsigned columns = 10;

std::string field(std::minstd_rand& random)
{
    std::string text(5 + random() % 9, ' ');
    std::generate(text.begin(), text.end(), [&random] { return char('a' + random() % 26); });
    return text;
}

std::string makeText(std::size_t size)
{
    std::minstd_rand random(1);
    std::string text;
    text.reserve(size + 200);
    while (text.size() < size) {
        for (unsigned column = 0; column < columns; ++column) {
            text += column == 0 ? "" : ",";
            if (random() % 5 == 0)
                text += '"' + field(random) + (random() % 10 == 0 ? "\"\"\"" : ",\"");
            else
                text += field(random);
        }
        text += '\n';
    }
    return text;
}

const std::string& sample()
{
    static const std::string text = makeText(zvbench::isQuick() ? 100000 : 100000000);
    return text;
}

/// What all contenders have to find.
struct Found
{
    std::size_t fields = 0;
    std::size_t bytes = 0;

    void add(std::size_t size)
    {
        ++fields;
        bytes += size;
    }
    bool operator==(const Found& other) const
    {
        return fields == other.fields && bytes == other.bytes;
    }
};

Found inMatrix(const zvutil::impl::csv_matrix& matrix)
{
    Found found;
    for (std::size_t row = 0; row < matrix.rows(); ++row) {
        for (std::size_t column = 0; column < matrix.columns(); ++column)
            found.add(std::strlen(matrix.cell(row, column)));
    }
    return found;
}

Found inStrings(const std::vector<std::string>& cells)
{
    Found found;
    for (const std::string& cell : cells)
        found.add(cell.size());
    return found;
}

/// The rules, without trimming, and nothing kept.
Found withoutStore(const std::string& text)
{
    Found found;
    const char* start = text.data();
    const char* end = nullptr;
    std::size_t pairs = 0;
    const char* const last = text.data() + text.size();
    for (const char* p = start; p != last; ++p) {
        if (*p == '"') {
            start = p + 1;
            for (end = start; end != last && (*end != '"' || end[1] == '"'); ++end) {
                if (*end == '"') {
                    ++pairs;
                    ++end;
                }
            }
            p = end;
        } else if (*p == ',' || *p == '\n') {
            found.add(static_cast<std::size_t>((end ? end : p) - start) - pairs);
            start = p + 1;
            end = nullptr;
            pairs = 0;
        }
    }
    return found;
}

std::vector<std::string> byLibcsv(const std::string& text)
{
    std::vector<std::string> cells;
    csv_parser parser;
    csv_init(&parser, 0);
    const auto keep = [](void* bytes, std::size_t size, void* target) {
        static_cast<std::vector<std::string>*>(target)->emplace_back(static_cast<char*>(bytes),
                                                                     size);
    };
    csv_parse(&parser, text.data(), text.size(), keep, nullptr, &cells);
    csv_fini(&parser, keep, nullptr, &cells);
    csv_free(&parser);
    return cells;
}

using FastReader =
    io::CSVReader<columns, io::trim_chars<' ', '\t'>, io::double_quote_escape<',', '"'>>;

template <typename Use>
void byFastParser(const std::string& text, Use use)
{
    FastReader reader("sample", text.data(), text.data() + text.size());
    reader.set_header("0", "1", "2", "3", "4", "5", "6", "7", "8", "9");
    char* f[columns];
    while (reader.read_row(f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7], f[8], f[9])) {
        for (const char* const cell : f)
            use(cell);
    }
}

template <typename Work>
void contend(const char* name, Work work)
{
    benchmark::RegisterBenchmark(name, [work](benchmark::State& state) {
        static const Found expected = withoutStore(sample());
        for (auto _ : state) {
            const auto result = work(sample());
            state.PauseTiming();
            if (!(result.second(result.first) == expected))
                state.SkipWithError("finds other fields");
            state.ResumeTiming();
        }
    });
}

void python(benchmark::State& state)
{
    QTemporaryFile file;
    if (!file.open() || file.write(sample().data(), qint64(sample().size())) < 0 || !file.flush())
        qFatal("there is no room for the text");
    const QString script = QStringLiteral("import csv, sys, time\n"
                                          "with open(sys.argv[1], newline='') as f:\n"
                                          "    start = time.process_time()\n"
                                          "    rows = list(csv.reader(f))\n"
                                          "    print(time.process_time() - start)\n");
    for (auto _ : state) {
        QProcess process;
        process.start(QStringLiteral("python3"), {QStringLiteral("-c"), script, file.fileName()});
        process.waitForFinished(-1);
        bool isNumber = false;
        const double seconds = process.readAllStandardOutput().trimmed().toDouble(&isNumber);
        if (!isNumber)
            state.SkipWithError("there is no Python");
        state.SetIterationTime(seconds);
    }
}

void registerMatrix()
{
    contend("matrix/floor", [](const std::string& text) {
        return std::pair(withoutStore(text), [](const Found& found) { return found; });
    });
    contend("matrix/library", [](const std::string& text) {
        return std::pair(std::make_unique<zvutil::impl::csv_matrix>(text),
                         [](const auto& matrix) { return inMatrix(*matrix); });
    });
    contend("matrix/libcsv, strings kept",
            [](const std::string& text) { return std::pair(byLibcsv(text), &inStrings); });
    contend("matrix/fccp, strings kept", [](const std::string& text) {
        std::vector<std::string> cells;
        byFastParser(text, [&cells](const char* cell) { cells.emplace_back(cell); });
        return std::pair(std::move(cells), &inStrings);
    });
    contend("matrix/fccp, nothing kept", [](const std::string& text) {
        Found found;
        byFastParser(text, [&found](const char* cell) { found.add(std::strlen(cell)); });
        return std::pair(found, [](const Found& f) { return f; });
    });
    benchmark::RegisterBenchmark("matrix/Python csv", &python)->UseManualTime();
}

/// A cell as a table has it.
class Cell
{
public:
    Cell()
        : m_value(std::make_unique<QVariant>())
    {
    }
    Cell(const Cell& other)
        : m_value(std::make_unique<QVariant>(*other.m_value))
    {
    }
    Cell(Cell&&) noexcept = default;
    Cell& operator=(const Cell&) = delete;
    virtual ~Cell() = default;

    QVariant& value() { return *m_value; }

private:
    std::unique_ptr<QVariant> m_value;
};

/// The steps of `csvData`, with a matrix of strings, for texts in which no field is to be trimmed.
std::vector<Cell> sketch(const QByteArray& bytes)
{
    const std::string text = bytes.toStdString();
    std::vector<std::string> matrix;
    const char* start = text.data();
    const char* end = nullptr;
    bool escaped = false;
    const char* const last = text.data() + text.size();
    for (const char* p = start; p != last; ++p) {
        if (*p == '"') {
            start = p + 1;
            for (end = start; end != last && (*end != '"' || end[1] == '"'); ++end) {
                if (*end == '"') {
                    escaped = true;
                    ++end;
                }
            }
            p = end;
        } else if (*p == ',' || *p == '\n') {
            std::string& cell = matrix.emplace_back(start, end ? end : p);
            for (std::size_t at = 0; escaped && (at = cell.find("\"\"", at)) != std::string::npos;)
                cell.erase(at++, 1);
            start = p + 1;
            end = nullptr;
            escaped = false;
        }
    }
    std::vector<Cell> table(matrix.size(), Cell());
    for (std::size_t i = 0; i < matrix.size(); ++i)
        table[i].value() = QVariant(QString::fromUtf8(matrix[i].c_str()));
    return table;
}

/// One table made in each iteration, which goes outside the time. \p peak gets the rise of memory at
/// its highest and with the finished table alone.
template <typename Make>
void makeTables(benchmark::State& state, Make make,
                const std::function<double(double all, double table)>& peak)
{
    for (auto _ : state) {
        const zvbench::PeakMemory before;
        const auto table = make();
        state.PauseTiming();
        const auto all = static_cast<double>(before.bytes());
        const auto finished = static_cast<double>(before.presentBytes());
        state.counters["peak"] = peak(all, finished);
        state.ResumeTiming();
    }
}

std::unique_ptr<QMimeData> contentOf(const QByteArray& bytes)
{
    auto data = std::make_unique<QMimeData>();
    data->setData(QStringLiteral("text/csv"), bytes);
    return data;
}

const QMimeData& sampleContent()
{
    static const std::unique_ptr<QMimeData> content =
        contentOf(QByteArray::fromStdString(sample()));
    return *content;
}

void registerTable()
{
    static const auto perByte = [](double bytes) {
        return bytes / static_cast<double>(sample().size());
    };
    const auto all = [](double peak, double) { return perByte(peak); };
    const auto beside = [](double peak, double table) { return perByte(peak - table); };
    const auto bySketch = [] { return sketch(sampleContent().data(QStringLiteral("text/csv"))); };
    const auto byLibrary = [] { return ZvClipboardData(&sampleContent()).csvData(); };
    const auto add = [](const char* name, const auto& make, const auto& peak) {
        benchmark::RegisterBenchmark(
            name, [make, peak](benchmark::State& state) { makeTables(state, make, peak); });
    };
    add("csvData/floor", bySketch, all);
    add("csvData/library", byLibrary, all);
    add("csvData, beside/floor", bySketch, beside);
    add("csvData, beside/library", byLibrary, beside);
}

void registerOddText(const char* name, const char* start, const QByteArray& piece, int count)
{
    benchmark::RegisterBenchmark(name, [=](benchmark::State& state) {
        const auto data =
            contentOf(start + piece.repeated(zvbench::isQuick() ? count / 1000 : count));
        makeTables(
            state, [&data] { return ZvClipboardData(data.get()).csvData(); },
            [](double peak, double table) { return peak / std::max(table, 1.0); });
    });
}

const bool registered = [] {
    registerMatrix();
    registerTable();
    registerOddText("peak by table/one field of 100 MB", "", "x", 100000000);
    registerOddText("peak by table/10,000,000 rows", "", "a\n", 10000000);
    registerOddText("peak by table/1,000,000 columns", "", "a,", 1000000);
    registerOddText("peak by table/2,000,000 columns", "", "a,", 2000000);
    registerOddText("peak by table/open quote, 100 MB", "a,\"", "x,", 50000000);
    return true;
}();

} // namespace
