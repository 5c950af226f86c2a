#include "impl/tables/delimited_row_writer.h"

#include "impl/tables/number_text.h"
#include "impl/text/ascii_step.h"

#include <QByteArray>

#include <algorithm>
#include <cstring>

namespace zvutil::impl {

namespace {

/// Where plain text ends in a cell, which is ASCII without NULs, and whether a separator is in it.
struct plain_text
{
    const QChar* end;
    bool has_separator;
};

#if defined(ZVUTIL_ASCII_STEP_SSE2)

/// Copies 8 units if all are plain, and returns whether it has; notes whether one of them is the separator.
bool copy_step(char* target, const QChar* source, char16_t separator, bool& has_separator)
{
    const void* const from = source;
    const __m128i units = _mm_loadu_si128(static_cast<const __m128i*>(from));
    const __m128i below = _mm_sub_epi16(units, _mm_set1_epi16(1));
    const __m128i plain =
        _mm_cmpeq_epi16(_mm_subs_epu16(below, _mm_set1_epi16(0x7E)), _mm_setzero_si128());
    if (_mm_movemask_epi8(plain) != 0xFFFF)
        return false;
    const __m128i same = _mm_cmpeq_epi16(units, _mm_set1_epi16(static_cast<short>(separator)));
    has_separator = has_separator || _mm_movemask_epi8(same) != 0;
    void* const to = target;
    _mm_storel_epi64(static_cast<__m128i*>(to), _mm_packus_epi16(units, units));
    return true;
}

#endif

/// Copies plain text.
plain_text copy_plain(char* target, const QChar* source, const QChar* end, char16_t separator)
{
    bool has_separator = false;
#if defined(ZVUTIL_ASCII_STEP_SSE2)
    const QChar* const begin = source;
    for (; end - source >= 8 && copy_step(target, source, separator, has_separator); source += 8)
        target += 8;
    // The last step goes back to where it has eight units.
    const std::ptrdiff_t rest = end - source;
    if (rest > 0 && rest < 8 && source != begin
        && copy_step(target + rest - 8, end - 8, separator, has_separator))
        return {end, has_separator};
#endif
    for (; source != end; ++source) {
        const char16_t unit = source->unicode();
        if (unit - 1U >= 0x7F)
            break;
        has_separator = has_separator || unit == separator;
        *target++ = static_cast<char>(unit);
    }
    return {source, has_separator};
}

} // namespace

delimited_row_writer::delimited_row_writer(char separator)
    : m_separator(static_cast<unsigned char>(separator))
{
}

void delimited_row_writer::append(const QString& cell)
{
    const QChar* const begin = cell.begin();
    const QChar* const end = cell.end();
    // Reserve three bytes more than the cell, for the quotes and the separator.
    char* target = room(static_cast<std::size_t>(end - begin) + 3);
    const plain_text plain = copy_plain(target, begin, end, m_separator);
    const std::ptrdiff_t size = plain.end - begin;
    // By contract: only the separator makes a cell quoted, and a quote in the cell isn't doubled.
    // Editors and spreadsheets take the text as it is.
    const bool quoted = plain.has_separator || std::find(plain.end, end, QChar(m_separator)) != end;
    if (quoted) {
        std::memmove(target + 1, target, static_cast<std::size_t>(size));
        *target++ = '"';
    }
    target += size;
    if (plain.end != end) {
        m_size = static_cast<std::size_t>(target - m_bytes.data());
        // By contract: a NUL in a cell also cuts off the closing quote and the separator. Each cell is
        // appended up to its first NUL.
        if (!append_until_nul(cell.midRef(static_cast<int>(size))))
            return;
        target = room(2);
    }
    if (quoted)
        *target++ = '"';
    *target++ = static_cast<char>(m_separator);
    m_size = static_cast<std::size_t>(target - m_bytes.data());
}

bool delimited_row_writer::append_number(const QVariant& cell)
{
    char* target = write_number(room(max_number_text + 1), cell);
    if (!target)
        return false;
    *target++ = static_cast<char>(m_separator);
    m_size = static_cast<std::size_t>(target - m_bytes.data());
    return true;
}

const char* delimited_row_writer::text(char last)
{
    char* const end = room(2);
    end[0] = last;
    end[1] = '\0';
    return m_bytes.data();
}

/// Returns the end of the text, with room for \p size more bytes.
char* delimited_row_writer::room(std::size_t size)
{
    if (m_bytes.size() - m_size < size)
        grow(size);
    return m_bytes.data() + m_size;
}

void delimited_row_writer::grow(std::size_t size)
{
    m_bytes.resize(2 * (m_size + size));
}

/// Appends any text up to its first NUL; returns whether that was all of it.
bool delimited_row_writer::append_until_nul(const QStringRef& text)
{
    const QByteArray bytes = text.toUtf8();
    const std::size_t size = std::strlen(bytes.constData());
    std::memcpy(room(size), bytes.constData(), size);
    m_size += size;
    return size == static_cast<std::size_t>(bytes.size());
}

} // namespace zvutil::impl
