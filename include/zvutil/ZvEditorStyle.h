#pragma once

#include <zvutil/ZvNamedColour.h>
#include <zvutil/experimental/unique_destroyable_ptr.h>
#include <zvutil/zvutil_export.h>

#include <string>

class QColor;

namespace zvutil::experimental::xml {
template <typename C>
class basic_abstract_xml_element_writer;
}

namespace libzvutil {

/// The colours that a style has for one of the application's editors: a list of named brushes.
/// Names of brushes are compared without regard to case.
///
/// Copies share nothing. A moved-from object may only be destroyed or assigned to. Operations
/// fail only for lack of memory. One thread at a time.
/// @since 0.1 @ingroup styles
class ZVUTIL_EXPORT ZvEditorStyle
{
public:
    /// Makes an object with an empty name and no brushes.
    ZvEditorStyle();
    /// Makes an object without brushes.
    /// @param name the editor's name; must not be null
    ZvEditorStyle(const char* name);
    /// The same for a standard string.
    /// @param name the editor's name, up to its first NUL
    ZvEditorStyle(const std::string& name);

    /// A deep copy.
    /// @param other must not have been moved from
    ZvEditorStyle(const ZvEditorStyle& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvEditorStyle(ZvEditorStyle&& other) noexcept;
    /// Copies the value; this object may have been moved from.
    /// @param other must not have been moved from
    ZvEditorStyle& operator=(const ZvEditorStyle& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvEditorStyle& operator=(ZvEditorStyle&& other) noexcept;
    /// Destroys the implementation; what was returned by reference or pointer ends with it.
    virtual ~ZvEditorStyle();

    /// @return the editor's name; valid until the object is assigned to or destroyed.
    const char* name() const;

    /// @return the colour of the first brush of that name; invalid if there is none.
    /// @param name any case; must not be null
    QColor brush(const char* name) const;

    /// Replaces the first brush of that name, together with the spelling of the name, or appends
    /// one if there is none.
    /// @param brush name and colour
    void setBrush(const ZvNamedColour& brush);
    /// The same without a copy.
    /// @param brush may then only be destroyed or assigned to
    void setBrush(ZvNamedColour&& brush);
    /// The same for a name and a colour.
    /// @param name must not be null
    /// @param colour may be invalid
    void setBrush(const char* name, const QColor& colour);
    /// The same with a colour as text.
    /// @param name must not be null
    /// @param colour as `QColor` takes it; a text that is none gives an invalid colour
    void setBrush(const char* name, const char* colour);

    /// Writes name and brushes. Colours lose their alpha.
    /// @param element has just been opened; it is closed
    void write(zvutil::experimental::unique_destroyable_ptr<
               zvutil::experimental::xml::basic_abstract_xml_element_writer<char>, void>
                   element) const;

private:
    friend class ZvStyle;
    friend class ZvStyleModel;
    class Impl;

    Impl* d_impl();
    const Impl* d_impl() const;

    Impl* m_implementation;
};

static_assert(sizeof(ZvEditorStyle) == 2 * sizeof(void*));

} // namespace libzvutil
