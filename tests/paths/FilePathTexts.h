#pragma once

#include <zvutil/ZvFilePath.h>

#include <QTest>

#include <functional>
#include <string>
#include <system_error>

namespace zvtest {

inline zvutil::ZvFilePath path(const QString& text)
{
    // Unit by unit, so that unpaired surrogates stay.
    const std::wstring wide(text.utf16(), text.utf16() + text.size());
    return {wide.data(), wide.size()};
}

inline QString text(const zvutil::ZvFilePath& p)
{
    return p.toQString();
}

inline QString text(const zvutil::ZvBasicString<wchar_t>& t)
{
    return QString::fromStdWString(t.toStringType());
}

inline QString utf8(const char* t)
{
    return QString::fromUtf8(t);
}

/// The code that \p make fails with.
inline std::error_code failure(const std::function<void()>& make)
{
    try {
        make();
    } catch (const std::system_error& error) {
        return error.code();
    }
    return {};
}

} // namespace zvtest
