#pragma once

#include <QVariant>

#include <vector>

namespace zvutil::impl {

/// Rows as they have come, in batches that are kept as they are: taking one over costs the same
/// whatever its size.
class row_batches
{
public:
    int size() const;
    /// An invalid value for a row that there isn't. The time grows with the logarithm of the number
    /// of batches.
    QVariant value(int row) const;

    void append(const QVariantList& batch);
    void clear();

private:
    std::vector<QVariantList> m_batches;
    /// The row behind the last of each batch.
    std::vector<int> m_ends;
};

} // namespace zvutil::impl
