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
/// Copies share nothing. A moved-from object may only be destroyed or assigned to. Nothing fails
/// but for lack of memory. One thread at a time.
class ZVUTIL_EXPORT ZvEditorStyle
{
public:
    /// With an empty name and no brushes.
    ZvEditorStyle();
    ZvEditorStyle(const char* name);
    ZvEditorStyle(const std::string& name);

    ZvEditorStyle(const ZvEditorStyle& other);
    ZvEditorStyle(ZvEditorStyle&& other) noexcept;
    ZvEditorStyle& operator=(const ZvEditorStyle& other);
    ZvEditorStyle& operator=(ZvEditorStyle&& other) noexcept;
    virtual ~ZvEditorStyle();

    /// Valid until the object is assigned to or destroyed.
    const char* name() const;

    /// The colour of the first brush of that name; invalid if there is none.
    QColor brush(const char* name) const;

    /// Replaces the first brush of that name, together with the spelling of the name, or appends
    /// one. A text for a colour is taken as by `ZvNamedColour`.
    void setBrush(const ZvNamedColour& brush);
    void setBrush(ZvNamedColour&& brush);
    void setBrush(const char* name, const QColor& colour);
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
