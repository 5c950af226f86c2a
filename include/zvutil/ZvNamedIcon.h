#pragma once

#include <zvutil/ZvString.h>
#include <zvutil/zvutil_export.h>

class QString;

namespace libzvutil {

/// The path of an icon with the name under which it is shown, written and looked up. The path is
/// that of a resource or of a file, in UTF-8, or empty; nothing looks whether it leads anywhere.
///
/// Copies share nothing. A moved-from object may only be destroyed or assigned to. Nothing fails
/// but for lack of memory. One thread at a time.
class ZVUTIL_EXPORT ZvNamedIcon
{
public:
    /// With an empty name and an empty path.
    ZvNamedIcon();
    ZvNamedIcon(const ZvString& name, const ZvString& path);

    ZvNamedIcon(const ZvNamedIcon& other);
    ZvNamedIcon(ZvNamedIcon&& other) noexcept;
    ZvNamedIcon& operator=(const ZvNamedIcon& other);
    ZvNamedIcon& operator=(ZvNamedIcon&& other) noexcept;
    ~ZvNamedIcon();

    /// Both are valid as long as this object and follow changes of it.
    const ZvString& name() const;
    const ZvString& path() const;

    /// Changes the path alone.
    void setPath(const char* path);
    void setPath(const ZvString& path);
    void setPath(const QString& path);

private:
    ZvString m_name;
    ZvString m_path;
};

static_assert(sizeof(ZvNamedIcon) == 2 * sizeof(ZvString));

} // namespace libzvutil
