#pragma once

#include <zvutil/zvutil_export.h>

#include <cstddef>

namespace libzvutil {

template <typename C>
class ZvBasicString;

/// What `ZvString` and `ZvWString` have in common: the texts with which styles, tables and the
/// clipboard talk. They can be appended to and convert to and from `QString`, as those of
/// `zvutil::ZvBasicString` can't, and there is no way between the two families.
///
/// Only `resize` and appending a single unit can put a NUL into a text. Everything that reads a text
/// up to its NUL, and copying is of these, then ends at the first one.
///
/// Copies share nothing. A text takes one allocation for its implementation, and one for units that
/// are too many to lie in it; a move takes none and throws nothing. A moved-from text may only be
/// destroyed or assigned to. Nothing fails but for lack of memory, and `resize` for a size that no
/// text can have. Two threads may use two texts at once.
class ZVUTIL_EXPORT ZvAbstractString
{
public:
    ZvAbstractString(const ZvAbstractString&) = delete;
    ZvAbstractString& operator=(const ZvAbstractString&) = delete;
    virtual ~ZvAbstractString();

    /// Cuts the text to \p size units, or fills it up with NULs to that size. Throws
    /// `std::length_error`, and changes nothing, for more units than a `std::basic_string` can have.
    void resize(std::size_t size);
    /// The number of units, NULs and what is behind them included.
    std::size_t size() const;

protected:
    class Impl;

    /// Takes \p implementation over; it must not be null.
    explicit ZvAbstractString(Impl* implementation);

    /// Not to be called on a moved-from text: there is no test for null.
    Impl& impl();
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
