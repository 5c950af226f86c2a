#include "impl/tables/row_text.h"

#include "impl/text/ascii_step.h"

#include <QByteArray>

#include <algorithm>
#include <cstring>

namespace zvutil::impl {

namespace {

#if defined(ZVUTIL_ASCII_STEP_SSE2)

/// Copies 8 units if all are ASCII and none is a NUL or \p other; returns whether it has.
bool copyStep(char* target, const QChar* source, char16_t other)
{
    const void* const from = source;
    const __m128i units = _mm_loadu_si128(static_cast<const __m128i*>(from));
    const __m128i below = _mm_sub_epi16(units, _mm_set1_epi16(1));
    const __m128i plain =
        _mm_cmpeq_epi16(_mm_subs_epu16(below, _mm_set1_epi16(0x7E)), _mm_setzero_si128());
    const __m128i others = _mm_cmpeq_epi16(units, _mm_set1_epi16(static_cast<short>(other)));
    if (_mm_movemask_epi8(_mm_andnot_si128(others, plain)) != 0xFFFF)
        return false;
    void* const to = target;
    _mm_storel_epi64(static_cast<__m128i*>(to), _mm_packus_epi16(units, units));
    return true;
}

#endif

/// Copies units up to the first that isn't ASCII, is a NUL or is \p other; returns a pointer to
/// that one and advances \p target.
const QChar* copyPlain(char*& target, const QChar* source, const QChar* end, char16_t other)
{
    char* out = target;
#if defined(ZVUTIL_ASCII_STEP_SSE2)
    for (; end - source >= 8 && copyStep(out, source, other); source += 8)
        out += 8;
#endif
    for (; source != end; ++source) {
        const char16_t unit = source->unicode();
        if (unit == other || unit - 1U >= 0x7F)
            break;
        *out++ = static_cast<char>(unit);
    }
    target = out;
    return source;
}

} // namespace

row_text::row_text(char separator)
    : m_separator(static_cast<unsigned char>(separator))
{
}

void row_text::append(const QString& cell)
{
    const QChar* const begin = cell.begin();
    const QChar* const end = cell.end();
    // Reserve one byte more than the cell, for the separator.
    char* target = room(static_cast<std::size_t>(end - begin) + 1);
    const QChar* const plainEnd = copyPlain(target, begin, end, m_separator);
    if (plainEnd != end) {
        appendOther(cell, plainEnd);
        return;
    }
    *target++ = static_cast<char>(m_separator);
    m_size = static_cast<std::size_t>(target - m_bytes.data());
}

/// Appends a cell that has a unit, at \p other, that isn't plain text.
void row_text::appendOther(const QString& cell, const QChar* other)
{
    const QChar* const end = cell.end();
    // By contract: only the separator makes a cell quoted, and a quote in the cell isn't doubled.
    // Editors and spreadsheets take the text as it is.
    const bool quoted = std::find(other, end, QChar(m_separator)) != end;
    // Reserve three bytes more, for the quotes and the separator.
    char* target = room(static_cast<std::size_t>(cell.size()) + 3);
    if (quoted)
        *target++ = '"';
    const QChar* const plainEnd = copyPlain(target, cell.begin(), end, u'\0');
    m_size = static_cast<std::size_t>(target - m_bytes.data());
    // By contract: a NUL in a cell also cuts off the closing quote and the separator. Each cell is
    // appended up to its first NUL.
    if (plainEnd != end && !appendUntilNul(cell.midRef(static_cast<int>(plainEnd - cell.begin()))))
        return;
    target = room(2);
    if (quoted)
        *target++ = '"';
    *target++ = static_cast<char>(m_separator);
    m_size = static_cast<std::size_t>(target - m_bytes.data());
}

const char* row_text::text(char last)
{
    char* const end = room(2);
    end[0] = last;
    end[1] = '\0';
    return m_bytes.data();
}

/// Returns the end of the text, with room for \p size more bytes.
char* row_text::room(std::size_t size)
{
    if (m_bytes.size() - m_size < size)
        grow(size);
    return m_bytes.data() + m_size;
}

void row_text::grow(std::size_t size)
{
    m_bytes.resize(2 * (m_size + size));
}

/// Appends any text up to its first NUL; returns whether that was all of it.
bool row_text::appendUntilNul(const QStringRef& text)
{
    const QByteArray bytes = text.toUtf8();
    const std::size_t size = std::strlen(bytes.constData());
    std::memcpy(room(size), bytes.constData(), size);
    m_size += size;
    return size == static_cast<std::size_t>(bytes.size());
}

} // namespace zvutil::impl
