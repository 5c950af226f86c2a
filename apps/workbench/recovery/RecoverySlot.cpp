#include "recovery/RecoverySlot.h"

#include "common/path_names.h"

#include <QFile>
#include <QMutexLocker>

#include <utility>

namespace workbench {

RecoverySlot::RecoverySlot(std::shared_ptr<RecoveryFolder> folder, int number)
    : m_folder(std::move(folder))
    , m_number(number)
{
}

void RecoverySlot::write(RecoveryCopy copy, const QString& extension, const ContentWriter& content,
                         quint64 order)
{
    {
        const QMutexLocker locker(&m_mutex);
        if (m_isDiscarded || m_isClosed || order <= m_order)
            return;
        copy.folder = m_folder;
        copy.description = QStringLiteral("%1.json").arg(m_number);
        copy.content = QStringLiteral("%1-%2%3").arg(m_number).arg(order).arg(extension);
        replace(copy, content);
        m_order = order;
    }
    // Look after the mutex is free: discard() may have come too late to be noticed before, and too early to get it.
    removeIfDiscarded();
}

void RecoverySlot::discard()
{
    m_isDiscarded = true;
    removeIfDiscarded();
}

void RecoverySlot::close()
{
    m_isClosed = true;
    const QMutexLocker locker(&m_mutex);
}

void RecoverySlot::replace(const RecoveryCopy& copy, const ContentWriter& content)
{
    try {
        content(filePath(copy.contentPath()), [this](int, int) { return !m_isDiscarded; });
        copy.writeDescription();
    } catch (...) {
        QFile::remove(copy.contentPath());
        throw;
    }
    // The description leads to the new content by now.
    if (m_copy.folder)
        QFile::remove(m_copy.contentPath());
    m_copy = copy;
}

void RecoverySlot::removeIfDiscarded()
{
    if (!m_isDiscarded || !m_mutex.tryLock())
        return;
    if (m_copy.folder)
        m_copy.remove();
    m_copy = {};
    m_mutex.unlock();
}

} // namespace workbench
