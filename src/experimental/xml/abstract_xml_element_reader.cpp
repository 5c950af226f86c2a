#include <zvutil/experimental/xml/abstract_xml_element_reader.h>

namespace zvutil::experimental::xml {

abstract_xml_element_reader::~abstract_xml_element_reader() = default;

} // namespace zvutil::experimental::xml
