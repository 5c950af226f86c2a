#include "log/LogPanel.h"

#include "common/DimPlaceholder.h"
#include "common/EmptyHint.h"
#include "log/LogFilter.h"
#include "log/LogModel.h"

#include <zv_logging/host.h>
#include <zv_logging/zv_logging.h>
#include <zvutil/ZvStyleManager.h>
#include <zvutil/details/log_level.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>

namespace workbench {

namespace {

constexpr int memorySink = 2;
constexpr std::chrono::milliseconds updateInterval{250};

QToolButton* button(const QString& name, const QString& text, const QString& toolTip)
{
    auto* const result = new QToolButton;
    result->setObjectName(name);
    result->setText(text);
    result->setToolTip(toolTip);
    return result;
}

} // namespace

LogPanel::LogPanel(QWidget* parent)
    : DockableWidgetContents(QStringLiteral("Log"), parent)
    , m_lines(new LogModel(this))
    , m_shown(new LogFilter(this))
    , m_level(new QComboBox)
    , m_text(new QLineEdit)
    , m_view(new QTreeView)
{
    add_sink(memorySink);
    setShortTitle(tr("Log"));
    setLongTitle(tr("Log"));
    m_shown->setSourceModel(m_lines);
    makeView();
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(6);
    layout->addWidget(makeTopRow());
    layout->addWidget(m_view, 1);
    setFocusProxy(m_view);
    m_timer.setInterval(updateInterval);
    connect(&m_timer, &QTimer::timeout, this, &LogPanel::look);
    connect(&libzvutil::styleManager(), &libzvutil::ZvStyleManager::currentStyleChanged, m_lines,
            &LogModel::recolour);
}

LogPanel::~LogPanel() = default;

DockLocationPreference LogPanel::getPreferredDockLocation() const
{
    return DockLocationPreference::Bottom;
}

QSize LogPanel::getPreferredNewWindowSize() const
{
    return {720, 180};
}

bool LogPanel::isSystemWidget() const
{
    return true;
}

bool LogPanel::requireDefaultMenu() const
{
    return false;
}

void LogPanel::showEvent(QShowEvent* event)
{
    look();
    m_timer.start();
    DockableWidgetContents::showEvent(event);
}

void LogPanel::hideEvent(QHideEvent* event)
{
    m_timer.stop();
    DockableWidgetContents::hideEvent(event);
}

QWidget* LogPanel::makeTopRow()
{
    m_level->setObjectName(QStringLiteral("level"));
    m_level->setAccessibleName(tr("Levels to show"));
    m_level->addItem(tr("All"), zvutil::details::log_trace);
    m_level->addItem(tr("Information"), zvutil::details::log_information);
    m_level->addItem(tr("Warnings"), zvutil::details::log_warning);
    m_level->addItem(tr("Errors"), zvutil::details::log_error);
    m_level->setToolTip(tr("Show lines of this level and above"));
    m_text->setObjectName(QStringLiteral("text"));
    m_text->setAccessibleName(tr("Filter the log"));
    m_text->setPlaceholderText(tr("Filter"));
    new DimPlaceholder(m_text);
    m_text->setClearButtonEnabled(true);
    QToolButton* const copyButton =
        button(QStringLiteral("copy"), tr("Copy"), tr("Copy the selected lines, or all"));
    QToolButton* const clearButton =
        button(QStringLiteral("clear"), tr("Clear"), tr("Remove all lines from this view"));
    connect(m_level, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this] { m_shown->setMinLevel(m_level->currentData().toInt()); });
    connect(m_text, &QLineEdit::textChanged, m_shown, &LogFilter::setText);
    connect(copyButton, &QToolButton::clicked, this, &LogPanel::copy);
    connect(clearButton, &QToolButton::clicked, m_lines, &LogModel::clear);

    auto* const row = new QWidget;
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(m_level);
    layout->addWidget(m_text, 1);
    layout->addWidget(copyButton);
    layout->addWidget(clearButton);
    return row;
}

void LogPanel::makeView()
{
    m_view->setObjectName(QStringLiteral("lines"));
    m_view->setAccessibleName(tr("Log"));
    m_view->setModel(m_shown);
    new EmptyHint(tr("There are no lines to show. What the library reports appears here."), m_view);
    m_view->setRootIsDecorated(false);
    m_view->setItemsExpandable(false);
    m_view->setUniformRowHeights(true);
    m_view->setAllColumnsShowFocus(true);
    m_view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->header()->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    m_view->header()->resizeSection(LogModel::LevelColumn, 90);
    m_view->header()->resizeSection(LogModel::CategoryColumn, 130);
    auto* const copyAction = new QAction(tr("Copy"), m_view);
    copyAction->setShortcut(QKeySequence::Copy);
    copyAction->setShortcutContext(Qt::WidgetShortcut);
    connect(copyAction, &QAction::triggered, this, &LogPanel::copy);
    m_view->addAction(copyAction);
    m_view->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void LogPanel::look()
{
    const zvutil::logging::host::NewRecords fresh = zvutil::logging::host::recordsSince(m_seen);
    m_seen = fresh.count;
    if (fresh.records.empty())
        return;
    const bool follow = isAtEnd();
    m_lines->append(fresh.records);
    if (follow)
        m_view->scrollToBottom();
}

void LogPanel::copy() const
{
    QModelIndexList rows = m_view->selectionModel()->selectedRows();
    if (rows.isEmpty()) {
        for (int row = 0; row < m_shown->rowCount(); ++row)
            rows.append(m_shown->index(row, 0));
    }
    std::sort(rows.begin(), rows.end());
    QString text;
    for (const QModelIndex& row : rows) {
        const QString category = row.siblingAtColumn(LogModel::CategoryColumn).data().toString();
        const QString line =
            row.siblingAtColumn(LogModel::TextColumn).data(Qt::ToolTipRole).toString();
        text += QStringLiteral("%1\t%2\t%3\n").arg(row.data().toString(), category, line);
    }
    QApplication::clipboard()->setText(text);
}

/// Returns whether the end is visible. A user who has scrolled up wants to read there, so new lines
/// don't scroll the view then.
bool LogPanel::isAtEnd() const
{
    const QScrollBar& bar = *m_view->verticalScrollBar();
    return bar.value() == bar.maximum();
}

} // namespace workbench
