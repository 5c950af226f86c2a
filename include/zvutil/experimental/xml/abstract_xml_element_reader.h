#pragma once

#include <zvutil/experimental/unique_destroyable_ptr.h>
#include <zvutil/zvutil_export.h>

namespace zvutil::experimental::xml {

/// Reads one element: its name and attributes at any time, and then either its text or its children
/// one after the other.
///
/// A reader that is destroyed skips what is left of its element, so that its parent goes on with the
/// next sibling. A caller may leave any element at any point. Skipping takes time linear in what is
/// skipped and a stack of fixed depth.
///
/// Once an element has been read to its end its reader is null: `name` and `attribute` go on
/// working, `text` and `next_child` throw `null_element_xml_exception`. That happens by `text`, by
/// the `next_child` that returns null, and when the parent goes on while the reader is still held.
/// So of each level only the reader that was handed out last can be read on.
///
/// Texts are UTF-8 and end in a NUL. They stay valid until the reader is destroyed, also when it is
/// null.
class ZVUTIL_EXPORT abstract_xml_element_reader
{
public:
    abstract_xml_element_reader() = default;
    abstract_xml_element_reader(const abstract_xml_element_reader&) = delete;
    abstract_xml_element_reader& operator=(const abstract_xml_element_reader&) = delete;
    virtual ~abstract_xml_element_reader();

    /// Deletes this object. `unique_destroyable_ptr` calls it, and nobody else needs to.
    virtual void destroy() = 0;

    /// The name without its namespace prefix.
    virtual const char* name() const = 0;

    /// The value of the attribute with this name, compared byte for byte and without namespace
    /// prefix. Of several that differ only in their prefix it is the last one's. Throws
    /// `attribute_not_found_xml_exception` if there is none; who wants an optional attribute
    /// catches that.
    virtual const char* attribute(const char* name) const = 0;

    /// Reads to the end tag and returns the character data. This reader is null afterwards.
    ///
    /// An element that has child elements gives the text before the first of them, and all further
    /// reading of the document ends there. Once a child has been handed out, the text is empty,
    /// nothing is read, and the parent finds the remaining children of this element as its own.
    virtual const char* text() = 0;

    /// The next child element, behind any text and comments. Null if there is none, and then this
    /// reader is null as well. A child that is still held becomes null before.
    virtual unique_destroyable_ptr<abstract_xml_element_reader> next_child() = 0;
};

} // namespace zvutil::experimental::xml
