#include "base/file_safety.h"

#include <QFile>
#include <QSaveFile>

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

#include <unistd.h>

namespace zvutil::base {

bool bring_to_disk(QFileDevice& file)
{
    int result = 0;
    do
        result = fdatasync(file.handle());
    while (result != 0 && errno == EINTR);
    return result == 0 || errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
}

bool follow_links(QSaveFile& file)
{
    constexpr int maxLinks = 40;
    std::filesystem::path target(QFile::encodeName(file.fileName()).toStdString());
    for (int links = 0; links < maxLinks; ++links) {
        std::error_code error;
        const auto type = std::filesystem::symlink_status(target, error).type();
        if (type == std::filesystem::file_type::not_found)
            error.clear();
        if (error || type != std::filesystem::file_type::symlink) {
            if (links > 0)
                file.setFileName(QFile::decodeName(target.c_str()));
            return !error;
        }
        const std::filesystem::path next = std::filesystem::read_symlink(target, error);
        if (error)
            return false;
        target = target.parent_path() / next;
    }
    return false;
}

} // namespace zvutil::base
