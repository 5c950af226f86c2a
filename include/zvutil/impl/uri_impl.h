#pragma once

#include <zvutil/UriKind.h>
#include <zvutil/zvutil_export.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace zvutil::impl {

/// The text of a URI and the views into it. Never copied or moved, since the views would go astray.
struct uri_impl
{
    uri_impl() = default;
    uri_impl(const uri_impl&) = delete;
    uri_impl& operator=(const uri_impl&) = delete;

    std::string text;
    std::string_view scheme;
    std::string_view authority;
    std::string_view userinfo;
    std::string_view host;
    std::string_view port;
    std::string_view path;
    std::string_view query;
    std::string_view fragment;
    UriKind kind = UriKind::None;
};

/// Normalises and splits \p text as `zvutil::uri` tells.
[[nodiscard]] ZVUTIL_EXPORT std::unique_ptr<uri_impl> parse_uri(std::string_view text);

/// The same for the file URI of \p path.
[[nodiscard]] ZVUTIL_EXPORT std::unique_ptr<uri_impl>
parse_file_uri(const std::filesystem::path& path);

} // namespace zvutil::impl
