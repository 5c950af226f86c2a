#pragma once

#include <QList>
#include <QMenu>

#include <functional>

namespace workbench {

class Document;
class Workbench;

/// The menu "File".
class FileMenu : public QMenu
{
    Q_OBJECT

public:
    explicit FileMenu(Workbench& workbench);

    /// What is used most.
    QList<QAction*> toolBarActions() const;

private:
    QAction* add(const QString& name, const QString& text, const QKeySequence& shortcut,
                 void (Workbench::*operation)());
    void addNewDocuments();
    void enableActions();

    Workbench& m_workbench;
    QAction* m_open;
    QAction* m_save;
    QList<QAction*> m_forDocuments;
    QList<QAction*> m_forFiles; ///< need a document that has a file
};

} // namespace workbench
