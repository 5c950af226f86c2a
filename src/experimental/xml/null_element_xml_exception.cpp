#include <zvutil/experimental/xml/null_element_xml_exception.h>

namespace zvutil::experimental::xml {

null_element_xml_exception::null_element_xml_exception()
    : xml_exception("null element xml exception")
{
}

null_element_xml_exception::null_element_xml_exception(
    const null_element_xml_exception& other) noexcept = default;

null_element_xml_exception::~null_element_xml_exception() = default;

} // namespace zvutil::experimental::xml
