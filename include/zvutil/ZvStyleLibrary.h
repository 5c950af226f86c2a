#pragma once

#include <zvutil/ZvStyle.h>
#include <zvutil/zvutil_export.h>

#include <QStringList>

#include <string>

namespace zvutil {
class ZvFilePath;
}

namespace libzvutil {

/// A list of styles and of accent colours, as it is kept in one XML file. Names of styles are
/// compared without regard to case.
///
/// The styles of the built-in library are default styles. They are never replaced, neither by `add`
/// nor by `update`; only a default-constructed library and its copies hold them.
///
/// Loading throws `attribute_not_found_xml_exception` where a name, a colour or a path is missing,
/// and `null_element_xml_exception` for a document without a root element or with an empty one, and
/// for a style without its lists of brushes and icons; both are of `zvutil::experimental::xml`.
/// Elements are identified by their places, not by their names. Unknown brushes and icons are no
/// error. A file that breaks off, or is malformed from some place on, ends there: what has been
/// read until then counts, but loading throws as above if that is before the list of styles or,
/// within a style, before its list of icons.
///
/// Copies share nothing. A moved-from library may only be destroyed or assigned to. One thread at a
/// time.
/// @since 0.1 @ingroup styles
class ZVUTIL_EXPORT ZvStyleLibrary
{
public:
    /// The built-in library: "Light", "Dark" and 48 accents.
    ZvStyleLibrary();
    /// The library in a file; empty if the file can't be read. None of its styles is a default
    /// style.
    /// @param path of an XML file
    ZvStyleLibrary(const zvutil::ZvFilePath& path);

    /// A deep copy.
    /// @param other must not have been moved from
    ZvStyleLibrary(const ZvStyleLibrary& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvStyleLibrary(ZvStyleLibrary&& other) noexcept;
    /// Copies the value; this object may have been moved from.
    /// @param other must not have been moved from
    ZvStyleLibrary& operator=(const ZvStyleLibrary& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvStyleLibrary& operator=(ZvStyleLibrary&& other) noexcept;
    /// Destroys the implementation; what was returned by reference or pointer ends with it.
    virtual ~ZvStyleLibrary();

    /// Appends copies of those styles whose names this library doesn't hold yet, in their order.
    /// Accents are never copied.
    /// @param other may be this library
    void add(const ZvStyleLibrary& other);
    /// The same, moving the styles.
    /// @param other has no styles afterwards, not even those that were skipped, unless it is this
    /// library
    void add(ZvStyleLibrary&& other);
    /// The same with the library in a file. If that can't be loaded, this library stays as it is.
    /// @param path of an XML file
    void add(const zvutil::ZvFilePath& path);

    /// Replaces the style of that name, or appends it if there is none. A default style stays as it
    /// is, and nothing reports that.
    /// @param style is copied
    void update(const ZvStyle& style);
    /// The same without a copy.
    /// @param style may then only be destroyed or assigned to
    void update(ZvStyle&& style);
    /// A name is no style: it would put a new one, all black, in place of the one of that name.
    /// @param name would be that of the new style
    void update(const char* name) = delete;
    /// As above.
    /// @param name would be that of the new style
    void update(const std::string& name) = delete;

    /// Removes styles. The accents stay.
    /// @param all whether to remove the default styles, too
    void clear(bool all);

    /// @return the first style of that name; valid until the library changes. Throws
    /// `zvutil::ZvException` with "Style not found: " and \p name.
    /// @param name any case; must not be null
    const ZvStyle& style(const char* name) const;
    /// @return the style "Dark", or the same exception.
    const ZvStyle& dark() const;
    /// @return the style "Light", or the same exception.
    const ZvStyle& light() const;

    /// @return the names of all styles in their order.
    QStringList names() const;

    /// Writes all styles, the default ones included, and the accents. The new file replaces the old
    /// one in one step or not at all, and nothing reports which. Colours lose their alpha. The end
    /// tag of the root element isn't written, and loading doesn't need it.
    /// @param path of the file to replace
    void save(const zvutil::ZvFilePath& path) const;

private:
    class Impl;

    Impl* d_impl();
    const Impl* d_impl() const;

    Impl* m_implementation;
};

static_assert(sizeof(ZvStyleLibrary) == 2 * sizeof(void*));

} // namespace libzvutil
