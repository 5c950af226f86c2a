#include "impl/models/row_batches.h"

#include <algorithm>
#include <cstddef>

namespace zvutil::impl {

int row_batches::size() const
{
    return m_ends.empty() ? 0 : m_ends.back();
}

QVariant row_batches::value(int row) const
{
    if (row < 0 || row >= size())
        return {};
    const auto end = std::upper_bound(m_ends.begin(), m_ends.end(), row);
    const auto batch = static_cast<std::size_t>(end - m_ends.begin());
    return m_batches[batch].at(row - (batch == 0 ? 0 : m_ends[batch - 1]));
}

void row_batches::append(const QVariantList& batch)
{
    m_batches.push_back(batch);
    m_ends.push_back(size() + batch.size());
}

void row_batches::clear()
{
    m_batches.clear();
    m_ends.clear();
}

} // namespace zvutil::impl
