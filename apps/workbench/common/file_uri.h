#pragma once

#include <QString>

namespace workbench {

/// The URI of a file, as other programs understand it, of its full name in Qt's or the platform's form.
///
/// It isn't what a `ZvURI` makes of the path: that has one slash behind the scheme whatever follows,
/// and would have the first directory of `/home/me` taken for a host.
QString fileUri(const QString& file);

} // namespace workbench
