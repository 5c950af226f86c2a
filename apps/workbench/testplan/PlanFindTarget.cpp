#include "testplan/PlanFindTarget.h"

#include "testplan/TestPlanModel.h"
#include "testplan/TestPlanView.h"

#include <QItemSelectionModel>

#include <algorithm>
#include <utility>

namespace workbench {

PlanFindTarget::PlanFindTarget(TestPlanModel& model, TestPlanView& view)
    : m_model(model)
    , m_view(view)
{
}

int PlanFindTarget::rowCount() const
{
    return m_model.rowCount();
}

int PlanFindTarget::columnCount(int row) const
{
    // The cells after the last one are empty, and not worth a search: there can be 4,096 in each row.
    return m_model.plan().rows[static_cast<std::size_t>(row)].cells.size();
}

QString PlanFindTarget::text(int row, int column) const
{
    return cellText(m_model.value(row, column));
}

bool PlanFindTarget::selectsWholeTexts() const
{
    return true;
}

TextPlace PlanFindTarget::selectionStart() const
{
    const QModelIndex current = m_view.currentIndex();
    return current.isValid() ? TextPlace{current.row(), current.column(), 0} : TextPlace();
}

TextPlace PlanFindTarget::selectionEnd() const
{
    TextPlace place = selectionStart();
    if (m_view.currentIndex().isValid())
        place.position = text(place.row, place.column).size();
    return place;
}

QString PlanFindTarget::selectedText() const
{
    return {};
}

void PlanFindTarget::select(const FoundText& found)
{
    const QModelIndex cell = m_model.index(found.place.row, found.place.column);
    m_view.selectionModel()->setCurrentIndex(cell, QItemSelectionModel::ClearAndSelect);
    m_view.scrollTo(cell);
}

bool PlanFindTarget::isReadOnly() const
{
    return false;
}

void PlanFindTarget::change(const QString& step, const std::vector<TextChange>& changes)
{
    std::vector<TestPlanModel::CellChange> cells;
    cells.reserve(changes.size());
    for (const TextChange& change : changes) {
        QString text = this->text(change.place.row, change.place.column);
        text.replace(change.place.position, change.length, change.text);
        cells.push_back({change.place.row, change.place.column, cellValue(text)});
    }
    m_model.setCells(step, std::move(cells));
}

} // namespace workbench
