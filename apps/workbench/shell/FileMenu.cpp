#include "shell/FileMenu.h"

#include "common/edit_icons.h"
#include "output/OutputContent.h"
#include "shell/RecentFiles.h"

#include <zvworkbench/Document.h>
#include <zvworkbench/DocumentType.h>

#include <QKeySequence>

namespace workbench {

FileMenu::FileMenu(RecentFiles& recentFiles, QWidget* parent)
    : QMenu(tr("&File"), parent)
{
    addNewDocuments();
    m_open =
        add(QStringLiteral("open"), tr("&Open…"), QKeySequence::Open, &FileMenu::openRequested);
    addMenu(&recentFiles);
    addSeparator();
    m_save = add(QStringLiteral("save"), tr("&Save"), QKeySequence::Save, &FileMenu::saveRequested);
    QAction* const saveAs =
        add(QStringLiteral("saveAs"), tr("Save &As…"), QKeySequence(QStringLiteral("Ctrl+Shift+S")),
            &FileMenu::saveAsRequested);
    QAction* const saveAll =
        add(QStringLiteral("saveAll"), tr("Save A&ll"), {}, &FileMenu::saveAllRequested);
    QAction* const rename =
        add(QStringLiteral("rename"), tr("Rena&me…"), QKeySequence(QStringLiteral("Shift+F2")),
            &FileMenu::renameRequested);
    addSeparator();
    add(QStringLiteral("import"), tr("&Import…"), {}, &FileMenu::importRequested);
    QAction* const exporting =
        add(QStringLiteral("export"), tr("&Export…"), QKeySequence(QStringLiteral("Ctrl+Shift+E")),
            &FileMenu::exportRequested);
    QAction* const copyUri =
        add(QStringLiteral("copyUri"), tr("Copy as &URI"),
            QKeySequence(QStringLiteral("Ctrl+Alt+C")), &FileMenu::copyAsUriRequested);
    addSeparator();
    m_forPages = {
        add(QStringLiteral("print"), tr("&Print…"), QKeySequence::Print, &FileMenu::printRequested),
        add(QStringLiteral("printPreview"), tr("Print Pre&view…"), {},
            &FileMenu::printPreviewRequested)};
    addSeparator();
    QAction* const closing = add(QStringLiteral("close"), tr("&Close"),
                                 QKeySequence(QStringLiteral("Ctrl+W")), &FileMenu::closeRequested);
    QAction* const quit = addAction(tr("&Quit"));
    quit->setShortcut(QKeySequence(QStringLiteral("Ctrl+Q")));
    connect(quit, &QAction::triggered, this, &FileMenu::quitRequested);

    m_open->setIcon(openIcon());
    m_save->setIcon(saveIcon());
    m_forDocuments = {m_save, saveAs, saveAll, rename, exporting, copyUri, closing};
    setDocument(nullptr);
}

QList<QAction*> FileMenu::toolBarActions() const
{
    return {m_open, m_save};
}

QAction* FileMenu::add(const QString& name, const QString& text, const QKeySequence& shortcut,
                       void (FileMenu::*requested)())
{
    QAction* const action = addAction(text);
    action->setObjectName(name);
    action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, requested);
    return action;
}

void FileMenu::addNewDocuments()
{
    QMenu* const menu = addMenu(tr("&New"));
    for (const DocumentType* const type : documentTypes()) {
        QAction* const action = menu->addAction(type->name);
        action->setObjectName(QStringLiteral("new:") + type->id);
        connect(action, &QAction::triggered, this, [this, type] { Q_EMIT newRequested(*type); });
    }
    menu->actions().constFirst()->setShortcut(QKeySequence::New);
}

void FileMenu::setDocument(const Document* document)
{
    // An action that also needs a file or a change stays enabled while there is a document: a
    // disabled one would swallow its shortcut without a message to the user.
    for (QAction* const action : m_forDocuments)
        action->setEnabled(document);
    for (QAction* const action : m_forPages)
        action->setEnabled(dynamic_cast<const OutputContent*>(document));
}

} // namespace workbench
