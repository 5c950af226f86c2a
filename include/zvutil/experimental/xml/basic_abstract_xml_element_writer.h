#pragma once

#include <zvutil/experimental/unique_destroyable_ptr.h>
#include <zvutil/impl/template_export.h>

namespace zvutil::experimental::xml {

/// Writes one element: the start tag when the writer is made, the end tag when it is destroyed.
///
/// Attributes come first, then texts and children. A child has to be destroyed before its next
/// sibling is opened, for the end tag that a writer writes is that of the innermost open element:
/// @code{.cpp}
/// /// Writes `<a/><b/>`.
/// void writeSiblings(
///     zvutil::experimental::xml::basic_abstract_xml_element_writer<char>& parent)
/// {
///     auto child = parent.child("a");
///     child.reset(); // without this the assignment would open b within a
///     child = parent.child("b");
/// }
/// @endcode
/// Texts end in a NUL and have to be valid in the encoding of \p C: UTF-8 for `char`, UTF-16 for
/// `char16_t` and `wchar_t` (on platforms with a `wchar_t` of 32 bits code points as well).
/// Characters that XML doesn't allow are left out. Markup is escaped, names are written as they
/// are. Invalid text isn't reported:
/// - for `char` each bad byte becomes U+FFFD, so a surrogate gives three of them and a sequence for
///   more than U+10FFFF four;
/// - for `char16_t` and `wchar_t` an unpaired surrogate is written as it is: other parsers may refuse
///   the file, and this library reads a question mark;
/// - for `char32_t` an unpaired surrogate becomes U+FFFD, and two that make a pair become the
///   character;
/// - a `char32_t`, or a `wchar_t` of 32 bits, above 0x10FFFF becomes other characters.
///
/// A byte order mark at the start of a name or a text is dropped, in UTF-8 as well; in 16 and 32 bits
/// a swapped one makes the rest be read in the other byte order.
///
/// **The order of calls isn't checked.** An attribute that is written after a text or a child
/// becomes a part of the text. One that is written twice, or without a name, makes a document that
/// no parser accepts; this library finds no root in it.
/// @since 0.1 @ingroup xml
template <typename C>
class basic_abstract_xml_element_writer
{
public:
    /// Makes a writer; only subclasses can call this.
    basic_abstract_xml_element_writer();
    /// An element is written once, by one writer.
    basic_abstract_xml_element_writer(const basic_abstract_xml_element_writer&) = delete;
    /// An element is written once, by one writer.
    basic_abstract_xml_element_writer& operator=(const basic_abstract_xml_element_writer&) = delete;
    /// Writes the end tag of the innermost open element.
    virtual ~basic_abstract_xml_element_writer();

    /// Deletes this object. Only `unique_destroyable_ptr` needs to call it.
    virtual void destroy() = 0;

    /// Opens an element within this one.
    /// @param name ends in a NUL; if it is null, `std::logic_error` is thrown and nothing written
    /// @return the element's writer; never null
    virtual unique_destroyable_ptr<basic_abstract_xml_element_writer> child(const C* name) = 0;

    /// Writes an attribute.
    /// @param name must not be null
    /// @param value need not end in a NUL unless \p length is negative
    /// @param length the number of units; a negative one stands for a value that ends in a NUL
    virtual void attribute(const C* name, const C* value, int length) = 0;
    /// Writes an attribute.
    /// @param name must not be null
    /// @param value null stands for an empty one
    virtual void attribute(const C* name, const C* value) = 0;

    /// Writes character data.
    /// @param text null writes nothing
    virtual void text(const C* text) = 0;
};

extern template class ZVUTIL_TEMPLATE_DECLARE basic_abstract_xml_element_writer<char>;
extern template class ZVUTIL_TEMPLATE_DECLARE basic_abstract_xml_element_writer<char16_t>;
extern template class ZVUTIL_TEMPLATE_DECLARE basic_abstract_xml_element_writer<char32_t>;
extern template class ZVUTIL_TEMPLATE_DECLARE basic_abstract_xml_element_writer<wchar_t>;

} // namespace zvutil::experimental::xml
