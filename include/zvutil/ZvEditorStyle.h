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
class ZVUTIL_EXPORT ZvEditorStyle
{
public:
    /// Makes an object with an empty name and no brushes.
    ZvEditorStyle();
    /// Makes an object named \p name, which must not be null, without brushes.
    ZvEditorStyle(const char* name);
    /// The same, with \p name up to its first NUL.
    ZvEditorStyle(const std::string& name);

    /// A deep copy of \p other, which must not have been moved from.
    ZvEditorStyle(const ZvEditorStyle& other);
    /// Takes over what \p other holds; \p other may then only be destroyed or assigned to.
    ZvEditorStyle(ZvEditorStyle&& other) noexcept;
    /// Copies \p other, which must not have been moved from; this object may have been.
    ZvEditorStyle& operator=(const ZvEditorStyle& other);
    /// Takes over what \p other holds; \p other may then only be destroyed or assigned to.
    ZvEditorStyle& operator=(ZvEditorStyle&& other) noexcept;
    /// Destroys the implementation; what was returned by reference or pointer ends with it.
    virtual ~ZvEditorStyle();

    /// The editor's name; valid until the object is assigned to or destroyed.
    const char* name() const;

    /// The colour of the first brush of that name; invalid if there is none.
    QColor brush(const char* name) const;

    /// Replaces the first brush of that name, together with the spelling of the name, or appends
    /// \p brush if there is none.
    void setBrush(const ZvNamedColour& brush);
    /// The same; \p brush may then only be destroyed or assigned to.
    void setBrush(ZvNamedColour&& brush);
    /// The same with a brush of \p name, which must not be null, and \p colour.
    void setBrush(const char* name, const QColor& colour);
    /// The same with a colour as text; a text that is none gives an invalid colour.
    void setBrush(const char* name, const char* colour);

    /// Writes name and brushes into \p element, which has just been opened, and closes it. Colours
    /// lose their alpha.
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
