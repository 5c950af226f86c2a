#pragma once

#include "impl/ZvAbstractStringImpl.h"

#include <zvutil/experimental/string/case_insensitive_char_traits.h>

#include <string>
#include <type_traits>

namespace libzvutil {

/// The implementation of `ZvString`, for `char`, whose comparison ignores case, and of `ZvWString`,
/// for `wchar_t`.
template <typename C>
class ZvBasicString final : public ZvAbstractString::Impl
{
public:
    using Traits =
        std::conditional_t<std::is_same_v<C, char>,
                           zvutil::experimental::string::case_insensitive_char_traits<char>,
                           std::char_traits<C>>;

    void resize(std::size_t size) override { text.resize(size); }
    std::size_t size() const override { return text.size(); }

    std::basic_string<C, Traits> text;
};

} // namespace libzvutil
