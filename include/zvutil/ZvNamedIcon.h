#pragma once

#include <zvutil/ZvString.h>
#include <zvutil/zvutil_export.h>

class QString;

namespace libzvutil {

/// The path of an icon with the name under which it is shown, written and looked up. The path is
/// that of a resource or of a file, in UTF-8, or empty; nothing checks whether it exists.
///
/// Copies share nothing. A moved-from object may only be destroyed or assigned to. Operations
/// fail only for lack of memory. One thread at a time.
/// @since 0.1 @ingroup styles
class ZVUTIL_EXPORT ZvNamedIcon
{
public:
    /// Makes an object with an empty name and an empty path.
    ZvNamedIcon();
    /// Copies both, each up to its first NUL.
    /// @param name under which the icon is looked up
    /// @param path of a resource or a file, in UTF-8
    ZvNamedIcon(const ZvString& name, const ZvString& path);

    /// A deep copy.
    /// @param other must not have been moved from
    ZvNamedIcon(const ZvNamedIcon& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvNamedIcon(ZvNamedIcon&& other) noexcept;
    /// Copies the value; this object may have been moved from.
    /// @param other must not have been moved from
    ZvNamedIcon& operator=(const ZvNamedIcon& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvNamedIcon& operator=(ZvNamedIcon&& other) noexcept;
    /// Frees name and path; references to them end with it.
    ~ZvNamedIcon();

    /// @return the name; valid as long as this object, and follows its changes.
    const ZvString& name() const;
    /// @return the path; valid as long as this object, and follows its changes.
    const ZvString& path() const;

    /// Changes the path alone, to UTF-8 that ends in a NUL.
    /// @param path must not be null
    void setPath(const char* path);
    /// The same for a text of the library.
    /// @param path in UTF-8
    void setPath(const ZvString& path);
    /// The same for a text of Qt, which is converted to UTF-8.
    /// @param path counts up to its first NUL
    void setPath(const QString& path);

private:
    ZvString m_name;
    ZvString m_path;
};

static_assert(sizeof(ZvNamedIcon) == 2 * sizeof(ZvString));

} // namespace libzvutil
