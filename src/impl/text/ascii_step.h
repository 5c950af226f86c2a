#pragma once

#include <cstddef>

#if defined(__SSE2__) || defined(_M_X64)
#define ZVUTIL_ASCII_STEP_SSE2
#include <emmintrin.h>
#if defined(_MSC_VER)
#include <intrin.h>
#endif
#endif

namespace zvutil::impl {

/// The number of units that `copy_ascii_step` reads.
constexpr std::ptrdiff_t ascii_step = 16;

/// Whether \p unit, of any width, is below 0x80.
template <typename Source>
bool is_ascii(Source unit)
{
    return (static_cast<char32_t>(unit) & ~char32_t(0x7F)) == 0;
}

#if defined(ZVUTIL_ASCII_STEP_SSE2)

/// Loads 16 units as bytes. A unit that isn't ASCII sets its bit in \p others, and its byte is NUL or
/// isn't ASCII either.
template <typename Source>
__m128i load_step(const Source* source, unsigned& others)
{
    // Only the width of the units decides how they lie in a register.
    static_assert(sizeof(Source) == 1 || sizeof(Source) == 2 || sizeof(Source) == 4);
    const auto load = [source](std::size_t index) {
        const void* const at = source + index * (sizeof(__m128i) / sizeof(Source));
        return _mm_loadu_si128(static_cast<const __m128i*>(at));
    };
    if constexpr (sizeof(Source) == 1) {
        const __m128i bytes = load(0);
        others = static_cast<unsigned>(_mm_movemask_epi8(bytes));
        return bytes;
    } else {
        __m128i low = load(0);
        __m128i high = load(1);
        if constexpr (sizeof(Source) == 4) {
            low = _mm_packs_epi32(low, high);
            high = _mm_packs_epi32(load(2), load(3));
        }
        // Saturation marks units that aren't ASCII: the unsigned pack gives a byte above 0x7F for
        // units up to 0x7FFF, the signed pack a negative one for units above, which are negative
        // here.
        const __m128i bytes = _mm_packus_epi16(low, high);
        const __m128i negative = _mm_packs_epi16(low, high);
        others = static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(bytes, negative)));
        return bytes;
    }
}

/// Writes 16 bytes as units of any width.
template <typename Target>
void store_step(Target* target, __m128i bytes)
{
    static_assert(sizeof(Target) == 1 || sizeof(Target) == 2 || sizeof(Target) == 4);
    const auto store = [target](std::size_t index, __m128i value) {
        void* const at = target + index * (sizeof(__m128i) / sizeof(Target));
        _mm_storeu_si128(static_cast<__m128i*>(at), value);
    };
    const __m128i zero = _mm_setzero_si128();
    if constexpr (sizeof(Target) == 1) {
        store(0, bytes);
    } else {
        const __m128i low = _mm_unpacklo_epi8(bytes, zero);
        const __m128i high = _mm_unpackhi_epi8(bytes, zero);
        if constexpr (sizeof(Target) == 2) {
            store(0, low);
            store(1, high);
        } else {
            store(0, _mm_unpacklo_epi16(low, zero));
            store(1, _mm_unpackhi_epi16(low, zero));
            store(2, _mm_unpacklo_epi16(high, zero));
            store(3, _mm_unpackhi_epi16(high, zero));
        }
    }
}

inline std::ptrdiff_t lowest_bit(unsigned bits)
{
#if defined(_MSC_VER)
    unsigned long index = 0;
    _BitScanForward(&index, bits);
    return static_cast<std::ptrdiff_t>(index);
#else
    return __builtin_ctz(bits);
#endif
}

inline std::ptrdiff_t highest_bit(unsigned bits)
{
#if defined(_MSC_VER)
    unsigned long index = 0;
    _BitScanReverse(&index, bits);
    return static_cast<std::ptrdiff_t>(index);
#else
    return 31 - __builtin_clz(bits);
#endif
}

/// Copies up to 16 units, up to the first that isn't ASCII, and returns their number. There must be
/// 16 to read and space for 16; units after the copied ones may be overwritten.
template <typename Target, typename Source>
std::ptrdiff_t copy_ascii_step(Target* target, const Source* source)
{
    unsigned others = 0;
    store_step(target, load_step(source, others));
    return others == 0 ? ascii_step : lowest_bit(others);
}

#else

/// The same without vector instructions.
template <typename Target, typename Source>
std::ptrdiff_t copy_ascii_step(Target* target, const Source* source)
{
    std::ptrdiff_t count = 0;
    for (; count < ascii_step && is_ascii(source[count]); ++count)
        target[count] = static_cast<Target>(source[count]);
    return count;
}

#endif

/// Copies ASCII in steps of 16 units as long as there are so many, and returns the number of units that it has copied.
/// It may stop at a unit that isn't ASCII, and there must be space for all units.
template <typename Target, typename Source>
std::ptrdiff_t copy_ascii_run(Target* target, const Source* source, const Source* end)
{
    const Source* const begin = source;
    while (end - source >= ascii_step) {
        const std::ptrdiff_t plain = copy_ascii_step(target, source);
        source += plain;
        if (plain < ascii_step)
            break;
        target += ascii_step;
    }
    return source - begin;
}

} // namespace zvutil::impl
