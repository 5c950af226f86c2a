#pragma once

#include "output/Pages.h"
#include "schematic/SchematicPicture.h"

namespace workbench {

/// A schematic on one page: as large as on the screen at most, or as small as it takes to fit.
class SchematicPages : public Pages
{
public:
    SchematicPages(const PageTitle& title, const Paper& paper, const Schematic& schematic);

    int count() const override;

protected:
    void paintBody(QPainter& painter, int page) const override;

private:
    SchematicPicture m_picture;
};

} // namespace workbench
