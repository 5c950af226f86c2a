#pragma once

#include <zvutil/experimental/unique_destroyable_ptr.h>
#include <zvutil/experimental/xml/basic_abstract_xml_element_writer.h>
#include <zvutil/impl/template_export.h>

namespace zvutil::experimental::xml {

/// Writes a document from its beginning to its end. The library has writers for `char` (UTF-8),
/// `char16_t`, `char32_t` and `wchar_t` (UTF-16).
///
/// Failures aren't reported here but by the owner of the medium. A document and its elements belong
/// to one thread at a time.
/// @since 0.1 @ingroup xml
template <typename C>
class basic_abstract_xml_document_writer
{
public:
    /// Makes a writer; only subclasses can call this.
    basic_abstract_xml_document_writer();
    /// A document is written once, by one writer.
    basic_abstract_xml_document_writer(const basic_abstract_xml_document_writer&) = delete;
    /// A document is written once, by one writer.
    basic_abstract_xml_document_writer&
    operator=(const basic_abstract_xml_document_writer&) = delete;
    /// Writes the end tags of elements that are still open.
    virtual ~basic_abstract_xml_document_writer();

    /// Opens an element at the top level.
    /// @param name ends in a NUL; if it is null, `std::logic_error` is thrown and nothing written
    /// @return the element's writer; never null
    virtual unique_destroyable_ptr<basic_abstract_xml_element_writer<C>>
    root_element(const C* name) = 0;

    /// Gives the document up, where the medium supports that. More can be written, and is lost.
    virtual void cancel_writing() = 0;
};

extern template class ZVUTIL_TEMPLATE_DECLARE basic_abstract_xml_document_writer<char>;
extern template class ZVUTIL_TEMPLATE_DECLARE basic_abstract_xml_document_writer<char16_t>;
extern template class ZVUTIL_TEMPLATE_DECLARE basic_abstract_xml_document_writer<char32_t>;
extern template class ZVUTIL_TEMPLATE_DECLARE basic_abstract_xml_document_writer<wchar_t>;

} // namespace zvutil::experimental::xml
