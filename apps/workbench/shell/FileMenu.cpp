#include "shell/FileMenu.h"

#include "common/EditIcons.h"
#include "documents/Document.h"
#include "shell/RecentFiles.h"
#include "shell/Workbench.h"

#include <QKeySequence>

namespace workbench {

FileMenu::FileMenu(Workbench& workbench)
    : QMenu(tr("&File"), &workbench)
    , m_workbench(workbench)
{
    addNewDocuments();
    m_open = add(QStringLiteral("open"), tr("&Open…"), QKeySequence::Open, &Workbench::askForFiles);
    addMenu(&workbench.recentFiles());
    addSeparator();
    m_save = add(QStringLiteral("save"), tr("&Save"), QKeySequence::Save, &Workbench::saveCurrent);
    QAction* const saveAs =
        add(QStringLiteral("saveAs"), tr("Save &As…"), QKeySequence(QStringLiteral("Ctrl+Shift+S")),
            &Workbench::saveCurrentAs);
    QAction* const saveAll =
        add(QStringLiteral("saveAll"), tr("Save A&ll"), {}, &Workbench::saveAll);
    QAction* const rename =
        add(QStringLiteral("rename"), tr("Rena&me…"), QKeySequence(QStringLiteral("Shift+F2")),
            &Workbench::renameCurrent);
    addSeparator();
    add(QStringLiteral("import"), tr("&Import…"), {}, &Workbench::importDocument);
    QAction* const exporting =
        add(QStringLiteral("export"), tr("&Export…"), {}, &Workbench::exportCurrent);
    QAction* const copyUri =
        add(QStringLiteral("copyUri"), tr("Copy as &URI"),
            QKeySequence(QStringLiteral("Ctrl+Alt+C")), &Workbench::copyCurrentAsUri);
    addSeparator();
    QAction* const closing = add(QStringLiteral("close"), tr("&Close"),
                                 QKeySequence(QStringLiteral("Ctrl+W")), &Workbench::closeCurrent);
    QAction* const quit = addAction(tr("&Quit"));
    quit->setShortcut(QKeySequence(QStringLiteral("Ctrl+Q")));
    connect(quit, &QAction::triggered, &workbench, &QWidget::close);

    m_open->setIcon(openIcon());
    m_save->setIcon(saveIcon());
    m_forDocuments = {m_save, saveAs, saveAll, exporting, closing};
    m_forFiles = {rename, copyUri};
    connect(&workbench, &Workbench::currentDocumentChanged, this, &FileMenu::enableActions);
    connect(this, &QMenu::aboutToShow, this, &FileMenu::enableActions);
    enableActions();
}

QList<QAction*> FileMenu::toolBarActions() const
{
    return {m_open, m_save};
}

QAction* FileMenu::add(const QString& name, const QString& text, const QKeySequence& shortcut,
                       void (Workbench::*operation)())
{
    QAction* const action = addAction(text);
    action->setObjectName(name);
    action->setShortcut(shortcut);
    connect(action, &QAction::triggered, &m_workbench, operation);
    return action;
}

void FileMenu::addNewDocuments()
{
    QMenu* const menu = addMenu(tr("&New"));
    for (const DocumentType& type : documentTypes()) {
        QAction* const action = menu->addAction(type.name);
        action->setObjectName(QStringLiteral("new:") + type.id);
        connect(action, &QAction::triggered, &m_workbench,
                [this, &type] { m_workbench.newDocument(type); });
    }
    menu->actions().constFirst()->setShortcut(QKeySequence::New);
}

/// A shortcut of a disabled action does nothing; so those that may work at any time stay enabled while
/// there is a document.
void FileMenu::enableActions()
{
    const Document* const document = m_workbench.currentDocument();
    for (QAction* const action : m_forDocuments)
        action->setEnabled(document);
    for (QAction* const action : m_forFiles)
        action->setEnabled(document);
}

} // namespace workbench
