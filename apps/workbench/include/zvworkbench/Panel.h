#pragma once

#include <zvworkbench/zvworkbench_export.h>

#include <QString>

#include <vector>

class DockableWidgetContents;
class QWidget;

namespace workbench {

class WorkbenchWindow;

/// A panel that the workbench shows beside its own, and offers in the menu "View".
/// @since 0.2 @ingroup workbench
struct Panel
{
    QString id; ///< tells it from all others
    /// Creates the panel's contents. \p parent owns them; \p window outlives them. The name that they are
    /// given is the panel's title, and finds it again in a saved layout. May throw `std::exception`.
    DockableWidgetContents* (*make)(WorkbenchWindow& window, QWidget* parent);
};

/// Adds a panel to windows that are made from now on; for the rest as `addDocumentType`.
/// @param panel must exist as long as the application
/// @return whether the panel has been added, now or before
/// @since 0.2 @ingroup workbench
ZVWORKBENCH_EXPORT bool addPanel(const Panel& panel);

/// @return the panels that have been added, in their order.
/// @since 0.2 @ingroup workbench
ZVWORKBENCH_EXPORT const std::vector<const Panel*>& addedPanels();

} // namespace workbench
