#include "impl/ZvFilePathImpl.h"

#include "impl/paths/path_rules.h"
#include "impl/text/ascii_step.h"
#include "impl/text/narrow_text.h"
#include "impl/text/wide_text.h"

#include <algorithm>
#include <new>

namespace zvutil {

ZvFilePath::ZvFilePathImpl::ZvFilePathImpl(std::size_t capacity)
    : m_units(static_cast<wchar_t*>(static_cast<void*>(this + 1)))
    , m_capacity(capacity)
{
}

/// Makes an object with an empty text. Throws `std::bad_alloc`.
auto ZvFilePath::ZvFilePathImpl::withCapacity(std::size_t capacity) -> Owner
{
    void* const memory = ::operator new(sizeof(ZvFilePathImpl) + (capacity + 1) * sizeof(wchar_t));
    return Owner(new (memory) ZvFilePathImpl(capacity));
}

/// Ends the text after units that have been written.
void ZvFilePath::ZvFilePathImpl::setSize(std::size_t size)
{
    m_size = size;
    m_units[size] = L'\0';
}

auto ZvFilePath::ZvFilePathImpl::ofUnits(std::wstring_view units) -> Owner
{
    Owner result = withCapacity(units.size());
    std::copy(units.begin(), units.end(), result->m_units);
    result->setSize(units.size());
    return result;
}

auto ZvFilePath::ZvFilePathImpl::ofUtf16(std::u16string_view units) -> Owner
{
    Owner result = withCapacity(units.size());
    std::copy(units.begin(), units.end(), result->m_units);
    result->setSize(units.size());
    return result;
}

auto ZvFilePath::ZvFilePathImpl::ofWide(std::wstring_view text) -> Owner
{
    return impl::is_in_wide_units(text) ? ofUnits(text) : ofUnits(impl::wide_text(text));
}

auto ZvFilePath::ZvFilePathImpl::ofNarrow(std::string_view bytes) -> Owner
{
    // Each encoding of file names has ASCII in it. The decoder refuses larger texts.
    if (bytes.size() < 0x80000000U) {
        Owner result = withCapacity(bytes.size());
        if (result->appendAscii(bytes))
            return result;
    }
    return ofUnits(impl::decode_narrow(bytes));
}

/// Fills an empty text with bytes for which it has room. Returns false if not all of them are ASCII.
bool ZvFilePath::ZvFilePathImpl::appendAscii(std::string_view bytes)
{
    const char* source = bytes.data();
    const char* const end = source + bytes.size();
    wchar_t* target = m_units;
    for (; end - source >= impl::ascii_step; source += impl::ascii_step) {
        if (impl::copy_ascii_step(target, source) < impl::ascii_step)
            return false;
        target += impl::ascii_step;
    }
    for (; source != end; ++source) {
        if (!impl::is_ascii(*source))
            return false;
        *target++ = static_cast<wchar_t>(*source);
    }
    setSize(bytes.size());
    return true;
}

auto ZvFilePath::ZvFilePathImpl::append(std::wstring_view added) -> Owner
{
    const impl::path_rules::joined_path joined = impl::path_rules::join(text(), added);
    const std::size_t size = joined.kept + (joined.is_separated ? 1 : 0) + joined.added.size();
    Owner larger;
    ZvFilePathImpl* target = this;
    if (size > m_capacity) {
        larger = withCapacity(std::max(size, 2 * m_capacity));
        std::copy_n(m_units, joined.kept, larger->m_units);
        target = larger.get();
    }
    wchar_t* end = target->m_units + joined.kept;
    if (joined.is_separated)
        *end++ = impl::path_rules::preferred_separator;
    std::copy(joined.added.begin(), joined.added.end(), end);
    target->setSize(size);
    return larger;
}

} // namespace zvutil
