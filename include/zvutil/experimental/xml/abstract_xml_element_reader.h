#pragma once

#include <zvutil/experimental/unique_destroyable_ptr.h>
#include <zvutil/zvutil_export.h>

namespace zvutil::experimental::xml {

/// Reads one element: its name and attributes at any time, and then either its text or its children
/// one after the other.
///
/// A reader that is destroyed skips what is left of its element, so that its parent continues with
/// the next sibling. A caller may leave any element at any point. Skipping takes time linear in
/// what is skipped and a stack of fixed depth.
///
/// Once an element has been read to its end its reader is null: `name` and `attribute` still work,
/// `text` and `next_child` throw `null_element_xml_exception`. A reader becomes null by `text`, by
/// the `next_child` that returns null, and when the parent reads on while the reader still exists.
/// So of each level only the reader that was returned last can be read on.
///
/// Texts are UTF-8 and end in a NUL. They stay valid until the reader is destroyed, also when it is
/// null.
/// @since 0.1 @ingroup xml
class ZVUTIL_EXPORT abstract_xml_element_reader
{
public:
    /// Makes a reader; only subclasses can call this.
    abstract_xml_element_reader() = default;
    /// An element is read once, by one reader.
    abstract_xml_element_reader(const abstract_xml_element_reader&) = delete;
    /// An element is read once, by one reader.
    abstract_xml_element_reader& operator=(const abstract_xml_element_reader&) = delete;
    /// Skips what is left of the element.
    virtual ~abstract_xml_element_reader();

    /// Deletes this object. Only `unique_destroyable_ptr` needs to call it.
    virtual void destroy() = 0;

    /// @return the element's name without its namespace prefix.
    virtual const char* name() const = 0;

    /// @return the value of the attribute with this name, compared byte for byte and without
    /// namespace prefix. Of several that differ only in their prefix it is the last one's. Throws
    /// `attribute_not_found_xml_exception` if there is none; catch that for an optional attribute.
    /// @param name without namespace prefix; must not be null
    virtual const char* attribute(const char* name) const = 0;

    /// Reads to the end tag. This reader is null afterwards. Throws `null_element_xml_exception` if
    /// it is null already.
    ///
    /// An element that has child elements gives the text before the first of them, and all further
    /// reading of the document ends there. Once a child has been returned, the text is empty,
    /// nothing is read, and the parent finds the remaining children of this element as its own.
    /// @return the character data; never null
    virtual const char* text() = 0;

    /// @return the next child element, after any text and comments. Null if there is none, and then
    /// this reader is null as well. A child that still exists becomes null first. Throws
    /// `null_element_xml_exception` if this reader is null.
    virtual unique_destroyable_ptr<abstract_xml_element_reader> next_child() = 0;
};

} // namespace zvutil::experimental::xml
