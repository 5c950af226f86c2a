#pragma once

#include <zvutil/ZvBasicString.h>
#include <zvutil/zvutil_export.h>

#include <string>

class QVariant;

namespace libzvutil {

/// The value of a table's cell: a handle around a `QVariant`, on which all reading is done.
///
/// **Wide text isn't kept**: the constructors that take it store a `bool`. A caller with wide text
/// passes a `QVariant` of a `QString`.
///
/// A value takes one allocation beside what its `QVariant` needs; a move takes none and throws
/// nothing. A copy has a `QVariant` of its own, which shares what `QVariant` shares. A moved-from
/// value may only be destroyed or assigned to. Operations fail only for lack of memory. Two
/// threads may use two values at once.
/// @since 0.1 @ingroup tables
class ZVUTIL_EXPORT ZvVariant
{
public:
    /// Holds an invalid `QVariant`.
    ZvVariant();
    /// Holds an `int`.
    /// @param value the number
    ZvVariant(int value);
    /// Holds a `double`.
    /// @param value the number
    ZvVariant(const double& value);

    /// Holds a `QString`.
    /// @param text UTF-8 up to its NUL; null gives the null text
    ZvVariant(const char* text);
    /// The same for a standard string.
    /// @param text UTF-8 up to its first NUL
    ZvVariant(const std::string& text);
    /// The same for a text of the library.
    /// @param text UTF-8
    ZvVariant(const zvutil::ZvBasicString<char>& text);

    /// Holds a `bool`: **the text is lost**.
    /// @param text gives `false` if it is null, else `true`
    ZvVariant(const wchar_t* text);
    /// Holds the `bool` `true`: **the text is lost**.
    /// @param text isn't looked at
    ZvVariant(const std::wstring& text);

    /// Holds any value.
    /// @param value is copied
    ZvVariant(const QVariant& value);
    /// Holds a copy of the other's value.
    /// @param other must not have been moved from
    ZvVariant(const ZvVariant& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvVariant(ZvVariant&& other) noexcept;
    /// Destroys the value; what `data` returned ends with it.
    virtual ~ZvVariant();

    /// Assigns to the `QVariant` that this value has, of whatever type it becomes; a moved-from
    /// value gets a new one. Moves are assigned as copies.
    /// @param other must not have been moved from
    ZvVariant& operator=(const ZvVariant& other);
    /// The same for a `QVariant`.
    /// @param value is copied
    ZvVariant& operator=(const QVariant& value);

    /// @return the value; valid as long as this object, and follows assignments to it.
    const QVariant& data() const;

protected:
    /// The implementation that holds the `QVariant`.
    class Impl;

    /// A value with an implementation of the subclass.
    /// @param implementation owned from now on; must not be null
    explicit ZvVariant(Impl* implementation);

private:
    Impl* d_impl();
    const Impl* d_impl() const;

    Impl* m_implementation;
};

static_assert(sizeof(ZvVariant) == 2 * sizeof(void*));

} // namespace libzvutil
