#include "impl/models/compact_path_list.h"

namespace zvutil::impl {

namespace {

/// The size at which a run ends: a longer text would take too much memory while it grows.
constexpr std::size_t max_run_length = 0x10000;

} // namespace

void compact_path_list::add(const QString& folder, std::u16string_view name)
{
    const bool begins = m_runs.empty() || !m_runs.back().folder.isSharedWith(folder)
        || m_runs.back().names.size() > max_run_length;
    if (begins) {
        if (!m_runs.empty())
            m_runs.back().names.shrink_to_fit();
        m_runs.push_back({folder, {}});
    }
    std::u16string& names = m_runs.back().names;
    names.push_back(static_cast<char16_t>(name.size()));
    names.append(name);
}

} // namespace zvutil::impl
