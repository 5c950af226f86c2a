#pragma once

#include <cstddef>
#include <locale>
#include <string>
#include <vector>

namespace zvutil::impl {

/// The fields of a CSV text as a grid, which the first record makes as wide as it is.
///
/// The separator is a comma. Fields lose the whitespace at their ends, by the global locale, also
/// within quotes; nothing is decoded. Takes linear time, and beside the text a pointer per cell.
class csv_table
{
public:
    /// Throws `std::invalid_argument` if a record has more fields than the first one. A quote that
    /// isn't closed ends with the text.
    explicit csv_table(std::string text);
    csv_table(const csv_table&) = delete;
    csv_table& operator=(const csv_table&) = delete;
    ~csv_table();

    std::size_t rows() const { return m_rows; }
    std::size_t columns() const { return m_columns; }

    /// Valid as long as the matrix. Empty if the record has no such field.
    const char* cell(std::size_t row, std::size_t column) const
    {
        return m_cells[row * m_columns + column];
    }

private:
    struct field_range;

    void parse();
    void store(const field_range& field, char* position);
    void end_record();
    void end_text();

    std::string
        m_text; ///< in which the cells lie, unescaped in place and each with a NUL behind it
    std::vector<const char*> m_cells;
    std::size_t m_rows = 0;
    std::size_t m_columns = 0;
    std::size_t m_column = 0; ///< that of the next field
    std::locale m_locale;
    const std::ctype<char>& m_types;
};

} // namespace zvutil::impl
