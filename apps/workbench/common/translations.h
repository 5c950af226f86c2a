#pragma once

namespace workbench {

/// Gives the application the workbench's texts, of which the English catalogue has the plurals. Does
/// nothing from the second call on.
void installTranslations();

} // namespace workbench
