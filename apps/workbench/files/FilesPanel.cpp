#include "files/FilesPanel.h"

#include "common/DimPlaceholder.h"
#include "common/EmptyHint.h"
#include "common/StatusLine.h"
#include "common/file_uri.h"
#include "common/number_text.h"
#include "common/path_names.h"
#include "common/tell.h"
#include "common/tool_tip.h"
#include "documents/FileNameDialog.h"
#include "files/FileItemDelegate.h"
#include "files/FilesSorter.h"
#include "files/FilteredFilesModel.h"
#include "files/FolderListModel.h"
#include "files/TypesBox.h"

#include <zvworkbench/DocumentType.h>
#include <zvworkbench/Failure.h>

#include <zvutil/ZvFilePath.h>
#include <zvutil/ZvSearchBar.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <QListWidget>
#include <QSettings>
#include <QSplitter>
#include <QToolButton>
#include <QToolTip>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace workbench {

namespace {

// The list model runs once over no folders when it is created, and once for each of its two
// settings.
constexpr int runsOfListing = 3;

QToolButton* buttonFor(QAction* action)
{
    auto* const button = new QToolButton;
    button->setDefaultAction(action);
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    return button;
}

/// Returns a folder in the form that the user knows.
QString folderText(const QString& folder)
{
    return QDir::toNativeSeparators(QDir::cleanPath(folder));
}

/// Returns the folders that the list model can walk. The model stops at an empty folder, and would
/// list none of those after it.
QList<zvutil::ZvFilePath> walkable(const QStringList& folders)
{
    QList<zvutil::ZvFilePath> paths;
    for (const QString& folder : folders) {
        if (!QDir(folder).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System
                                  | QDir::NoDotAndDotDot))
            paths.append(filePath(folder));
    }
    return paths;
}

/// Returns \p newName, with the extension of the document \p file if the user has typed none:
/// otherwise the file would no longer be a document.
QString withExtensionOf(const QString& file, const QString& newName)
{
    const DocumentType* const type = documentTypeOfFile(file);
    return type && QFileInfo(newName).suffix().isEmpty() ? newName + type->extension : newName;
}

void copyToClipboard(const QStringList& lines)
{
    QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

} // namespace

FilesPanel::FilesPanel(QWidget* parent)
    : DockableWidgetContents(QStringLiteral("Files"), parent)
    , m_filter(RowFilter::make())
    , m_files(new FilteredFilesModel(this))
    , m_sorter(new FilesSorter(*m_files))
    , m_search(new ZvSearchBar)
    , m_types(new TypesBox(nullptr))
    , m_order(new QComboBox)
    , m_folders(new QListWidget)
    , m_splitter(new QSplitter(Qt::Vertical))
    , m_view(new QListView)
    , m_status(new StatusLine(nullptr))
    , m_stop(new QToolButton)
    , m_removeFolder(new QAction(tr("Remove"), this))
{
    setShortTitle(tr("Files"));
    setLongTitle(tr("Files"));
    makeFileView();
    makeFileActions();
    QWidget* const folderRow = makeFolderRow();
    m_splitter->addWidget(m_folders);
    m_splitter->addWidget(m_view);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setSizes({120, 400});
    m_splitter->setChildrenCollapsible(false);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 4);
    layout->setSpacing(6);
    layout->addWidget(makeTopRow());
    layout->addWidget(folderRow);
    layout->addWidget(m_splitter, 1);
    layout->addWidget(makeStatusRow());
    setFocusProxy(m_search);

    connectFilter();
    connect(this, &DockableWidgetContents::filesDropped, this, &FilesPanel::takeDropped);
    list(Listing::Idle);
    enableActions();
}

FilesPanel::~FilesPanel() = default;

QStringList FilesPanel::folders() const
{
    QStringList folders;
    for (int i = 0; i < m_folders->count(); ++i)
        folders.append(m_folders->item(i)->data(Qt::UserRole).toString());
    return folders;
}

void FilesPanel::addFolders(const QStringList& folders)
{
    QStringList known = this->folders();
    for (const QString& added : folders) {
        const QString folder = QDir::cleanPath(added);
        if (known.contains(folder))
            continue;
        known.append(folder);
        auto* const item = new QListWidgetItem(m_folders);
        item->setData(Qt::UserRole, folder);
    }
    reload();
    Q_EMIT foldersChanged(known);
}

QStringList FilesPanel::types() const
{
    return m_types->types();
}

void FilesPanel::reload()
{
    showFolders();
    list(m_folders->count() == 0 ? Listing::Idle : Listing::Running);
}

void FilesPanel::stop()
{
    if (!m_isWorking)
        return;
    // The list model can only be stopped by destroying it, and the files that it has found are lost
    // with it.
    if (m_listing == Listing::Running)
        list(Listing::Stopped);
    m_filter->pause();
    updateWorking();
}

bool FilesPanel::isWorking() const
{
    return m_isWorking;
}

void FilesPanel::saveState(QSettings& settings) const
{
    settings.beginGroup(QStringLiteral("Files"));
    settings.setValue(QStringLiteral("folders"), folders());
    settings.setValue(QStringLiteral("types"), types());
    settings.setValue(QStringLiteral("splitter"), m_splitter->saveState());
    settings.setValue(QStringLiteral("order"), m_order->currentData());
    settings.endGroup();
}

void FilesPanel::restoreState(QSettings& settings)
{
    settings.beginGroup(QStringLiteral("Files"));
    m_types->setTypes(settings.value(QStringLiteral("types")).toStringList());
    m_order->setCurrentIndex(
        std::max(0, m_order->findData(settings.value(QStringLiteral("order"), 0).toInt())));
    m_splitter->restoreState(settings.value(QStringLiteral("splitter")).toByteArray());
    const QStringList folders = settings.value(QStringLiteral("folders")).toStringList();
    settings.endGroup();
    m_folders->clear();
    addFolders(folders);
}

DockLocationPreference FilesPanel::getPreferredDockLocation() const
{
    return DockLocationPreference::Left;
}

QSize FilesPanel::getPreferredNewWindowSize() const
{
    return {320, 600};
}

bool FilesPanel::isSystemWidget() const
{
    return true;
}

bool FilesPanel::requireDefaultMenu() const
{
    return false;
}

bool FilesPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_search || event->type() != QEvent::KeyPress)
        return DockableWidgetContents::eventFilter(watched, event);
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Down:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_files->rowCount() > 0 && !m_view->currentIndex().isValid())
            m_view->setCurrentIndex(m_files->index(0));
        m_view->setFocus(Qt::TabFocusReason);
        return true;
    case Qt::Key_Escape:
        m_search->clear();
        return true;
    default:
        return false;
    }
}

QWidget* FilesPanel::makeTopRow()
{
    m_search->setObjectName(QStringLiteral("search"));
    m_search->setPlaceholderText(tr("Search, with * and ? for any characters"));
    new DimPlaceholder(m_search);
    m_search->setAccessibleName(tr("Search for files"));
    m_search->setAcceptDrops(false);
    m_search->installEventFilter(this);
    connect(m_search, &QLineEdit::textChanged, this,
            [this](const QString& text) { m_filter->setPattern(text); });

    auto* const reloadAction = new QAction(tr("Reload"), this);
    reloadAction->setObjectName(QStringLiteral("reload"));
    // F5 runs the current script, also while the focus is here.
    reloadAction->setShortcut(QKeySequence(QStringLiteral("Ctrl+R")));
    reloadAction->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    reloadAction->setToolTip(tr("List the folders again (Ctrl+R)"));
    connect(reloadAction, &QAction::triggered, this, &FilesPanel::reload);
    addAction(reloadAction);

    m_types->setObjectName(QStringLiteral("types"));
    connect(m_types, &TypesBox::typesChanged, this, &FilesPanel::reload);

    makeOrderBox();

    auto* const top = new QWidget;
    auto* const layout = new QGridLayout(top);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(m_search, 0, 0, 1, 3);
    layout->addWidget(m_types, 1, 0);
    layout->addWidget(m_order, 1, 1);
    layout->addWidget(buttonFor(reloadAction), 1, 2);
    layout->setColumnStretch(0, 1);
    return top;
}

void FilesPanel::makeOrderBox()
{
    m_order->setObjectName(QStringLiteral("order"));
    m_order->setAccessibleName(tr("Order of the files"));
    m_order->addItem(tr("By name"), int(FilesOrder::Name));
    m_order->addItem(tr("By folder"), int(FilesOrder::Folder));
    m_order->addItem(tr("By date"), int(FilesOrder::Date));
    m_order->addItem(tr("As found"), int(FilesOrder::Found));
    m_order->setToolTip(tr("The order of the files. More than %1 files stay as they are found.")
                            .arg(numberText(FilesSorter::maxFiles)));
    connect(m_order, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] {
        m_sorter->setOrder(FilesOrder(m_order->currentData().toInt()));
        sort();
    });
}

QWidget* FilesPanel::makeFolderRow()
{
    m_folders->setObjectName(QStringLiteral("folders"));
    m_folders->setAccessibleName(tr("Folders"));
    m_folders->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_folders->setTextElideMode(Qt::ElideMiddle);
    m_folders->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_folders->setMinimumHeight(48);
    connect(m_folders, &QListWidget::itemSelectionChanged, this, &FilesPanel::enableActions);

    auto* const add = new QAction(tr("Add Folder…"), this);
    add->setObjectName(QStringLiteral("addFolder"));
    add->setToolTip(tr("List the files of another folder. You can also drop folders here."));
    connect(add, &QAction::triggered, this, &FilesPanel::browse);
    m_removeFolder->setObjectName(QStringLiteral("removeFolder"));
    m_removeFolder->setToolTip(tr("Stop listing the files of the selected folders"));
    m_removeFolder->setShortcut(QKeySequence::Delete);
    m_removeFolder->setShortcutContext(Qt::WidgetShortcut);
    connect(m_removeFolder, &QAction::triggered, this, &FilesPanel::removeSelectedFolders);
    m_folders->addActions({add, m_removeFolder});
    m_folders->setContextMenuPolicy(Qt::ActionsContextMenu);

    auto* const row = new QWidget;
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(new QLabel(tr("Folders")), 1);
    layout->addWidget(buttonFor(add));
    layout->addWidget(buttonFor(m_removeFolder));
    return row;
}

QWidget* FilesPanel::makeStatusRow()
{
    m_status->setObjectName(QStringLiteral("status"));
    m_status->setAccessibleName(tr("Status"));
    m_stop->setObjectName(QStringLiteral("stop"));
    m_stop->setText(tr("Stop"));
    m_stop->setToolTip(tr("Stop listing and filtering"));
    QSizePolicy keepsItsRoom = m_stop->sizePolicy();
    keepsItsRoom.setRetainSizeWhenHidden(true);
    m_stop->setSizePolicy(keepsItsRoom);
    connect(m_stop, &QToolButton::clicked, this, &FilesPanel::stop);

    auto* const row = new QWidget;
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(m_status, 1);
    layout->addWidget(m_stop);
    return row;
}

void FilesPanel::makeFileView()
{
    m_view->setObjectName(QStringLiteral("files"));
    m_view->setAccessibleName(tr("Files"));
    m_view->setModel(m_files);
    m_hint = new EmptyHint(QString(), m_view);
    m_view->setItemDelegate(new FileItemDelegate(m_view));
    m_view->setUniformItemSizes(true);
    m_view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_view->setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(m_view, &QListView::doubleClicked, this, &FilesPanel::openSelected);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &FilesPanel::enableActions);
    connect(m_files, &QAbstractItemModel::modelReset, this, &FilesPanel::enableActions);
}

void FilesPanel::makeFileActions()
{
    QAction* const open = addFileAction(tr("Open"), Qt::Key_Return, &FilesPanel::openSelected);
    open->setShortcuts({Qt::Key_Return, Qt::Key_Enter});
    addFileAction(tr("Copy as URI"), Qt::CTRL + Qt::SHIFT + Qt::Key_C, &FilesPanel::copyUris);
    addFileAction(tr("Copy Path"), QKeySequence::Copy, &FilesPanel::copyPaths);
    m_rename = addFileAction(tr("Rename…"), Qt::Key_F2, &FilesPanel::rename);
    addFileAction(tr("Show Folder"), QKeySequence(), &FilesPanel::showFolder);
}

QAction* FilesPanel::addFileAction(const QString& text, const QKeySequence& shortcut,
                                   void (FilesPanel::*work)())
{
    auto* const action = new QAction(text, m_view);
    action->setShortcut(shortcut);
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, work);
    m_view->addAction(action);
    return action;
}

void FilesPanel::connectFilter()
{
    connect(m_filter.get(), &RowFilter::begun, this, [this] {
        m_sorter->cancel();
        m_files->clear();
        updateWorking();
    });
    connect(m_filter.get(), &RowFilter::found, this, [this](const std::vector<int>& rows) {
        m_sorter->cancel();
        m_files->append(rows);
    });
    connect(m_sorter, &FilesSorter::sorted, this, &FilesPanel::updateWorking);
    connect(m_filter.get(), &RowFilter::progress, this, &FilesPanel::updateWorking);
}

void FilesPanel::list(Listing state)
{
    m_listing = state;
    m_runsLeft = runsOfListing;
    const std::unique_ptr<FolderListModel> previous =
        std::exchange(m_model, std::make_unique<FolderListModel>());
    connect(m_model.get(), &ZvMultiDirectoryListModel::backgroundProcessStopped, this, [this] {
        if (--m_runsLeft == 0 && m_listing == Listing::Running)
            m_listing = Listing::Idle;
        updateWorking();
    });
    m_files->setSource(m_model.get());
    m_filter->setSource(m_model.get());
    if (state == Listing::Running) {
        m_model->setAllowedFileTypes(m_types->types());
        m_model->setDirectories(walkable(folders()));
    }
    updateWorking();
}

/// Marks the folders that can't be listed, since the list model skips them without a report.
void FilesPanel::showFolders()
{
    m_unreadableFolders = 0;
    // The list of folders would be one more empty box.
    m_folders->setVisible(m_folders->count() > 0);
    for (int i = 0; i < m_folders->count(); ++i) {
        QListWidgetItem& item = *m_folders->item(i);
        const QString folder = item.data(Qt::UserRole).toString();
        const QFileInfo info(folder);
        const bool isReadable = info.isDir() && info.isReadable();
        const QString text = folderText(folder);
        item.setText(isReadable ? text : tr("%1 (can't be read)").arg(text));
        item.setToolTip(toolTipOf(
            isReadable ? text
                       : tr("“%1” does not exist, or you do not have permission to read it. "
                            "Restore it and press Reload, or remove it from the list.")
                             .arg(text)));
        m_unreadableFolders += isReadable ? 0 : 1;
    }
}

/// Sorts the files if all have been found.
void FilesPanel::sort()
{
    if (m_listing != Listing::Running && m_filter->isDone())
        m_sorter->sort();
}

/// Shows whether the panel lists, filters or sorts, and the number of files.
void FilesPanel::updateWorking()
{
    const bool isListing =
        m_listing == Listing::Running || (!m_filter->isDone() && !m_filter->isPaused());
    if (!isListing)
        sort();
    const bool isWorking = isListing || m_sorter->isSorting();
    if (isWorking != m_isWorking) {
        m_isWorking = isWorking;
        if (isWorking)
            m_search->searchStarted();
        else
            m_search->searchStopped();
    }
    m_stop->setVisible(isWorking);
    showStatus();
}

void FilesPanel::showStatus()
{
    const int rows = m_model->rowCount(QModelIndex());
    const bool isFiltering = m_isWorking && m_listing != Listing::Running && rows > 0;
    m_status->setProgressMaximum(rows);
    m_status->setProgressValue(isFiltering ? m_filter->lookedAt() : 0);
    const QString text = statusText();
    if (text != m_status->text()) {
        m_status->setText(text);
        m_status->setCursorPosition(0);
        m_status->setToolTip(text);
        m_hint->say(hintText());
    }
}

/// Returns what to do about an empty list.
QString FilesPanel::hintText() const
{
    if (m_folders->count() == 0)
        return tr("Add a folder to list its files, or drop one here.");
    if (m_isWorking || m_listing == Listing::Stopped)
        return {};
    return m_search->text().isEmpty() ? tr("There are no such files in these folders.")
                                      : tr("No name of a file matches the search.");
}

QString FilesPanel::statusText() const
{
    if (m_listing == Listing::Stopped)
        return tr("Listing stopped. Press Reload to list the folders again.");
    if (m_folders->count() == 0)
        return tr("Add a folder to list its files.");
    const int rows = m_model->rowCount(QModelIndex());
    const int percent = rows > 0 ? int(100LL * m_filter->lookedAt() / rows) : 100;
    if (m_sorter->isSorting())
        return tr("Sorting…");
    if (m_listing != Listing::Running && m_isWorking)
        return tr("Filtering… %1 %").arg(percent);
    if (m_listing != Listing::Running && !m_filter->isDone())
        return tr("Filtering stopped at %1 %. Change the text to filter again.").arg(percent);
    const bool isFiltered = !m_search->text().isEmpty();
    // Files that were found twice are known once the list is sorted.
    const int count =
        m_sorter->isSorted() && !isFiltered ? m_files->rowCount() : m_filter->different();
    const QString all = tr("%1 files", nullptr, count).arg(numberText(count));
    const QString shown =
        !isFiltered ? all : tr("%1 of %2").arg(numberText(m_files->rowCount()), all);
    if (m_listing == Listing::Running)
        return tr("Listing… %1").arg(shown);
    return m_unreadableFolders == 0
        ? shown
        : tr("%1; %n unreadable folders", nullptr, m_unreadableFolders).arg(shown);
}

/// Lists dropped folders, and asks to open dropped files.
void FilesPanel::takeDropped(const QStringList& files)
{
    QStringList folders;
    QStringList others;
    for (const QString& file : files)
        (QFileInfo(file).isDir() ? folders : others).append(file);
    if (!folders.isEmpty())
        addFolders(folders);
    if (!others.isEmpty())
        Q_EMIT openRequested(others);
}

void FilesPanel::browse()
{
    auto* const dialog = new QFileDialog(this, tr("Add Folder"), folders().value(0));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString& folder) { addFolders({folder}); });
    dialog->open();
}

void FilesPanel::removeSelectedFolders()
{
    qDeleteAll(m_folders->selectedItems());
    reload();
    Q_EMIT foldersChanged(folders());
}

void FilesPanel::openSelected()
{
    const int count = selectedCount();
    if (count > maxFilesToOpen) {
        tell(this,
             {tr("%n files are too many to open at once.", nullptr, count),
              tr("At most %n files can be opened at once.", nullptr, maxFilesToOpen),
              tr("Select fewer files.")});
        return;
    }
    if (count > 0)
        Q_EMIT openRequested(selectedPaths());
}

void FilesPanel::copyUris()
{
    QStringList uris;
    for (const QString& path : selectedPaths())
        uris.append(fileUri(path));
    copyToClipboard(uris);
}

void FilesPanel::copyPaths()
{
    copyToClipboard(selectedPaths());
}

void FilesPanel::rename()
{
    const QStringList files = selectedPaths();
    if (files.size() != 1)
        return;
    const QString& file = files.first();
    const QFileInfo info(file);
    auto* const dialog =
        new FileNameDialog(this, tr("Rename"), info.absolutePath(), info.fileName());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this,
            [this, dialog, file] { renameTo(file, withExtensionOf(file, dialog->file())); });
    dialog->open();
}

void FilesPanel::renameTo(const QString& file, const QString& newName)
{
    QFile present(file);
    if (present.rename(newName)) {
        reload();
        return;
    }
    tell(this,
         {tr("“%1” was not renamed.").arg(QDir::toNativeSeparators(file)), present.errorString(),
          tr("Check that the file still exists, that no program is using it, and that you may "
             "write to its folder.")});
}

/// Shows the path of the folder in a tool tip. No program is started for it, since there may be
/// none that shows folders.
void FilesPanel::showFolder()
{
    const QModelIndexList selected = m_view->selectionModel()->selectedIndexes();
    if (selected.isEmpty())
        return;
    // The current row is the one that the user went to last, but it may no longer be selected.
    const QModelIndex current = m_view->currentIndex();
    const QModelIndex index =
        selected.contains(current) ? current : *std::min_element(selected.begin(), selected.end());
    const QRect row = m_view->visualRect(index);
    QToolTip::showText(m_view->viewport()->mapToGlobal(row.bottomLeft()),
                       toolTipOf(index.data(FilteredFilesModel::FolderRole).toString()), m_view,
                       row);
}

int FilesPanel::selectedCount() const
{
    int count = 0;
    for (const QItemSelectionRange& range : m_view->selectionModel()->selection())
        count += range.height();
    return count;
}

/// Returns the paths in the order of the list, whatever the order of the selection.
QStringList FilesPanel::selectedPaths() const
{
    QModelIndexList indexes = m_view->selectionModel()->selectedIndexes();
    std::sort(indexes.begin(), indexes.end());
    QStringList paths;
    for (const QModelIndex& index : indexes)
        paths.append(m_files->path(index));
    return paths;
}

void FilesPanel::enableActions()
{
    m_removeFolder->setEnabled(!m_folders->selectedItems().isEmpty());
    const int count = selectedCount();
    for (QAction* const action : m_view->actions())
        action->setEnabled(count > 0);
    m_rename->setEnabled(count == 1);
}

} // namespace workbench
