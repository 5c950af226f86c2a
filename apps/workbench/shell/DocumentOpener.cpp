#include "shell/DocumentOpener.h"

#include "common/path_names.h"
#include "documents/KnownFile.h"
#include "files/FilesPanel.h"
#include "recovery/RecoveryCopy.h"
#include "shell/Workbench.h"
#include "shell/file_opening.h"

#include <zvworkbench/Document.h>

#include <DockFramework/DockableWidget.h>

#include <QFileDialog>

#include <exception>
#include <utility>

namespace workbench {

namespace {

QString dialogFilter()
{
    QStringList all;
    QStringList filters;
    for (const DocumentType* const type : documentTypes()) {
        const QString pattern = QLatin1Char('*') + type->extension;
        all.append(pattern);
        filters.append(DocumentOpener::tr("%1 (%2)").arg(type->pluralName, pattern));
    }
    filters.prepend(DocumentOpener::tr("Documents (%1)").arg(all.join(QLatin1Char(' '))));
    filters.append(DocumentOpener::tr("All files (*)"));
    return filters.join(QStringLiteral(";;"));
}

/// Returns why a copy can't be recovered whose type of documents is \p type, or whose document has other changes.
Failure unrecoverable(const RecoveryCopy& copy, const DocumentType* type)
{
    QString reason = DocumentOpener::tr("The document is open and has been changed already.");
    if (copy.isDamaged)
        reason = DocumentOpener::tr("The copy is damaged.");
    else if (!type)
        reason = DocumentOpener::tr("The module for documents of the type “%1” is not loaded.")
                     .arg(copy.typeId);
    return {DocumentOpener::tr("“%1” was not recovered.").arg(copy.title), reason,
            DocumentOpener::tr("The copy is kept, and offered again at the next start.")};
}

/// Returns one failure that describes all of \p failures.
Failure joined(const QList<Failure>& failures)
{
    constexpr int maxListed = 10;
    if (failures.size() == 1)
        return failures.constFirst();
    QStringList reasons;
    for (const Failure& failure : failures.mid(0, maxListed))
        reasons.append(failure.what + QLatin1Char(' ') + failure.reason);
    if (failures.size() > maxListed)
        reasons.append(QStringLiteral("…"));
    return {DocumentOpener::tr("%n files can't be opened.", nullptr, failures.size()),
            reasons.join(QLatin1Char('\n')),
            DocumentOpener::tr("Check the files, or open others.")};
}

} // namespace

DocumentOpener::DocumentOpener(Workbench& window)
    : QObject(&window)
    , m_window(window)
{
}

Document* DocumentOpener::newDocument(const DocumentType& type)
{
    Document* const document =
        makeDocument(type, tr("%1 %2").arg(type.name).arg(m_newDocuments + 1));
    if (document) {
        ++m_newDocuments;
        Q_EMIT made(document);
    }
    return document;
}

Document* DocumentOpener::makeDocument(const DocumentType& type, const QString& title)
{
    QString reason;
    try {
        if (Document* const document = type.make(title, &m_window))
            return document;
    } catch (const std::exception& error) {
        reason = QString::fromUtf8(error.what());
    }
    m_window.showFailure({tr("The window for “%1” can't be made.").arg(title), reason,
                          tr("Close what you don't need, and try again.")});
    return nullptr;
}

Document* DocumentOpener::openFile(const QString& file)
{
    const QString path = canonicalName(file);
    if (DockableWidget* const window = windowOf(path)) {
        m_window.activate(window);
        return qobject_cast<Document*>(window->contents());
    }
    const DocumentType* const type = typeToOpen(path);
    if (!type) {
        refuse(file);
        return nullptr;
    }
    Document* const document = makeDocument(*type, path);
    if (!document)
        return nullptr;
    connect(document, &Document::failed, &m_window, &Workbench::showFailure);
    if (!loadInto(*document, path)) {
        document->deleteLater();
        return nullptr;
    }
    Q_EMIT made(document);
    Q_EMIT fileOpened(path);
    return document;
}

/// Tells that \p file, which has no type, isn't opened here, and offers another program for a single one.
void DocumentOpener::refuse(const QString& file)
{
    if (m_failures)
        m_failures->append(reasonNotToOpen(file));
    else
        offerToSystem(m_window, file);
}

/// Returns the window of the document whose file is \p path, or nullptr.
DockableWidget* DocumentOpener::windowOf(const QString& path) const
{
    for (DockableWidget* const window : m_window.dockableWidgets()) {
        const auto* const document = qobject_cast<Document*>(window->contents());
        if (document && !shownFile(*document).isEmpty()
            && canonicalName(shownFile(*document)) == path)
            return window;
    }
    return nullptr;
}

void DocumentOpener::openFiles(const QStringList& files)
{
    if (files.size() > maxFilesToOpen) {
        m_window.showFailure(
            {tr("%n files are too many to open at once.", nullptr, files.size()),
             tr("At most %n files can be opened at once.", nullptr, maxFilesToOpen),
             tr("Choose fewer files.")});
        return;
    }
    if (files.size() == 1) {
        openFile(files.constFirst());
        return;
    }
    // Failures are collected for one message box. A script may call this function while files are
    // read, so the outer list is kept.
    std::optional<QList<Failure>> outer = std::exchange(m_failures, QList<Failure>());
    for (const QString& file : files)
        openFile(file);
    const QList<Failure> failures = *std::exchange(m_failures, std::move(outer));
    if (!failures.isEmpty())
        m_window.showFailure(joined(failures));
}

bool DocumentOpener::collect(const Failure& failure)
{
    if (m_failures)
        m_failures->append(failure);
    return m_failures.has_value();
}

void DocumentOpener::openAtLine(const QString& file, int line, const QString& text)
{
    if (Document* const document = openFile(file))
        document->showHit(line, text);
}

void DocumentOpener::askForFiles()
{
    openFiles(QFileDialog::getOpenFileNames(&m_window, tr("Open"), QString(), dialogFilter()));
}

Document* DocumentOpener::recover(const RecoveryCopy& copy)
{
    const DocumentType* const type = documentTypeOf(copy.typeId);
    DockableWidget* const window =
        copy.file.isEmpty() ? nullptr : windowOf(canonicalName(copy.file));
    auto* const open = window ? qobject_cast<Document*>(window->contents()) : nullptr;
    if (copy.isDamaged || !type || (open && open->isModified())) {
        m_window.showFailure(unrecoverable(copy, type));
        return nullptr;
    }
    Document* const document = open ? open : makeDocument(*type, copy.title);
    if (!document)
        return nullptr;
    connect(document, &Document::failed, &m_window, &Workbench::showFailure, Qt::UniqueConnection);
    if (!document->recover(filePath(copy.contentPath()), filePath(copy.file))) {
        if (!open)
            document->deleteLater();
        return nullptr;
    }
    if (copy.base)
        KnownFile::of(*document).setState(*copy.base);
    if (!open)
        Q_EMIT made(document);
    return document;
}

} // namespace workbench
