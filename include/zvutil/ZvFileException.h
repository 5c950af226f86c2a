#pragma once

#include <zvutil/ZvException.h>
#include <zvutil/ZvFilePath.h>
#include <zvutil/zvutil_export.h>

#include <filesystem>

namespace zvutil {

/// A failure that concerns a file. A handler for `ZvException` catches it, one for
/// `std::exception` doesn't.
/// @since 0.1 @ingroup basics
class ZVUTIL_EXPORT ZvFileException : public ZvException
{
public:
    /// Makes an exception with an empty message and an empty path.
    ZvFileException();
    /// Makes an exception with an empty message.
    /// @param path is copied
    explicit ZvFileException(const ZvFilePath& path);
    /// Makes an exception with a message.
    /// @param path is copied
    /// @param message is copied
    ZvFileException(const ZvFilePath& path, const ZvBasicString<char>& message);
    /// Takes the error's message and its first path; its code and its second path are dropped.
    /// @param error where paths are bytes, those that aren't UTF-8 have each invalid sequence
    /// replaced by U+FFFD in the path
    explicit ZvFileException(const std::filesystem::filesystem_error& error);
    /// A deep copy.
    /// @param other must not have been moved from
    ZvFileException(const ZvFileException& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvFileException(ZvFileException&& other) noexcept;
    /// Frees message and path; what `what` and `path` returned ends with it.
    ~ZvFileException();

    /// Copies the value; this object may have been moved from.
    /// @param other must not have been moved from
    ZvFileException& operator=(const ZvFileException& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvFileException& operator=(ZvFileException&& other) noexcept;

    /// @return the file's path; valid as long as this object.
    const ZvFilePath& path() const;

    /// Makes the message "File not found: " and the path. As in the two below, the path is UTF-8 in
    /// which each 16-bit unit is written by itself.
    /// @param path the file that isn't there
    /// @return an exception to throw
    [[nodiscard]] static ZvFileException notFound(const ZvFilePath& path);
    /// Makes the message "Cannot open file for reading: " and the path.
    /// @param path the file that can't be opened
    /// @return an exception to throw
    [[nodiscard]] static ZvFileException cannotRead(const ZvFilePath& path);
    /// Makes the message "Cannot open file for writing: " and the path.
    /// @param path the file that can't be opened
    /// @return an exception to throw
    [[nodiscard]] static ZvFileException cannotWrite(const ZvFilePath& path);

private:
    ZvFilePath m_path;
};

static_assert(sizeof(ZvFileException) == sizeof(ZvException) + sizeof(ZvFilePath));

} // namespace zvutil
