#include "search/FindInFilesDialog.h"

#include "common/StatusLine.h"
#include "common/number_text.h"
#include "common/tool_tip.h"
#include "files/FileItemDelegate.h"
#include "files/TypesBox.h"
#include "search/HitDelegate.h"
#include "search/HitsModel.h"

#include <zvutil/libzvutil/BackgroundRequestManager.h>
#include <zvutil/libzvutil/abstract_response.h>

#include <QAction>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QHideEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <memory>
#include <string>
#include <utility>

using zvutil::libzvutil::abstract_response;

namespace workbench {

namespace {

constexpr int isUsersRole = Qt::UserRole + 1;
/// The largest number of unreadable files that are listed; any more are only counted.
constexpr int maxUnreadableListed = 1'000;

} // namespace

/// A search that is running, and the means to stop it.
struct FindInFilesDialog::Search
{
    explicit Search(SearchRequest* request)
        : response(request)
    {
        response.attachStopToken(stop.get_token());
    }

    zvutil::stop_source stop;
    abstract_response response;
};

FindInFilesDialog::FindInFilesDialog(zvutil::libzvutil::BackgroundRequestManager& manager,
                                     QWidget* parent)
    : QDialog(parent)
    , m_manager(manager)
    , m_hits(new HitsModel(this))
    , m_delegate(new HitDelegate(this))
    , m_text(new QLineEdit)
    , m_folders(new QListWidget)
    , m_types(new TypesBox(nullptr))
    , m_matchCase(new QCheckBox(tr("&Match case")))
    , m_find(new QPushButton(tr("&Find")))
    , m_cancel(new QPushButton(tr("Cancel")))
    , m_view(new QTreeView)
    , m_status(new StatusLine(nullptr))
    , m_showUnreadable(new QPushButton)
{
    setWindowTitle(tr("Find in files"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    makeResults();
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(makeForm());
    layout->addWidget(m_view, 1);
    layout->addWidget(makeStatusRow());
    resize(760, 560);
    m_text->setFocus();
    showState();
}

FindInFilesDialog::~FindInFilesDialog()
{
    if (m_search)
        m_search->stop.request_stop();
}

void FindInFilesDialog::setFolders(const QStringList& folders)
{
    for (int i = m_folders->count() - 1; i >= 0; --i) {
        if (!m_folders->item(i)->data(isUsersRole).toBool())
            delete m_folders->takeItem(i);
    }
    for (const QString& folder : folders)
        addFolder(folder, false);
    showState();
}

void FindInFilesDialog::setText(const QString& text)
{
    m_text->setText(text);
    m_text->selectAll();
}

void FindInFilesDialog::find()
{
    if (m_text->text().isEmpty() || chosenFolders().isEmpty())
        return;
    cancel();
    m_hits->clear();
    m_unreadable.clear();
    m_progress = {};
    m_outcome = Outcome::Running;
    run(query());
    showState();
}

void FindInFilesDialog::cancel()
{
    if (!m_search)
        return;
    m_search->stop.request_stop();
    finish(Outcome::Cancelled);
}

bool FindInFilesDialog::isSearching() const
{
    return m_search != nullptr;
}

/// Cancels the search: a user who closes the dialog or presses Esc no longer wants it.
void FindInFilesDialog::hideEvent(QHideEvent* event)
{
    if (!event->spontaneous())
        cancel();
    QDialog::hideEvent(event);
}

QWidget* FindInFilesDialog::makeForm()
{
    m_text->setObjectName(QStringLiteral("text"));
    m_text->setMaxLength(1'000);
    m_types->setObjectName(QStringLiteral("types"));
    m_matchCase->setObjectName(QStringLiteral("matchCase"));
    m_find->setObjectName(QStringLiteral("find"));
    m_find->setDefault(true);
    m_cancel->setObjectName(QStringLiteral("cancel"));
    m_cancel->setAutoDefault(false);
    connect(m_text, &QLineEdit::textChanged, this, &FindInFilesDialog::showState);
    connect(m_find, &QPushButton::clicked, this, &FindInFilesDialog::find);
    connect(m_cancel, &QPushButton::clicked, this, &FindInFilesDialog::cancel);
    const auto label = [](const QString& text, QWidget* buddy) {
        auto* const result = new QLabel(text);
        result->setBuddy(buddy);
        return result;
    };

    auto* const form = new QWidget;
    auto* const layout = new QGridLayout(form);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label(tr("&Text"), m_text), 0, 0);
    layout->addWidget(m_text, 0, 1, 1, 2);
    layout->addWidget(m_find, 0, 3);
    layout->addWidget(label(tr("F&olders"), m_folders), 1, 0, Qt::AlignTop);
    layout->addWidget(makeFolderRow(), 1, 1, 1, 3);
    layout->addWidget(label(tr("T&ypes"), m_types), 2, 0);
    layout->addWidget(m_types, 2, 1);
    layout->addWidget(m_matchCase, 2, 2);
    layout->addWidget(m_cancel, 2, 3);
    layout->setColumnStretch(1, 1);
    return form;
}

QWidget* FindInFilesDialog::makeFolderRow()
{
    m_folders->setObjectName(QStringLiteral("folders"));
    m_folders->setTextElideMode(Qt::ElideMiddle);
    m_folders->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_folders->setFixedHeight(84);
    connect(m_folders, &QListWidget::itemChanged, this, &FindInFilesDialog::showState);
    auto* const browseButton = new QPushButton(tr("&Browse…"));
    browseButton->setObjectName(QStringLiteral("browse"));
    browseButton->setAutoDefault(false);
    browseButton->setToolTip(tr("Search another folder, too"));
    connect(browseButton, &QPushButton::clicked, this, &FindInFilesDialog::browse);

    auto* const row = new QWidget;
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_folders, 1);
    layout->addWidget(browseButton, 0, Qt::AlignTop);
    return row;
}

void FindInFilesDialog::makeResults()
{
    m_view->setObjectName(QStringLiteral("hits"));
    m_view->setAccessibleName(tr("Results"));
    m_view->setModel(m_hits);
    m_view->setRootIsDecorated(false);
    m_view->setItemsExpandable(false);
    m_view->setUniformRowHeights(true);
    m_view->setAllColumnsShowFocus(true);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setItemDelegateForColumn(HitsModel::FileColumn, new FileItemDelegate(m_view));
    m_view->setItemDelegateForColumn(HitsModel::TextColumn, m_delegate);
    m_view->header()->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    m_view->header()->resizeSection(HitsModel::FileColumn, 240);
    m_view->header()->resizeSection(HitsModel::LineColumn, 70);
    m_view->header()->setStretchLastSection(true);
    connect(m_view, &QTreeView::doubleClicked, this, &FindInFilesDialog::openHit);
    // The action takes Return from the dialog, which would press the default button, too.
    auto* const openAction = new QAction(tr("Open"), m_view);
    openAction->setShortcuts({Qt::Key_Return, Qt::Key_Enter});
    openAction->setShortcutContext(Qt::WidgetShortcut);
    connect(openAction, &QAction::triggered, this, [this] { openHit(m_view->currentIndex()); });
    m_view->addAction(openAction);
    m_view->setContextMenuPolicy(Qt::ActionsContextMenu);
}

QWidget* FindInFilesDialog::makeStatusRow()
{
    m_status->setObjectName(QStringLiteral("status"));
    m_status->setAccessibleName(tr("Status"));
    m_showUnreadable->setObjectName(QStringLiteral("unreadable"));
    m_showUnreadable->setAutoDefault(false);
    m_showUnreadable->setToolTip(tr("Show the files and folders that can't be read"));
    connect(m_showUnreadable, &QPushButton::clicked, this, &FindInFilesDialog::showUnreadable);
    auto* const row = new QWidget;
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_status, 1);
    layout->addWidget(m_showUnreadable);
    return row;
}

void FindInFilesDialog::browse()
{
    auto* const dialog = new QFileDialog(this, tr("Search in folder"), chosenFolders().value(0));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString& folder) { addFolder(folder, true); });
    dialog->open();
}

/// Adds a folder and checks it. A folder that is listed already is only checked.
void FindInFilesDialog::addFolder(const QString& folder, bool isUsers)
{
    const QString text = QDir::toNativeSeparators(QDir::cleanPath(folder));
    const QList<QListWidgetItem*> present = m_folders->findItems(text, Qt::MatchExactly);
    if (!present.isEmpty()) {
        present.first()->setCheckState(Qt::Checked);
        return;
    }
    auto* const item = new QListWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(Qt::Checked);
    item->setData(isUsersRole, isUsers);
    item->setToolTip(toolTipOf(text));
    m_folders->addItem(item);
    showState();
}

QStringList FindInFilesDialog::chosenFolders() const
{
    QStringList folders;
    for (int i = 0; i < m_folders->count(); ++i) {
        if (m_folders->item(i)->checkState() == Qt::Checked)
            folders.append(QDir::fromNativeSeparators(m_folders->item(i)->text()));
    }
    return folders;
}

SearchQuery FindInFilesDialog::query() const
{
    return {m_text->text(), chosenFolders(), m_types->types(), m_matchCase->isChecked()};
}

void FindInFilesDialog::run(const SearchQuery& query)
{
    m_delegate->setLength(query.text.size());
    m_found = query.text;
    auto request = std::make_shared<SearchRequest>(query);
    m_search = std::make_unique<Search>(request.get());
    // Signals of a cancelled search may still be queued, so only those of the current one are
    // handled.
    const auto whileCurrent = [this, number = ++m_searchNumber](auto work) {
        return [this, number, work](const auto&... arguments) {
            if (m_search && number == m_searchNumber)
                work(arguments...);
        };
    };
    connect(request.get(), &SearchRequest::found, this,
            whileCurrent([this](const QVector<SearchHit>& hits) { m_hits->append(hits); }));
    connect(request.get(), &SearchRequest::unreadable, this,
            whileCurrent([this](const QStringList& paths) { addUnreadable(paths); }));
    connect(request.get(), &SearchRequest::progress, this,
            whileCurrent([this](const SearchProgress& progress) { takeOver(progress); }));
    connect(&m_search->response, &abstract_response::completed, this,
            whileCurrent([this] { finish(Outcome::Done); }), Qt::QueuedConnection);
    connect(&m_search->response, &abstract_response::failed, this,
            whileCurrent([this](const std::string&) { finish(Outcome::Failed); }),
            Qt::QueuedConnection);
    m_manager.add(std::move(request));
}

void FindInFilesDialog::addUnreadable(const QStringList& paths)
{
    m_unreadable += paths.mid(0, maxUnreadableListed - m_unreadable.size());
}

void FindInFilesDialog::takeOver(const SearchProgress& progress)
{
    m_progress = progress;
    showState();
}

void FindInFilesDialog::finish(Outcome outcome)
{
    m_outcome = outcome;
    m_search.reset();
    showState();
    Q_EMIT searchEnded();
}

void FindInFilesDialog::showState()
{
    m_find->setEnabled(!m_text->text().isEmpty() && !chosenFolders().isEmpty());
    m_cancel->setEnabled(isSearching());
    m_showUnreadable->setText(tr("%1 unreadable…").arg(numberText(m_progress.unreadable)));
    m_showUnreadable->setVisible(m_progress.unreadable > 0);
    m_status->setText(statusText());
    m_status->setCursorPosition(0);
    m_status->setToolTip(m_status->text());
}

QString FindInFilesDialog::statusText() const
{
    const QString found =
        tr("%1 in %2 of %3")
            .arg(tr("%1 lines", nullptr, m_hits->rowCount()).arg(numberText(m_hits->rowCount())),
                 numberText(m_hits->fileCount()),
                 tr("%1 files", nullptr, m_progress.searchedFiles)
                     .arg(numberText(m_progress.searchedFiles)));
    switch (m_outcome) {
    case Outcome::None:
        return chosenFolders().isEmpty() ? tr("Choose a folder to search in.")
                                         : tr("Type the text to search for.");
    case Outcome::Running:
        return tr("Searching… %1. %2").arg(found, m_progress.folder);
    case Outcome::Done:
        return m_progress.hasReachedLimit
            ? tr("Only the first %1 lines are shown. Narrow the search to see all.")
                  .arg(numberText(m_hits->rowCount()))
            : tr("%1.").arg(found);
    case Outcome::Cancelled:
        return tr("Cancelled: %1 so far.").arg(found);
    case Outcome::Failed:
        break;
    }
    return tr("The search failed. Search again.");
}

void FindInFilesDialog::openHit(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    const SearchHit& hit = m_hits->hit(index.row());
    Q_EMIT openRequested(hit.file, hit.line.number, m_found);
}

void FindInFilesDialog::showUnreadable()
{
    auto* const dialog = new QDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Files and folders that can't be read"));
    auto* const list = new QListWidget;
    list->addItems(m_unreadable);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    auto* const layout = new QVBoxLayout(dialog);
    if (m_progress.unreadable > m_unreadable.size())
        layout->addWidget(new QLabel(
            tr("These are the first %1 of %2.")
                .arg(numberText(m_unreadable.size()), numberText(m_progress.unreadable))));
    layout->addWidget(list);
    layout->addWidget(buttons);
    dialog->resize(560, 320);
    dialog->open();
}

} // namespace workbench
