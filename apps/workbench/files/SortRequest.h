#pragma once

#include "files/FilesOrder.h"

#include <zvutil/libzvutil/abstract_request.h>

#include <QStringList>

#include <vector>

namespace workbench {

/// Sorts paths of files on the worker thread of a request manager: the dates have to be read from the
/// disk, and the comparison of names takes its time.
class SortRequest : public zvutil::libzvutil::abstract_request
{
    Q_OBJECT

public:
    SortRequest(const QStringList& paths, FilesOrder order);

Q_SIGNALS:
    /// Emitted with the positions of the paths in their new order. Of equal paths one is kept.
    void sorted(const std::vector<int>& positions);

protected:
    void perform() override;

private:
    QStringList m_paths;
    FilesOrder m_order;
};

} // namespace workbench

Q_DECLARE_METATYPE(std::vector<int>)
