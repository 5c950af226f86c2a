#pragma once

#include <QString>

#include <string>

/// Conversion of callers' text for the XML writers, by type of character.
namespace zvutil::impl {

/// The codec of the file; null for Qt's default, UTF-8.
template <typename C>
constexpr const char* xml_codec = nullptr;
template <>
inline constexpr const char* xml_codec<char16_t> = "UTF-16";
template <>
inline constexpr const char* xml_codec<char32_t> = "UTF-32";
template <>
inline constexpr const char* xml_codec<wchar_t> = "UTF-16";

/// Converts all of a name.
QString xml_name(const std::string& name);
QString xml_name(const std::u16string& name);
QString xml_name(const std::u32string& name);
QString xml_name(const std::wstring& name);

/// Converts \p length units, or up to the NUL if it is negative. Null gives a null text.
QString xml_text(const char* text, int length = -1);
QString xml_text(const char16_t* text, int length = -1);
QString xml_text(const char32_t* text, int length = -1);
QString xml_text(const wchar_t* text, int length = -1);

} // namespace zvutil::impl
