#pragma once

#include "support/Conversions.h"

#include <QTest>

#include <string>

namespace zvtest {

/// A 7-bit text in the units of `C`, or units that are given by their values.
template <typename C, typename Units>
std::basic_string<C> units(const Units& values)
{
    std::basic_string<C> result;
    for (const auto value : values)
        result += static_cast<C>(value);
    return result;
}

/// Calls \p test with a unit of the type that is called \p name.
template <typename Test>
void forType(const QByteArray& name, Test test)
{
    if (name == "char")
        test(char()); // NOLINT(bugprone-branch-clone): the types differ
    else if (name == "char16_t")
        test(char16_t());
    else if (name == "char32_t")
        test(char32_t());
    else if (name == "wchar_t")
        test(wchar_t());
    else
        QFAIL("no such type");
}

} // namespace zvtest
