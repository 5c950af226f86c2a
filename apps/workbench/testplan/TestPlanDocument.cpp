#include "testplan/TestPlanDocument.h"

#include "common/EmptyHint.h"
#include "common/edit_icons.h"
#include "common/focused_field.h"
#include "common/number_text.h"
#include "common/path_names.h"
#include "documents/empty_file.h"
#include "documents/save_file_name.h"
#include "documents/xml_text.h"
#include "search/FindBar.h"
#include "testplan/PrintedPlan.h"
#include "testplan/TestPlanReadFile.h"
#include "testplan/TestPlanSaveFile.h"
#include "testplan/TestPlanView.h"
#include "testplan/csv_plan.h"
#include "testplan/plan_csv.h"

#include <zvworkbench/FileError.h>

#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QInputDialog>
#include <QLayout>
#include <QLineEdit>
#include <QMimeData>

#include <algorithm>
#include <functional>
#include <new>
#include <utility>

#include <memory>
#include <optional>

namespace workbench {

const DocumentType& testPlanType()
{
    static const DocumentType type = {QStringLiteral("testplan"),
                                      TestPlanDocument::tr("Test plan"),
                                      TestPlanDocument::tr("Test plans"),
                                      QStringLiteral(".testplan"),
                                      [](const QString& title, QWidget* parent) -> Document* {
                                          return new TestPlanDocument(title, parent);
                                      },
                                      2};
    return type;
}

TestPlanDocument::TestPlanDocument(const QString& title, QWidget* parent)
    : UndoDocument(testPlanType(), title, parent)
    , m_view(new TestPlanView(m_model, this))
    , m_target(m_model, *m_view)
    , m_findBar(new FindBar(*this, m_target, *m_view))
{
    setView(*m_view, m_model.undoStack());
    layout()->setSpacing(0);
    layout()->addWidget(m_findBar);
    addHint();
    connect(m_findBar, &FindBar::aboutToSearch, m_view, &TestPlanView::finishTyping);
    connect(m_view, &TestPlanView::failed, this, &Document::failed);
    addUndoActions();
    addClipboardActions();
    addFindActions();
    addRowActions();
    addColumnActions();
    m_view->setContextMenuPolicy(Qt::ActionsContextMenu);
}

TestPlanDocument::~TestPlanDocument()
{
    qApp->disconnect(this);
    delete m_findBar;
    endView();
}

TestPlanModel& TestPlanDocument::model()
{
    return m_model;
}

TestPlanView& TestPlanDocument::view()
{
    return *m_view;
}

/// Says what to do first, as long as nothing has been typed into the cells of a new plan.
void TestPlanDocument::addHint()
{
    auto* const hint = new EmptyHint(tr("Type into a cell, or paste cells from a spreadsheet.\n"
                                        "A double click on a heading renames its column."),
                                     m_view, [this] { return m_model.isBlank(); });
    connect(&m_model, &QAbstractItemModel::dataChanged, hint, &EmptyHint::update);
    connect(&m_model, &QAbstractItemModel::rowsInserted, hint, &EmptyHint::update);
    connect(&m_model, &QAbstractItemModel::rowsRemoved, hint, &EmptyHint::update);
    connect(&m_model, &QAbstractItemModel::columnsRemoved, hint, &EmptyHint::update);
    connect(&m_model, &QAbstractItemModel::columnsInserted, hint, &EmptyHint::update);
    connect(&m_model, &QAbstractItemModel::modelReset, hint, &EmptyHint::update);
}

bool TestPlanDocument::event(QEvent* event)
{
    // The view commits what is being typed, which would be lost without a question otherwise.
    if (event->type() == QEvent::Close)
        m_view->finishTyping();
    return Document::event(event);
}

void TestPlanDocument::read(const zvutil::ZvFilePath& file)
{
    ProgressBox box = readingBox(file);
    const bool isEmpty = isEmptyFile(file);
    m_model.setPlan(isEmpty ? TestPlan::fresh() : TestPlanReadFile(file).read(box.progress()));
    m_view->selectionModel()->setCurrentIndex(m_model.index(0, 0),
                                              QItemSelectionModel::ClearAndSelect);
    m_view->fitColumns();
}

bool TestPlanDocument::importCsv(const zvutil::ZvFilePath& file)
{
    QString reason;
    try {
        readCsv(file);
        return true;
    } catch (const FileError& error) {
        reason = error.reason();
    } catch (const Stopped&) {
        reason = tr("Stopped.");
    } catch (const std::bad_alloc&) {
        reason = tr("There is not enough memory.");
    }
    Q_EMIT failed({tr("“%1” can't be opened.").arg(file.toQString()), reason,
                   tr("Check the file, or open another one.")});
    return false;
}

const zvutil::ZvFilePath& TestPlanDocument::importedFile() const
{
    return m_importedFile;
}

void TestPlanDocument::readCsv(const zvutil::ZvFilePath& file)
{
    QFile source(qtFileName(file));
    if (!source.open(QIODevice::ReadOnly))
        throw FileError(source.errorString());
    if (source.size() > maxCsvSize)
        throw FileError(tr("The file has %1 bytes; a CSV file can have at most %2.")
                            .arg(numberText(source.size()), numberText(maxCsvSize)));
    ProgressBox box = readingBox(file);
    const QByteArray bytes = source.readAll();
    if (source.error() != QFileDevice::NoError)
        throw FileError(source.errorString());
    CsvPlan csv = planOfCsv(bytes, box.progress());
    m_model.setPlan(std::move(csv.plan));
    m_importedFile = file;
    m_view->selectionModel()->setCurrentIndex(m_model.index(0, 0),
                                              QItemSelectionModel::ClearAndSelect);
    m_view->fitColumns();
    const QString name = file.filename().toQString();
    setLongTitle(tr("%1 (imported)").arg(file.toQString()));
    setShortTitle(csv.isLatin1 ? tr("%1 (imported as Latin-1)").arg(name)
                               : tr("%1 (imported)").arg(name));
    setModified(false);
}

zvutil::ZvFilePath TestPlanDocument::requestSavePath() const
{
    if (!filename().isEmpty() || m_importedFile.isEmpty())
        return UndoDocument::requestSavePath();
    const QFileInfo csv(qtFileName(m_importedFile));
    const QString start =
        csv.absolutePath() + QLatin1Char('/') + csv.completeBaseName() + type().extension;
    const QString chosen =
        saveFileName(window(), tr("Save Test Plan As"), start, type().pluralName, type().extension);
    return chosen.isEmpty() ? zvutil::ZvFilePath() : filePath(chosen);
}

void TestPlanDocument::write(const zvutil::ZvFilePath& file) const
{
    finishTyping();
    ProgressBox box = savingBox(file);
    requireWritten(TestPlanSaveFile(file).save(m_model.plan(), box.progress()), file);
}

ContentWriter TestPlanDocument::snapshot() const
{
    const auto plan = std::make_shared<TestPlan>(m_model.plan());
    if (const std::optional<TestPlanModel::CellChange> typed = m_view->typed()) {
        QVector<CellValue>& cells = plan->rows[static_cast<std::size_t>(typed->row)].cells;
        if (cells.size() <= typed->column)
            cells.resize(typed->column + 1);
        cells[typed->column] = typed->value;
    }
    return [plan](const zvutil::ZvFilePath& file, const Progress& progress) {
        requireWritten(TestPlanSaveFile(file).save(*plan, progress), file);
    };
}

quint64 TestPlanDocument::revision() const
{
    const std::optional<TestPlanModel::CellChange> typed = m_view->typed();
    return UndoDocument::revision() + (typed ? quint64(qHash(cellText(typed->value))) << 32U : 0);
}

bool TestPlanDocument::isTyping() const
{
    const std::optional<TestPlanModel::CellChange> typed = m_view->typed();
    return typed && typed->value != m_model.value(typed->row, typed->column);
}

void TestPlanDocument::finishTyping() const
{
    m_view->finishTyping();
}

bool TestPlanDocument::isBlank() const
{
    return false; // an empty plan is a form to be filled in by hand
}

QPageLayout::Orientation TestPlanDocument::orientation() const
{
    constexpr double usualWidth = 500; // points
    return TablePages::naturalWidth(PrintedPlan(m_model.plan())) > usualWidth
        ? QPageLayout::Landscape
        : QPageLayout::Portrait;
}

std::unique_ptr<Pages> TestPlanDocument::pages(const Paper& paper, const Progress& progress) const
{
    return std::make_unique<TablePages>(pageTitleOf(*this), paper,
                                        std::make_unique<PrintedPlan>(m_model.plan()), progress);
}

std::vector<ExportFormat> TestPlanDocument::exportFormats() const
{
    return {{tr("CSV files"), QStringLiteral(".csv"),
             [this](const Progress& progress) { return csvOfPlan(m_model.plan(), progress); }}};
}

void TestPlanDocument::showHit(int line, const QString& text)
{
    if (m_model.rowCount() == 0)
        return;
    // Plans are saved in one line; only those that were written by other means have a row to each.
    const int row = std::clamp(rowAtLine(line), 0, m_model.rowCount() - 1);
    m_view->goToRow(row);
    m_findBar->findFirst(text, {row, 0, 0});
}

QList<QAction*> TestPlanDocument::windowActions() const
{
    return m_windowActions;
}

void TestPlanDocument::addClipboardActions()
{
    // The menu is about the field while the user types in one.
    const auto add = [this](const char* name, const QString& text, QKeySequence::StandardKey key,
                            auto inField, std::function<void()> inTable) {
        return addNamedAction(QLatin1String(name), text, QKeySequence::keyBindings(key),
                              [this, inField, inTable = std::move(inTable)] {
                                  if (QLineEdit* const field = focusedField(*this))
                                      (field->*inField)();
                                  else
                                      inTable();
                              });
    };
    addSeparatorAction();
    QAction* const cut =
        add("cut", tr("Cu&t"), QKeySequence::Cut, &QLineEdit::cut, [this] { m_view->cut(); });
    QAction* const copy =
        add("copy", tr("&Copy"), QKeySequence::Copy, &QLineEdit::copy, [this] { m_view->copy(); });
    QAction* const paste = add("paste", tr("&Paste"), QKeySequence::Paste, &QLineEdit::paste,
                               [this] { m_view->paste(); });
    // X11 has Ctrl+D for Delete, too. It fills down here, and Qt would call neither.
    add("clear", tr("&Delete Contents"), QKeySequence::Delete, &QLineEdit::del, [this] {
        m_view->clearCells();
    })->setShortcuts({Qt::Key_Delete});
    add("selectAll", tr("Select &All"), QKeySequence::SelectAll, &QLineEdit::selectAll,
        [this] { m_view->selectAll(); });
    cut->setIcon(cutIcon());
    copy->setIcon(copyIcon());
    paste->setIcon(pasteIcon());
    addToToolBar({cut, copy, paste, addSeparatorAction()});
    addNamedAction(QStringLiteral("fillDown"), tr("&Fill Down"), keys({"Ctrl+D"}),
                   [this] { m_view->fillDown(); });
    connect(m_view, &TestPlanView::selectionMoved, this, &TestPlanDocument::enableActions);
    connect(qApp, &QApplication::focusChanged, this, &TestPlanDocument::enableActions);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            &TestPlanDocument::enableActions);
    enableActions();
}

void TestPlanDocument::enableActions()
{
    const bool isTyping = focusedField(*this);
    const bool isSelected = m_view->currentIndex().isValid();
    const QMimeData* const content = QGuiApplication::clipboard()->mimeData();
    const auto enable = [this](const char* name, bool isEnabled) {
        findChild<QAction*>(QLatin1String(name))->setEnabled(isEnabled);
    };
    for (const char* const name : {"cut", "copy", "clear"})
        enable(name, isTyping || isSelected);
    enable("paste", isTyping || (content && !content->formats().isEmpty()));
}

void TestPlanDocument::addFindActions()
{
    addSeparatorAction();
    addActions(m_findBar->findActions());
    QAction* const row = addEditAction(tr("&Go to Row…"), QKeySequence(QStringLiteral("Ctrl+G")));
    row->setObjectName(QStringLiteral("goToLine"));
    connect(row, &QAction::triggered, this, &TestPlanDocument::askForRow);
    m_windowActions = m_findBar->findActions() + QList<QAction*>{row};
}

void TestPlanDocument::askForRow()
{
    finishTyping();
    const int rows = m_model.rowCount();
    bool isAccepted = false;
    const int row =
        QInputDialog::getInt(this, tr("Go to Row"), tr("Row (1 to %1):").arg(numberText(rows)),
                             m_view->currentIndex().row() + 1, 1, rows, 1, &isAccepted);
    if (!isAccepted || rows == 0)
        return;
    m_view->goToRow(row - 1);
    m_view->setFocus();
}

/// Returns the first row whose element begins in a line of the file, or else the one that it lies in; the rows are
/// counted from 0.
int TestPlanDocument::rowAtLine(int line) const
{
    QFile file(qtFileName(filename()));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    int before = 0;
    int inLine = 0;
    for (int i = 0; i < line && !file.atEnd(); ++i) {
        before += inLine;
        inLine = file.readLine().count("<row ");
    }
    return inLine > 0 ? before : before - 1;
}

void TestPlanDocument::addRowActions()
{
    addSeparatorAction();
    QAction* const insert = addNamedAction(QStringLiteral("insertRow"), tr("&Insert Row"),
                                           plusKeys(), [this] { m_view->insertRowsAbove(); });
    QAction* const remove =
        addNamedAction(QStringLiteral("removeRow"), tr("Re&move Row"), keys({"Ctrl+-"}),
                       [this] { m_view->removeSelectedRows(); });
    insert->setIcon(insertRowIcon());
    remove->setIcon(removeRowIcon());
    addToToolBar({insert, remove});
    addNamedAction(QStringLiteral("moveUp"), tr("Move Row Up"), keys({"Alt+Up"}),
                   [this] { m_view->moveSelectedRows(-1); });
    addNamedAction(QStringLiteral("moveDown"), tr("Move Row Down"), keys({"Alt+Down"}),
                   [this] { m_view->moveSelectedRows(1); });
    QAction* const disable = addNamedAction(
        QStringLiteral("disableRows"), tr("D&isable Rows"), keys({"Ctrl+/"}),
        [this] { m_view->setSelectedRowsDisabled(!m_view->isCurrentRowDisabled()); });
    disable->setCheckable(true);
    disable->setToolTip(tr("Disabled rows are skipped by a test."));
    const auto follow = [this, disable] { disable->setChecked(m_view->isCurrentRowDisabled()); };
    connect(m_view, &TestPlanView::selectionMoved, disable, follow);
    connect(&m_model, &TestPlanModel::dataChanged, disable, follow);
}

void TestPlanDocument::addColumnActions()
{
    addSeparatorAction();
    addNamedAction(QStringLiteral("insertColumn"), tr("Insert Colu&mn"), {},
                   [this] { m_view->insertColumnsBefore(); });
    addNamedAction(QStringLiteral("removeColumn"), tr("Rem&ove Column"), {},
                   [this] { m_view->removeSelectedColumns(); });
    addNamedAction(QStringLiteral("moveLeft"), tr("Move Column Left"), keys({"Alt+Left"}),
                   [this] { m_view->moveSelectedColumns(-1); });
    addNamedAction(QStringLiteral("moveRight"), tr("Move Column Right"), keys({"Alt+Right"}),
                   [this] { m_view->moveSelectedColumns(1); });
    addNamedAction(QStringLiteral("renameColumn"), tr("Rename Col&umn"), {}, [this] {
        if (m_view->currentIndex().isValid())
            m_view->renameHeading(m_view->currentIndex().column());
    });
}

} // namespace workbench
