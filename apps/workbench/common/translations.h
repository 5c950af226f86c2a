#pragma once

namespace workbench {

/// Installs the workbench's texts in the application; the English catalogue supplies the plurals.
/// Does nothing from the second call on.
void installTranslations();

} // namespace workbench
