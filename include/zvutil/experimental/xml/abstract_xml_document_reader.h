#pragma once

#include <zvutil/experimental/unique_destroyable_ptr.h>
#include <zvutil/experimental/xml/abstract_xml_element_reader.h>
#include <zvutil/zvutil_export.h>

namespace zvutil::experimental::xml {

/// Reads a document once, from its beginning to its end.
///
/// Nothing tells that a document is malformed or can't be read: it ends where the error is, and has
/// no element at all if there is nothing before it. Bytes that are invalid in the encoding end it
/// earlier: the whole block of some kilobytes that they are read with is lost, and so all of a short
/// document. A document and its elements belong to one thread
/// at a time.
class ZVUTIL_EXPORT abstract_xml_document_reader
{
public:
    abstract_xml_document_reader() = default;
    abstract_xml_document_reader(const abstract_xml_document_reader&) = delete;
    abstract_xml_document_reader& operator=(const abstract_xml_document_reader&) = delete;
    virtual ~abstract_xml_document_reader();

    /// Moves on to the next start tag, however deep it lies. Null at the end of the document.
    ///
    /// It takes no heed of element readers that are still there; those then stand elsewhere in the
    /// document than they know, and read what comes next as their own children.
    virtual unique_destroyable_ptr<abstract_xml_element_reader> next_element() = 0;

    /// The root, once: null if the document has none or can't be read, and whenever more than its
    /// start has been read already.
    virtual unique_destroyable_ptr<abstract_xml_element_reader> root_element() = 0;
};

} // namespace zvutil::experimental::xml
