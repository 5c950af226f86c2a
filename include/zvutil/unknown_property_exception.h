#pragma once

#include <zvutil/exception.h>
#include <zvutil/zvutil_export.h>

#include <string>

namespace zvutil {

/// Thrown for a property that doesn't exist.
class ZVUTIL_EXPORT unknown_property_exception : public exception
{
public:
    /// The message is "unknown property: " followed by \p name.
    explicit unknown_property_exception(const std::string& name);
    /// A copy of \p other; allocates nothing.
    unknown_property_exception(const unknown_property_exception& other) noexcept;
    /// Frees the message unless a copy holds it.
    ~unknown_property_exception() override;
};

} // namespace zvutil
