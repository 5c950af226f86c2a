#pragma once

#include <zvutil/exception.h>
#include <zvutil/zvutil_export.h>

namespace zvutil::experimental::xml {

/// The base of what reading XML throws. A malformed document isn't among it: that ends early, and
/// nothing is thrown.
class ZVUTIL_EXPORT xml_exception : public exception
{
public:
    /// The message is \p text.
    explicit xml_exception(const char* text);
    xml_exception(const xml_exception& other) noexcept;
    ~xml_exception() override;
};

} // namespace zvutil::experimental::xml
