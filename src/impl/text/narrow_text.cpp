#include "impl/text/narrow_text.h"

#include "impl/text/utf8.h"

#include <cerrno>
#include <system_error>

#if defined(_WIN32)
#include <locale.h>
#include <windows.h>
#endif

namespace zvutil::impl {

namespace {

void checkSize(std::string_view bytes)
{
    // Refuse such sizes on every platform, since the decoder of Windows counts in an int.
    if (bytes.size() >= 0x80000000U)
        throw std::system_error(EINVAL, std::generic_category());
}

#if defined(_WIN32)

[[noreturn]] void throwLastError()
{
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
}

std::wstring decode(std::string_view bytes, unsigned int codePage)
{
    checkSize(bytes);
    if (bytes.empty())
        return {};
    const int size = static_cast<int>(bytes.size());
    const int units =
        MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(), size, nullptr, 0);
    if (units == 0)
        throwLastError();
    std::wstring text(static_cast<std::size_t>(units), L'\0');
    if (MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(), size, text.data(), units)
        == 0)
        throwLastError();
    return text;
}

unsigned int fileCodePage()
{
    if (___lc_codepage_func() == CP_UTF8)
        return CP_UTF8;
    return AreFileApisANSI() ? CP_ACP : CP_OEMCP;
}

#endif

} // namespace

#if defined(_WIN32)

std::wstring decode_narrow(std::string_view bytes)
{
    return decode(bytes, fileCodePage());
}

std::wstring decode_utf8_text(std::string_view bytes)
{
    return decode(bytes, CP_UTF8);
}

#else

std::wstring decode_narrow(std::string_view bytes)
{
    return decode_utf8_text(bytes);
}

std::wstring decode_utf8_text(std::string_view bytes)
{
    checkSize(bytes);
    return decode_utf8<wchar_t>(bytes);
}

#endif

} // namespace zvutil::impl
