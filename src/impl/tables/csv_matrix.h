#pragma once

#include <cstddef>
#include <locale>
#include <string>
#include <vector>

namespace zvutil::impl {

/// The fields of a CSV text as a grid, whose width is that of the first record.
///
/// The separator is a comma. Whitespace at the ends of fields is removed, by the global locale,
/// also within quotes; nothing is decoded. Takes linear time, and beside the text a pointer per
/// cell.
class csv_matrix
{
public:
    /// Parses \p text. Throws `std::invalid_argument` if a record has more fields than the first
    /// one. A quote that isn't closed ends with the text.
    explicit csv_matrix(std::string text);
    csv_matrix(const csv_matrix&) = delete;
    csv_matrix& operator=(const csv_matrix&) = delete;
    ~csv_matrix();

    std::size_t rows() const { return m_rows; }
    std::size_t columns() const { return m_columns; }

    /// The text of a field, empty if the record has no such field; valid as long as the matrix.
    const char* cell(std::size_t row, std::size_t column) const
    {
        return m_cells[row * m_columns + column];
    }

private:
    struct Field;

    void parse();
    void store(const Field& field, char* position);
    void endRecord();
    void endText();

    std::string m_text; ///< holds the cells, unescaped in place and each followed by a NUL
    std::vector<const char*> m_cells;
    std::size_t m_rows = 0;
    std::size_t m_columns = 0;
    std::size_t m_column = 0; ///< column of the next field
    std::locale m_locale;
    const std::ctype<char>& m_types;
};

} // namespace zvutil::impl
