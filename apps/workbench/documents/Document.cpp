#include <zvworkbench/Document.h>

#include "common/path_names.h"
#include "documents/EditedContent.h"
#include "documents/KnownFile.h"
#include "documents/ProgressBox.h"
#include "documents/ask_to_overwrite.h"
#include "documents/save_file_name.h"

#include <zvworkbench/FileError.h>

#include <QDir>
#include <QFileInfo>

#include <exception>
#include <new>

namespace workbench {

namespace {

/// Runs \p work. Returns an empty text, or why it failed; a stop by the user counts as a failure.
/// Lack of memory is caught here, since the need for it grows with the file.
template <typename Work>
QString reasonOf(Work work)
{
    try {
        work();
        return {};
    } catch (const FileError& error) {
        return error.reason();
    } catch (const Stopped&) {
        return Document::tr("Stopped.");
    } catch (const std::bad_alloc&) {
        return Document::tr("There is not enough memory.");
    } catch (const std::exception& error) {
        // A module may let its own exceptions pass, and the event loop would end the program.
        return QString::fromUtf8(error.what());
    }
}

} // namespace

Document::Document(const DocumentType& type, const QString& title, QWidget* parent)
    : ZvContentWidget(title, parent)
    , m_type(type)
    , m_known(new KnownFile(this))
{
    connect(this, &ZvContentWidget::saved, this, [this](const zvutil::ZvFilePath& path) {
        m_known->setState(FileState::of(qtFileName(path)));
        // The base class stops watching when the file is saved under another name.
        if (!isFileWatcherEnabled())
            enableFileWatcher(true);
    });
    connect(this, &DockableWidgetContents::saveRequested, this, [this] { save(); });
}

const DocumentType& Document::type() const
{
    return m_type;
}

bool Document::load(const zvutil::ZvFilePath& path)
{
    const QFileInfo file(qtFileName(path));
    // Look before the file is read: a change while it is read isn't shown.
    const FileState state = FileState::of(file.filePath());
    QString reason;
    if (!file.exists())
        reason = tr("The file does not exist.");
    else if (!file.isFile() || !file.isReadable())
        reason = tr("You do not have permission to read it, or it is not a file.");
    else
        reason = reasonOf([&] { read(path); });
    if (!reason.isEmpty()) {
        Q_EMIT failed({tr("%1 “%2” can't be opened.").arg(m_type.name, path.toQString()), reason,
                       tr("Check the file, or open another one.")});
        return false;
    }
    setFilename(path);
    m_known->setState(state);
    setModified(false);
    enableFileWatcher(true);
    return true;
}

bool Document::recover(const zvutil::ZvFilePath& copy, const zvutil::ZvFilePath& file)
{
    const QString reason = reasonOf([&] { read(copy); });
    if (!reason.isEmpty()) {
        Q_EMIT failed({tr("The recovery copy of “%1” can't be opened.")
                           .arg(file.isEmpty() ? shortTitle() : file.toQString()),
                       reason, tr("The copy is kept, and offered again at the next start.")});
        return false;
    }
    if (!file.isEmpty()) {
        setFilename(file);
        enableFileWatcher(true);
    }
    if (auto* const content = dynamic_cast<EditedContent*>(this))
        content->markUnsaved();
    setModified(true);
    return true;
}

QList<QAction*> Document::toolBarActions() const
{
    return {};
}

QList<QAction*> Document::windowActions() const
{
    return {};
}

void Document::showHit(int /*line*/, const QString& /*text*/)
{
}

int Document::fileType() const
{
    return m_type.fileType;
}

QString Document::closeEventText(int index) const
{
    return index == 0 ? tr("Save the changes to “%1”?").arg(shortTitle())
                      : tr("Your changes will be lost if you don't save them.");
}

QString Document::documentTypeName() const
{
    return m_type.name;
}

void Document::writeFile(const zvutil::ZvFilePath& path) const
{
    if (path == filename() && m_known->isChangedOutside(qtFileName(path))) {
        const OverwriteAnswer answer = askToOverwrite(window(), shortTitle());
        if (answer == OverwriteAnswer::Cancel)
            return;
        if (answer == OverwriteAnswer::SaveAs) {
            const zvutil::ZvFilePath other = requestSavePath();
            if (!other.isEmpty())
                writeTo(other);
            return;
        }
    }
    writeTo(path);
}

/// Writes the file, and tells of the outcome.
void Document::writeTo(const zvutil::ZvFilePath& path) const
{
    Q_EMIT beginSave(path, QProtectedSignal());
    const QString reason = reasonOf([&] { write(path); });
    Q_EMIT endSave(reason.isEmpty(), path, QProtectedSignal());
    if (!reason.isEmpty())
        Q_EMIT failed({tr("%1 “%2” was not saved.").arg(m_type.name, path.toQString()), reason,
                       tr("Your changes are still here. Save them under another name, or fix the "
                          "cause and save again.")});
}

void Document::saveSessionBackup(const QString& folder, const QString& name)
{
    write(filePath(QDir(folder).filePath(name)));
}

bool Document::canReloadFile() const
{
    return !filename().isEmpty();
}

void Document::reloadFile()
{
    load(filename());
}

zvutil::ZvFilePath Document::requestSavePath() const
{
    const QString start = filename().isEmpty() ? shortTitle() + m_type.extension
                                               : QFileInfo(qtFileName(filename())).absolutePath();
    const QString file = saveFileName(window(), tr("Save %1 as...").arg(m_type.name), start,
                                      m_type.pluralName, m_type.extension);
    return file.isEmpty() ? zvutil::ZvFilePath() : filePath(file);
}

QAction* Document::addEditAction(const QString& text, const QKeySequence& shortcut)
{
    auto* const action = new QAction(text, this);
    action->setShortcut(shortcut);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    addAction(action);
    return action;
}

} // namespace workbench
