#pragma once

#include <QString>
#include <QStringRef>
#include <QVariant>

#include <cstddef>
#include <vector>

namespace zvutil::impl {

/// The text of a table's row in UTF-8, which is made cell by cell; its buffer is used again for the
/// next row.
class delimited_row_writer
{
public:
    explicit delimited_row_writer(char separator);

    /// Appends a cell's text, in double quotes if it contains the separator, and the separator. A
    /// NUL in the text cuts off everything after it, quote and separator included.
    void append(const QString& cell);
    /// Appends the text of an integer or a `double` and the separator, which no number contains. Returns false for
    /// a value of another type.
    bool append_number(const QVariant& cell);

    bool is_empty() const { return m_size == 0; }
    void remove_last() { --m_size; }
    void clear() { m_size = 0; }

    /// The text followed by \p last and a NUL; valid until the next change.
    const char* text(char last);

private:
    bool append_until_nul(const QStringRef& text);
    char* room(std::size_t size);
    void grow(std::size_t size);

    char16_t m_separator;
    std::vector<char> m_bytes; ///< the first `m_size` are the text
    std::size_t m_size = 0;
};

} // namespace zvutil::impl
