#pragma once

#include "common/path_names.h"
#include "support/StyleHost.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"
#include "testplan/TestPlanDocument.h"
#include "testplan/TestPlanSaveFile.h"
#include "testplan/TestPlanView.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>

namespace zvtest {

inline bool savePlan(const QString& file, const workbench::TestPlan& plan)
{
    return workbench::TestPlanSaveFile(workbench::filePath(file)).save(plan, [](int, int) {
        return true;
    });
}

/// The rows as text, cells between bars; a number has a "=" in front of it, a disabled row a "-".
inline QStringList textOf(const workbench::TestPlan& plan)
{
    QStringList lines{plan.headings.join(QLatin1Char('|'))};
    for (const workbench::TestPlanRow& row : plan.rows) {
        QStringList cells;
        for (int column = 0; column < plan.headings.size(); ++column) {
            const workbench::CellValue value = row.cells.value(column);
            const bool isNumber = value.userType() == QMetaType::Double;
            cells.append((isNumber ? QString("=") : QString()) + workbench::cellText(value));
        }
        lines.append((row.isDisabled ? QString("-") : QString()) + cells.join(QLatin1Char('|')));
    }
    return lines;
}

inline workbench::TestPlan planOf(const QStringList& headings, const QStringList& rows)
{
    workbench::TestPlan plan;
    plan.headings = headings;
    for (const QString& row : rows) {
        plan.rows.emplace_back();
        for (const QString& cell : row.split(QLatin1Char('|')))
            plan.rows.back().cells.append(workbench::cellValue(cell));
    }
    return plan;
}

/// A plan of three columns and four rows in a window of its own.
class Plan
{
public:
    explicit Plan(const QStringList& rows = {"a1|b1|c1", "a2|b2|c2", "a3|b3|c3", "a4|b4|c4"})
        : document(QString("New test plan"), nullptr)
        , model(document.model())
        , view(document.view())
    {
        document.setAttribute(Qt::WA_DeleteOnClose, false);
        QObject::connect(
            &document, &workbench::Document::failed, &document,
            [this](const workbench::Failure& failure) { failures.append(failure.reason); });
        model.setPlan(planOf({"A", "B", "C"}, rows));
        document.resize(800, 500);
        document.show();
        goTo(0, 0);
        if (!activate())
            qFatal("the window doesn't become the active one");
    }

    void select(int row, int column, int lastRow, int lastColumn)
    {
        goTo(row, column);
        view.selectionModel()->select(
            QItemSelection(model.index(row, column), model.index(lastRow, lastColumn)),
            QItemSelectionModel::ClearAndSelect);
    }

    /// Again after a dialog, too.
    bool activate()
    {
        view.setFocus();
        return zvtest::activate(document);
    }

    void goTo(int row, int column)
    {
        view.selectionModel()->setCurrentIndex(model.index(row, column),
                                               QItemSelectionModel::ClearAndSelect);
    }

    void key(int code, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&view, static_cast<Qt::Key>(code), modifiers);
    }

    void type(const QString& text)
    {
        for (const QChar c : text)
            QTest::keyClick(typed() ? static_cast<QWidget*>(typed()) : &view, c.toLatin1());
    }

    /// The field of the cell that is being typed into, or nullptr. Old ones wait for their
    /// deletion.
    QLineEdit* typed() const
    {
        for (QLineEdit* const field : view.viewport()->findChildren<QLineEdit*>()) {
            if (field->isVisible())
                return field;
        }
        return nullptr;
    }

    QString at(int row, int column) const { return model.index(row, column).data().toString(); }
    QStringList rows() const { return textOf(model.plan()).mid(1); }
    int edits() const { return model.undoStack().count(); }

    QAction& action(const char* name) const
    {
        return *document.findChild<QAction*>(QString::fromLatin1(name));
    }

    QPoint current() const { return {view.currentIndex().column(), view.currentIndex().row()}; }

    workbench::TestPlanDocument document;
    workbench::TestPlanModel& model;
    workbench::TestPlanView& view;
    QStringList failures;
};

inline void setForeign(const QString& format, const QByteArray& bytes)
{
    auto* const data = new QMimeData;
    data->setData(format, bytes);
    QApplication::clipboard()->setMimeData(data);
}

} // namespace zvtest
