#pragma once

#include <QVector>

#include <algorithm>
#include <vector>

namespace workbench {

/// The difference between two lists of elements with ids: the elements that an edit removes, and
/// those that it adds. A changed element is in both. Others aren't stored, so an edit takes memory
/// only for what it changes.
///
/// Elements that stay must keep their order, and new ones must be at the end.
template <typename Element>
class ListDifference
{
public:
    ListDifference(const QVector<Element>& before, const QVector<Element>& after)
    {
        int b = 0;
        int a = 0;
        while (b < before.size() || a < after.size()) {
            const bool isEnd = b == before.size() || a == after.size();
            const bool isSame = !isEnd && before[b].id == after[a].id;
            const bool isRemoved = b < before.size() && !(isSame && before[b] == after[a]);
            const bool isAdded = b == before.size() || (isSame && isRemoved);
            if (isRemoved)
                m_removed.push_back({b, before[b]});
            if (isAdded)
                m_added.push_back({a, after[a]});
            b += isRemoved || isSame ? 1 : 0;
            a += isAdded || isSame ? 1 : 0;
        }
    }

    bool isEmpty() const { return m_removed.empty() && m_added.empty(); }
    void redo(QVector<Element>& list) const { exchange(list, m_removed, m_added); }
    void undo(QVector<Element>& list) const { exchange(list, m_added, m_removed); }

    /// Returns whether \p next changes exactly the elements that this difference has changed.
    bool isFollowedBy(const ListDifference& next) const
    {
        return areSame(m_added, next.m_removed) && areSame(m_added, next.m_added);
    }

    /// Merges \p next into this difference. Call only if `isFollowedBy` returns true.
    void append(const ListDifference& next) { m_added = next.m_added; }

    /// Returns whether the list is the same before and after.
    bool leadsBack() const
    {
        return std::equal(m_removed.begin(), m_removed.end(), m_added.begin(), m_added.end(),
                          [](const Item& a, const Item& b) { return a.element == b.element; });
    }

private:
    struct Item
    {
        int index;
        Element element;
    };
    using Items = std::vector<Item>;

    static bool areSame(const Items& a, const Items& b)
    {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Item& x, const Item& y) {
            return x.index == y.index && x.element.id == y.element.id;
        });
    }

    static void exchange(QVector<Element>& list, const Items& removed, const Items& added)
    {
        if (removed.empty() && added.empty())
            return;
        QVector<Element> result;
        result.reserve(list.size() + static_cast<int>(added.size())
                       - static_cast<int>(removed.size()));
        auto out = removed.begin();
        auto in = added.begin();
        for (int index = 0; index < list.size() || in != added.end();) {
            if (in != added.end() && in->index == result.size()) {
                result.append((in++)->element);
                continue;
            }
            if (out != removed.end() && out->index == index)
                ++out;
            else
                result.append(list.at(index));
            ++index;
        }
        list = result;
    }

    Items m_removed;
    Items m_added;
};

} // namespace workbench
