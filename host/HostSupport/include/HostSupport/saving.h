#pragma once

#include <HostSupport/HostSupport_export.h>

#include <QSettings>

#include <string>

/// Writing of files that have their old content or their new one, whatever happens meanwhile. Any
/// thread.
namespace host {

/// Replaces the content of the file \p file by \p content. Throws `std::runtime_error` with the
/// reason if it can't be written whole; then the file is as it was. \p file and the reason are
/// UTF-8.
HOSTSUPPORT_EXPORT void saveFile(const std::string& file, const std::string& content);

/// INI files in UTF-8 for `QSettings`, which leaves a file as it was and reports `AccessError` if
/// not all of it can be written. The INI format of `QSettings` itself replaces the file by the part
/// that a full disk took, and reports success.
HOSTSUPPORT_EXPORT QSettings::Format settingsFormat();

/// Returns whether \p settings, of that format, hold what is in their file. Otherwise nothing that
/// is changed in them reaches the file, and nothing is found to be removed.
HOSTSUPPORT_EXPORT bool isRead(const QSettings& settings);

/// Writes \p settings, of that format, to their file. Returns false if the file doesn't have them
/// now. Waits while another program writes the file, but no longer than 35 seconds; `QSettings`
/// itself would wait forever for a program that hangs.
HOSTSUPPORT_EXPORT bool write(QSettings& settings);

} // namespace host
