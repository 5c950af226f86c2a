#pragma once

#include <zvutil/basic_pimpl.h>
#include <zvutil/zvutil_export.h>

#include <QAbstractListModel>
#include <QList>
#include <QStringList>
#include <QVariant>

#include <filesystem>

namespace zvutil {
class ZvFilePath;
}

/// The files below a set of directories, as a list of their full paths.
///
/// A thread of the model's own walks the directories and sends rows in batches, so that a view
/// shows the first files long before a large tree has been walked:
/// @code{.cpp}
/// #include <zvutil/ZvFilePath.h>
///
/// #include <QListView>
///
/// void listSchematics(const zvutil::ZvFilePath& directory, QListView* view)
/// {
///     auto* const model = new ZvMultiDirectoryListModel(view);
///     model->setAllowedFileTypes({QStringLiteral(".zvsch")});
///     model->addDirectory(directory);
///     view->setModel(model);
/// }
/// @endcode
/// Every scan begins with `backgroundProcessStarted`, empties the list, inserts rows at its end and
/// ends with `backgroundProcessStopped`; the first comes by itself, over no directories. Rows come
/// in the order of the directories and of the file system, and have the native form of the path.
/// Nothing is watched: `reloadPaths` looks again. Until then a file that has vanished stays a row,
/// also one that did so while the scan ran.
///
/// A directory that can't be opened is passed over. Links to files are listed, links to directories
/// aren't followed. A name that can't be told as text is listed with replacement characters. What
/// else goes wrong on the way is told in the log, in the category "FileView".
///
/// **A scan passes over the first entry of each directory of the set, and may list the last one
/// twice**; it ends early behind an empty directory, or where a directory can't be read on the way.
/// See `docs/peculiarities.md`.
///
/// Types and filter are compared without regard to case, in the sense of the locale that is the
/// global one when the model is made.
///
/// All operations are called on the model's thread and return at once. The destructor waits for the
/// scan, which ends at its next file. A file takes about 250 bytes, including its row.
class ZVUTIL_EXPORT ZvMultiDirectoryListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    /// Sends 1000 rows at a time.
    explicit ZvMultiDirectoryListModel(QObject* parent = nullptr);
    /// Sends \p batchSize rows at a time; all at once if it is 0 or less.
    ZvMultiDirectoryListModel(long long batchSize, QObject* parent);
    ~ZvMultiDirectoryListModel() override;

    /// Appends a directory and scans all anew. The old rows stay until the scan has started. One
    /// that is added twice is listed twice. All but a `QString` end at their first NUL. Narrow text
    /// is in the platform's encoding for file names; `std::system_error` is thrown, and nothing
    /// changes, for narrow text or a path that is invalid in its encoding.
    void addDirectory(const QString& directory);
    void addDirectory(const zvutil::ZvFilePath& directory);
    void addDirectory(const std::filesystem::path& directory);
    void addDirectory(const char* directory);
    void addDirectory(const wchar_t* directory);

    /// Removes each directory that equals this one as a `ZvFilePath` in directory form, and scans
    /// all anew, also if there is none.
    void removeDirectory(const QString& directory);
    void removeDirectory(const zvutil::ZvFilePath& directory);
    void removeDirectory(const std::filesystem::path& directory);
    void removeDirectory(const char* directory);
    void removeDirectory(const wchar_t* directory);

    /// Lists only files with one of these extensions, each with its dot; files of all types if
    /// \p types is empty. A colon in a name ends its type: `a.zvsch:x`, which is a file of its own
    /// on Linux, is of the type `.zvsch`. What was found before stays, and what was passed over
    /// before stays away until `reloadPaths`: the types act on what is yet to be found. Empties the
    /// list at once.
    void setAllowedFileTypes(const QStringList& types);

    /// Lists only files whose name, without its directory, contains \p text. Looks at what was
    /// found before, not at the disk. Empties the list at once.
    void setFilterFixedString(const QString& text);

    /// Scans all anew. Empties the list at once.
    void reloadPaths();

    int rowCount(const QModelIndex& parent) const override;

    /// The path, for `Qt::DisplayRole` and `Qt::ToolTipRole`.
    QVariant data(const QModelIndex& index, int role) const override;

Q_SIGNALS:
    /// A scan has begun. The model itself hears of it first, so the list is empty by now.
    void backgroundProcessStarted(QPrivateSignal);
    /// The scan has ended, and all its rows have come.
    void backgroundProcessStopped(QPrivateSignal);

protected:
    /// Replaces all directories and scans anew. The old rows stay until the scan has started.
    void setDirectories(const QList<zvutil::ZvFilePath>& directories);

private:
    struct ZvMultiDirectoryListModelImpl;

    void nextBatch(const QList<QVariant>& batch);
    template <typename Change>
    void reset(Change change);

    zvutil::basic_pimpl<ZvMultiDirectoryListModelImpl> m_impl;
};

static_assert(sizeof(ZvMultiDirectoryListModel) == sizeof(QAbstractListModel) + 2 * sizeof(void*));
