#pragma once

#include "search/SearchRequest.h"

#include <zvutil/stop_source.h>

#include <QDialog>
#include <QStringList>

#include <memory>

class QCheckBox;
class QLineEdit;
class QListWidget;
class QModelIndex;
class QPushButton;
class QTreeView;

namespace zvutil::libzvutil {
class BackgroundRequestManager;
class abstract_response;
} // namespace zvutil::libzvutil

namespace workbench {

class HitDelegate;
class HitsModel;
class StatusLine;
class TypesBox;

/// Searches for a text in the files of folders, in the background.
class FindInFilesDialog : public QDialog
{
    Q_OBJECT

public:
    /// Creates the dialog. \p manager runs the searches and must outlive it.
    FindInFilesDialog(zvutil::libzvutil::BackgroundRequestManager& manager, QWidget* parent);
    /// Asks a running search to stop, and doesn't wait for that.
    ~FindInFilesDialog() override;

    /// Offers \p folders, all of them checked, in place of those from the call before. Folders that
    /// the user has added stay.
    void setFolders(const QStringList& folders);
    void setText(const QString& text);

    /// Starts a search for what is entered; a running one is cancelled first.
    void find();
    void cancel();
    bool isSearching() const;

Q_SIGNALS:
    /// Emitted when the user wants to see a line, counted from 1, in which \p text was found.
    void openRequested(const QString& file, int line, const QString& text);
    /// Emitted when a search has ended, whatever its outcome.
    void searchEnded();

protected:
    void hideEvent(QHideEvent* event) override;

private:
    enum class Outcome { None, Running, Done, Cancelled, Failed };
    struct Search;

    QWidget* makeForm();
    QWidget* makeFolderRow();
    void makeResults();
    QWidget* makeStatusRow();

    void browse();
    void addFolder(const QString& folder, bool isUsers);
    QStringList chosenFolders() const;
    SearchQuery query() const;
    void run(const SearchQuery& query);
    void addUnreadable(const QStringList& paths);
    void takeOver(const SearchProgress& progress);
    void finish(Outcome outcome);
    void showState();
    QString statusText() const;
    void openHit(const QModelIndex& index);
    void showUnreadable();

    zvutil::libzvutil::BackgroundRequestManager& m_manager;
    std::unique_ptr<Search> m_search;
    HitsModel* m_hits;
    HitDelegate* m_delegate;
    QLineEdit* m_text;
    QListWidget* m_folders;
    TypesBox* m_types;
    QCheckBox* m_matchCase;
    QPushButton* m_find;
    QPushButton* m_cancel;
    QTreeView* m_view;
    StatusLine* m_status;
    QPushButton* m_showUnreadable;
    QString m_found; // what the hits are hits of
    QStringList m_unreadable;
    SearchProgress m_progress;
    Outcome m_outcome = Outcome::None;
    int m_searchNumber = 0;
};

} // namespace workbench
