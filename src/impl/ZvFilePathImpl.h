#pragma once

#include <zvutil/ZvFilePath.h>

#include <cstddef>
#include <memory>
#include <string_view>

namespace zvutil {

/// A path's text in 16-bit units, which lies behind this object in the same block of memory, so that a path costs
/// one allocation. A NUL follows it.
///
/// Debuggers read the address and the number of the units, which come first, as those of a string.
struct ZVUTIL_NO_EXPORT ZvFilePath::ZvFilePathImpl
{
public:
    using Owner = std::unique_ptr<ZvFilePathImpl>;

    /// Copies units, none of which is above 0xFFFF.
    static Owner ofUnits(std::wstring_view units);
    static Owner ofUtf16(std::u16string_view units);
    /// Makes 16-bit units of any wide text.
    static Owner ofWide(std::wstring_view text);
    /// Decodes text as `impl::decode_narrow` does, with what that throws.
    static Owner ofNarrow(std::string_view bytes);

    ZvFilePathImpl(const ZvFilePathImpl&) = delete;
    ZvFilePathImpl& operator=(const ZvFilePathImpl&) = delete;

    std::wstring_view text() const { return {m_units, m_size}; }
    wchar_t* units() { return m_units; }
    const wchar_t* units() const { return m_units; }

    /// Appends a path, which must not look into this one. Returns null, or what takes the place of this object if it
    /// has no room.
    Owner append(std::wstring_view added);

    // The size of the object isn't that of its block, which the global operator would be told.
    static void operator delete(void* memory) { ::operator delete(memory); }

private:
    explicit ZvFilePathImpl(std::size_t capacity);

    static Owner withCapacity(std::size_t capacity);
    void setSize(std::size_t size);
    bool appendAscii(std::string_view bytes);

    wchar_t* m_units;
    std::size_t m_size = 0;
    std::size_t m_capacity;
};

} // namespace zvutil
