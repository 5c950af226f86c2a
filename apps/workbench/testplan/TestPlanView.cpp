#include "testplan/TestPlanView.h"

#include "common/style_options.h"

#include "documents/ProgressBox.h"
#include "testplan/HeadingEditor.h"
#include "testplan/TestPlanClipboard.h"
#include "testplan/TestPlanDelegate.h"
#include "testplan/TestPlanModel.h"

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleManager.h>

#include <QApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLocale>
#include <QMessageBox>
#include <QMetaProperty>
#include <QPainter>
#include <QScopeGuard>
#include <QScrollBar>
#include <QStyle>

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

namespace workbench {

namespace {

constexpr qint64 manyCells = 1'000'000;
constexpr int minColumnWidth = 64;
constexpr int maxColumnWidth = 340;
constexpr int rowMargin = 10;
constexpr int columnMargin = 18;
constexpr int measuredColumns = 100;
constexpr int measuredRows = 200;

bool isModifiedBy(const QKeyEvent& event, Qt::KeyboardModifiers modifiers)
{
    const Qt::KeyboardModifiers keypad = Qt::KeypadModifier;
    return (event.modifiers() & ~keypad) == modifiers;
}

} // namespace

TestPlanView::TestPlanView(TestPlanModel& model, QWidget* parent)
    : QTableView(parent)
    , m_model(model)
    , m_headings(std::make_unique<HeadingEditor>(*horizontalHeader()))
{
    setObjectName(QStringLiteral("testPlanView"));
    setAccessibleName(tr("Test plan"));
    setModel(&model);
    auto* const delegate = new TestPlanDelegate(model, this);
    setItemDelegate(delegate);
    connect(delegate, &TestPlanDelegate::leftTowards, this, &TestPlanView::moveCurrent);
    setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
    setSelectionMode(ExtendedSelection);
    setFrameShape(NoFrame);
    setWordWrap(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + rowMargin);
    verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setHighlightSections(false);
    connect(horizontalHeader(), &QHeaderView::sectionDoubleClicked, this,
            &TestPlanView::renameHeading);
    connect(m_headings.get(), &HeadingEditor::ended, this, [this] { setFocus(); });
    connect(m_headings.get(), &HeadingEditor::renamed, this,
            [this](int section, const QString& name) {
                m_model.setHeaderData(section, Qt::Horizontal, name, Qt::EditRole);
            });
    connect(horizontalScrollBar(), &QScrollBar::valueChanged, this,
            [this] { m_headings->end(true); });
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this,
            [this] { m_headings->end(false); });
    connect(&libzvutil::styleManager(), &libzvutil::ZvStyleManager::currentStyleChanged, this,
            [this] { viewport()->update(); });
    setCurrentIndex(model.index(0, 0));
    fitColumns();
}

TestPlanView::~TestPlanView() = default;

void TestPlanView::finishTyping()
{
    m_headings->end(true);
    QWidget* const editor = state() == EditingState ? indexWidget(currentIndex()) : nullptr;
    if (!editor)
        return;
    commitData(editor);
    closeEditor(editor, QAbstractItemDelegate::NoHint);
}

std::optional<TestPlanModel::CellChange> TestPlanView::typed() const
{
    const QWidget* const editor = state() == EditingState ? indexWidget(currentIndex()) : nullptr;
    if (!editor)
        return {};
    const QString text = editor->metaObject()->userProperty().read(editor).toString();
    return TestPlanModel::CellChange{currentIndex().row(), currentIndex().column(),
                                     cellValue(text)};
}

void TestPlanView::fitColumns()
{
    const QFontMetrics metrics(font());
    for (int column = 0; column < std::min(m_model.columnCount(), measuredColumns); ++column) {
        const QString heading =
            m_model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        int width = metrics.horizontalAdvance(heading);
        for (int row = 0; row < std::min(m_model.rowCount(), measuredRows); ++row) {
            // Comments continue over the empty cells after them, so they need no wide column.
            if (m_model.rowKind(row) != TestPlanModel::RowKind::Comment)
                width = std::max(width,
                                 metrics.horizontalAdvance(cellText(m_model.value(row, column))));
        }
        setColumnWidth(column, qBound(minColumnWidth, width + columnMargin, maxColumnWidth));
    }
}

bool TestPlanView::copy()
{
    finishTyping();
    const QRect cells = selectedRectangle();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const auto restore = qScopeGuard([] { QApplication::restoreOverrideCursor(); });
    try {
        if (qint64(cells.width()) * cells.height() > maxPasteCells)
            throw std::bad_alloc();
        if (!cells.isEmpty())
            copyToClipboard(selectedCells());
        return true;
    } catch (const std::exception&) {
        Q_EMIT failed({tr("The cells were not copied."),
                       tr("There is not enough memory for so many cells."),
                       tr("Select fewer cells, and copy them in parts.")});
        return false;
    }
}

void TestPlanView::cut()
{
    if (copy())
        clearCells();
}

void TestPlanView::paste()
{
    finishTyping();
    try {
        const ClipboardCells cells = clipboardCells();
        if (cells.isEmpty())
            Q_EMIT failed(
                {tr("Nothing was pasted."),
                 tr("There is neither a table nor a text on the clipboard, or a table that "
                    "can't be read."),
                 tr("Copy some cells or a text, and paste again.")});
        else if (mayPaste(cells))
            pasteCells(gridOf(cells));
    } catch (const Stopped&) {
        // The user has stopped the paste, and nothing was changed.
    } catch (const std::exception&) {
        Q_EMIT failed({tr("The cells were not pasted."),
                       tr("There is not enough memory for so many cells."),
                       tr("Copy fewer cells, and paste them in parts.")});
    }
}

void TestPlanView::clearCells()
{
    std::vector<Filling> fillings;
    for (const QRect& block : selectedBlocks())
        fillings.push_back({block, std::vector<CellValue>(std::size_t(block.width()))});
    fill(tr("Clear cells"), tr("The cells were not cleared."), fillings);
}

void TestPlanView::fillDown()
{
    finishTyping();
    std::vector<Filling> fillings;
    for (const QRect& block : selectedBlocks()) {
        // A single row is filled from the one above it.
        const int source = block.height() == 1 ? block.top() - 1 : block.top();
        if (source < 0)
            continue;
        Filling filling;
        filling.cells = QRect(QPoint(block.left(), source + 1), block.bottomRight());
        for (int column = block.left(); column <= block.right(); ++column)
            filling.values.push_back(m_model.value(source, column));
        fillings.push_back(std::move(filling));
    }
    fill(tr("Fill down"), tr("The cells were not filled."), fillings);
}

void TestPlanView::insertRowsAbove()
{
    finishTyping();
    Spans spans = selectedSpans(Qt::Vertical);
    if (spans.empty())
        spans.push_back({m_model.rowCount(), 1});
    if (countOf(spans) > maxPlanRows - m_model.rowCount()) {
        Q_EMIT failed({tr("No rows were inserted."),
                       tr("A test plan has at most %1 rows.").arg(QLocale().toString(maxPlanRows)),
                       tr("Continue in another test plan.")});
        return;
    }
    const int left = std::max(selectedRectangle().left(), 0);
    change(tr("Insert rows"), spans,
           [this](const Span& span) { m_model.insertRows(span.first, span.count); });
    std::vector<QRect> inserted;
    int before = 0;
    for (const Span& span : spans) {
        inserted.emplace_back(left, span.first + before, 1, span.count);
        before += span.count;
    }
    select(inserted);
}

void TestPlanView::removeSelectedRows()
{
    finishTyping();
    const Spans spans = selectedSpans(Qt::Vertical);
    if (spans.empty())
        return;
    const int left = selectedRectangle().left();
    change(tr("Remove rows"), spans,
           [this](const Span& span) { m_model.removeRows(span.first, span.count); });
    select({QRect(left, std::min(spans.front().first, m_model.rowCount() - 1), 1, 1)});
}

void TestPlanView::moveSelectedRows(int step)
{
    finishTyping();
    const Spans spans = selectedSpans(Qt::Vertical);
    if (canMove(spans, step, m_model.rowCount()))
        change(tr("Move rows"), spans, [this, step](const Span& span) {
            m_model.moveRows(QModelIndex(), span.first, span.count, QModelIndex(),
                             destinationOf(span, step));
        });
    scrollTo(currentIndex());
}

void TestPlanView::insertColumnsBefore()
{
    finishTyping();
    Spans spans = selectedSpans(Qt::Horizontal);
    if (spans.empty())
        spans.push_back({m_model.columnCount(), 1});
    if (countOf(spans) > maxPlanColumns - m_model.columnCount()) {
        Q_EMIT failed({tr("No columns were inserted."),
                       tr("A test plan has at most %1 columns.").arg(maxPlanColumns),
                       tr("Continue in another test plan.")});
        return;
    }
    change(tr("Insert columns"), spans,
           [this](const Span& span) { m_model.insertColumns(span.first, span.count); });
}

void TestPlanView::removeSelectedColumns()
{
    finishTyping();
    const Spans spans = selectedSpans(Qt::Horizontal);
    if (spans.empty())
        return;
    if (countOf(spans) >= m_model.columnCount()) {
        Q_EMIT failed({tr("No columns were removed."), tr("A test plan needs at least one column."),
                       tr("Select fewer columns.")});
        return;
    }
    const int top = selectedRectangle().top();
    change(tr("Remove columns"), spans,
           [this](const Span& span) { m_model.removeColumns(span.first, span.count); });
    select({QRect(std::min(spans.front().first, m_model.columnCount() - 1), top, 1, 1)});
}

void TestPlanView::moveSelectedColumns(int step)
{
    finishTyping();
    const Spans spans = selectedSpans(Qt::Horizontal);
    if (canMove(spans, step, m_model.columnCount()))
        change(tr("Move columns"), spans, [this, step](const Span& span) {
            m_model.moveColumns(QModelIndex(), span.first, span.count, QModelIndex(),
                                destinationOf(span, step));
        });
}

void TestPlanView::setSelectedRowsDisabled(bool isDisabled)
{
    finishTyping();
    change(isDisabled ? tr("Disable rows") : tr("Enable rows"), selectedSpans(Qt::Vertical),
           [this, isDisabled](const Span& span) {
               m_model.setRowsDisabled(span.first, span.count, isDisabled);
           });
}

bool TestPlanView::isCurrentRowDisabled() const
{
    return currentIndex().isValid()
        && m_model.rowKind(currentIndex().row()) == TestPlanModel::RowKind::Disabled;
}

void TestPlanView::goToRow(int row)
{
    finishTyping();
    const QModelIndex cell = m_model.index(row, 0);
    selectionModel()->setCurrentIndex(cell, QItemSelectionModel::ClearAndSelect);
    scrollTo(cell, PositionAtCenter);
}

void TestPlanView::selectCurrentRows()
{
    std::vector<QRect> rows;
    for (const Span& span : selectedSpans(Qt::Vertical))
        rows.emplace_back(0, span.first, m_model.columnCount(), span.count);
    select(rows);
}

void TestPlanView::selectCurrentColumns()
{
    std::vector<QRect> columns;
    for (const Span& span : selectedSpans(Qt::Horizontal))
        columns.emplace_back(span.first, 0, span.count, m_model.rowCount());
    select(columns);
}

void TestPlanView::renameHeading(int section)
{
    finishTyping();
    m_headings->edit(section, m_model.headerData(section, Qt::Horizontal, Qt::EditRole).toString());
}

void TestPlanView::keyPressEvent(QKeyEvent* event)
{
    const bool isShifted = isModifiedBy(*event, Qt::ShiftModifier);
    const bool isPlain = isModifiedBy(*event, Qt::NoModifier);
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && (isPlain || isShifted))
        moveCurrent(0, isShifted ? -1 : 1);
    else if (event->key() == Qt::Key_Tab && isPlain)
        moveCurrent(1, 0);
    else if (event->key() == Qt::Key_Backtab)
        moveCurrent(-1, 0);
    else if (event->key() == Qt::Key_Space && isShifted)
        selectCurrentRows();
    else if (event->key() == Qt::Key_Space && isModifiedBy(*event, Qt::ControlModifier))
        selectCurrentColumns();
    else
        QTableView::keyPressEvent(event);
}

void TestPlanView::paintEvent(QPaintEvent* event)
{
    QTableView::paintEvent(event);
    QPainter painter(viewport());
    const int last = rowAt(viewport()->height() - 1);
    for (int row = rowAt(0); row >= 0 && row <= (last < 0 ? m_model.rowCount() - 1 : last); ++row) {
        if (m_model.rowKind(row) == TestPlanModel::RowKind::Comment)
            paintComment(painter, row);
    }
}

void TestPlanView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QTableView::currentChanged(current, previous);
    Q_EMIT selectionMoved();
}

void TestPlanView::selectionChanged(const QItemSelection& selected,
                                    const QItemSelection& deselected)
{
    QTableView::selectionChanged(selected, deselected);
    Q_EMIT selectionMoved();
}

std::vector<QRect> TestPlanView::selectedBlocks() const
{
    std::vector<QRect> blocks;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        if (range.isValid())
            blocks.emplace_back(range.left(), range.top(), range.width(), range.height());
    }
    return blocks;
}

QRect TestPlanView::selectedRectangle() const
{
    QRect all;
    for (const QRect& block : selectedBlocks())
        all |= block;
    if (all.isEmpty() && currentIndex().isValid())
        all = QRect(currentIndex().column(), currentIndex().row(), 1, 1);
    return all;
}

Spans TestPlanView::selectedSpans(Qt::Orientation orientation) const
{
    std::vector<QRect> blocks = selectedBlocks();
    if (blocks.empty())
        blocks.push_back(selectedRectangle());
    Spans spans;
    for (const QRect& block : blocks) {
        const bool isRows = orientation == Qt::Vertical;
        if (!block.isEmpty())
            spans.push_back(
                {isRows ? block.top() : block.left(), isRows ? block.height() : block.width()});
    }
    return united(std::move(spans));
}

CellGrid TestPlanView::selectedCells() const
{
    const QRect all = selectedRectangle();
    CellGrid grid;
    grid.rows = all.height();
    grid.columns = all.width();
    grid.cells.resize(static_cast<std::size_t>(grid.rows) * static_cast<std::size_t>(grid.columns));
    for (const QRect& block : selectedBlocks()) {
        for (int row = block.top(); row <= block.bottom(); ++row) {
            for (int column = block.left(); column <= block.right(); ++column)
                grid.at(row - all.top(), column - all.left()) = m_model.value(row, column);
        }
    }
    return grid;
}

void TestPlanView::change(const QString& text, const Spans& spans,
                          const std::function<void(const Span&)>& work)
{
    if (spans.empty())
        return;
    m_model.undoStack().beginMacro(text);
    std::for_each(spans.rbegin(), spans.rend(), work);
    m_model.undoStack().endMacro();
}

void TestPlanView::moveCurrent(int columns, int rows)
{
    if (m_model.rowCount() == 0)
        return;
    // QTableView::setCurrentIndex() would extend the selection while Shift is pressed.
    const QModelIndex current = currentIndex();
    selectionModel()->setCurrentIndex(
        m_model.index(qBound(0, current.row() + rows, m_model.rowCount() - 1),
                      qBound(0, current.column() + columns, m_model.columnCount() - 1)),
        QItemSelectionModel::ClearAndSelect);
}

void TestPlanView::select(const std::vector<QRect>& blocks)
{
    QItemSelection selection;
    for (const QRect& block : blocks)
        selection.select(m_model.index(block.top(), block.left()),
                         m_model.index(block.bottom(), block.right()));
    if (selection.isEmpty())
        return;
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    selectionModel()->setCurrentIndex(selection.first().topLeft(), QItemSelectionModel::NoUpdate);
}

bool TestPlanView::addChanges(const Filling& filling,
                              std::vector<TestPlanModel::CellChange>& changes) const
{
    const QRect& cells = filling.cells;
    const auto last = std::find_if(filling.values.rbegin(), filling.values.rend(),
                                   [](const CellValue& value) { return value.isValid(); });
    const int filled = static_cast<int>(filling.values.rend() - last);
    for (int row = cells.top(); row <= cells.bottom(); ++row) {
        // A row is empty after its last cell, so there is nothing to clear.
        const int present =
            m_model.plan().rows[static_cast<std::size_t>(row)].cells.size() - cells.left();
        const int columns = std::min(cells.width(), std::max(filled, present));
        for (int i = 0; i < columns; ++i) {
            const CellValue& value = filling.values[static_cast<std::size_t>(i)];
            if (!value.isValid() && !m_model.value(row, cells.left() + i).isValid())
                continue;
            if (changes.size() == static_cast<std::size_t>(maxPasteCells))
                return false;
            changes.push_back({row, cells.left() + i, value});
        }
    }
    return true;
}

void TestPlanView::fill(const QString& text, const QString& what,
                        const std::vector<Filling>& fillings)
{
    const QString advice = tr("Select fewer cells at a time.");
    try {
        std::vector<TestPlanModel::CellChange> changes;
        const bool isPossible =
            std::all_of(fillings.begin(), fillings.end(),
                        [&](const Filling& filling) { return addChanges(filling, changes); });
        if (isPossible)
            m_model.setCells(text, std::move(changes));
        else
            Q_EMIT failed({what,
                           tr("No more than %1 cells can be changed at once.")
                               .arg(QLocale().toString(maxPasteCells)),
                           advice});
    } catch (const std::bad_alloc&) {
        Q_EMIT failed({what, tr("There is not enough memory for so many cells."), advice});
    }
}

ClipboardCells TestPlanView::clipboardCells()
{
    ProgressBox box(tr("Reading the clipboard…"), window());
    return ClipboardCells(box.progress());
}

CellGrid TestPlanView::gridOf(const ClipboardCells& cells)
{
    ProgressBox box(tr("Pasting…"), window());
    return cells.grid(box.progress());
}

void TestPlanView::pasteCells(const CellGrid& grid)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const auto restore = qScopeGuard([] { QApplication::restoreOverrideCursor(); });
    if (grid.cells.size() == 1 && !selectedBlocks().empty()) {
        std::vector<Filling> fillings;
        for (const QRect& block : selectedBlocks()) {
            const std::vector<CellValue> values(std::size_t(block.width()), grid.cells.front());
            fillings.push_back({block, values});
        }
        fill(tr("Paste"), tr("The cells were not pasted."), fillings);
        return;
    }
    // A plan without rows has no current cell, so the paste begins at the first.
    const QPoint target(std::max(currentIndex().column(), 0), std::max(currentIndex().row(), 0));
    if (!m_model.paste(target.y(), target.x(), grid)) {
        Q_EMIT failed(
            {tr("The cells were not pasted."),
             tr("They need more rows or columns than a test plan can have (%1 rows, %2 columns).")
                 .arg(QLocale().toString(maxPlanRows), QLocale().toString(maxPlanColumns)),
             tr("Copy fewer cells, or paste them further up or left.")});
        return;
    }
    select({QRect(target, QSize(grid.columns, grid.rows))});
}

bool TestPlanView::mayPaste(const ClipboardCells& cells)
{
    const double count = double(cells.rows()) * double(cells.columns());
    if (count > double(maxPasteCells)) {
        Q_EMIT failed(
            {tr("The cells were not pasted."),
             tr("There are %1 rows of %2 cells on the clipboard; no more than %3 cells can be "
                "pasted.")
                 .arg(QLocale().toString(cells.rows()), QLocale().toString(cells.columns()),
                      QLocale().toString(maxPasteCells)),
             tr("Copy fewer cells, and paste them in parts.")});
        return false;
    }
    if (count <= double(manyCells))
        return true;
    return QMessageBox::question(
               this, tr("Paste"),
               tr("Paste %1 rows of %2 cells? This may take a while.")
                   .arg(QLocale().toString(cells.rows()), QLocale().toString(cells.columns())))
        == QMessageBox::Yes;
}

void TestPlanView::paintComment(QPainter& painter, int row)
{
    using libzvutil::ZvStyle;
    const QString text = cellText(m_model.value(row, 0));
    const QFontMetrics metrics(font());
    const int margin = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1;
    const int needed = metrics.horizontalAdvance(text) + 2 * margin;
    QRect room;
    int column = 0;
    for (; column < m_model.columnCount() && room.width() < needed; ++column) {
        const QModelIndex index = m_model.index(row, column);
        const bool isTaken = column > 0 && m_model.value(row, column).isValid();
        if (isTaken || selectionModel()->isSelected(index) || indexWidget(index))
            break;
        room |= visualRect(index);
    }
    if (column < 2)
        return;
    painter.fillRect(room,
                     ZvStyle::Current().colour(libzvutil::ZvStyleBrush::EditorEnabled).qColour());
    painter.setPen(pageTextColour(ZvStyle::Current().editorColour("Testplan", "CommentText")));
    // QPainter takes the application's layout direction, which may differ from the widget's.
    const Qt::Alignment leading =
        QStyle::visualAlignment(layoutDirection(), Qt::AlignVCenter | Qt::AlignLeading);
    painter.drawText(room.adjusted(margin, 0, -margin, 0), int(leading | Qt::AlignAbsolute),
                     metrics.elidedText(text, Qt::ElideRight, room.width() - 2 * margin));
}

} // namespace workbench
