#pragma once

namespace libzvutil::impl {

/// Warns by `qWarning`, once in a process, if Qt can't show the icons of styles.
void report_missing_icon_formats();

} // namespace libzvutil::impl
