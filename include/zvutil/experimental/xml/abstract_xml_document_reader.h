#pragma once

#include <zvutil/experimental/unique_destroyable_ptr.h>
#include <zvutil/experimental/xml/abstract_xml_element_reader.h>
#include <zvutil/zvutil_export.h>

namespace zvutil::experimental::xml {

/// Reads a document once, from its beginning to its end.
///
/// A malformed or unreadable document isn't reported: the document ends where the error is, and has
/// no element at all if nothing comes before the error. Bytes that are invalid in the encoding end
/// it earlier: the whole block of some kilobytes that they are read with is lost, and so all of a
/// short document. A document and its elements belong to one thread at a time.
/// @since 0.1 @ingroup xml
class ZVUTIL_EXPORT abstract_xml_document_reader
{
public:
    /// Makes a reader; only subclasses can call this.
    abstract_xml_document_reader() = default;
    /// A document is read once, by one reader.
    abstract_xml_document_reader(const abstract_xml_document_reader&) = delete;
    /// A document is read once, by one reader.
    abstract_xml_document_reader& operator=(const abstract_xml_document_reader&) = delete;
    /// Element readers that still exist can be read on and keep the file open.
    virtual ~abstract_xml_document_reader();

    /// Moves on to the next start tag, at any depth.
    ///
    /// Element readers that still exist aren't updated: they read whatever follows in the document
    /// as their own children.
    /// @return the tag's element; null at the end of the document
    virtual unique_destroyable_ptr<abstract_xml_element_reader> next_element() = 0;

    /// @return the root element, on the first call; null if the document has none or can't be read,
    /// and whenever more than the start of the document has been read already.
    virtual unique_destroyable_ptr<abstract_xml_element_reader> root_element() = 0;
};

} // namespace zvutil::experimental::xml
