#include <zvworkbench/Panel.h>

#include "common/Registry.h"

namespace workbench {

namespace {

Registry<Panel>& panels()
{
    static Registry<Panel> panels("panel");
    return panels;
}

} // namespace

bool addPanel(const Panel& panel)
{
    return panels().add(panel,
                        panel.make ? QString() : QStringLiteral("it doesn't say how it is made"));
}

const std::vector<const Panel*>& addedPanels()
{
    return panels().items();
}

} // namespace workbench
