#pragma once

#include <zvutil/zvutil_export.h>

#include <exception>
#include <stdexcept>
#include <string>

namespace zvutil {

/// The base of the library's exceptions that are derived from `std::exception`.
/// @since 0.1 @ingroup basics
class ZVUTIL_EXPORT exception : public std::exception
{
public:
    /// Makes the message of two texts.
    /// @param text its beginning; must not be null
    /// @param detail its end
    exception(const char* text, const std::string& detail);
    /// A copy with the same message; allocates nothing.
    /// @param other the exception to copy
    exception(const exception& other) noexcept;
    /// Frees the message unless a copy holds it.
    ~exception() override;

    /// @return the message; valid as long as this object.
    const char* what() const noexcept override;

private:
    // `std::runtime_error` copies its text without throwing.
    std::runtime_error m_message;
};

} // namespace zvutil
