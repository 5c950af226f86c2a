#pragma once

#include <zvutil/details/delete_later.h>

#include "impl/paths/path_text.h"

#include <memory>
#include <string>

namespace zvutil::impl {

/// A Qt file for the text of a path. The event loop of the thread that has made it deletes it, when
/// its last owner has gone; the owner may be on another thread.
template <typename File>
std::shared_ptr<File> shared_file(const std::wstring& path)
{
    return {new File(native_file_name(path)), details::delete_later()};
}

} // namespace zvutil::impl
