#include "impl/paths/path_text.h"

#include "impl/text/utf8.h"
#include "impl/text/wide_text.h"

#include <QChar>

#include <algorithm>
#include <type_traits>

namespace zvutil::impl {

namespace {

constexpr bool paths_are_bytes = std::is_same_v<std::filesystem::path::value_type, char>;

template <typename Native>
std::wstring text_of(const Native& native)
{
    if constexpr (paths_are_bytes)
        return decode_utf8<wchar_t>(native);
    else
        return native;
}

template <typename Native>
std::wstring any_text_of(const Native& native)
{
    if constexpr (paths_are_bytes)
        return decode_any_utf8<wchar_t>(native);
    else
        return native;
}

template <typename Native>
Native native_of(std::wstring_view text)
{
    if constexpr (paths_are_bytes) {
        Native native;
        append_utf16_as_utf8(native, text);
        std::replace(native.begin(), native.end(), '\\', '/');
        return native;
    } else {
        return Native(text);
    }
}

/// Where `/` is the only separator each `\` becomes one. Elsewhere takes away what lifts the limits of a path: Qt adds it
/// where a path is long, and saves no file whose path has it.
void make_form_of_qt(QString& name)
{
    if constexpr (paths_are_bytes) {
        name.replace(u'\\', u'/');
    } else {
        const QLatin1String server(R"(\\?\UNC\)");
        const QLatin1String drive(R"(\\?\)");
        if (name.startsWith(server, Qt::CaseInsensitive))
            name.replace(0, server.size(), QLatin1String(R"(\\)"));
        else if (name.startsWith(drive)
                 && name.midRef(drive.size() + 1, 2) == QLatin1String(R"(:\)"))
            name.remove(0, drive.size());
    }
}

} // namespace

std::wstring path_text(const std::filesystem::path& path)
{
    return text_of(path.native());
}

std::wstring any_path_text(const std::filesystem::path& path)
{
    return any_text_of(path.native());
}

std::filesystem::path native_path(std::wstring_view text)
{
    return native_of<std::filesystem::path::string_type>(text);
}

QString native_file_name(std::wstring_view text)
{
    std::wstring units;
    append_wide_units(units, text);
    QString name(static_cast<int>(units.size()), Qt::Uninitialized);
    // Copy unit by unit: Qt's conversions would drop a byte order mark, or swap the bytes by it.
    std::transform(units.begin(), units.end(), name.begin(),
                   [](wchar_t unit) { return QChar(static_cast<char16_t>(unit)); });
    make_form_of_qt(name);
    return name;
}

} // namespace zvutil::impl
