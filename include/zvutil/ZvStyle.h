#pragma once

#include <zvutil/ZvEditorStyle.h>
#include <zvutil/ZvNamedColour.h>
#include <zvutil/ZvNamedIcon.h>
#include <zvutil/ZvString.h>
#include <zvutil/ZvStyleBrush.h>
#include <zvutil/ZvStyleIcon.h>
#include <zvutil/experimental/unique_destroyable_ptr.h>
#include <zvutil/zvutil_export.h>

#include <string>

class QColor;
class QString;
class QWidget;

namespace zvutil {
class ZvFilePath;
}

namespace libzvutil {

/// A theme of the application: 27 named brushes, 4 named icons, and the colours of the application's
/// editors.
///
/// The accent and its six shades are no data of a style: they are computed from the host option
/// "ZvStyleAccent" whenever a style is made from a name, also while a file is read.
///
/// Copies share nothing. A moved-from style may only be destroyed or assigned to. Making, copying
/// and changing fail for lack of memory only. A style may be made on any thread and is used by one
/// thread at a time; `apply` belongs on the GUI thread.
class ZVUTIL_EXPORT ZvStyle
{
public:
    /// With invalid colours but for the accent's, with icons without a path and without editors. An
    /// option whose text is no colour gives an invalid accent. Reads the option.
    ZvStyle();
    ZvStyle(const char* name);
    ZvStyle(const std::string& name);

    ZvStyle(const ZvStyle& other);
    ZvStyle(ZvStyle&& other) noexcept;
    ZvStyle& operator=(const ZvStyle& other);
    ZvStyle& operator=(ZvStyle&& other) noexcept;
    virtual ~ZvStyle();

    /// The application's current style, that of `ZvStyleManager::CurrentStyle`.
    static const ZvStyle& Current();

    const ZvString& name() const;

    /// One of the brushes, `TOTAL` included; any other value is undefined behaviour. Valid as long
    /// as this object.
    const ZvNamedColour& colour(ZvStyleBrush brush) const;
    /// The same as `colour`.
    const ZvNamedColour& color(ZvStyleBrush brush) const;

    /// Changes this one brush and no other, not even the shades of an accent.
    void setColour(ZvStyleBrush brush, const QColor& colour);
    /// The same as `setColour`.
    void setColor(ZvStyleBrush brush, const QColor& color);

    /// Sets the accent and computes its six shades. The lightest dark one and the darkest light one,
    /// `AccentD1` and `AccentL1`, equal the accent by `QColor::rgba`. By `QColor::operator==`, which
    /// compares 16 bits of each channel, most differ, as Qt computes them by way of another model of
    /// colours. `AccentForeground` stays as it is.
    void setAccent(const QColor& colour);

    /// One of the icons, `TOTAL` included; any other value is undefined behaviour. Valid as long as
    /// this object.
    const ZvNamedIcon& icon(ZvStyleIcon icon) const;
    void setIcon(ZvStyleIcon icon, const QString& path);

    /// Appends an editor, also if there is one of that name, which then is the one that is found.
    void addEditor(const ZvEditorStyle& editor);
    void addEditor(ZvEditorStyle&& editor);

    /// A copy of the first editor of that name, regardless of case in the global locale; a
    /// default-constructed one if there is none.
    ZvEditorStyle editorStyle(const char* name) const;

    /// A brush of an editor; invalid if there is no such editor or brush.
    QColor editorColour(const char* editor, const char* brush) const;
    QColor editorColour(const std::string& editor, const std::string& brush) const;

    /// Sets a brush of the first editor of that name. **Each call appends another editor** of that
    /// name, with this brush alone, whether there is one or not; it is written to files as well.
    void setEditorColour(const char* editor, const char* brush, const QColor& colour);
    void setEditorColour(const std::string& editor, const std::string& brush, const QColor& colour);

    /// A copy by another name, which is no default style.
    ZvStyle duplicate(const char* name) const;

    /// Whether this is one of the built-in styles or a copy of it.
    bool isDefaultStyle() const;

    /// Writes name, brushes, icons and editors into \p element, which has just been opened, and
    /// closes it. Colours lose their alpha, and invalid ones become "#000000".
    void write(zvutil::experimental::unique_destroyable_ptr<
               zvutil::experimental::xml::basic_abstract_xml_element_writer<char>, void>
                   element) const;

    /// Makes this style's sheet of the template, a line feed and the user's modifications, and sets
    /// it on the application. Returns false, and sets nothing, if the template can't be read or
    /// there is no `QApplication`; a modifications file that can't be read counts as empty. Reads
    /// both files; the time goes to Qt, which restyles all widgets.
    bool apply() const;
    /// The same with \p styleSheet in place of the user's modifications.
    bool apply(const QString& styleSheet) const;
    /// The same with the text of a file alone, in UTF-8, in place of template and modifications.
    /// Returns false if the file is empty or can't be read.
    bool apply(const zvutil::ZvFilePath& path) const;
    /// Sets the style's sheet on \p widget, which must not be null. The user's modifications follow
    /// the template without a line feed between.
    bool apply(QWidget* widget) const;

    /// ":/libzvutil/style/template.tqss"
    static QString TemplateResourcePath();

private:
    friend class ZvStyleLibrary;
    friend class ZvStyleModel;
    class Impl;

    Impl* d_impl();
    const Impl* d_impl() const;

    Impl* m_implementation;
};

static_assert(sizeof(ZvStyle) == 2 * sizeof(void*));

} // namespace libzvutil
