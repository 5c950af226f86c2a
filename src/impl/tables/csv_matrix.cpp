#include "impl/tables/csv_matrix.h"

#include <stdexcept>
#include <utility>

namespace zvutil::impl {

namespace {

constexpr std::size_t firstRows = 16;
constexpr std::size_t firstColumns = 16;

/// Replaces each pair of quotes by one quote; returns the new end.
char* unescapeQuotes(char* begin, const char* end)
{
    char* target = begin;
    for (const char* p = begin; p != end; ++p) {
        *target++ = *p;
        if (*p == '"' && p + 1 != end && p[1] == '"')
            ++p;
    }
    return target;
}

} // namespace

/// The field that is being parsed.
struct csv_matrix::Field
{
    /// Begins the field after the quote at \p quote, without the text before; returns the last byte
    /// of the quoted text.
    char* open(char* quote, char* textEnd);

    char* begin;
    char* end = nullptr; ///< null until it is known
    bool escaped = false;
};

char* csv_matrix::Field::open(char* quote, char* textEnd)
{
    begin = quote + 1;
    for (end = begin; end != textEnd; ++end) {
        if (*end != '"')
            continue;
        if (end + 1 == textEnd || end[1] != '"')
            return end;
        escaped = true;
        ++end;
    }
    return textEnd - 1;
}

csv_matrix::csv_matrix(std::string text)
    : m_text(std::move(text))
    , m_types(std::use_facet<std::ctype<char>>(m_locale))
{
    if (m_text.empty())
        return;
    m_cells.reserve(firstRows * firstColumns);
    parse();
}

csv_matrix::~csv_matrix() = default;

void csv_matrix::parse()
{
    char* p = m_text.data();
    char* const textEnd = p + m_text.size();
    Field field{p};
    for (; p != textEnd; ++p) {
        switch (*p) {
        case ',':
            store(field, p);
            field = {p + 1};
            break;
        case '\n':
            store(field, p);
            endRecord();
            field = {p + 1};
            break;
        case '\r':
            if (!field.end)
                field.end = p;
            break;
        case '"':
            // By contract: a quote anywhere in a field drops the text before it. Only the text
            // between quotes counts.
            p = field.open(p, textEnd);
            break;
        default:
            break;
        }
    }
    store(field, textEnd);
    endText();
}

/// Stores the field, whose end is \p position if it isn't known yet.
void csv_matrix::store(const Field& field, char* position)
{
    const auto isSpace = [this](char c) { return m_types.is(std::ctype_base::space, c); };
    char* begin = field.begin;
    char* end = field.end ? field.end : position;
    while (end != begin && isSpace(end[-1]))
        --end;
    while (begin != end && isSpace(*begin))
        ++begin;
    if (field.escaped)
        end = unescapeQuotes(begin, end);
    if (m_rows == 0)
        m_columns = m_column + 1;
    else if (m_column >= m_columns)
        throw std::invalid_argument(
            "CSV clipboard data invalid format: rows have different number of columns");
    // Write over the byte: it has been parsed already.
    *end = '\0';
    m_cells.push_back(begin);
    ++m_column;
}

void csv_matrix::endRecord()
{
    ++m_rows;
    m_cells.resize(m_rows * m_columns, "");
    m_column = 0;
}

/// By contract: endText() drops a last record that is short, which is mostly the empty one after a
/// final line feed.
void csv_matrix::endText()
{
    if (m_column == m_columns)
        ++m_rows;
    else
        m_cells.resize(m_rows * m_columns);
}

} // namespace zvutil::impl
