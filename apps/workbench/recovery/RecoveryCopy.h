#pragma once

#include "documents/FileState.h"
#include "recovery/RecoveryFolder.h"

#include <QDateTime>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

namespace workbench {

/// The copy of a document with changes that a program hasn't saved before it ended. Its content is in the format of
/// the document's files, and stands beside a description.
struct RecoveryCopy
{
    QString title; ///< as the document's window named it
    QString typeId;
    QString file; ///< the document's own file with Qt's separators; empty if it had none
    std::optional<FileState> base; ///< state of that file when the document last read or wrote it
    QDateTime written;
    QString content; ///< name of the file with the content, in the folder
    QString description; ///< name of the file with all of this
    bool isDamaged = false; ///< the content isn't what was written
    std::shared_ptr<RecoveryFolder> folder;

    /// Returns the path of the content.
    QString contentPath() const;

    /// Writes the description of a copy whose content is in its file already. Throws `std::runtime_error` with the
    /// reason; then the description is as it was.
    void writeDescription() const;

    /// Removes the copy from the disk. Returns false if it is still there.
    bool remove() const;

    /// Returns the copies of programs that don't run any more, the newest first, and removes what is left of copies
    /// that were never finished.
    static QList<RecoveryCopy> abandoned();
};

} // namespace workbench
