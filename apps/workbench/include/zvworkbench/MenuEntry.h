#pragma once

#include <zvworkbench/zvworkbench_export.h>

#include <QKeySequence>
#include <QString>

#include <vector>

namespace workbench {

class WorkbenchWindow;

/// An entry of the menu "Modules", which the workbench has as soon as there is one.
/// @since 0.2 @ingroup workbench
struct MenuEntry
{
    QString id; ///< tells it from all others
    QString text; ///< as on the menu: "&Count Words"
    QKeySequence shortcut; ///< one that the workbench doesn't use itself, or none
    /// Called when the user chooses the entry. What it throws as `std::exception` is shown to the user.
    void (*work)(WorkbenchWindow& window);
};

/// Adds an entry to windows that are made from now on; for the rest as `addDocumentType`.
/// @param entry must exist as long as the application
/// @return whether the entry has been added, now or before
/// @since 0.2 @ingroup workbench
ZVWORKBENCH_EXPORT bool addMenuEntry(const MenuEntry& entry);

/// @return the entries that have been added, in their order.
/// @since 0.2 @ingroup workbench
ZVWORKBENCH_EXPORT const std::vector<const MenuEntry*>& addedMenuEntries();

} // namespace workbench
