#pragma once

#include "files/RowFilter.h"

#include <DockFramework/DockableWidgetContents.h>

#include <QStringList>

#include <memory>

class QAction;
class QComboBox;
class QListView;
class QListWidget;
class QModelIndex;
class QSettings;
class QSplitter;
class QToolButton;
class ZvSearchBar;

namespace workbench {

class EmptyHint;
class FilesSorter;
class FilteredFilesModel;
class FolderListModel;
class StatusLine;
class TypesBox;

/// The largest number of files that can be opened at once.
constexpr int maxFilesToOpen = 50;

/// Shows the files below the folders that the user has chosen, listed and filtered in the
/// background.
///
/// The library's list model determines what is listed, with its peculiarities: it passes over the
/// first entry of each chosen folder, and may list the last folder in one as if it were a file.
class FilesPanel : public DockableWidgetContents
{
    Q_OBJECT

public:
    explicit FilesPanel(QWidget* parent = nullptr);
    ~FilesPanel() override;

    /// Returns the folders in the order in which they were added.
    QStringList folders() const;
    /// Adds the folders that are new, and lists all folders again. A folder that doesn't exist is
    /// added, too, and shown as unreadable.
    void addFolders(const QStringList& folders);

    /// Returns the extensions of the files that are listed, each with its dot; none stands for all
    /// files.
    QStringList types() const;

    /// Lists all folders again.
    void reload();
    /// Stops the listing, which loses the files found so far, or else the filtering, which keeps
    /// them.
    void stop();
    /// Returns whether the panel is listing or filtering.
    bool isWorking() const;

    /// Saves folders, types and layout in the group "Files".
    void saveState(QSettings& settings) const;
    void restoreState(QSettings& settings);

    DockLocationPreference getPreferredDockLocation() const override;
    QSize getPreferredNewWindowSize() const override;
    bool isSystemWidget() const override;
    /// Returns false: the lists have menus of their own.
    bool requireDefaultMenu() const override;

Q_SIGNALS:
    /// Emitted when the user wants to open files.
    void openRequested(const QStringList& files);
    /// Emitted with all folders after they have changed.
    void foldersChanged(const QStringList& folders);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class Listing { Idle, Running, Stopped };

    QWidget* makeFolderRow();
    QWidget* makeTopRow();
    QWidget* makeStatusRow();
    void makeOrderBox();
    void makeFileView();
    void makeFileActions();
    QAction* addFileAction(const QString& text, const QKeySequence& shortcut,
                           void (FilesPanel::*work)());
    void connectFilter();

    void list(Listing state);
    void sort();
    void showFolders();
    void updateWorking();
    void showStatus();
    QString statusText() const;
    QString hintText() const;

    void takeDropped(const QStringList& files);
    void browse();
    void removeSelectedFolders();
    void openSelected();
    void copyUris();
    void copyPaths();
    void rename();
    void renameTo(const QString& file, const QString& newName);
    void showFolder();
    int selectedCount() const;
    QStringList selectedPaths() const;
    void enableActions();

    std::unique_ptr<FolderListModel> m_model;
    RowFilter::Owner m_filter;
    FilteredFilesModel* m_files;
    FilesSorter* m_sorter;
    ZvSearchBar* m_search;
    TypesBox* m_types;
    QComboBox* m_order;
    QListWidget* m_folders;
    QSplitter* m_splitter;
    QListView* m_view;
    EmptyHint* m_hint = nullptr;
    StatusLine* m_status;
    QToolButton* m_stop;
    QAction* m_removeFolder;
    QAction* m_rename = nullptr;
    Listing m_listing = Listing::Idle;
    int m_runsLeft = 0; ///< runs of the list model until everything is listed
    int m_unreadableFolders = 0;
    bool m_isWorking = false;
};

} // namespace workbench
