#pragma once

#include "files/RowFilter.h"

#include <DockFramework/DockableWidgetContents.h>

#include <QStringList>

#include <memory>

class QAction;
class QListView;
class QListWidget;
class QModelIndex;
class QSettings;
class QSplitter;
class QToolButton;
class ZvSearchBar;

namespace workbench {

class FilteredFilesModel;
class FolderListModel;
class StatusLine;
class TypesBox;

/// How many files are opened in one go at most.
constexpr int mostFilesToOpen = 50;

/// The files below the folders that the user has chosen: listed and filtered in the background.
///
/// What is listed is what the library's list model finds, peculiarities included: it passes over the
/// first entry of each folder that was chosen, and may list the last folder in one as if it were a file.
class FilesPanel : public DockableWidgetContents
{
    Q_OBJECT

public:
    explicit FilesPanel(QWidget* parent = nullptr);
    ~FilesPanel() override;

    /// In the order in which they were added.
    QStringList folders() const;
    /// Adds those that aren't there yet and lists all anew. Each is taken as it is.
    void addFolders(const QStringList& folders);

    /// What files are listed, each extension with its dot; all if there is none.
    QStringList types() const;

    /// Lists all folders anew.
    void reload();
    /// Ends the listing, which takes what it has found along, or else the filtering, which leaves it.
    void stop();
    /// Whether it lists or filters.
    bool isWorking() const;

    /// Keeps folders, types and layout in the group "Files".
    void saveState(QSettings& settings) const;
    void restoreState(QSettings& settings);

    DockLocationPreference getPreferredDockLocation() const override;
    QSize getPreferredNewWindowSize() const override;
    bool isSystemWidget() const override;
    /// The lists have their own.
    bool requireDefaultMenu() const override;

Q_SIGNALS:
    /// The user wants to work on these files.
    void openRequested(const QStringList& files);
    /// The user, or a restored state, has changed the folders.
    void foldersChanged(const QStringList& folders);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class Listing { Idle, Running, Stopped };

    QWidget* makeFolderBox();
    QWidget* makeTopRow();
    QWidget* makeStatusRow();
    void makeFileView();
    void makeFileActions();
    QAction* addFileAction(const QString& text, const QKeySequence& shortcut,
                           void (FilesPanel::*work)());
    void connectFilter();

    void list(Listing state);
    void showFolders();
    void settle();
    void showStatus();
    QString statusText() const;

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
    ZvSearchBar* m_search;
    TypesBox* m_types;
    QListWidget* m_folders;
    QSplitter* m_splitter;
    QListView* m_view;
    StatusLine* m_status;
    QToolButton* m_stop;
    QAction* m_removeFolder;
    QAction* m_rename = nullptr;
    Listing m_listing = Listing::Idle;
    int m_runsLeft = 0; ///< of the list model, until it has listed all
    int m_unreadableFolders = 0;
    bool m_isWorking = false;
};

} // namespace workbench
