#include "files/FilesSorter.h"

#include "common/request_manager.h"
#include "files/FilteredFilesModel.h"
#include "files/SortRequest.h"

#include <zvutil/libzvutil/BackgroundRequestManager.h>

#include <memory>

namespace workbench {

FilesSorter::FilesSorter(FilteredFilesModel& model)
    : QObject(&model)
    , m_model(model)
{
}

FilesOrder FilesSorter::order() const
{
    return m_order;
}

void FilesSorter::setOrder(FilesOrder order)
{
    cancel();
    m_order = order;
}

void FilesSorter::sort()
{
    if (m_isSorting || m_isSorted || m_model.rowCount() > maxFiles)
        return;
    if (m_order == FilesOrder::Found) {
        m_model.arrangeAsFound();
        m_isSorted = true;
        return;
    }
    m_isSorting = true;
    auto request = std::make_shared<SortRequest>(m_model.paths(), m_order);
    connect(request.get(), &SortRequest::sorted, this,
            [this, number = ++m_number](const std::vector<int>& positions) {
                take(number, positions);
            });
    requestManager().add(std::move(request));
}

void FilesSorter::cancel()
{
    ++m_number;
    m_isSorting = false;
    m_isSorted = false;
}

bool FilesSorter::isSorting() const
{
    return m_isSorting;
}

bool FilesSorter::isSorted() const
{
    return m_isSorted;
}

/// Takes over an order, unless it is that of an earlier state of the model.
void FilesSorter::take(int number, const std::vector<int>& positions)
{
    if (number != m_number)
        return;
    m_isSorting = false;
    m_isSorted = true;
    m_model.arrange(positions);
    Q_EMIT sorted();
}

} // namespace workbench
