#pragma once

#include <zvutil/uri.h>

#include <QByteArray>
#include <QMetaType>

#include <algorithm>
#include <array>
#include <regex>
#include <string>
#include <string_view>

namespace zvtest {

/// All that a parse gives, to compare at once.
struct Split
{
    std::string text;
    std::array<std::string, 8>
        parts; ///< scheme, authority, userinfo, host, port, path, query, fragment
    zvutil::UriKind kind = zvutil::UriKind::None;

    bool operator==(const Split& other) const
    {
        return text == other.text && parts == other.parts && kind == other.kind;
    }
};

inline Split splitOf(const zvutil::uri& u)
{
    const std::string_view views[] = {u.scheme(), u.authority(), u.userinfo(), u.host(),
                                      u.port(),   u.path(),      u.query(),    u.fragment()};
    Split split{u.text(), {}, u.kind()};
    std::copy(std::begin(views), std::end(views), split.parts.begin());
    return split;
}

/// The rules by the standard library's engine: slow, and it overflows the stack on long texts.
inline Split splitByExpression(const std::string& argument)
{
    static const std::regex backslash("\\\\");
    static const std::regex blank(" ");
    static const std::regex expression(
        "(file|http|https):(?:\\/\\/((?:([^@ ]*)@)?([^:\\/ ]*)(?::(\\d*))?))?([^?# ]*)"
        "(?:\\?([^# ]*))?(?:#([^ ]*))?");
    Split split;
    split.text = std::regex_replace(std::regex_replace(argument, backslash, "/"), blank, "%20");
    std::cmatch match;
    if (std::regex_match(split.text.c_str(), match, expression)) {
        for (std::size_t i = 0; i < split.parts.size(); ++i)
            split.parts[i] = match[i + 1].str();
    }
    const std::string& scheme = split.parts[0];
    split.kind = scheme == "https" ? zvutil::UriKind::Https
        : scheme == "file"         ? zvutil::UriKind::File
        : scheme == "http"         ? zvutil::UriKind::Http
                                   : zvutil::UriKind::None;
    return split;
}

inline std::string readable(const Split& split)
{
    std::string result =
        "'" + split.text + "' kind " + std::to_string(static_cast<int>(split.kind));
    for (const std::string& part : split.parts)
        result += " [" + part + "]";
    return QByteArray::fromStdString(result).toPercentEncoding(" '[]:/@?#%").toStdString();
}

/// Empty if the library and the expression agree on \p text.
inline QByteArray disagreement(const std::string& text)
{
    const Split actual = splitOf(zvutil::uri(text));
    const Split expected = splitByExpression(text);
    if (actual == expected)
        return {};
    return QByteArray::fromStdString(readable(actual) + " instead of " + readable(expected));
}

} // namespace zvtest

Q_DECLARE_METATYPE(zvtest::Split)
