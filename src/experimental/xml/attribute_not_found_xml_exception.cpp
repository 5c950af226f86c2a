#include <zvutil/experimental/xml/attribute_not_found_xml_exception.h>

namespace zvutil::experimental::xml {

attribute_not_found_xml_exception::attribute_not_found_xml_exception(const char* name)
    : xml_exception(name)
{
}

attribute_not_found_xml_exception::attribute_not_found_xml_exception(
    const attribute_not_found_xml_exception& other) noexcept = default;

attribute_not_found_xml_exception::~attribute_not_found_xml_exception() = default;

} // namespace zvutil::experimental::xml
