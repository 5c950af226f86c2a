#pragma once

#include <zvutil/ZvBasicString.h>
#include <zvutil/zvutil_export.h>

namespace zvutil {

/// A failure that a caller of the library has to deal with.
///
/// Not derived from `std::exception`, on purpose: a handler for that doesn't see it. It is thrown by
/// value; catch it by reference. A moved-from object may only be destroyed or assigned to.
class ZVUTIL_EXPORT ZvException
{
public:
    /// With an empty message.
    ZvException();
    explicit ZvException(const ZvBasicString<char>& message);
    ZvException(const ZvException& other);
    ZvException(ZvException&& other) noexcept;
    ~ZvException();

    ZvException& operator=(const ZvException& other);
    ZvException& operator=(ZvException&& other) noexcept;

    /// The message, never null; valid until the object is assigned to or destroyed.
    const char* what() const;

private:
    ZvBasicString<char> m_message;
};

static_assert(sizeof(ZvException) == sizeof(ZvBasicString<char>));

} // namespace zvutil
