#pragma once

#include <zvutil/experimental/xml/xml_exception.h>
#include <zvutil/zvutil_export.h>

namespace zvutil::experimental::xml {

/// Somebody asked for an attribute that the element doesn't have.
class ZVUTIL_EXPORT attribute_not_found_xml_exception : public xml_exception
{
public:
    /// The message is \p name, the name that was asked for, and nothing else.
    explicit attribute_not_found_xml_exception(const char* name);
    attribute_not_found_xml_exception(const attribute_not_found_xml_exception& other) noexcept;
    ~attribute_not_found_xml_exception() override;
};

} // namespace zvutil::experimental::xml
