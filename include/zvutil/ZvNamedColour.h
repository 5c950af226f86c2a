#pragma once

#include <zvutil/ZvString.h>
#include <zvutil/zvutil_export.h>

class QColor;

namespace libzvutil {

/// A colour with the name under which it is shown, written and looked up.
///
/// A text for a colour is whatever `QColor` takes: "#rrggbb", "#aarrggbb" or one of its names. Any
/// other text gives an invalid colour, also digits without the `#`; Qt warns in its log then.
///
/// Copies share nothing. A moved-from object may only be destroyed or assigned to. Nothing fails
/// but for lack of memory. One thread at a time.
class ZVUTIL_EXPORT ZvNamedColour
{
public:
    /// With an empty name and an invalid colour.
    ZvNamedColour();
    ZvNamedColour(const char* name, const char* colour);
    ZvNamedColour(const char* name, const QColor& colour);

    ZvNamedColour(const ZvNamedColour& other);
    ZvNamedColour(ZvNamedColour&& other) noexcept;
    ~ZvNamedColour();

    /// Takes name and colour over, into the implementation that is there.
    ZvNamedColour& operator=(const ZvNamedColour& other);
    ZvNamedColour& operator=(ZvNamedColour&& other) noexcept;
    /// Changes the colour alone; there is no way to change the name alone.
    ZvNamedColour& operator=(const QColor& colour);

    /// Valid as long as this object; follows changes of it.
    operator const QColor&() const;
    const QColor& qColour() const;
    const ZvString& name() const;

    /// "#rrggbb" in lower case, as colours are written to files. **Alpha is lost**, and an invalid
    /// colour gives "#000000".
    ZvString colourString() const;

    void setColour(const QColor& colour);

private:
    class Impl;

    Impl* d_impl();
    const Impl* d_impl() const;

    Impl* m_implementation;
};

static_assert(sizeof(ZvNamedColour) == sizeof(void*));

} // namespace libzvutil
