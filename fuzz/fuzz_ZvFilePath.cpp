// Any bytes as paths, through each constructor that decodes, and all lexical operations on two of them.

#include <zvutil/ZvFilePath.h>

#include <HostSupport/YString.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

using zvutil::ZvBasicString;
using zvutil::ZvFilePath;

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

/// The path that \p make gives, or nothing if it refuses its text.
template <typename Make>
std::optional<ZvFilePath> accepted(Make make)
{
    try {
        return make();
    } catch (const std::system_error& error) {
        require(error.code().value() != 0);
        return {};
    }
}

std::u32string unitsOf(std::string_view bytes)
{
    std::u32string units(bytes.size() / sizeof(char32_t), U'\0');
    if (!units.empty())
        std::memcpy(units.data(), bytes.data(), units.size() * sizeof(char32_t));
    return units;
}

/// Each byte as a unit, so that nothing is refused.
ZvFilePath widened(std::string_view bytes)
{
    std::wstring text;
    for (const char c : bytes)
        text += static_cast<wchar_t>(static_cast<unsigned char>(c));
    return {text.data(), text.size()};
}

void checkDecoders(const std::string& bytes)
{
    const auto narrow = accepted([&] { return ZvFilePath(std::string_view(bytes)); });
    const auto ended = accepted([&] { return ZvFilePath(bytes.c_str()); });
    const auto host = accepted([&] { return ZvFilePath(YString(bytes.c_str())); });
    require(ended.has_value() == host.has_value());
    require(!ended || *ended == *host);
    if (narrow) {
        require(narrow->size() <= bytes.size());
        require(ended.has_value());
        // What was accepted goes out as the same bytes, but for the separators.
        if (bytes.find_first_of(std::string_view("\\\0", 2)) == std::string::npos)
            require(narrow->toStdFilePath().string() == bytes);
    }
    const std::u32string units = unitsOf(bytes);
    const auto wide = accepted([&] { return ZvFilePath(ZvBasicString<char32_t>(units)); });
    require(!wide || wide->size() <= 2 * units.size());
}

void checkOrder(const ZvFilePath& a, const ZvFilePath& b)
{
    require(int(a < b) + int(b < a) + int(a == b) == 1);
    require((a != b) == !(a == b));
    ZvFilePath copy;
    copy = a;
    require(a == copy && !(a < copy));
}

void checkParts(const ZvFilePath& path)
{
    const ZvFilePath parent = path.parentPath();
    const ZvFilePath name = path.filename();
    require(parent.size() + name.size() <= path.size());
    require(path.extension().toStringType().size() <= name.size());
    require(!(path.isSchematicFile() && path.isScriptFile()));
    require(path.toStdFilePath().native().size() <= 3 * path.size());
    ZvFilePath preferred = path;
    require(preferred.makePreferred().size() == path.size());
}

void checkPair(const ZvFilePath& a, const ZvFilePath& b)
{
    checkOrder(a, b);
    ZvFilePath joined = a;
    joined /= b;
    require(joined.size() <= a.size() + b.size() + 1);
    require(!a.isDescendant(b) || b.size() > a.size());
    checkParts(joined);
    checkParts(a.lexicallyRelative(b));
    ZvFilePath twice = a;
    const ZvFilePath& same = twice;
    twice /= same;
    require(twice.size() <= 2 * a.size() + 1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    checkDecoders(bytes);
    // The first byte tells where the second path begins.
    const std::size_t middle = size == 0 ? 0 : data[0] % size;
    const ZvFilePath first = widened(std::string_view(bytes).substr(0, middle));
    const ZvFilePath second = widened(std::string_view(bytes).substr(middle));
    checkParts(first);
    checkPair(first, second);
    checkPair(second, first);
    return 0;
}
