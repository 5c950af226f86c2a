#include "testplan/TestPlanDocument.h"

#include "common/edit_icons.h"
#include "common/path_names.h"
#include "documents/empty_file.h"
#include "documents/xml_text.h"
#include "testplan/TestPlanReadFile.h"
#include "testplan/TestPlanSaveFile.h"
#include "testplan/TestPlanView.h"

#include <QEvent>
#include <QFileInfo>
#include <QHeaderView>

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
{
    setView(*m_view, m_model.undoStack());
    connect(m_view, &TestPlanView::failed, this, &Document::failed);
    addUndoActions();
    addClipboardActions();
    addRowActions();
    addColumnActions();
    m_view->setContextMenuPolicy(Qt::ActionsContextMenu);
}

TestPlanDocument::~TestPlanDocument()
{
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

void TestPlanDocument::finishTyping() const
{
    m_view->finishTyping();
}

void TestPlanDocument::addClipboardActions()
{
    addSeparatorAction();
    addNamedAction(QStringLiteral("cut"), tr("Cu&t"), keys({"Ctrl+X"}), [this] { m_view->cut(); });
    addNamedAction(QStringLiteral("copy"), tr("&Copy"), keys({"Ctrl+C"}),
                   [this] { m_view->copy(); });
    addNamedAction(QStringLiteral("paste"), tr("&Paste"), keys({"Ctrl+V"}),
                   [this] { m_view->paste(); });
    addNamedAction(QStringLiteral("clear"), tr("C&lear cells"), keys({"Del"}),
                   [this] { m_view->clearCells(); });
    addNamedAction(QStringLiteral("fillDown"), tr("&Fill down"), keys({"Ctrl+D"}),
                   [this] { m_view->fillDown(); });
    addNamedAction(QStringLiteral("selectAll"), tr("Select &all"), keys({"Ctrl+A"}),
                   [this] { m_view->selectAll(); });
}

void TestPlanDocument::addRowActions()
{
    addSeparatorAction();
    QAction* const insert = addNamedAction(QStringLiteral("insertRow"), tr("&Insert row"),
                                           plusKeys(), [this] { m_view->insertRowsAbove(); });
    QAction* const remove =
        addNamedAction(QStringLiteral("removeRow"), tr("R&emove row"), keys({"Ctrl+-"}),
                       [this] { m_view->removeSelectedRows(); });
    insert->setIcon(insertRowIcon());
    remove->setIcon(removeRowIcon());
    addToToolBar({insert, remove});
    addNamedAction(QStringLiteral("moveUp"), tr("Move row up"), keys({"Alt+Up"}),
                   [this] { m_view->moveSelectedRows(-1); });
    addNamedAction(QStringLiteral("moveDown"), tr("Move row down"), keys({"Alt+Down"}),
                   [this] { m_view->moveSelectedRows(1); });
    QAction* const disable = addNamedAction(
        QStringLiteral("disableRows"), tr("&Disable rows"), keys({"Ctrl+/"}),
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
    addNamedAction(QStringLiteral("insertColumn"), tr("Insert colu&mn"), {},
                   [this] { m_view->insertColumnsBefore(); });
    addNamedAction(QStringLiteral("removeColumn"), tr("Rem&ove column"), {},
                   [this] { m_view->removeSelectedColumns(); });
    addNamedAction(QStringLiteral("moveLeft"), tr("Move column left"), keys({"Alt+Left"}),
                   [this] { m_view->moveSelectedColumns(-1); });
    addNamedAction(QStringLiteral("moveRight"), tr("Move column right"), keys({"Alt+Right"}),
                   [this] { m_view->moveSelectedColumns(1); });
    addNamedAction(QStringLiteral("renameColumn"), tr("Re&name column"), {}, [this] {
        if (m_view->currentIndex().isValid())
            m_view->renameHeading(m_view->currentIndex().column());
    });
}

} // namespace workbench
