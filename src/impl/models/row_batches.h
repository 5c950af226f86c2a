#pragma once

#include <QVariant>

#include <vector>

namespace zvutil::impl {

/// A list of rows that keeps the batches in which they were received: appending a batch costs the
/// same whatever its size.
class row_batches
{
public:
    int size() const;
    /// The value of a row; invalid for a row that doesn't exist. Takes time logarithmic in the
    /// number of batches.
    QVariant value(int row) const;

    void append(const QVariantList& batch);
    void clear();

private:
    std::vector<QVariantList> m_batches;
    /// The number of rows up to and including each batch.
    std::vector<int> m_ends;
};

} // namespace zvutil::impl
