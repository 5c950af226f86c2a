#pragma once

#include "files/FilesOrder.h"

#include <QObject>

#include <vector>

namespace workbench {

class FilteredFilesModel;

/// Puts the files of a model into the order that the user has chosen, in the background, as soon as all
/// have been found. A file that was found twice is shown once.
class FilesSorter : public QObject
{
    Q_OBJECT

public:
    /// The largest number of files that are sorted: collecting so many paths takes a tenth of a second.
    static constexpr int maxFiles = 100'000;

    /// Sorts \p model, which owns the sorter.
    explicit FilesSorter(FilteredFilesModel& model);

    FilesOrder order() const;
    /// Sets the order for the next call of `sort`.
    void setOrder(FilesOrder order);

    /// Sorts what is in the model now. Does nothing if it is sorted already, or there are too many files.
    void sort();
    /// Forgets a sorting that is under way, since the model has changed.
    void cancel();
    bool isSorting() const;
    bool isSorted() const;

Q_SIGNALS:
    void sorted();

private:
    void take(int number, const std::vector<int>& positions);

    FilteredFilesModel& m_model;
    FilesOrder m_order = FilesOrder::Name;
    bool m_isSorting = false;
    bool m_isSorted = false;
    int m_number = 0; // of the last request
};

} // namespace workbench
