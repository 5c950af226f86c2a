#pragma once

#include <QString>
#include <QtGlobal>

#include <algorithm>
#include <vector>

namespace workbench {

/// What modules have added of one kind, in the order in which they did. An item has an `id` of its own.
template <typename Item>
class Registry
{
public:
    /// Creates a registry of what is called \p kind in messages.
    explicit Registry(const char* kind)
        : m_kind(kind)
    {
    }

    const std::vector<const Item*>& items() const { return m_items; }

    /// Returns the first item for which \p matches returns true, or nullptr.
    template <typename Predicate>
    const Item* first(Predicate matches) const
    {
        const auto found = std::find_if(m_items.begin(), m_items.end(),
                                        [&matches](const Item* item) { return matches(*item); });
        return found == m_items.end() ? nullptr : *found;
    }

    /// Adds \p item, which isn't copied, unless it is there already or \p problem says what is wrong with
    /// it. Returns whether it is there now; if not, has warned.
    bool add(const Item& item, QString problem)
    {
        if (std::find(m_items.begin(), m_items.end(), &item) != m_items.end())
            return true;
        if (item.id.isEmpty())
            problem = QStringLiteral("it has no id");
        else if (first([&item](const Item& other) { return other.id == item.id; }))
            problem = QStringLiteral("there is another one of that id");
        if (problem.isEmpty())
            m_items.push_back(&item);
        else
            qWarning("The %s \"%s\" was not added to the workbench: %s.", m_kind,
                     qPrintable(item.id), qPrintable(problem));
        return problem.isEmpty();
    }

private:
    const char* m_kind;
    std::vector<const Item*> m_items;
};

} // namespace workbench
