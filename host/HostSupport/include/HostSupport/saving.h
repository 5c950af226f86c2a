#pragma once

#include <HostSupport/HostSupport_export.h>

#include <QSettings>

#include <string>

/// Files of a host that have their old content or their new one, whatever happens while they are
/// written. Any thread.
namespace host {

/// Puts \p content in the place of a file's content. Throws `std::runtime_error` with the reason if
/// it can't be written whole; then the file is as it was. \p file and the reason are UTF-8.
HOSTSUPPORT_EXPORT void saveFile(const std::string& file, const std::string& content);

/// INI files in UTF-8 for `QSettings`, which leaves a file as it was and tells `AccessError` if not
/// all of it can be written. Its own INI format replaces the file by what a full disk took, and says
/// that it worked.
HOSTSUPPORT_EXPORT QSettings::Format settingsFormat();

} // namespace host
