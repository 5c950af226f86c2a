#pragma once

#include <QList>
#include <QMenu>

namespace workbench {

class Document;
struct DocumentType;
class RecentFiles;

/// The menu "File". The window carries out what the signals ask for.
class FileMenu : public QMenu
{
    Q_OBJECT

public:
    /// Creates the menu, with \p recentFiles as a submenu.
    FileMenu(RecentFiles& recentFiles, QWidget* parent);

    /// Returns the actions for the tool bar.
    QList<QAction*> toolBarActions() const;

    /// Enables or disables the actions that need a document, or one that can be printed.
    void setDocument(const Document* document);

Q_SIGNALS:
    void newRequested(const workbench::DocumentType& type);
    void openRequested();
    void saveRequested();
    void saveAsRequested();
    void saveAllRequested();
    void renameRequested();
    void importRequested();
    void exportRequested();
    void printRequested();
    void printPreviewRequested();
    void copyAsUriRequested();
    void closeRequested();
    void quitRequested();

private:
    QAction* add(const QString& name, const QString& text, const QKeySequence& shortcut,
                 void (FileMenu::*requested)());
    void addNewDocuments();

    QAction* m_open;
    QAction* m_save;
    QList<QAction*> m_forDocuments;
    QList<QAction*> m_forPages;
};

} // namespace workbench
