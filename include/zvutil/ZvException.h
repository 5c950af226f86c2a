#pragma once

#include <zvutil/ZvBasicString.h>
#include <zvutil/zvutil_export.h>

namespace zvutil {

/// A failure that a caller of the library has to deal with.
///
/// `ZvException` isn't derived from `std::exception`, on purpose: a handler for that doesn't see it.
/// Throw by value and catch by reference. A moved-from object may only be destroyed or assigned to.
/// @since 0.1 @ingroup basics
class ZVUTIL_EXPORT ZvException
{
public:
    /// Makes an exception with an empty message.
    ZvException();
    /// Makes an exception with a message.
    /// @param message is copied
    explicit ZvException(const ZvBasicString<char>& message);
    /// A deep copy.
    /// @param other must not have been moved from
    ZvException(const ZvException& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvException(ZvException&& other) noexcept;
    /// Frees the message; what `what` returned ends with it.
    ~ZvException();

    /// Copies the value; this object may have been moved from.
    /// @param other must not have been moved from
    ZvException& operator=(const ZvException& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvException& operator=(ZvException&& other) noexcept;

    /// @return the message, never null; valid until the object is assigned to or destroyed.
    const char* what() const;

private:
    ZvBasicString<char> m_message;
};

static_assert(sizeof(ZvException) == sizeof(ZvBasicString<char>));

} // namespace zvutil
