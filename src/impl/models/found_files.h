#pragma once

#include <QString>

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

namespace zvutil::impl {

/// Paths of files in the order in which they were found. Consecutive files of one folder share its
/// text, and each name takes as much memory as it is long.
class found_files
{
public:
    void clear() { m_runs.clear(); }

    /// Appends the file \p name, of less than 65,536 units, in \p folder, which ends in a
    /// separator.
    void add(const QString& folder, std::u16string_view name);

    /// Calls \p visitor with folder and name of each file, until it returns false.
    template <typename Visitor>
    void visit(Visitor visitor) const
    {
        for (const run& files : m_runs) {
            std::u16string_view rest = files.names;
            while (!rest.empty()) {
                const std::u16string_view name = rest.substr(1, rest.front());
                if (!visitor(files.folder, name))
                    return;
                rest.remove_prefix(1 + name.size());
            }
        }
    }

private:
    struct run
    {
        QString folder;
        /// The names, each preceded by its length.
        std::u16string names;
    };

    std::deque<run> m_runs;
};

} // namespace zvutil::impl
