#include <zvworkbench/MenuEntry.h>

#include "common/Registry.h"

namespace workbench {

namespace {

Registry<MenuEntry>& entries()
{
    static Registry<MenuEntry> entries("menu entry");
    return entries;
}

} // namespace

bool addMenuEntry(const MenuEntry& entry)
{
    return entries().add(entry, entry.work ? QString() : QStringLiteral("it does nothing"));
}

const std::vector<const MenuEntry*>& addedMenuEntries()
{
    return entries().items();
}

} // namespace workbench
