#include "files/SortRequest.h"

#include "files/NamePattern.h"

#include <QCollator>
#include <QDateTime>
#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <numeric>

namespace workbench {

namespace {

/// What one path is compared by. Qt's sort keys would be faster, but on Windows those of equal texts differ: it
/// compares what it hasn't filled of them, too.
struct Key
{
    QString name;
    QString folder;
    qint64 date; ///< in milliseconds; 0 if it doesn't matter
};

QCollator naturalOrder()
{
    const QLocale system = QLocale::system();
    // Without a language Qt compares numbers digit by digit.
    QCollator collator(system.language() == QLocale::C ? QLocale(QLocale::English) : system);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

std::vector<Key> keysOf(const QStringList& paths, FilesOrder order)
{
    std::vector<Key> keys;
    keys.reserve(std::size_t(paths.size()));
    for (const QString& path : paths) {
        const qint64 date =
            order == FilesOrder::Date ? QFileInfo(path).lastModified().toMSecsSinceEpoch() : 0;
        keys.push_back({fileNameOf(path).toString(), folderOf(path).toString(), date});
    }
    return keys;
}

/// Compares by the first of what \p order names that differs.
bool isBefore(const Key& first, const Key& second, FilesOrder order, const QCollator& collator)
{
    if (order == FilesOrder::Date && first.date != second.date)
        return first.date > second.date;
    const bool folderComesFirst = order == FilesOrder::Folder;
    const int folders = folderComesFirst ? collator.compare(first.folder, second.folder) : 0;
    if (folders != 0)
        return folders < 0;
    const int names = collator.compare(first.name, second.name);
    if (names != 0 || folderComesFirst)
        return names < 0;
    return collator.compare(first.folder, second.folder) < 0;
}

/// Returns the positions of \p paths without those of paths that come again.
std::vector<int> different(const QStringList& paths)
{
#if defined(Q_OS_WIN)
    constexpr Qt::CaseSensitivity casing = Qt::CaseInsensitive;
#else
    constexpr Qt::CaseSensitivity casing = Qt::CaseSensitive;
#endif
    std::vector<int> positions(std::size_t(paths.size()));
    std::iota(positions.begin(), positions.end(), 0);
    std::stable_sort(positions.begin(), positions.end(), [&](int first, int second) {
        return paths[first].compare(paths[second], casing) < 0;
    });
    positions.erase(std::unique(positions.begin(), positions.end(),
                                [&](int first, int second) {
                                    return paths[first].compare(paths[second], casing) == 0;
                                }),
                    positions.end());
    std::sort(positions.begin(), positions.end());
    return positions;
}

} // namespace

SortRequest::SortRequest(const QStringList& paths, FilesOrder order)
    : m_paths(paths)
    , m_order(order)
{
    qRegisterMetaType<std::vector<int>>();
}

void SortRequest::perform()
{
    const std::vector<Key> keys = keysOf(m_paths, m_order);
    const QCollator collator = naturalOrder();
    std::vector<int> positions = different(m_paths);
    std::stable_sort(positions.begin(), positions.end(), [&](int first, int second) {
        return isBefore(keys[std::size_t(first)], keys[std::size_t(second)], m_order, collator);
    });
    Q_EMIT sorted(positions);
    Q_EMIT completed();
}

} // namespace workbench
