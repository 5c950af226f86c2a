#pragma once

namespace zvutil::libzvutil {
class BackgroundRequestManager;
}

namespace workbench {

/// Returns the manager that runs the workbench's requests, one after the other. The first call
/// creates it; the application object owns it. Call on the GUI thread.
zvutil::libzvutil::BackgroundRequestManager& requestManager();

/// Returns the manager that writes recovery copies, which must not wait for a search or an export. For the rest as
/// `requestManager`.
zvutil::libzvutil::BackgroundRequestManager& recoveryManager();

} // namespace workbench
