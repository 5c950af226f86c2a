#include "testplan/csv_plan.h"

#include "common/number_text.h"
#include "testplan/TestPlanClipboard.h"

#include <zvworkbench/FileError.h>

#include <QTextCodec>

#include <algorithm>
#include <array>
#include <utility>

namespace workbench {

namespace {

constexpr int utf8 = 106;

/// Splits CSV into records.
class CsvText
{
public:
    CsvText(const QString& text, QChar separator)
        : m_text(text)
        , m_separator(separator)
    {
    }

    bool isAtEnd() const { return m_place >= m_text.size(); }
    int place() const { return m_place; }

    /// Reads the record at the present place, and goes to the next. Call only in front of the end.
    QStringList record()
    {
        QStringList fields{field()};
        while (!isAtEnd() && m_text.at(m_place) == m_separator) {
            ++m_place;
            fields.append(field());
        }
        ++m_place; // the line feed
        return fields;
    }

private:
    bool isFieldEnd(int place) const
    {
        return place >= m_text.size() || m_text.at(place) == m_separator
            || m_text.at(place) == QLatin1Char('\n');
    }

    QString field()
    {
        QString field;
        if (!isAtEnd() && m_text.at(m_place) == quote && readQuoted(field))
            return field;
        const int begin = m_place;
        while (!isFieldEnd(m_place))
            ++m_place;
        return m_text.mid(begin, m_place - begin);
    }

    /// Reads a field in quotes. Returns false, and stays, if what begins with a quote is none: the quote isn't
    /// closed at the field's end, and belongs to the text.
    bool readQuoted(QString& field)
    {
        for (int p = m_place + 1; p < m_text.size(); ++p) {
            if (m_text.at(p) != quote)
                continue;
            if (p + 1 < m_text.size() && m_text.at(p + 1) == quote) {
                ++p;
                continue;
            }
            if (!isFieldEnd(p + 1))
                return false;
            field = m_text.mid(m_place + 1, p - m_place - 1);
            field.replace(QStringLiteral("\"\""), QStringLiteral("\""));
            m_place = p + 1;
            return true;
        }
        return false;
    }

    static constexpr QLatin1Char quote{'"'};

    const QString& m_text;
    QChar m_separator;
    int m_place = 0;
};

/// Returns the sign that the first record has most of, outside of quotes.
QChar separatorOf(const QString& text)
{
    constexpr std::array<char, 3> signs = {',', ';', '\t'};
    std::array<int, signs.size()> counts = {};
    bool isQuoted = false;
    for (const QChar c : text) {
        if (c == QLatin1Char('"'))
            isQuoted = !isQuoted;
        if (isQuoted)
            continue;
        if (c == QLatin1Char('\n'))
            break;
        for (std::size_t i = 0; i < signs.size(); ++i)
            counts[i] += c == QLatin1Char(signs[i]) ? 1 : 0;
    }
    const auto most = std::max_element(counts.begin(), counts.end());
    return QLatin1Char(signs[static_cast<std::size_t>(most - counts.begin())]);
}

bool areHeadings(const QStringList& record)
{
    return std::all_of(record.begin(), record.end(), [](const QString& field) {
        return !field.trimmed().isEmpty() && cellValue(field).userType() == QMetaType::QString;
    });
}

void requireRoom(const TestPlan& plan, int columns)
{
    if (plan.rows.size() > std::size_t(maxPlanRows) || columns > maxPlanColumns
        || qint64(plan.rows.size()) * columns > maxPasteCells)
        throw FileError(
            TestPlan::tr(
                "The file has too many cells. A test plan can have %1 rows and %2 columns, and "
                "%3 cells can be read.")
                .arg(numberText(maxPlanRows), numberText(maxPlanColumns),
                     numberText(maxPasteCells)));
}

} // namespace

CsvPlan planOfCsv(const QByteArray& csv, const Progress& progress)
{
    CsvPlan result;
    QTextCodec::ConverterState state; // takes away a byte order mark
    QString text = QTextCodec::codecForMib(utf8)->toUnicode(csv.constData(), csv.size(), &state);
    result.isLatin1 = state.invalidChars > 0 || state.remainingChars > 0;
    if (result.isLatin1)
        text = QString::fromLatin1(csv);
    if (text.contains(QChar::Null))
        throw FileError(TestPlan::tr("It is not a text: it contains a NUL."));
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));

    CsvText records(text, separatorOf(text));
    int columns = 0;
    while (!records.isAtEnd()) {
        const QStringList record = records.record();
        columns = std::max(columns, record.size());
        if (result.plan.headings.isEmpty() && result.plan.rows.empty() && areHeadings(record)) {
            result.plan.headings = record;
            continue;
        }
        TestPlanRow row;
        for (const QString& field : record)
            row.cells.append(cellValue(field));
        result.plan.rows.push_back(std::move(row));
        requireRoom(result.plan, columns);
        if (result.plan.rows.size() % 256 == 0 && !progress(records.place(), text.size()))
            throw Stopped();
    }
    while (result.plan.headings.size() < std::max(columns, 1))
        result.plan.headings.append(TestPlan::tr("Column %1").arg(result.plan.headings.size() + 1));
    return result;
}

} // namespace workbench
