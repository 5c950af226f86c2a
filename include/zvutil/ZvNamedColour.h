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
/// Copies share nothing. A moved-from object may only be destroyed or assigned to. Operations
/// fail only for lack of memory. One thread at a time.
/// @since 0.1 @ingroup styles
class ZVUTIL_EXPORT ZvNamedColour
{
public:
    /// Makes an object with an empty name and an invalid colour.
    ZvNamedColour();
    /// Makes a colour from text.
    /// @param name must not be null
    /// @param colour null for an invalid colour
    ZvNamedColour(const char* name, const char* colour);
    /// Copies both.
    /// @param name must not be null
    /// @param colour may be invalid
    ZvNamedColour(const char* name, const QColor& colour);

    /// A deep copy.
    /// @param other must not have been moved from
    ZvNamedColour(const ZvNamedColour& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvNamedColour(ZvNamedColour&& other) noexcept;
    /// Frees name and colour; references to them end with it.
    ~ZvNamedColour();

    /// Copies name and colour into the implementation that is there; references to them stay valid.
    /// This object may have been moved from.
    /// @param other must not have been moved from
    ZvNamedColour& operator=(const ZvNamedColour& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvNamedColour& operator=(ZvNamedColour&& other) noexcept;
    /// Changes the colour alone; an object that was moved from has an empty name then. The name
    /// alone can't be changed.
    /// @param colour may be invalid
    ZvNamedColour& operator=(const QColor& colour);

    /// @return the same as `qColour`.
    operator const QColor&() const;
    /// @return the colour; valid as long as this object, and follows its changes.
    const QColor& qColour() const;
    /// @return the name; valid as long as this object, and follows its changes.
    const ZvString& name() const;

    /// @return "#rrggbb" in lower case, as colours are written to files. **Alpha is lost**, and an
    /// invalid colour gives "#000000".
    ZvString colourString() const;

    /// Changes the colour alone; the object must not have been moved from.
    /// @param colour may be invalid
    void setColour(const QColor& colour);

private:
    class Impl;

    Impl* d_impl();
    const Impl* d_impl() const;

    Impl* m_implementation;
};

static_assert(sizeof(ZvNamedColour) == sizeof(void*));

} // namespace libzvutil
