#pragma once

#include <zvutil/exception.h>
#include <zvutil/zvutil_export.h>

namespace zvutil::experimental::xml {

/// The base of the exceptions that reading XML throws. A malformed document throws none: that
/// document ends early.
/// @since 0.1 @ingroup xml
class ZVUTIL_EXPORT xml_exception : public exception
{
public:
    /// Makes an exception with a message.
    /// @param text the message; must not be null
    explicit xml_exception(const char* text);
    /// A copy with the same message; allocates nothing.
    /// @param other the exception to copy
    xml_exception(const xml_exception& other) noexcept;
    /// Frees the message unless a copy holds it.
    ~xml_exception() override;
};

} // namespace zvutil::experimental::xml
