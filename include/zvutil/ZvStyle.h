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
/// @since 0.1 @ingroup styles
class ZVUTIL_EXPORT ZvStyle
{
public:
    /// A style with an empty name, invalid colours except for the accent's, icons without a path
    /// and no editors. Reads the option; a text that is no colour gives an invalid accent.
    ZvStyle();
    /// The same with a name.
    /// @param name must not be null
    ZvStyle(const char* name);
    /// The same for a standard string.
    /// @param name counts up to its first NUL
    ZvStyle(const std::string& name);

    /// A deep copy.
    /// @param other must not have been moved from
    ZvStyle(const ZvStyle& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvStyle(ZvStyle&& other) noexcept;
    /// Copies the value; this object may have been moved from.
    /// @param other must not have been moved from
    ZvStyle& operator=(const ZvStyle& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvStyle& operator=(ZvStyle&& other) noexcept;
    /// Destroys the implementation; what was returned by reference or pointer ends with it.
    virtual ~ZvStyle();

    /// @return the application's current style, that of `ZvStyleManager::CurrentStyle`.
    static const ZvStyle& Current();

    /// @return the name; valid as long as this object.
    const ZvString& name() const;

    /// @return one brush. Valid as long as this object.
    /// @param brush any enumerator, `TOTAL` included; any other value is undefined behaviour
    const ZvNamedColour& colour(ZvStyleBrush brush) const;
    /// @return the same as `colour`.
    /// @param brush any enumerator, `TOTAL` included; any other value is undefined behaviour
    const ZvNamedColour& color(ZvStyleBrush brush) const;

    /// Changes one brush and no other, not even the shades of an accent.
    /// @param brush any enumerator, `TOTAL` included; any other value is undefined behaviour
    /// @param colour may be invalid
    void setColour(ZvStyleBrush brush, const QColor& colour);
    /// The same as `setColour`.
    /// @param brush any enumerator, `TOTAL` included; any other value is undefined behaviour
    /// @param color may be invalid
    void setColor(ZvStyleBrush brush, const QColor& color);

    /// Sets the accent and computes its six shades. The lightest dark one and the darkest light
    /// one, `AccentD1` and `AccentL1`, equal the accent by `QColor::rgba`. By `QColor::operator==`,
    /// which compares 16 bits of each channel, most differ, as Qt computes them by way of another
    /// model of colours. `AccentForeground` stays as it is.
    /// @param colour the accent
    void setAccent(const QColor& colour);

    /// @return one icon. Valid as long as this object.
    /// @param icon any enumerator, `TOTAL` included; any other value is undefined behaviour
    const ZvNamedIcon& icon(ZvStyleIcon icon) const;
    /// Changes the path of one icon.
    /// @param icon any enumerator, `TOTAL` included; any other value is undefined behaviour
    /// @param path of a resource or a file
    void setIcon(ZvStyleIcon icon, const QString& path);

    /// Appends an editor, even if there is an editor of that name, which is then still the one that
    /// is found.
    /// @param editor is copied
    void addEditor(const ZvEditorStyle& editor);
    /// The same without a copy.
    /// @param editor may then only be destroyed or assigned to
    void addEditor(ZvEditorStyle&& editor);

    /// @return a copy of the first editor of that name, regardless of case in the global locale; a
    /// default-constructed one if there is none.
    /// @param name must not be null
    ZvEditorStyle editorStyle(const char* name) const;

    /// @return a brush of an editor; invalid if there is no such editor or brush.
    /// @param editor the editor's name, any case; must not be null
    /// @param brush the brush's name, any case; must not be null
    QColor editorColour(const char* editor, const char* brush) const;
    /// @return the same for standard strings, up to their first NUL.
    /// @param editor the editor's name
    /// @param brush the brush's name
    QColor editorColour(const std::string& editor, const std::string& brush) const;

    /// Sets a brush of the first editor of that name. **Each call appends another editor** of that
    /// name, with this brush alone, whether there is one or not; it is written to files as well.
    /// @param editor the editor's name; must not be null
    /// @param brush the brush's name; must not be null
    /// @param colour may be invalid
    void setEditorColour(const char* editor, const char* brush, const QColor& colour);
    /// The same for standard strings, up to their first NUL.
    /// @param editor the editor's name
    /// @param brush the brush's name
    /// @param colour may be invalid
    void setEditorColour(const std::string& editor, const std::string& brush, const QColor& colour);

    /// @return a copy with another name, which isn't a default style.
    /// @param name must not be null
    ZvStyle duplicate(const char* name) const;

    /// @return whether this is one of the built-in styles or a copy of it.
    bool isDefaultStyle() const;

    /// Writes name, brushes, icons and editors. Colours lose their alpha, and invalid ones become
    /// "#000000".
    /// @param element has just been opened; it is closed
    void write(zvutil::experimental::unique_destroyable_ptr<
               zvutil::experimental::xml::basic_abstract_xml_element_writer<char>, void>
                   element) const;

    /// Makes this style's sheet from the template, a line feed and the user's modifications, and
    /// sets it on the application. A modifications file that can't be read counts as empty. Reads
    /// both files; most of the time is Qt's, which restyles all widgets.
    /// @return false, with nothing set, if the template can't be read or there is no `QApplication`
    bool apply() const;
    /// The same with another text in place of the user's modifications.
    /// @param styleSheet follows the template and a line feed
    /// @return as above
    bool apply(const QString& styleSheet) const;
    /// The same with the text of a file alone in place of template and modifications.
    /// @param path a file in UTF-8
    /// @return false also if the file is empty or can't be read
    bool apply(const zvutil::ZvFilePath& path) const;
    /// Sets the style's sheet on a widget. The user's modifications follow the template without a
    /// line feed in between.
    /// @param widget must not be null
    /// @return false if the template can't be read
    bool apply(QWidget* widget) const;

    /// @return the path of the template that style sheets are made from:
    /// ":/libzvutil/style/template.tqss".
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
