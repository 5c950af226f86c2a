#include <zvutil/experimental/xml/abstract_xml_document_reader.h>

namespace zvutil::experimental::xml {

abstract_xml_document_reader::~abstract_xml_document_reader() = default;

} // namespace zvutil::experimental::xml
