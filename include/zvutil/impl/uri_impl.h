#pragma once

#include <zvutil/UriKind.h>
#include <zvutil/zvutil_export.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace zvutil::impl {

/// The text of a URI and the views into it.
struct uri_impl
{
    /// The empty text, of kind `UriKind::None`.
    uri_impl() = default;
    /// The views of a copy would point into the original.
    uri_impl(const uri_impl&) = delete;
    /// The views of a copy would point into the original.
    uri_impl& operator=(const uri_impl&) = delete;

    /// The normalised text, which the views below point into.
    std::string text;
    /// See `uri::scheme`.
    std::string_view scheme;
    /// See `uri::authority`.
    std::string_view authority;
    /// See `uri::userinfo`.
    std::string_view userinfo;
    /// See `uri::host`.
    std::string_view host;
    /// See `uri::port`.
    std::string_view port;
    /// See `uri::path`.
    std::string_view path;
    /// See `uri::query`.
    std::string_view query;
    /// See `uri::fragment`.
    std::string_view fragment;
    /// The class of the scheme.
    UriKind kind = UriKind::None;
};

/// Normalises and splits \p text by the rules of `zvutil::uri`. Never returns null.
[[nodiscard]] ZVUTIL_EXPORT std::unique_ptr<uri_impl> parse_uri(std::string_view text);

/// The same for the file URI of \p path. Throws `std::system_error`, `EILSEQ`, where paths are bytes
/// that aren't UTF-8.
[[nodiscard]] ZVUTIL_EXPORT std::unique_ptr<uri_impl>
parse_file_uri(const std::filesystem::path& path);

} // namespace zvutil::impl
