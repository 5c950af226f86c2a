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
/// The accent and its six shades aren't data of a style: they are computed from the host option
/// "ZvStyleAccent" whenever a style is made from a name, also while a file is read.
///
/// Copies share nothing. A moved-from style may only be destroyed or assigned to. Construction,
/// copying and changes fail only for lack of memory. A style may be made on any thread and is used
/// by one thread at a time; call `apply` on the GUI thread.
class ZVUTIL_EXPORT ZvStyle
{
public:
    /// A style with an empty name, invalid colours except for the accent's, icons without a path
    /// and no editors. Reads the option; a text that is no colour gives an invalid accent.
    ZvStyle();
    /// The same with the name \p name, which must not be null.
    ZvStyle(const char* name);
    /// The same with \p name up to its first NUL.
    ZvStyle(const std::string& name);

    /// A deep copy of \p other, which must not have been moved from.
    ZvStyle(const ZvStyle& other);
    /// Takes over what \p other holds; \p other may then only be destroyed or assigned to.
    ZvStyle(ZvStyle&& other) noexcept;
    /// Copies \p other, which must not have been moved from; this object may have been.
    ZvStyle& operator=(const ZvStyle& other);
    /// Takes over what \p other holds; \p other may then only be destroyed or assigned to.
    ZvStyle& operator=(ZvStyle&& other) noexcept;
    /// Destroys the implementation; what was returned by reference or pointer ends with it.
    virtual ~ZvStyle();

    /// The application's current style, that of `ZvStyleManager::CurrentStyle`.
    static const ZvStyle& Current();

    /// The name; valid as long as this object.
    const ZvString& name() const;

    /// The brush \p brush, `TOTAL` included; any other value is undefined behaviour. Valid as long
    /// as this object.
    const ZvNamedColour& colour(ZvStyleBrush brush) const;
    /// The same as `colour`.
    const ZvNamedColour& color(ZvStyleBrush brush) const;

    /// Changes one brush, `TOTAL` included, and no other, not even the shades of an accent; any other
    /// value is undefined behaviour.
    void setColour(ZvStyleBrush brush, const QColor& colour);
    /// The same as `setColour`.
    void setColor(ZvStyleBrush brush, const QColor& color);

    /// Sets the accent and computes its six shades. The lightest dark one and the darkest light one,
    /// `AccentD1` and `AccentL1`, equal the accent by `QColor::rgba`. By `QColor::operator==`, which
    /// compares 16 bits of each channel, most differ, as Qt computes them by way of another model of
    /// colours. `AccentForeground` stays as it is.
    void setAccent(const QColor& colour);

    /// The icon \p icon, `TOTAL` included; any other value is undefined behaviour. Valid as long as
    /// this object.
    const ZvNamedIcon& icon(ZvStyleIcon icon) const;
    /// Changes the path of one icon, `TOTAL` included; any other value is undefined behaviour.
    void setIcon(ZvStyleIcon icon, const QString& path);

    /// Appends a copy of \p editor, even if there is an editor of that name, which is then still the
    /// one that is found.
    void addEditor(const ZvEditorStyle& editor);
    /// The same; \p editor may then only be destroyed or assigned to.
    void addEditor(ZvEditorStyle&& editor);

    /// A copy of the first editor of that name, regardless of case in the global locale; a
    /// default-constructed one if there is none.
    ZvEditorStyle editorStyle(const char* name) const;

    /// A brush of an editor; invalid if there is no such editor or brush.
    QColor editorColour(const char* editor, const char* brush) const;
    /// The same with both names up to their first NUL.
    QColor editorColour(const std::string& editor, const std::string& brush) const;

    /// Sets a brush of the first editor of that name. **Each call appends another editor** of that
    /// name, with this brush alone, whether there is one or not; it is written to files as well.
    void setEditorColour(const char* editor, const char* brush, const QColor& colour);
    /// The same with both names up to their first NUL.
    void setEditorColour(const std::string& editor, const std::string& brush, const QColor& colour);

    /// A copy named \p name, which must not be null; the copy isn't a default style.
    ZvStyle duplicate(const char* name) const;

    /// Whether this is one of the built-in styles or a copy of it.
    bool isDefaultStyle() const;

    /// Writes name, brushes, icons and editors into \p element, which has just been opened, and
    /// closes it. Colours lose their alpha, and invalid ones become "#000000".
    void write(zvutil::experimental::unique_destroyable_ptr<
               zvutil::experimental::xml::basic_abstract_xml_element_writer<char>, void>
                   element) const;

    /// Makes this style's sheet from the template, a line feed and the user's modifications, and sets
    /// it on the application. Returns false, and sets nothing, if the template can't be read or
    /// there is no `QApplication`; a modifications file that can't be read counts as empty. Reads
    /// both files; most of the time is Qt's, which restyles all widgets.
    bool apply() const;
    /// The same with \p styleSheet in place of the user's modifications.
    bool apply(const QString& styleSheet) const;
    /// The same with the text of a file alone, in UTF-8, in place of template and modifications.
    /// Returns false if the file is empty or can't be read.
    bool apply(const zvutil::ZvFilePath& path) const;
    /// Sets the style's sheet on \p widget, which must not be null. The user's modifications follow
    /// the template without a line feed in between. Returns false if the template can't be read.
    bool apply(QWidget* widget) const;

    /// The path of the template that style sheets are made from: ":/libzvutil/style/template.tqss".
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
