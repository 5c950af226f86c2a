#pragma once

#include <zvutil/ZvBasicString.h>
#include <zvutil/zvutil_export.h>

#include <string>

class QVariant;

namespace libzvutil {

/// The value of a table's cell: a handle around a `QVariant`, on which all reading is done.
///
/// **Wide text doesn't go in**: the constructors that take it keep a `bool`. A caller with wide text
/// hands over a `QVariant` of a `QString`.
///
/// A value takes one allocation beside what its `QVariant` needs; a move takes none and throws
/// nothing. A copy has a `QVariant` of its own, which shares what `QVariant` shares. A moved-from
/// value may only be destroyed or assigned to. Nothing fails but for lack of memory. Two threads
/// may use two values at once.
class ZVUTIL_EXPORT ZvVariant
{
public:
    /// Holds an invalid `QVariant`.
    ZvVariant();
    ZvVariant(int value);
    ZvVariant(const double& value);

    /// Holds a `QString` of the UTF-8 in \p text up to its first NUL; a null pointer gives the null
    /// text.
    ZvVariant(const char* text);
    ZvVariant(const std::string& text);
    ZvVariant(const zvutil::ZvBasicString<char>& text);

    /// Holds the `bool` `true`, or `false` for a null pointer: the text is lost.
    ZvVariant(const wchar_t* text);
    /// Holds the `bool` `true`: the text is lost.
    ZvVariant(const std::wstring& text);

    ZvVariant(const QVariant& value);
    ZvVariant(const ZvVariant& other);
    ZvVariant(ZvVariant&& other) noexcept;
    virtual ~ZvVariant();

    /// Both assign to the `QVariant` that is there, of whatever type it becomes; a moved-from value
    /// gets a new one. There is no move assignment.
    ZvVariant& operator=(const ZvVariant& other);
    ZvVariant& operator=(const QVariant& value);

    /// Valid as long as this object; follows assignments to it.
    const QVariant& data() const;

protected:
    class Impl;

    /// Takes \p implementation over; it must not be null.
    explicit ZvVariant(Impl* implementation);

private:
    Impl* d_impl();
    const Impl* d_impl() const;

    Impl* m_implementation;
};

static_assert(sizeof(ZvVariant) == 2 * sizeof(void*));

} // namespace libzvutil
