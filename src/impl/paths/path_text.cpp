#include "impl/paths/path_text.h"

#include "impl/text/utf8.h"
#include "impl/text/wide_text.h"

#include <QChar>

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
std::wstring anyTextOf(const Native& native)
{
    if constexpr (pathsAreBytes)
        return decode_any_utf8<wchar_t>(native);
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

std::wstring any_path_text(const std::filesystem::path& path)
{
    return anyTextOf(path.native());
}

std::filesystem::path native_path(std::wstring_view text)
{
    return nativeOf<std::filesystem::path::string_type>(text);
}

QString native_file_name(std::wstring_view text)
{
    std::wstring units;
    append_wide_units(units, text);
    QString name(static_cast<int>(units.size()), Qt::Uninitialized);
    // Copy unit by unit: Qt's conversions would drop a byte order mark, or swap the bytes by it.
    std::transform(units.begin(), units.end(), name.begin(),
                   [](wchar_t unit) { return QChar(static_cast<char16_t>(unit)); });
    if constexpr (pathsAreBytes)
        name.replace(u'\\', u'/');
    return name;
}

} // namespace zvutil::impl
