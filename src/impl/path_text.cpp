#include "impl/path_text.h"

#include "impl/utf8.h"

#include <type_traits>

namespace zvutil::impl {

namespace {

template <typename Native>
std::u16string unitsOf(const Native& text)
{
    if constexpr (std::is_same_v<typename Native::value_type, char>)
        return decode_utf8(text);
    else
        return {text.begin(), text.end()};
}

} // namespace

std::u16string path_text(const std::filesystem::path& path)
{
    return unitsOf(path.native());
}

} // namespace zvutil::impl
