#pragma once

#include <zvutil/zvutil_export.h>

#include <exception>
#include <stdexcept>
#include <string>

namespace zvutil {

/// The base of the library's exceptions that are derived from `std::exception`.
class ZVUTIL_EXPORT exception : public std::exception
{
public:
    /// The message is \p text followed by \p detail.
    exception(const char* text, const std::string& detail);
    /// A copy of \p other; allocates nothing.
    exception(const exception& other) noexcept;
    /// Frees the message unless a copy holds it.
    ~exception() override;

    /// The message; valid as long as this object.
    const char* what() const noexcept override;

private:
    // `std::runtime_error` copies its text without throwing.
    std::runtime_error m_message;
};

} // namespace zvutil
