#pragma once

#include "search/FindTarget.h"

namespace workbench {

class TestPlanModel;
class TestPlanView;

/// Lets a find bar search the cells of a test plan. What it replaces goes through the plan's undo stack.
class PlanFindTarget : public FindTarget
{
public:
    /// Creates the target. \p model and \p view must outlive it.
    PlanFindTarget(TestPlanModel& model, TestPlanView& view);

    int rowCount() const override;
    int columnCount(int row) const override;
    QString text(int row, int column) const override;
    bool selectsWholeTexts() const override;
    TextPlace selectionStart() const override;
    TextPlace selectionEnd() const override;
    QString selectedText() const override;
    void select(const FoundText& found) override;
    bool isReadOnly() const override;
    void change(const QString& step, const std::vector<TextChange>& changes) override;

private:
    TestPlanModel& m_model;
    TestPlanView& m_view;
};

} // namespace workbench
