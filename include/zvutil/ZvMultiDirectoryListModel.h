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
/// The model's own thread walks the directories and sends rows in batches, so that a view
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
/// ends with `backgroundProcessStopped`; the first one runs by itself, over no directories. Rows are
/// in the order of the directories and of the file system, and have the native form of the path.
/// Nothing is watched: `reloadPaths` looks again. Until then a file that has vanished stays a row,
/// also one that did so while the scan ran.
///
/// A directory that can't be opened is skipped. Links to files are listed, links to directories
/// aren't followed. A name that isn't text is listed with replacement characters. Other
/// failures during the scan are reported in the log, in the category "FileView".
///
/// **A scan passes over the first entry of each directory of the set, and may list the last one
/// twice**; the scan ends early after an empty directory, or where a directory can't be read on the
/// way. See `docs/peculiarities.md`.
///
/// Types and filter are compared without regard to case, in the sense of the locale that is the
/// global one when the model is constructed.
///
/// All operations are called on the model's thread and return at once. The destructor waits for the
/// scan, which ends at its next file. A file takes about 250 bytes, including its row.
/// @since 0.1 @ingroup models
class ZVUTIL_EXPORT ZvMultiDirectoryListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    /// A model that sends 1000 rows at a time.
    /// @param parent owns the model; may be null
    explicit ZvMultiDirectoryListModel(QObject* parent = nullptr);
    /// A model that sends another number of rows at a time.
    /// @param batchSize all rows are sent at once if it is 0 or less
    /// @param parent owns the model; may be null
    ZvMultiDirectoryListModel(long long batchSize, QObject* parent);
    /// Ends the scan at its next file and waits for that.
    ~ZvMultiDirectoryListModel() override;

    /// Appends a directory and scans all directories again. The old rows stay until the scan has
    /// started. A directory that is added twice is listed twice. Only a `QString` may hold a NUL,
    /// the other texts end at their first one. Narrow text is in the platform's encoding for file
    /// names; `std::system_error` is thrown, and nothing changes, for narrow text or a path that is
    /// invalid in its encoding.
    /// @param directory the whole text counts, NULs included
    void addDirectory(const QString& directory);
    /// The same for a path.
    /// @param directory a path, relative or absolute
    void addDirectory(const zvutil::ZvFilePath& directory);
    /// The same for a path of the standard library.
    /// @param directory a path, relative or absolute
    void addDirectory(const std::filesystem::path& directory);
    /// The same for narrow text.
    /// @param directory must not be null
    void addDirectory(const char* directory);
    /// The same for wide text.
    /// @param directory must not be null
    void addDirectory(const wchar_t* directory);

    /// Removes each directory that equals the given one as a `ZvFilePath` in directory form, and
    /// scans the others again, even if nothing was removed.
    /// @param directory as it was added
    void removeDirectory(const QString& directory);
    /// The same for a path.
    /// @param directory as it was added
    void removeDirectory(const zvutil::ZvFilePath& directory);
    /// The same for a path of the standard library.
    /// @param directory as it was added
    void removeDirectory(const std::filesystem::path& directory);
    /// The same for narrow text.
    /// @param directory must not be null
    void removeDirectory(const char* directory);
    /// The same for wide text.
    /// @param directory must not be null
    void removeDirectory(const wchar_t* directory);

    /// Lists only files with certain extensions. A colon in a name ends its type: `a.zvsch:x`,
    /// which is a file of its own on Linux, is of the type `.zvsch`. Files found before stay, and
    /// files skipped before stay away until `reloadPaths`: the types apply to files that are yet to
    /// be found. Empties the list at once.
    /// @param types the extensions, each with its dot; files of all types if it is empty
    void setAllowedFileTypes(const QStringList& types);

    /// Lists only files whose name, without its directory, contains a text. Filters the files found
    /// before, without reading the disk. Empties the list at once.
    /// @param text the empty one lists all files
    void setFilterFixedString(const QString& text);

    /// Scans all directories again. Empties the list at once.
    void reloadPaths();

    /// @return the number of files listed so far; 0 below a row.
    /// @param parent an invalid index for the list itself
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;

    /// @return the path, for `Qt::DisplayRole` and `Qt::ToolTipRole`.
    /// @param index of a row
    /// @param role with any other than those two nothing is returned
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

Q_SIGNALS:
    /// A scan has begun; the list is empty by now.
    void backgroundProcessStarted(QPrivateSignal);
    /// The scan has ended, and all its rows have been inserted.
    void backgroundProcessStopped(QPrivateSignal);

protected:
    /// Replaces all directories and scans again. The old rows stay until the scan has started.
    /// @param directories in the order in which they are scanned
    void setDirectories(const QList<zvutil::ZvFilePath>& directories);

private:
    struct ZvMultiDirectoryListModelImpl;

    void nextBatch(const QList<QVariant>& batch);
    template <typename Change>
    void reset(Change change);

    zvutil::basic_pimpl<ZvMultiDirectoryListModelImpl> m_impl;
};

static_assert(sizeof(ZvMultiDirectoryListModel) == sizeof(QAbstractListModel) + 2 * sizeof(void*));
