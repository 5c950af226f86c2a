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

QString file_name(const std::wstring& text)
{
    QString name = QString::fromStdWString(text);
    if constexpr (pathsAreBytes)
        name.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return name;
}

} // namespace zvutil::impl
