#pragma once

#include <zvutil/ZvException.h>
#include <zvutil/ZvFilePath.h>
#include <zvutil/zvutil_export.h>

#include <filesystem>

namespace zvutil {

/// A failure that has to do with a file. A handler for `ZvException` catches it, one for
/// `std::exception` doesn't.
class ZVUTIL_EXPORT ZvFileException : public ZvException
{
public:
    /// With an empty message and an empty path.
    ZvFileException();
    /// With an empty message.
    explicit ZvFileException(const ZvFilePath& path);
    ZvFileException(const ZvFilePath& path, const ZvBasicString<char>& message);
    /// Takes the error's message and its first path; its code and its second path are dropped. Where
    /// paths are bytes, those that aren't UTF-8 become U+FFFD in \ref path.
    explicit ZvFileException(const std::filesystem::filesystem_error& error);
    ZvFileException(const ZvFileException& other);
    ZvFileException(ZvFileException&& other) noexcept;
    ~ZvFileException();

    ZvFileException& operator=(const ZvFileException& other);
    ZvFileException& operator=(ZvFileException&& other) noexcept;

    const ZvFilePath& path() const;

    /// The three ways in which a file fails. The message is a sentence and the path, as UTF-8 in
    /// which each 16-bit unit is written by itself: "File not found: ", "Cannot open file for
    /// reading: ", "Cannot open file for writing: ".
    [[nodiscard]] static ZvFileException notFound(const ZvFilePath& path);
    [[nodiscard]] static ZvFileException cannotRead(const ZvFilePath& path);
    [[nodiscard]] static ZvFileException cannotWrite(const ZvFilePath& path);

private:
    ZvFilePath m_path;
};

static_assert(sizeof(ZvFileException) == sizeof(ZvException) + sizeof(ZvFilePath));

} // namespace zvutil
