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
    exception(const exception& other) noexcept;
    ~exception() override;

    const char* what() const noexcept override;

private:
    // Holds a text that is copied without throwing.
    std::runtime_error m_message;
};

} // namespace zvutil
