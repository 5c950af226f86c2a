#pragma once

namespace zvutil::libzvutil {
class BackgroundRequestManager;
}

namespace workbench {

/// What runs the workbench's requests, one after the other. Made on first use, on the GUI thread; it
/// lives as long as the application, as it has to.
zvutil::libzvutil::BackgroundRequestManager& requests();

} // namespace workbench
