#pragma once

#include <HostSupport/HostSupport_export.h>

#include <QSettings>

#include <string>

/// Writing of files that have their old content or their new one, whatever happens meanwhile. Any
/// thread.
namespace host {

/// Replaces the content of a file. Throws `std::runtime_error` with the reason, in UTF-8, if it
/// can't be written whole; then the file is as it was.
/// @param file path in UTF-8
/// @param content the bytes of the file from now on
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT void saveFile(const std::string& file, const std::string& content);

/// A format of INI files in UTF-8, which leaves a file as it was and reports `AccessError` if not
/// all of it can be written. The INI format of `QSettings` itself replaces the file by the part
/// that a full disk took, and reports success.
/// @return the format for a constructor of `QSettings`
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT QSettings::Format settingsFormat();

/// @return whether \p settings hold what is in their file. Otherwise nothing that is changed in
/// them reaches the file, and nothing is found to be removed.
/// @param settings of the format `settingsFormat`
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT bool isRead(const QSettings& settings);

/// Writes settings to their file. Waits while another program writes the file, but no longer than
/// 35 seconds; `QSettings` itself would wait forever for a program that hangs.
/// @param settings of the format `settingsFormat`
/// @return false if the file doesn't have them now
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT bool write(QSettings& settings);

} // namespace host
