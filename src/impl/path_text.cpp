#include "impl/path_text.h"

#include "impl/utf8.h"

#include <algorithm>
#include <type_traits>

namespace zvutil::impl {

namespace {

constexpr bool pathsAreBytes = std::is_same_v<std::filesystem::path::value_type, char>;

template <typename Native>
std::wstring textOf(const Native& native)
{
    if constexpr (pathsAreBytes)
        return decode_utf8<wchar_t>(native);
    else
        return native;
}

template <typename Native>
Native nativeOf(std::wstring_view text)
{
    if constexpr (pathsAreBytes) {
        Native native;
        append_utf16_as_utf8(native, text);
        std::replace(native.begin(), native.end(), '\\', '/');
        return native;
    } else {
        return Native(text);
    }
}

} // namespace

std::wstring path_text(const std::filesystem::path& path)
{
    return textOf(path.native());
}

std::filesystem::path native_path(std::wstring_view text)
{
    return nativeOf<std::filesystem::path::string_type>(text);
}

QString native_file_name(std::wstring_view text)
{
    QString name = QString::fromWCharArray(text.data(), static_cast<int>(text.size()));
    if constexpr (pathsAreBytes)
        name.replace(u'\\', u'/');
    return name;
}

} // namespace zvutil::impl
