#pragma once

#include <zvutil/experimental/xml/xml_exception.h>
#include <zvutil/zvutil_export.h>

namespace zvutil::experimental::xml {

/// Thrown for reading on in an element that has been read to its end.
/// @since 0.1 @ingroup xml
class ZVUTIL_EXPORT null_element_xml_exception : public xml_exception
{
public:
    /// The message is always "null element xml exception".
    null_element_xml_exception();
    /// A copy with the same message; allocates nothing.
    /// @param other the exception to copy
    null_element_xml_exception(const null_element_xml_exception& other) noexcept;
    /// Frees the message unless a copy holds it.
    ~null_element_xml_exception() override;
};

} // namespace zvutil::experimental::xml
