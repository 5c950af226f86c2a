#pragma once

#include "output/TablePages.h"
#include "testplan/TestPlanModel.h"

namespace workbench {

/// A test plan on paper: comments in italics, disabled rows struck out, bad verdicts in bold.
class PrintedPlan : public PrintedTable
{
public:
    /// Keeps \p plan as it is now.
    explicit PrintedPlan(const TestPlan& plan);

    int rowCount() const override;
    int columnCount() const override;
    QString text(int row, int column) const override;
    Look look(int row, int column) const override;
    bool isNumber(int row, int column) const override;
    bool isOneCell(int row) const override;
    QString heading(int column) const override;
    bool hasHeadings() const override;
    QFont font() const override;

private:
    TestPlanModel m_model;
};

} // namespace workbench
