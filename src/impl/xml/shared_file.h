#pragma once

#include "impl/paths/path_text.h"

#include <memory>
#include <string>

namespace zvutil::impl {

/// Makes a Qt file for the path \p path. After its last owner released it, on any thread, the event
/// loop of the thread that made it deletes it.
template <typename File>
std::shared_ptr<File> shared_file(const std::wstring& path)
{
    const auto deleteLater = [](File* file) {
        if (file)
            file->deleteLater();
    };
    return {new File(native_file_name(path)), deleteLater};
}

} // namespace zvutil::impl
