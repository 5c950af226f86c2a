#include "impl/models/found_files.h"

namespace zvutil::impl {

namespace {

/// The size at which a run ends: a longer text would take too much memory while it grows.
constexpr std::size_t longestRun = 0x10000;

} // namespace

void found_files::add(const QString& folder, std::u16string_view name)
{
    const bool begins = m_runs.empty() || !m_runs.back().folder.isSharedWith(folder)
        || m_runs.back().names.size() > longestRun;
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
