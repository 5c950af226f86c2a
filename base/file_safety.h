#pragma once

class QFileDevice;
class QSaveFile;

/// What `QSaveFile` leaves open: it asks the system about the file that it is going to replace, and
/// brings the bytes to the disk, but takes no notice of errors in either.
namespace zvutil::base {

/// Opens \p file for writing. Its name, if that is a symbolic link, becomes that of the file which
/// the link leads to. Returns false after any error; \p file isn't open then.
///
/// Without it the new file would replace the link, should the system fail to tell what it is.
bool open_safely(QSaveFile& file);

/// Returns whether \p file, which must be open, has all its bytes on the disk and the permissions of
/// the file that it is going to replace. If not, the caller must not commit it.
///
/// Without it the user could be left with a file without any permissions, or with a private file that
/// everybody can read, or, when the power fails, with an empty one.
bool is_safe_to_commit(QSaveFile& file);

/// Brings all bytes that were written to \p file, which must be open, to the disk. Returns false if
/// the disk reports an error; a file system that can't wait for its disk is no error.
bool bring_to_disk(QFileDevice& file);

/// Makes the name of \p file that of the file which it leads to through symbolic links. Returns
/// false if the system can't tell.
bool follow_links(QSaveFile& file);

} // namespace zvutil::base
