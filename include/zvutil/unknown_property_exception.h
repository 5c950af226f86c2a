#pragma once

#include <zvutil/exception.h>
#include <zvutil/zvutil_export.h>

#include <string>

namespace zvutil {

/// Thrown for a property that doesn't exist.
/// @since 0.1 @ingroup basics
class ZVUTIL_EXPORT unknown_property_exception : public exception
{
public:
    /// The message is "unknown property: " followed by the name.
    /// @param name the property's
    explicit unknown_property_exception(const std::string& name);
    /// A copy with the same message; allocates nothing.
    /// @param other the exception to copy
    unknown_property_exception(const unknown_property_exception& other) noexcept;
    /// Frees the message unless a copy holds it.
    ~unknown_property_exception() override;
};

} // namespace zvutil
