#pragma once

namespace zvutil::libzvutil {
class BackgroundRequestManager;
}

namespace workbench {

/// Returns the manager that runs the workbench's requests, one after the other. The first call
/// creates it; the application object owns it. Call on the GUI thread.
zvutil::libzvutil::BackgroundRequestManager& requestManager();

} // namespace workbench
