#pragma once

#include <zvutil/zvutil_export.h>

#include <cstddef>

namespace libzvutil {

template <typename C>
class ZvBasicString;

/// The base of `ZvString` and `ZvWString`, the texts that styles, tables and the clipboard take and
/// return. Unlike those of `zvutil::ZvBasicString` these texts can be appended to and convert to and
/// from `QString`; neither family converts to the other.
///
/// Only `resize` and appending a single unit can put a NUL into a text. Whatever reads a text up to
/// its NUL, copy construction included, then ends at the first one.
///
/// Copies share nothing. A text takes one allocation for its implementation, and one for units that
/// are too many to lie in it; a move takes none and throws nothing. A moved-from text may only be
/// destroyed or assigned to. Operations fail only for lack of memory, and `resize` for a size
/// that no text can have. Two threads may use two texts at once.
/// @since 0.1 @ingroup text
class ZVUTIL_EXPORT ZvAbstractString
{
public:
    /// The subclasses are copied, since each has its own type of units.
    ZvAbstractString(const ZvAbstractString&) = delete;
    /// `ZvString` has an assignment of its own; `ZvWString` has none, on purpose.
    ZvAbstractString& operator=(const ZvAbstractString&) = delete;
    /// Frees the text; what `c_str` returned ends with it.
    virtual ~ZvAbstractString();

    /// Cuts the text, or fills it up with NULs. Throws `std::length_error`, and changes nothing,
    /// for more units than a `std::basic_string` can have.
    /// @param size the number of units from now on
    void resize(std::size_t size);
    /// @return the number of units, including NULs and whatever follows them.
    std::size_t size() const;

protected:
    /// The implementation that holds the text; the subclass defines its type of units.
    class Impl;

    /// A text with an implementation of the subclass.
    /// @param implementation owned from now on; must not be null
    explicit ZvAbstractString(Impl* implementation);

    /// @return the implementation. The text must not have been moved from: there is no test for
    /// null.
    Impl& impl();
    /// @return the same for a constant text.
    const Impl& impl() const;

private:
    friend class ZvString;
    friend class ZvWString;
    template <typename C>
    friend class ZvBasicString;

    Impl* d_impl();
    const Impl* d_impl() const;

    Impl* m_implementation;
};

static_assert(sizeof(ZvAbstractString) == 2 * sizeof(void*));

} // namespace libzvutil
