#pragma once

#include <QString>

namespace workbench {

/// Returns the URI of a file in the form that other programs understand. \p file is its full name,
/// with Qt's or the platform's separators.
///
/// A `ZvURI` wouldn't do: it has one slash after the scheme, whatever follows, so that the first
/// directory of `/home/me` would be taken for a host.
QString fileUri(const QString& file);

} // namespace workbench
