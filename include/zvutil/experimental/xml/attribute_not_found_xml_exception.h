#pragma once

#include <zvutil/experimental/xml/xml_exception.h>
#include <zvutil/zvutil_export.h>

namespace zvutil::experimental::xml {

/// Thrown for an attribute that the element doesn't have.
/// @since 0.1 @ingroup xml
class ZVUTIL_EXPORT attribute_not_found_xml_exception : public xml_exception
{
public:
    /// The message is the name and nothing else.
    /// @param name the missing attribute's; must not be null
    explicit attribute_not_found_xml_exception(const char* name);
    /// A copy with the same message; allocates nothing.
    /// @param other the exception to copy
    attribute_not_found_xml_exception(const attribute_not_found_xml_exception& other) noexcept;
    /// Frees the message unless a copy holds it.
    ~attribute_not_found_xml_exception() override;
};

} // namespace zvutil::experimental::xml
