#pragma once

namespace workbench {

/// Adds the types of documents that the workbench itself has.
void addOwnDocumentTypes();

} // namespace workbench
