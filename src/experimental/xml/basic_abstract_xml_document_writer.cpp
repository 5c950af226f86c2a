#include <zvutil/experimental/xml/basic_abstract_xml_document_writer.h>

namespace zvutil::experimental::xml {

template <typename C>
basic_abstract_xml_document_writer<C>::basic_abstract_xml_document_writer() = default;

template <typename C>
basic_abstract_xml_document_writer<C>::~basic_abstract_xml_document_writer() = default;

template class ZVUTIL_TEMPLATE_DEFINE basic_abstract_xml_document_writer<char>;
template class ZVUTIL_TEMPLATE_DEFINE basic_abstract_xml_document_writer<char16_t>;
template class ZVUTIL_TEMPLATE_DEFINE basic_abstract_xml_document_writer<char32_t>;
template class ZVUTIL_TEMPLATE_DEFINE basic_abstract_xml_document_writer<wchar_t>;

} // namespace zvutil::experimental::xml
