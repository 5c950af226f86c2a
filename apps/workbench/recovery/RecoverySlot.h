#pragma once

#include "documents/EditedContent.h"
#include "recovery/RecoveryCopy.h"

#include <QMutex>

#include <atomic>
#include <memory>

namespace workbench {

/// The place of one document's recovery copy. A copy replaces the one before in one step. Any thread; several may
/// write at once.
class RecoverySlot
{
public:
    /// \p number tells the slot from all others in the folder.
    RecoverySlot(std::shared_ptr<RecoveryFolder> folder, int number);

    /// Writes a copy, whose \p order counts up from 1: an older one than that which is there is left out, and so is
    /// each after `discard` or `close`. The members of \p copy that name files need not be set; \p extension is
    /// that of the content. Throws `FileError`, `Stopped` and `std::exception`; then the copy is as it was.
    void write(RecoveryCopy copy, const QString& extension, const ContentWriter& content,
               quint64 order);

    /// Removes the copy. If it is being written, returns at once, and the writer removes it.
    void discard();

    /// Waits until nobody writes, and leaves the copy as it is from then on.
    void close();

private:
    void replace(const RecoveryCopy& copy, const ContentWriter& content);
    void removeIfDiscarded();

    const std::shared_ptr<RecoveryFolder> m_folder;
    const int m_number;
    std::atomic<bool> m_isDiscarded{false};
    std::atomic<bool> m_isClosed{false};
    QMutex m_mutex; ///< for those below, and for the files
    RecoveryCopy m_copy; ///< what is on the disk; without a folder if there is nothing
    quint64 m_order = 0;
};

} // namespace workbench
