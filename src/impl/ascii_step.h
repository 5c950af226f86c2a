#pragma once

#include <cstddef>

#if defined(__SSE2__) || defined(_M_X64)
#define ZVUTIL_ASCII_STEP_SSE2
#include <emmintrin.h>
#endif

namespace zvutil::impl {

/// How many units `copy_ascii_step` looks at.
constexpr std::ptrdiff_t ascii_step = 16;

#if defined(ZVUTIL_ASCII_STEP_SSE2)

/// 16 units of any width that are all below 0x80, as bytes; false if they aren't.
template <typename Source>
bool load_ascii(const Source* source, __m128i& bytes)
{
    // How units lie in a register is all that their width decides here.
    static_assert(sizeof(Source) == 1 || sizeof(Source) == 2 || sizeof(Source) == 4);
    const auto load = [source](std::size_t index) {
        const void* const at = source + index * (sizeof(__m128i) / sizeof(Source));
        return _mm_loadu_si128(static_cast<const __m128i*>(at));
    };
    if constexpr (sizeof(Source) == 1) {
        bytes = load(0);
        return _mm_movemask_epi8(bytes) == 0;
    } else {
        __m128i low = load(0);
        __m128i high = load(1);
        __m128i rest = _mm_or_si128(low, high);
        __m128i beyond = _mm_set1_epi16(~0x7F);
        if constexpr (sizeof(Source) == 4) {
            const __m128i third = load(2);
            const __m128i fourth = load(3);
            rest = _mm_or_si128(rest, _mm_or_si128(third, fourth));
            beyond = _mm_set1_epi32(~0x7F);
            low = _mm_packs_epi32(low, high);
            high = _mm_packs_epi32(third, fourth);
        }
        bytes = _mm_packus_epi16(low, high);
        const __m128i none = _mm_cmpeq_epi8(_mm_and_si128(rest, beyond), _mm_setzero_si128());
        return _mm_movemask_epi8(none) == 0xFFFF;
    }
}

/// Writes 16 bytes as units of any width.
template <typename Target>
void store_ascii(Target* target, __m128i bytes)
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

/// Copies 16 units if all of them are below 0x80; else does nothing and returns false.
template <typename Target, typename Source>
bool copy_ascii_step(Target* target, const Source* source)
{
    __m128i bytes;
    if (!load_ascii(source, bytes))
        return false;
    store_ascii(target, bytes);
    return true;
}

#else

/// There is no quick way here: leaves all units to the caller.
template <typename Target, typename Source>
bool copy_ascii_step(Target* /*target*/, const Source* /*source*/)
{
    return false;
}

#endif

} // namespace zvutil::impl
