#pragma once

#include <zvutil/exception.h>
#include <zvutil/zvutil_export.h>

#include <string>

namespace zvutil {

/// Somebody asked for a property that there isn't.
class ZVUTIL_EXPORT unknown_property_exception : public exception
{
public:
    /// The message is "unknown property: " followed by \p name.
    explicit unknown_property_exception(const std::string& name);
    unknown_property_exception(const unknown_property_exception& other) noexcept;
    ~unknown_property_exception() override;
};

} // namespace zvutil
