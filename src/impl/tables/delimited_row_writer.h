#pragma once

#include <QString>
#include <QStringRef>

#include <cstddef>
#include <vector>

namespace zvutil::impl {

/// The text of a table's row, in UTF-8, made cell by cell and used again for the next row.
class delimited_row_writer
{
public:
    explicit delimited_row_writer(char separator);

    /// Appends a cell's text, in double quotes if it holds the separator, and the separator. A NUL
    /// in the text cuts off all that comes behind it, quote and separator included.
    void append(const QString& cell);

    bool is_empty() const { return m_size == 0; }
    void remove_last() { --m_size; }
    void clear() { m_size = 0; }

    /// With a NUL and \p last before it; valid until the next change.
    const char* text(char last);

private:
    void append_quoted(const QString& cell, const QChar* other);
    bool append_until_nul(const QStringRef& text);
    char* room(std::size_t size);
    void grow(std::size_t size);

    char16_t m_separator;
    std::vector<char> m_bytes; ///< of which `m_size` are the text
    std::size_t m_size = 0;
};

} // namespace zvutil::impl
