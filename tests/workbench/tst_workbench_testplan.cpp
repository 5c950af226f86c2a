// Test plans of the workbench: the cells, the keys, the clipboard, the files and the looks, through
// the real widgets.

#include <zvutil/ZvClipboard.h>
#include <zvutil/ZvStyleManager.h>

#include "common/path_names.h"
#include "documents/XmlText.h"
#include "support/Answer.h"
#include "support/StyleHost.h"
#include "support/Workbench.h"
#include "testplan/TestPlanClipboard.h"
#include "testplan/TestPlanDocument.h"
#include "testplan/TestPlanReadFile.h"
#include "testplan/TestPlanSaveFile.h"
#include "testplan/TestPlanView.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPointer>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleManager;
using workbench::CellValue;
using workbench::Failure;
using workbench::TestPlan;
using workbench::TestPlanDocument;
using workbench::TestPlanModel;
using workbench::TestPlanView;

Q_DECLARE_METATYPE(Qt::KeyboardModifiers)

namespace {

TestPlan readPlan(const QString& file)
{
    TestPlan plan =
        workbench::TestPlanReadFile(workbench::filePath(file)).read([](int, int) { return true; });
    zvtest::closeFiles();
    return plan;
}

bool savePlan(const QString& file, const TestPlan& plan)
{
    return workbench::TestPlanSaveFile(workbench::filePath(file)).save(plan, [](int, int) {
        return true;
    });
}

/// The rows as text, cells between bars; a number has a "=" in front of it, a disabled row a "-".
QStringList textOf(const TestPlan& plan)
{
    QStringList lines{plan.headings.join(QLatin1Char('|'))};
    for (const workbench::TestPlanRow& row : plan.rows) {
        QStringList cells;
        for (int column = 0; column < plan.headings.size(); ++column) {
            const CellValue value = row.cells.value(column);
            const bool isNumber = value.userType() == QMetaType::Double;
            cells.append((isNumber ? QStringLiteral("=") : QString()) + workbench::cellText(value));
        }
        lines.append((row.isDisabled ? QStringLiteral("-") : QString())
                     + cells.join(QLatin1Char('|')));
    }
    return lines;
}

TestPlan planOf(const QStringList& headings, const QStringList& rows)
{
    TestPlan plan;
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
    explicit Plan(const QStringList& rows = {QStringLiteral("a1|b1|c1"), QStringLiteral("a2|b2|c2"),
                                             QStringLiteral("a3|b3|c3"),
                                             QStringLiteral("a4|b4|c4")})
        : document(QStringLiteral("New test plan"), nullptr)
        , model(document.model())
        , view(document.view())
    {
        document.setAttribute(Qt::WA_DeleteOnClose, false);
        QObject::connect(&document, &workbench::Document::failed, &document,
                         [this](const Failure& failure) { failures.append(failure.reason); });
        model.setPlan(
            planOf({QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")}, rows));
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
    QPoint current() const { return {view.currentIndex().column(), view.currentIndex().row()}; }

    TestPlanDocument document;
    TestPlanModel& model;
    TestPlanView& view;
    QStringList failures;
};

/// Has each box that shows progress come up at the second step, however quick the work is, and
/// presses its button once it is there.
class ImpatientUser : public QObject
{
public:
    ImpatientUser() { qApp->installEventFilter(this); }

    QStringList stopped; ///< the texts of the boxes

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* const box = qobject_cast<QProgressDialog*>(watched);
        if (box && event->type() == QEvent::Show) {
            stopped.append(box->labelText());
            QMetaObject::invokeMethod(box->findChild<QPushButton*>(), "click",
                                      Qt::QueuedConnection);
        }
        hurry(qobject_cast<QProgressDialog*>(watched->parent()));
        return false;
    }

private:
    /// Nobody but its own parts can tell of a box that isn't shown yet.
    void hurry(QProgressDialog* box)
    {
        auto* const bar = box ? box->findChild<QProgressBar*>() : nullptr;
        if (!bar || bar == m_bar)
            return;
        m_bar = bar;
        connect(bar, &QProgressBar::valueChanged, box, [box] { box->setMinimumDuration(0); });
    }

    QPointer<QProgressBar> m_bar;
};

QString plainText()
{
    return QApplication::clipboard()->mimeData()->text();
}

void setForeign(const QString& format, const QByteArray& bytes)
{
    auto* const data = new QMimeData;
    data->setData(format, bytes);
    QApplication::clipboard()->setMimeData(data);
}

QColor planColour(const char* brush)
{
    return ZvStyle::Current().editorColour("Testplan", brush);
}

QImage pictureOf(TestPlanView& view, int row, int column)
{
    const QRect cell = view.visualRect(view.model()->index(row, column));
    return view.viewport()->grab(cell).toImage();
}

} // namespace

class tst_workbench_testplan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qRegisterMetaType<Failure>();
        QVERIFY(m_host.isValid());
        QVERIFY(m_dir.isValid());
        zvtest::showPaintedStyle("Light");
    }

    void cleanup() { zvtest::closeFiles(); }

    void numbers_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("isNumber");
        QTest::addColumn<QString>("shown");
        const auto row = [](const char* typed, bool isNumber, const char* shown) {
            QTest::newRow(typed) << QString::fromUtf8(typed) << isNumber
                                 << QString::fromUtf8(shown);
        };
        row("0", true, "0");
        row("5", true, "5");
        row("-12.5", true, "-12.5");
        row("1.50", true, "1.5");
        row("0.1", true, "0.1");
        row("1e3", true, "1000");
        row("1E-7", true, "1e-07");
        row("2.5e+20", true, "2.5e+20");
        row("123456789012345", true, "123456789012345");
        row("9007199254740993", false, "9007199254740993");
        row("12345678901234567890", false, "12345678901234567890");
        row("007", false, "007");
        row("1e999", false, "1e999");
        row("1e-999", false, "1e-999");
        row("1e99999999999", false, "1e99999999999");
        row("+1", false, "+1");
        row(".5", false, ".5");
        row("5.", false, "5.");
        row(" 5", false, " 5");
        row("5 ", false, "5 ");
        row("1,5", false, "1,5");
        row("1 000", false, "1 000");
        row("0x10", false, "0x10");
        row("inf", false, "inf");
        row("nan", false, "nan");
        row("-", false, "-");
        row("12 V", false, "12 V");
        row("5\n", false, "5\n");
    }

    void numbers()
    {
        QFETCH(QString, typed);
        QFETCH(bool, isNumber);
        QFETCH(QString, shown);
        const CellValue value = workbench::cellValue(typed);
        QCOMPARE(value.userType(), int(isNumber ? QMetaType::Double : QMetaType::QString));
        QCOMPARE(workbench::cellText(value), shown);
        if (isNumber)
            QCOMPARE(workbench::cellValue(shown).toDouble(), value.toDouble());
    }

    void nulsAndNothing()
    {
        QVERIFY(!workbench::cellValue(QString()).isValid());
        QVERIFY(!workbench::cellValue(QString(QChar())).isValid());
        QCOMPARE(workbench::cellValue(QStringLiteral("a") + QChar() + QLatin1Char('b')).toString(),
                 QStringLiteral("ab"));
    }

    void freshPlan()
    {
        TestPlanDocument document(QStringLiteral("New test plan"), nullptr);
        QCOMPARE(document.model().plan().headings,
                 QStringList({QStringLiteral("Step"), QStringLiteral("Instruction"),
                              QStringLiteral("Input"), QStringLiteral("Expected"),
                              QStringLiteral("Measured"), QStringLiteral("Verdict"),
                              QStringLiteral("Comment")}));
        QVERIFY(document.model().rowCount() > 5);
        QVERIFY(!document.isModified());
        QCOMPARE(document.toolBarActions().size(), 4);
        QCOMPARE(document.model().index(0, 0).data().toString(), QString());
    }

    void typing()
    {
        Plan plan;
        plan.type(QStringLiteral("new"));
        QVERIFY(plan.typed());
        QTest::keyClick(plan.typed(), Qt::Key_Return);
        QCOMPARE(plan.at(0, 0), QStringLiteral("new"));
        QCOMPARE(plan.current(), QPoint(0, 1));
        QVERIFY(plan.document.isModified());

        plan.key(Qt::Key_F2);
        QTest::keyClick(plan.typed(), Qt::Key_End);
        QTest::keyClick(plan.typed(), '7');
        QTest::keyClick(plan.typed(), Qt::Key_Enter, Qt::ShiftModifier);
        QCOMPARE(plan.at(1, 0), QStringLiteral("a27"));
        QCOMPARE(plan.current(), QPoint(0, 0));

        plan.type(QStringLiteral("3.5"));
        QTest::keyClick(plan.typed(), Qt::Key_Tab);
        QCOMPARE(plan.rows().first(), QStringLiteral("=3.5|b1|c1"));
        QCOMPARE(plan.current(), QPoint(1, 0));

        plan.type(QStringLiteral("x"));
        QTest::keyClick(plan.typed(), Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(plan.at(0, 1), QStringLiteral("x"));
        QCOMPARE(plan.current(), QPoint(0, 0));

        plan.type(QStringLiteral("lost"));
        QTest::keyClick(plan.typed(), Qt::Key_Escape);
        QCOMPARE(plan.at(0, 0), QStringLiteral("3.5"));
        QCOMPARE(plan.model.undoStack().count(), 4);
    }

    void typingTheSameIsNoEdit()
    {
        Plan plan({QStringLiteral("007|5|")});
        for (int column = 0; column < 3; ++column) {
            plan.goTo(0, column);
            plan.key(Qt::Key_F2);
            QTest::keyClick(plan.typed(), Qt::Key_Return);
        }
        QCOMPARE(plan.model.undoStack().count(), 0);
        QVERIFY(!plan.document.isModified());
    }

    void moving_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QPoint>("to");
        const auto row = [](const char* name, int code, Qt::KeyboardModifiers modifiers,
                            QPoint to) { QTest::newRow(name) << code << modifiers << to; };
        row("Return", Qt::Key_Return, Qt::NoModifier, {1, 2});
        row("Enter", Qt::Key_Enter, Qt::KeypadModifier, {1, 2});
        row("Shift+Return", Qt::Key_Return, Qt::ShiftModifier, {1, 0});
        row("Tab", Qt::Key_Tab, Qt::NoModifier, {2, 1});
        row("Shift+Tab", Qt::Key_Backtab, Qt::ShiftModifier, {0, 1});
        row("Ctrl+Home", Qt::Key_Home, Qt::ControlModifier, {0, 0});
        row("Ctrl+End", Qt::Key_End, Qt::ControlModifier, {2, 3});
        row("Home", Qt::Key_Home, Qt::NoModifier, {0, 1});
        row("Down", Qt::Key_Down, Qt::NoModifier, {1, 2});
    }

    void moving()
    {
        QFETCH(int, code);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QPoint, to);
        Plan plan;
        plan.goTo(1, 1);
        plan.key(code, modifiers);
        QCOMPARE(plan.current(), to);
        QCOMPARE(plan.view.selectionModel()->selectedIndexes().size(), 1);
        QVERIFY(!plan.document.isModified());
    }

    void movingEndsAtTheEdges()
    {
        Plan plan;
        plan.key(Qt::Key_Backtab, Qt::ShiftModifier);
        plan.key(Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(plan.current(), QPoint(0, 0));
        plan.key(Qt::Key_End, Qt::ControlModifier);
        plan.key(Qt::Key_Tab);
        plan.key(Qt::Key_Return);
        QCOMPARE(plan.current(), QPoint(2, 3));
    }

    void selecting()
    {
        Plan plan;
        plan.goTo(1, 1);
        plan.key(Qt::Key_Space, Qt::ShiftModifier);
        QCOMPARE(plan.view.selectionModel()->selectedRows().size(), 1);
        QCOMPARE(plan.view.selectionModel()->selectedIndexes().size(), 3);
        plan.goTo(1, 1);
        plan.key(Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(plan.view.selectionModel()->selectedColumns().size(), 1);
        QCOMPARE(plan.view.selectionModel()->selectedIndexes().size(), 4);
        plan.key(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(plan.view.selectionModel()->selectedIndexes().size(), 12);
    }

    /// What keys do to a selection of cells, and that one undo takes it back.
    void edits_data()
    {
        QTest::addColumn<QRect>("selected");
        QTest::addColumn<int>("code");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QStringList>("rows");
        const QString a = QStringLiteral("a1|b1|c1");
        const QString b = QStringLiteral("a2|b2|c2");
        const QString c = QStringLiteral("a3|b3|c3");
        const QString d = QStringLiteral("a4|b4|c4");
        const QString empty = QStringLiteral("||");
        const auto row = [](const char* name, QRect selected, int code,
                            Qt::KeyboardModifiers modifiers, const QStringList& rows) {
            QTest::newRow(name) << selected << code << modifiers << rows;
        };
        row("clear", {1, 1, 2, 2}, Qt::Key_Delete, Qt::NoModifier,
            {a, QStringLiteral("a2||"), QStringLiteral("a3||"), d});
        row("cut", {0, 0, 1, 1}, Qt::Key_X, Qt::ControlModifier,
            {QStringLiteral("|b1|c1"), b, c, d});
        row("fill down", {0, 0, 2, 3}, Qt::Key_D, Qt::ControlModifier,
            {a, QStringLiteral("a1|b1|c2"), QStringLiteral("a1|b1|c3"), d});
        row("fill from above", {2, 1, 1, 1}, Qt::Key_D, Qt::ControlModifier,
            {a, QStringLiteral("a2|b2|c1"), c, d});
        row("insert a row", {0, 1, 1, 1}, Qt::Key_Plus, Qt::ControlModifier, {a, empty, b, c, d});
        row("insert two rows", {0, 1, 1, 2}, Qt::Key_Equal, Qt::ControlModifier,
            {a, empty, empty, b, c, d});
        row("remove a row", {1, 1, 1, 1}, Qt::Key_Minus, Qt::ControlModifier, {a, c, d});
        row("remove all rows", {0, 0, 3, 4}, Qt::Key_Minus, Qt::ControlModifier, {});
        row("row up", {1, 2, 1, 1}, Qt::Key_Up, Qt::AltModifier, {a, c, b, d});
        row("row down", {1, 0, 1, 2}, Qt::Key_Down, Qt::AltModifier, {c, a, b, d});
        row("column left", {1, 0, 1, 1}, Qt::Key_Left, Qt::AltModifier,
            {QStringLiteral("b1|a1|c1"), QStringLiteral("b2|a2|c2"), QStringLiteral("b3|a3|c3"),
             QStringLiteral("b4|a4|c4")});
        row("column right", {1, 0, 1, 1}, Qt::Key_Right, Qt::AltModifier,
            {QStringLiteral("a1|c1|b1"), QStringLiteral("a2|c2|b2"), QStringLiteral("a3|c3|b3"),
             QStringLiteral("a4|c4|b4")});
        row("disable", {0, 1, 1, 2}, Qt::Key_Slash, Qt::ControlModifier,
            {a, QLatin1Char('-') + b, QLatin1Char('-') + c, d});
    }

    void edits()
    {
        QFETCH(QRect, selected);
        QFETCH(int, code);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QStringList, rows);
        Plan plan;
        const QStringList before = textOf(plan.model.plan());
        plan.select(selected.top(), selected.left(), selected.bottom(), selected.right());
        plan.key(code, modifiers);
        QCOMPARE(plan.rows(), rows);
        QVERIFY(plan.document.isModified());
        const QStringList after = textOf(plan.model.plan());
        QCOMPARE(plan.model.undoStack().count(), 1);
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(textOf(plan.model.plan()), before);
        QVERIFY(!plan.document.isModified());
        plan.key(Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(textOf(plan.model.plan()), after);
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        plan.key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(textOf(plan.model.plan()), after);
        QCOMPARE(plan.failures, QStringList());
    }

    void nothingMovesBeyondTheEdges()
    {
        Plan plan;
        const QStringList before = textOf(plan.model.plan());
        plan.select(0, 0, 0, 0);
        plan.key(Qt::Key_Up, Qt::AltModifier);
        plan.key(Qt::Key_Left, Qt::AltModifier);
        plan.select(3, 2, 3, 2);
        plan.key(Qt::Key_Down, Qt::AltModifier);
        plan.key(Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(textOf(plan.model.plan()), before);
        QCOMPARE(plan.model.undoStack().count(), 0);
    }

    void aPlanWithoutRows()
    {
        Plan plan;
        plan.key(Qt::Key_A, Qt::ControlModifier);
        plan.key(Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(plan.model.rowCount(), 0);
        QApplication::clipboard()->clear();
        for (const int code : {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Delete, Qt::Key_F2})
            plan.key(code);
        for (const int code : {Qt::Key_C, Qt::Key_V, Qt::Key_X, Qt::Key_D, Qt::Key_Minus,
                               Qt::Key_Space, Qt::Key_Slash})
            plan.key(code, Qt::ControlModifier);
        QCOMPARE(plan.model.rowCount(), 0);
        plan.key(Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(plan.model.rowCount(), 1);
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        setForeign(QStringLiteral("text/plain"), "only");
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.rows(), QStringList(QStringLiteral("only||")));
    }

    void columns()
    {
        Plan plan;
        const QStringList before = textOf(plan.model.plan());
        plan.select(0, 1, 0, 1);
        actionOf(plan, "insertColumn")->trigger();
        QCOMPARE(plan.model.plan().headings,
                 QStringList({QStringLiteral("A"), QStringLiteral("Column 2"), QStringLiteral("B"),
                              QStringLiteral("C")}));
        QCOMPARE(plan.rows().first(), QStringLiteral("a1||b1|c1"));
        plan.select(0, 0, 0, 1);
        actionOf(plan, "removeColumn")->trigger();
        QCOMPARE(textOf(plan.model.plan()).mid(0, 2),
                 QStringList({QStringLiteral("B|C"), QStringLiteral("b1|c1")}));
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(textOf(plan.model.plan()), before);

        plan.key(Qt::Key_A, Qt::ControlModifier);
        actionOf(plan, "removeColumn")->trigger();
        QCOMPARE(textOf(plan.model.plan()), before);
        QCOMPARE(plan.failures, QStringList(QStringLiteral("One column has to stay.")));
    }

    void renaming()
    {
        Plan plan;
        const auto doubleClick = [&plan](int section) {
            QHeaderView* const header = plan.view.horizontalHeader();
            const QPoint place(header->sectionViewportPosition(section) + 20, header->height() / 2);
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, place);
            QTest::mouseDClick(header->viewport(), Qt::LeftButton, {}, place);
            return header->viewport()->findChild<QLineEdit*>(QStringLiteral("headingField"));
        };
        QLineEdit* field = doubleClick(1);
        QVERIFY(field);
        QCOMPARE(field->text(), QStringLiteral("B"));
        QTest::keyClicks(field, QStringLiteral("Current"));
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(plan.model.plan().headings.at(1), QStringLiteral("Current"));
        QCOMPARE(plan.model.undoStack().count(), 1);
        zvtest::closeFiles();

        field = doubleClick(2);
        QVERIFY(field);
        QTest::keyClicks(field, QStringLiteral("lost"));
        QTest::keyClick(field, Qt::Key_Escape);
        QCOMPARE(plan.model.plan().headings.at(2), QStringLiteral("C"));
        QCOMPARE(plan.model.undoStack().count(), 1);
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(plan.model.plan().headings.at(1), QStringLiteral("B"));
    }

    void copying()
    {
        Plan plan({QStringLiteral("1.5|b1|c1"), QStringLiteral("a2|b, 2|c2")});
        plan.select(0, 0, 1, 1);
        plan.key(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(plainText(), QStringLiteral("1.5\tb1\na2\tb, 2"));
        QVERIFY(ZvClipboard().hasType(ZvInternalMimeType::table));
        QCOMPARE(ZvClipboard().tableData().value(0, 0).data(), QVariant(1.5));
        QCOMPARE(plan.model.undoStack().count(), 0);

        plan.select(0, 0, 0, 0);
        plan.view.selectionModel()->select(plan.model.index(1, 2), QItemSelectionModel::Select);
        plan.key(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(plainText(), QStringLiteral("1.5\t\t\n\t\tc2"));
    }

    void pastingOwnCells()
    {
        Plan plan({QStringLiteral("1.5|007|"), QStringLiteral("||"), QStringLiteral("||")});
        plan.select(0, 0, 0, 1);
        plan.key(Qt::Key_C, Qt::ControlModifier);
        plan.select(1, 1, 1, 1);
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.rows(),
                 QStringList({QStringLiteral("=1.5|007|"), QStringLiteral("|=1.5|007"),
                              QStringLiteral("||")}));
        plan.select(0, 0, 0, 0);
        plan.key(Qt::Key_C, Qt::ControlModifier);
        plan.select(1, 0, 2, 2);
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.rows(),
                 QStringList({QStringLiteral("=1.5|007|"), QStringLiteral("=1.5|=1.5|=1.5"),
                              QStringLiteral("=1.5|=1.5|=1.5")}));
        QCOMPARE(plan.model.undoStack().count(), 2);
    }

    void pasteGrowsThePlan()
    {
        Plan plan;
        const QStringList before = textOf(plan.model.plan());
        setForeign(QStringLiteral("text/plain"), "1\t2\t3\n4\t5\t6\n");
        plan.select(3, 2, 3, 2);
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.model.plan().headings,
                 QStringList({QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C"),
                              QStringLiteral("Column 4"), QStringLiteral("Column 5")}));
        QCOMPARE(plan.rows().mid(3),
                 QStringList({QStringLiteral("a4|b4|=1|=2|=3"), QStringLiteral("||=4|=5|=6")}));
        QCOMPARE(plan.model.undoStack().count(), 1);
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(textOf(plan.model.plan()), before);
    }

    /// What other programs offer.
    void pastingForeign_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("rows");
        const auto row = [](const char* name, const char* format, const QByteArray& bytes,
                            const QStringList& rows) {
            QTest::newRow(name) << QString::fromLatin1(format) << bytes << rows;
        };
        const auto text = [](const char* utf8) { return QString::fromUtf8(utf8); };
        row("one word", "text/plain", "word", {text("word||"), text("||")});
        row("tabs", "text/plain", "1\tb\n007\td\n", {text("=1|b|"), text("007|d|")});
        row("Windows line ends", "text/plain", "1\tb\r\n2\td\r\n", {text("=1|b|"), text("=2|d|")});
        row("lines", "text/plain", "x\ny", {text("x||"), text("y||")});
        row("jagged", "text/plain", "x\ty\tz\nw", {text("x|y|z"), text("w||")});
        row("an empty cell at the end", "text/plain", "x\t\ny\t", {text("x||"), text("y||")});
        row("quoted line end", "text/plain", "\"a\nb\"\t\"c \"\"d\"\"\"",
            {text("a\nb|c \"d\"|"), text("||")});
        row("quotes of the text's own", "text/plain", "\"word\"\t\"open",
            {text("\"word\"|\"open|"), text("||")});
        row("CSV", "text/csv", "a,\"b, c\"\n7,8\n", {text("a|b, c|"), text("=7|=8|")});
        row("CSV of one column", "text/csv", "a\nb\n", {text("a||"), text("b||")});
        row("CSV beyond ASCII", "text/csv", "\xc2\xb5,\xce\xa9", {text("µ|Ω|"), text("||")});
    }

    void pastingForeign()
    {
        QFETCH(QString, format);
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, rows);
        Plan plan({QStringLiteral("||"), QStringLiteral("||")});
        setForeign(format, bytes);
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.rows(), rows);
        QCOMPARE(plan.model.undoStack().count(), 1);
    }

    void tablesThatCannotBeRead()
    {
        Plan plan({QStringLiteral("||")});
        auto* const data = new QMimeData;
        data->setData(QStringLiteral("text/csv"), "a\nb,c,d\n");
        data->setData(QStringLiteral("text/plain"), "text\tinstead");
        QApplication::clipboard()->setMimeData(data);
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.rows(), QStringList(QStringLiteral("text|instead|")));
        QCOMPARE(plan.failures, QStringList());

        for (const char* const bytes : {"a\nb,c,d\n", ""}) {
            setForeign(QStringLiteral("text/csv"), bytes);
            plan.key(Qt::Key_V, Qt::ControlModifier);
        }
        setForeign(QStringLiteral("image/png"), "picture");
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QApplication::clipboard()->clear();
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.failures.size(), 4);
        QCOMPARE(plan.rows(), QStringList(QStringLiteral("text|instead|")));
    }

    /// The size that is told beforehand is that of the library's table.
    void csvShapes_data()
    {
        QTest::addColumn<QByteArray>("csv");
        QTest::addColumn<bool>("isReadable");
        const auto row = [](const char* csv, bool isReadable) {
            QTest::newRow(csv) << QByteArray(csv) << isReadable;
        };
        row("a", true);
        row("a,b", true);
        row("a,b\n", true);
        row("a,b\nc\n", true);
        row("a,b\nc,d,e\n", false);
        row("a\nb,c", false);
        row("\"a,b\"\nc\n", true);
        row("x\"a,b\"y,\"\"\"\n\"\nc,d", true);
        row("\"open\na,b,c", true);
        row("a,\"\"\"\"\nc,d,", false);
        row("\r\n,", false);
        row(",\r\n,\r\n", true);
    }

    void csvShapes()
    {
        QFETCH(QByteArray, csv);
        QFETCH(bool, isReadable);
        const workbench::CsvShape shape = workbench::csvShape(csv);
        QCOMPARE(shape.isReadable, isReadable);
        if (!isReadable)
            return;
        QMimeData data;
        data.setData(QStringLiteral("text/csv"), csv);
        const ZvTable table = ZvClipboardData(&data).csvData();
        QCOMPARE(shape.rows, qint64(table.rows()));
        QCOMPARE(shape.columns, qint64(table.columns()));
    }

    void largePastesAskFirst()
    {
        Plan plan;
        setForeign(QStringLiteral("text/plain"),
                   QByteArray(1000, '\t') + '\n' + QByteArray("x\n").repeated(1000));
        zvtest::Answer<QMessageBox> no(
            [](QMessageBox& box) { box.button(QMessageBox::No)->click(); });
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(no.count, 1);
        QCOMPARE(plan.model.undoStack().count(), 0);
        QVERIFY(plan.activate());
        zvtest::Answer<QMessageBox> yes(
            [](QMessageBox& box) { box.button(QMessageBox::Yes)->click(); });
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(yes.count, 1);
        QCOMPARE(plan.model.rowCount(), 1001);
        QCOMPARE(plan.model.columnCount(), 1001);
        QCOMPARE(plan.failures, QStringList());
    }

    void clipboardMayChangeBeforeThePaste()
    {
        const auto goOn = [](int, int) { return true; };
        workbench::CellGrid own;
        own.rows = 1;
        own.columns = 2;
        own.cells = {QStringLiteral("own"), 1.0};
        workbench::copyToClipboard(own);
        const workbench::ClipboardCells table(goOn);
        setForeign(QStringLiteral("text/csv"), "csv,2\n");
        const workbench::ClipboardCells csv(goOn);
        setForeign(QStringLiteral("text/plain"), "text\t3");
        const workbench::ClipboardCells text(goOn);
        setForeign(QStringLiteral("text/plain"), "another");
        using Cells = std::vector<CellValue>;
        QVERIFY(table.grid(goOn).cells == own.cells);
        QVERIFY(csv.grid(goOn).cells == (Cells{QStringLiteral("csv"), 2.0}));
        QVERIFY(text.grid(goOn).cells == (Cells{QStringLiteral("text"), 3.0}));
    }

    void pastingCanBeStopped_data()
    {
        QTest::addColumn<QString>("format");
        QTest::newRow("own table") << QString();
        QTest::newRow("csv") << QStringLiteral("text/csv");
        QTest::newRow("text") << QStringLiteral("text/plain");
    }

    void pastingCanBeStopped()
    {
        QFETCH(QString, format);
        if (format.isEmpty()) {
            workbench::CellGrid grid;
            grid.rows = 10'000;
            grid.columns = 1;
            grid.cells.resize(10'000);
            workbench::copyToClipboard(grid);
        } else {
            setForeign(format, QByteArray("1\n").repeated(10'000));
        }
        int asked = 0;
        const auto stop = [&asked](int done, int all) {
            ++asked;
            return done < all / 2;
        };
        QVERIFY_EXCEPTION_THROWN(workbench::ClipboardCells(stop).grid(stop), workbench::Stopped);
        QVERIFY(asked > 1);
    }

    void pastesBeyondAllMeasureAreRefused()
    {
        Plan plan;
        const QStringList before = textOf(plan.model.plan());
        const QByteArray wide = QByteArray(100'000, ',') + '\n';
        setForeign(QStringLiteral("text/csv"), wide + QByteArray("x\n").repeated(100'000));
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QByteArray tabs = wide;
        setForeign(QStringLiteral("text/plain"),
                   tabs.replace(',', '\t') + QByteArray("x\n").repeated(100'000));
        // A box that shows progress may have been in front.
        QVERIFY(plan.activate());
        plan.key(Qt::Key_V, Qt::ControlModifier);
        setForeign(QStringLiteral("text/plain"), tabs);
        QVERIFY(plan.activate());
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.failures.size(), 3);
        QVERIFY(plan.failures.last().contains(QStringLiteral("columns")));
        QCOMPARE(textOf(plan.model.plan()), before);
    }

    void undoFollowsTheSavedState()
    {
        Plan plan;
        const QString file = m_dir.filePath(QStringLiteral("undo.testplan"));
        plan.type(QStringLiteral("1"));
        QTest::keyClick(plan.typed(), Qt::Key_Return);
        QVERIFY(plan.document.isModified());
        plan.document.saveAs(workbench::filePath(file));
        QVERIFY(!plan.document.isModified());
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(plan.document.isModified());
        plan.key(Qt::Key_Y, Qt::ControlModifier);
        QVERIFY(!plan.document.isModified());
    }

    void savingTakesWhatIsBeingTyped()
    {
        Plan plan;
        const QString file = m_dir.filePath(QStringLiteral("typed.testplan"));
        plan.type(QStringLiteral("last"));
        plan.document.saveAs(workbench::filePath(file));
        QCOMPARE(readPlan(file).rows.front().cells.first().toString(), QStringLiteral("last"));
        QVERIFY(!plan.document.isModified());
    }

    void closingAsksForWhatIsBeingTyped()
    {
        Plan plan;
        plan.type(QStringLiteral("last"));
        zvtest::Answer<QMessageBox> cancel(
            [](QMessageBox& box) { box.button(QMessageBox::Cancel)->click(); });
        QVERIFY(!plan.document.close());
        QCOMPARE(cancel.count, 1);
        QCOMPARE(plan.at(0, 0), QStringLiteral("last"));
        QVERIFY(plan.activate());
        plan.model.undoStack().setClean();
        plan.view.renameHeading(2);
        QTest::keyClicks(plan.view.horizontalHeader()->viewport()->findChild<QLineEdit*>(),
                         QStringLiteral("Last"));
        zvtest::Answer<QMessageBox> again(
            [](QMessageBox& box) { box.button(QMessageBox::Cancel)->click(); });
        QVERIFY(!plan.document.close());
        QCOMPARE(again.count, 1);
        QCOMPARE(plan.model.plan().headings.last(), QStringLiteral("Last"));
    }

    void filesComeBackAsTheyWere()
    {
        const QString file = m_dir.filePath(QStringLiteral("round.testplan"));
        TestPlan plan =
            planOf({QStringLiteral("A <&\">"), QString(), QStringLiteral("Ω\n")},
                   {QStringLiteral("0.1|text|1e300"), QString(), QStringLiteral("||x")});
        const double odd[] = {1.0 / 3, -0.0, 5e-324, std::numeric_limits<double>::max(),
                              1e15,    1e-5};
        for (const double number : odd) {
            plan.rows.emplace_back();
            plan.rows.back().cells = {number};
            plan.rows.back().isDisabled = true;
        }
        plan.rows.emplace_back();
        plan.rows.back().cells = {QStringLiteral(" a\tb\r\nc  "), QStringLiteral("5"),
                                  QString::fromUtf8("\xf0\x9f\x94\x8c'")};
        QVERIFY(savePlan(file, plan));
        const TestPlan read = readPlan(file);
        QCOMPARE(textOf(read), textOf(plan));
        for (std::size_t row = 0; row < plan.rows.size(); ++row) {
            for (int column = 0; column < 3; ++column) {
                const CellValue before = plan.rows[row].cells.value(column);
                const CellValue after = read.rows[row].cells.value(column);
                QCOMPARE(after.userType(), before.userType());
                if (before.userType() == QMetaType::Double) {
                    QVERIFY(after.toDouble() == before.toDouble()); // not merely nearly
                    QCOMPARE(std::signbit(after.toDouble()), std::signbit(before.toDouble()));
                }
            }
        }
    }

    /// A file that breaks off anywhere is refused, or is all there.
    void brokenFilesAreRefused()
    {
        const QString file = m_dir.filePath(QStringLiteral("whole.testplan"));
        const TestPlan plan = planOf({QStringLiteral("A"), QStringLiteral("B")},
                                     {QStringLiteral("1|two"), QString(), QStringLiteral("|end")});
        QVERIFY(savePlan(file, plan));
        zvtest::closeFiles();
        const QByteArray whole = zvtest::bytesOf(file);
        const QStringList expected = textOf(plan);
        const QString cut = m_dir.filePath(QStringLiteral("cut.testplan"));
        int refused = 0;
        for (int size = 1; size < whole.size(); ++size) {
            QVERIFY(zvtest::writeTo(cut, whole.left(size)));
            try {
                QCOMPARE(textOf(readPlan(cut)), expected);
            } catch (const workbench::FileError& error) {
                QVERIFY(!error.reason().isEmpty());
                ++refused;
            }
        }
        const int lastRow = whole.indexOf("end\"");
        QVERIFY2(refused > lastRow, qPrintable(QString::number(refused)));
    }

    void wrongFiles_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, const char* bytes, const char* reason) {
            QTest::newRow(name) << QByteArray(bytes) << QString::fromUtf8(reason);
        };
        row("no XML", "Step,Instruction", "It is no XML file.");
        row("another root", "<parts version='1'/>", "It is no test plan: it holds “parts”.");
        row("no version", "<testplan rows='0' columns='1'/>", "no “version”");
        row("newer", "<testplan version='2'/>", "newer version of this program");
        row("version 0", "<testplan version='0'/>", "Its version is “0”");
        row("no rows", "<testplan version='1' columns='1'/>", "no “rows”");
        row("absurd rows", "<testplan version='1' rows='2000000001' columns='1'/>", "“2000000001”");
        row("too large for a number", "<testplan version='1' rows='99999999999999' columns='1'/>",
            "“99999999999999”");
        row("negative", "<testplan version='1' rows='-1' columns='1'/>", "“-1”");
        row("no columns", "<testplan version='1' rows='0' columns='0'/>", "“columns” is “0”");
        row("claims much", "<testplan version='1' rows='2000000' columns='4096'/>",
            "It ends after row 0 of 2000000");
        row("ends early",
            "<testplan version='1' rows='3' columns='1'><heading text='A'/>"
            "<row cells='1' disabled='false'><cell type='number' value='1'/></row></testplan>",
            "It ends after row 1 of 3");
        row("row ends early",
            "<testplan version='1' rows='1' columns='2'><heading text='A'/><heading text='B'/>"
            "<row cells='2' disabled='false'><cell type='number' value='1'/></row></testplan>",
            "It ends after row 0 of 1");
        row("more rows",
            "<testplan version='1' rows='0' columns='1'><heading text='A'/>"
            "<row cells='0' disabled='false'/></testplan>",
            "more rows than the 0");
        row("more cells",
            "<testplan version='1' rows='1' columns='1'><heading text='A'/>"
            "<row cells='0' disabled='false'><cell type='number' value='1'/></row></testplan>",
            "a row with more cells");
        row("more cells than columns",
            "<testplan version='1' rows='1' columns='1'><heading text='A'/>"
            "<row cells='2' disabled='false'/></testplan>",
            "“cells” is “2”");
        row("a cell of another type",
            "<testplan version='1' rows='1' columns='1'><heading text='A'/>"
            "<row cells='1' disabled='false'><cell type='date' value='1'/></row></testplan>",
            "type “date”");
        row("a number that is none",
            "<testplan version='1' rows='1' columns='1'><heading text='A'/>"
            "<row cells='1' disabled='false'><cell type='number' value='one'/></row></testplan>",
            "the value “one”");
        row("no value",
            "<testplan version='1' rows='1' columns='1'><heading text='A'/>"
            "<row cells='1' disabled='false'><cell type='text'/></row></testplan>",
            "no “value”");
        row("something else",
            "<testplan version='1' rows='1' columns='1'><heading text='A'/><macro/>",
            "“macro” where “row” is expected");
        row("disabled is neither",
            "<testplan version='1' rows='1' columns='1'><heading text='A'/>"
            "<row cells='0' disabled='maybe'/></testplan>",
            "“maybe”");
    }

    void wrongFiles()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);
        const QString file = m_dir.filePath(QStringLiteral("wrong.testplan"));
        QVERIFY(zvtest::writeTo(file, bytes));
        Plan plan;
        plan.type(QStringLiteral("kept"));
        plan.view.finishTyping();
        QVERIFY(!plan.document.load(workbench::filePath(file)));
        QCOMPARE(plan.failures.size(), 1);
        QVERIFY2(plan.failures.first().contains(reason), qPrintable(plan.failures.first()));
        QCOMPARE(plan.at(0, 0), QStringLiteral("kept"));
        QVERIFY(plan.document.isModified());
        QVERIFY(plan.document.filename().isEmpty());
    }

    void anEmptyFileIsAFreshPlan()
    {
        const QString file = m_dir.filePath(QStringLiteral("empty.testplan"));
        QVERIFY(zvtest::writeTo(file, QByteArray()));
        Plan plan;
        QVERIFY(plan.document.load(workbench::filePath(file)));
        QCOMPARE(textOf(plan.model.plan()), textOf(TestPlan::fresh()));
        QVERIFY(!plan.document.isModified());
    }

    void whatXmlDoesNotAllow_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("place");
        QTest::newRow("control") << QStringLiteral("ab\x01") << 2;
        QTest::newRow("high alone") << QStringLiteral("a") + QChar(0xD800) << 1;
        QTest::newRow("low alone") << QString(QChar(0xDC00)) + QLatin1Char('a') << 0;
        QTest::newRow("no character") << QString(QChar(0xFFFE)) << 0;
        QTest::newRow("white space") << QStringLiteral("\t\r\n") << -1;
        QTest::newRow("pair") << QString::fromUtf8("\xf0\x9f\x94\x8c") << -1;
    }

    void whatXmlDoesNotAllow()
    {
        QFETCH(QString, text);
        QFETCH(int, place);
        QCOMPARE(workbench::unwritableCharacter(text), place);
        if (place < 0)
            return;
        const QString file = m_dir.filePath(QStringLiteral("unwritable.testplan"));
        QVERIFY(zvtest::writeTo(file, "as it was"));
        Plan plan;
        plan.model.setCells(QStringLiteral("Typing"), {{1, 2, text}});
        plan.document.saveAs(workbench::filePath(file));
        QCOMPARE(plan.failures.size(), 1);
        QVERIFY2(plan.failures.first().startsWith(QStringLiteral("The cell in row 2, column “C”,")),
                 qPrintable(plan.failures.first()));
        QVERIFY(plan.document.isModified());
        QCOMPARE(zvtest::bytesOf(file), QByteArray("as it was"));
    }

    void saveIntoAFolderThatIsNotThere()
    {
        Plan plan;
        plan.type(QStringLiteral("1"));
        plan.document.saveAs(
            workbench::filePath(m_dir.filePath(QStringLiteral("missing/a.testplan"))));
        QCOMPARE(plan.failures.size(), 1);
        QVERIFY2(plan.failures.first().contains(QStringLiteral("There is no folder")),
                 qPrintable(plan.failures.first()));
        QVERIFY(plan.document.isModified());
        QVERIFY(plan.document.filename().isEmpty());
    }

    void twoDocumentsAndAnOutsideChange()
    {
        const QString file = m_dir.filePath(QStringLiteral("shared.testplan"));
        Plan first;
        first.document.saveAs(workbench::filePath(file));
        zvtest::closeFiles();
        Plan second;
        QVERIFY(second.document.load(workbench::filePath(file)));
        zvtest::closeFiles();
        QSignalSpy changed(&second.document, &DockableWidgetContents::fileChangedOutside);
        first.type(QStringLiteral("changed outside"));
        first.view.finishTyping();
        QCOMPARE(second.at(0, 0), QStringLiteral("a1"));
        first.document.save();
        QVERIFY(!first.document.isModified());
        QVERIFY(QTest::qWaitFor([&changed] { return !changed.isEmpty(); }, zvtest::longWait));
        second.view.setFocus();
        second.type(QStringLiteral("lost"));
        second.view.finishTyping();
        second.document.reloadFile();
        QCOMPARE(second.at(0, 0), QStringLiteral("changed outside"));
        QVERIFY(!second.document.isModified());
        QVERIFY(!second.model.undoStack().canUndo());
        QVERIFY(second.document.isFileWatcherEnabled());
    }

    void headingsThatXmlDoesNotAllow()
    {
        const QString file = m_dir.filePath(QStringLiteral("heading.testplan"));
        try {
            savePlan(file, planOf({QStringLiteral("A"), QStringLiteral("\x02")}, {}));
            QFAIL("it is saved");
        } catch (const workbench::FileError& error) {
            QVERIFY2(error.reason().startsWith(QStringLiteral("The heading of column 2 holds")),
                     qPrintable(error.reason()));
        }
        QVERIFY(!QFile::exists(file));
    }

    void readingCanBeStopped()
    {
        const QString file = m_dir.filePath(QStringLiteral("stopped.testplan"));
        TestPlan plan = planOf({QStringLiteral("A")}, {});
        plan.rows.resize(2000);
        QVERIFY(savePlan(file, plan));
        int asked = 0;
        QVERIFY_EXCEPTION_THROWN(workbench::TestPlanReadFile(workbench::filePath(file))
                                     .read([&asked](int done, int all) {
                                         ++asked;
                                         return all == 2000 && done < 1000;
                                     }),
                                 workbench::Stopped);
        QVERIFY(asked > 1);
    }

    void savingCanBeStopped()
    {
        const QString file = m_dir.filePath(QStringLiteral("stopped.testplan"));
        QVERIFY(zvtest::writeTo(file, "as it was"));
        TestPlan plan = planOf({QStringLiteral("A")}, {});
        plan.rows.resize(2000);
        int asked = 0;
        QVERIFY_EXCEPTION_THROWN(workbench::TestPlanSaveFile(workbench::filePath(file))
                                     .save(plan,
                                           [&asked](int done, int all) {
                                               ++asked;
                                               return all == 2000 && done < 1000;
                                           }),
                                 workbench::Stopped);
        QVERIFY(asked > 1);
        QCOMPARE(zvtest::bytesOf(file), QByteArray("as it was"));
    }

    void userStopsSaving()
    {
        const QString file = m_dir.filePath(QStringLiteral("user.testplan"));
        Plan plan;
        QVERIFY(plan.model.insertRows(0, 5'000));
        const ImpatientUser user;
        plan.document.saveAs(workbench::filePath(file));
        QCOMPARE(user.stopped, QStringList(QStringLiteral("Saving “user.testplan”…")));
        QCOMPARE(plan.failures.size(), 1);
        QVERIFY2(plan.failures.first().contains(QStringLiteral("You have stopped it.")),
                 qPrintable(plan.failures.first()));
        QVERIFY(plan.document.isModified());
        QVERIFY(!QFile::exists(file));
    }

    void manyRows()
    {
#ifdef ZV_SANITIZED
        const int rows = 2'000; // there each allocation takes long
#else
        const int rows = 100'000;
#endif
        const QString file = m_dir.filePath(QStringLiteral("many.testplan"));
        TestPlan plan = planOf({QStringLiteral("A"), QStringLiteral("Verdict")}, {});
        for (int row = 0; row < rows; ++row) {
            plan.rows.emplace_back();
            plan.rows.back().cells = {double(row), QStringLiteral("pass")};
        }
        QVERIFY(savePlan(file, plan));
        zvtest::closeFiles();
        Plan shown;
        QVERIFY(shown.document.load(workbench::filePath(file)));
        QCOMPARE(shown.model.rowCount(), rows);
        QVERIFY(shown.activate());
        shown.key(Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(shown.current(), QPoint(1, rows - 1));
        shown.key(Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(shown.model.rowCount(), rows + 1);
        QCOMPARE(shown.at(rows, 0), QString::number(rows - 1));
    }

    void kindsOfRows()
    {
        Plan plan({QStringLiteral("# comment|fail|"), QStringLiteral("// comment||"),
                   QStringLiteral("1|Fail|"), QStringLiteral("2|ERROR|"), QStringLiteral("3|warn|"),
                   QStringLiteral("4|Warning|"), QStringLiteral("5|pass|fail"),
                   QStringLiteral("/ 6|failed|")});
        plan.model.setHeaderData(1, Qt::Horizontal, QStringLiteral("verdict"), Qt::EditRole);
        using Kind = TestPlanModel::RowKind;
        using Verdict = TestPlanModel::Verdict;
        const QVector<Verdict> verdicts = {Verdict::Plain, Verdict::Plain,   Verdict::Error,
                                           Verdict::Error, Verdict::Warning, Verdict::Warning,
                                           Verdict::Plain, Verdict::Plain};
        for (int row = 0; row < verdicts.size(); ++row) {
            QCOMPARE(plan.model.rowKind(row), row < 2 ? Kind::Comment : Kind::Plain);
            QCOMPARE(plan.model.verdict(plan.model.index(row, 1)), verdicts.at(row));
            QCOMPARE(plan.model.verdict(plan.model.index(row, 2)), Verdict::Plain);
        }
        plan.model.setRowsDisabled(0, 3, true);
        for (int row = 0; row < 3; ++row)
            QCOMPARE(plan.model.rowKind(row), Kind::Disabled);
        QCOMPARE(plan.model.verdict(plan.model.index(2, 1)), Verdict::Plain);
        plan.model.setHeaderData(1, Qt::Horizontal, QStringLiteral("Result"), Qt::EditRole);
        QCOMPARE(plan.model.verdict(plan.model.index(3, 1)), Verdict::Plain);
    }

    void numbersStandAtTheRight()
    {
        Plan plan({QStringLiteral("1|a|007")});
        const auto alignment = [&plan](int column) {
            return plan.model.index(0, column).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight;
        };
        QVERIFY(alignment(0));
        QVERIFY(!alignment(1));
        QVERIFY(!alignment(2));
    }

    void coloursFollowTheStyle()
    {
        Plan plan({QStringLiteral("1|fail|x"), QStringLiteral("2|warn|x"),
                   QStringLiteral("# 3|fail|x"), QStringLiteral("4|fail|x"),
                   QStringLiteral("5|pass|x")});
        plan.model.setHeaderData(1, Qt::Horizontal, QStringLiteral("Verdict"), Qt::EditRole);
        plan.model.setRowsDisabled(3, 1, true);
        plan.goTo(4, 2);
        for (const char* const style : {"Light", "Dark"}) {
            zvtest::showPaintedStyle(style);
            const QColor field =
                ZvStyle::Current().colour(libzvutil::ZvStyleBrush::EditorEnabled).qColour();
            QVERIFY(zvtest::pixelsOf(pictureOf(plan.view, 0, 1), planColour("ErrorBackground"))
                    > 100);
            QVERIFY(zvtest::pixelsOf(pictureOf(plan.view, 0, 1), planColour("ErrorBorder")) > 100);
            QVERIFY(zvtest::pixelsOf(pictureOf(plan.view, 1, 1), planColour("WarningBackground"))
                    > 100);
            QVERIFY(zvtest::pixelsOf(pictureOf(plan.view, 1, 1), planColour("WarningBorder"))
                    > 100);
            for (const int row : {0, 2, 3, 4}) {
                const QImage cell = pictureOf(plan.view, row, 0);
                QVERIFY(zvtest::pixelsOf(cell, field) > cell.width() * cell.height() / 2);
            }
            QVERIFY(zvtest::pixelsOf(pictureOf(plan.view, 3, 0), planColour("DisabledText")) > 0);
            QCOMPARE(zvtest::pixelsOf(pictureOf(plan.view, 3, 1), planColour("ErrorBackground")),
                     0);
            QCOMPARE(zvtest::pixelsOf(pictureOf(plan.view, 4, 1), planColour("ErrorBackground")),
                     0);
        }
        ZvStyle changed = ZvStyle::Current().duplicate("Changed");
        changed.setEditorColour("Testplan", "ErrorBackground", QColor(1, 2, 3));
        ZvStyleManager::SetStyle(changed);
        QCoreApplication::processEvents();
        QVERIFY(zvtest::pixelsOf(pictureOf(plan.view, 0, 1), QColor(1, 2, 3)) > 100);
        zvtest::showPaintedStyle("Light");
    }

    void pictures_data()
    {
        zvtest::addStyleRows();
    }

    void pictures()
    {
        QFETCH(QString, style);
        zvtest::showPaintedStyle(style.toUtf8().constData());
        TestPlanDocument document(QStringLiteral("Amplifier"), nullptr);
        document.setAttribute(Qt::WA_DeleteOnClose, false);
        QVERIFY(document.load(
            workbench::filePath(QStringLiteral(EXAMPLES "/workbench/amplifier.testplan"))));
        document.resize(1100, 620);
        document.show();
        TestPlanView& view = document.view();
        view.selectionModel()->setCurrentIndex(document.model().index(5, 4),
                                               QItemSelectionModel::ClearAndSelect);
        QCoreApplication::processEvents();
        QVERIFY(QDir().mkpath(QStringLiteral(PICTURES)));
        QVERIFY(document.grab().save(QStringLiteral(PICTURES "/testplan-%1.png").arg(style)));
        QVERIFY(zvtest::activate(document));
        static_cast<QAbstractItemView&>(view).edit(view.currentIndex());
        QVERIFY(
            document.grab().save(QStringLiteral(PICTURES "/testplan-typing-%1.png").arg(style)));
        zvtest::showPaintedStyle("Light");
    }

    /// What lies between blocks of a selection isn't touched.
    void blocksOfRows_data()
    {
        QTest::addColumn<QList<QRect>>("blocks");
        QTest::addColumn<int>("code");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QString>("rows");
        const auto row = [](const char* name, const QList<QRect>& blocks, int code,
                            Qt::KeyboardModifiers modifiers, const char* rows) {
            QTest::newRow(name) << blocks << code << modifiers << QString::fromLatin1(rows);
        };
        const QList<QRect> two = {{0, 1, 3, 1}, {0, 4, 3, 2}};
        row("remove", two, Qt::Key_Minus, Qt::ControlModifier, "0 2 3 6 7");
        row("remove, selected upwards", {{1, 4, 1, 2}, {0, 1, 1, 1}}, Qt::Key_Minus,
            Qt::ControlModifier, "0 2 3 6 7");
        row("remove what touches", {{0, 4, 1, 1}, {1, 3, 1, 1}, {2, 0, 1, 1}, {2, 4, 1, 2}},
            Qt::Key_Minus, Qt::ControlModifier, "1 2 6 7");
        row("insert", two, Qt::Key_Plus, Qt::ControlModifier, "0  1 2 3   4 5 6 7");
        row("disable", two, Qt::Key_Slash, Qt::ControlModifier, "0 -1 2 3 -4 -5 6 7");
        row("up", two, Qt::Key_Up, Qt::AltModifier, "1 0 2 4 5 3 6 7");
        row("down", two, Qt::Key_Down, Qt::AltModifier, "0 2 1 3 6 4 5 7");
        row("down by one row between", {{0, 2, 1, 1}, {0, 4, 1, 1}}, Qt::Key_Down, Qt::AltModifier,
            "0 1 3 2 5 4 6 7");
        row("the first can't go up", {{0, 0, 1, 1}, {0, 4, 1, 1}}, Qt::Key_Up, Qt::AltModifier,
            "0 1 2 3 4 5 6 7");
        row("the last can't go down", {{0, 1, 1, 1}, {0, 7, 1, 1}}, Qt::Key_Down, Qt::AltModifier,
            "0 1 2 3 4 5 6 7");
    }

    void blocksOfRows()
    {
        QFETCH(QList<QRect>, blocks);
        QFETCH(int, code);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QString, rows);
        QStringList numbers;
        for (int row = 0; row < 8; ++row)
            numbers.append(QStringLiteral("%1").arg(row));
        Plan plan(numbers);
        const QStringList before = plan.rows();
        selectBlocks(plan, blocks);
        plan.key(code, modifiers);
        QCOMPARE(firstsOf(plan), rows);
        const bool isChange = plan.rows() != before;
        QCOMPARE(plan.model.undoStack().count(), isChange ? 1 : 0);
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(plan.rows(), before);
        plan.key(Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(firstsOf(plan), rows);
    }

    void blocksOfRowsMoveOn()
    {
        Plan plan({QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2"),
                   QStringLiteral("3"), QStringLiteral("4"), QStringLiteral("5")});
        selectBlocks(plan, {{0, 0, 3, 1}, {0, 2, 3, 1}});
        for (int i = 0; i < 9; ++i)
            plan.key(Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(firstsOf(plan), QStringLiteral("1 3 4 0 5 2"));
        plan.key(Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(firstsOf(plan), QStringLiteral("1 3 0 4 2 5"));
    }

    void blocksOfColumns()
    {
        Plan plan;
        plan.model.insertColumns(3, 2); // A B C 4 5
        const QStringList before = textOf(plan.model.plan());
        const auto headings = [&plan] { return plan.model.plan().headings.join(QLatin1Char('|')); };
        selectBlocks(plan, {{0, 0, 1, 1}, {2, 0, 1, 4}, {3, 1, 1, 1}});
        actionOf(plan, "removeColumn")->trigger();
        QCOMPARE(headings(), QStringLiteral("B|Column 5"));
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(textOf(plan.model.plan()), before);
        selectBlocks(plan, {{1, 0, 1, 1}, {3, 0, 1, 1}});
        plan.key(Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(headings(), QStringLiteral("B|A|Column 4|C|Column 5"));
        plan.key(Qt::Key_Right, Qt::AltModifier);
        plan.key(Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(headings(), QStringLiteral("A|C|B|Column 5|Column 4"));
        plan.key(Qt::Key_Right, Qt::AltModifier); // the last is at the edge
        QCOMPARE(headings(), QStringLiteral("A|C|B|Column 5|Column 4"));
        actionOf(plan, "insertColumn")->trigger();
        QCOMPARE(headings(), QStringLiteral("A|C|Column 3|B|Column 5|Column 5|Column 4"));
        QCOMPARE(plan.failures, QStringList());
        selectBlocks(plan, {{0, 0, 3, 1}, {3, 2, 4, 1}});
        actionOf(plan, "removeColumn")->trigger();
        QCOMPARE(plan.failures, QStringList(QStringLiteral("One column has to stay.")));
        QCOMPARE(plan.model.columnCount(), 7);
    }

    void wholeRowsAndColumnsOfBlocks()
    {
        Plan plan;
        selectBlocks(plan, {{0, 0, 1, 1}, {2, 3, 1, 1}});
        plan.key(Qt::Key_Space, Qt::ShiftModifier);
        QCOMPARE(plan.view.selectionModel()->selectedIndexes().size(), 6);
        QVERIFY(!plan.view.selectionModel()->isSelected(plan.model.index(1, 0)));
        selectBlocks(plan, {{0, 0, 1, 1}, {2, 3, 1, 1}});
        plan.key(Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(plan.view.selectionModel()->selectedIndexes().size(), 8);
        QVERIFY(!plan.view.selectionModel()->isSelected(plan.model.index(0, 1)));
    }

    /// Whatever would need more memory than a computer has is told before anything is done.
    void tooManyCellsAreRefused()
    {
        Plan plan({QStringLiteral("a|b|c")});
        plan.model.insertRows(1, workbench::maximumPlanRows - 1);
        plan.model.undoStack().clear();
        plan.key(Qt::Key_A, Qt::ControlModifier);
        plan.key(Qt::Key_D, Qt::ControlModifier);
        const QString reason =
            QStringLiteral("No more than 5,000,000 cells can be changed at once.");
        QCOMPARE(plan.failures, QStringList(reason));
        setForeign(QStringLiteral("text/plain"), "x");
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.failures, QStringList({reason, reason}));
        QCOMPARE(plan.model.undoStack().count(), 0);
        QCOMPARE(plan.model.plan().rows.back().cells.size(), 0);
        // Here there are a few cells among many places.
        plan.key(Qt::Key_Delete);
        QCOMPARE(plan.failures.size(), 2);
        QCOMPARE(plan.model.undoStack().count(), 1);
        QCOMPARE(plan.at(0, 2), QString());
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(plan.at(0, 2), QStringLiteral("c"));
    }

    void fillingDownEmptiesBelowAnEmptyCell()
    {
        Plan plan(
            {QStringLiteral("a||c"), QStringLiteral("1|2|3"), QString(), QStringLiteral("|5")});
        plan.select(0, 0, 3, 2);
        plan.key(Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(plan.rows(),
                 QStringList({QStringLiteral("a||c"), QStringLiteral("a||c"),
                              QStringLiteral("a||c"), QStringLiteral("a||c")}));
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(plan.rows().at(3), QStringLiteral("|=5|"));
    }

    void commentsBeginWhereTheDirectionSays()
    {
        zvtest::showPaintedStyle("Light");
        Plan plan({QStringLiteral("# a comment that needs more room than one column has||"),
                   QStringLiteral("||")});
        plan.goTo(1, 0);
        for (int column = 0; column < 3; ++column)
            plan.view.setColumnWidth(column, 240);
        for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
            plan.view.setLayoutDirection(direction);
            QCoreApplication::processEvents();
            const QRect first = plan.view.visualRect(plan.model.index(0, 0));
            const QRect end = direction == Qt::LeftToRight
                ? QRect(first.topLeft(), QSize(100, first.height()))
                : QRect(first.topRight() - QPoint(99, 0), QSize(100, first.height()));
            const QImage image = plan.view.viewport()->grab(end).toImage();
            QVERIFY2(zvtest::pixelsOf(image, planColour("CommentText")) > 0,
                     direction == Qt::LeftToRight ? "left to right" : "right to left");
        }
    }

    void whatTheUserHasWrittenIsNoPlaceholder()
    {
        const QString file = m_dir.filePath(QStringLiteral("placeholder.testplan"));
        try {
            savePlan(file, planOf({QStringLiteral("Vdd %2 %3")}, {QStringLiteral("a\x1f")}));
            QFAIL("it is saved");
        } catch (const workbench::FileError& error) {
            QCOMPARE(error.reason(),
                     QStringLiteral("The cell in row 1, column “Vdd %2 %3”, holds a character that "
                                    "an XML file can't hold: U+001f at position 2."));
        }
    }

    /// Some disks give a file a longer name while it is written.
    void namesThatAreTooLongAreTold_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("reason");
        const QString tooLong = QStringLiteral("Its name is too long for this disk.");
        const QString other =
            QStringLiteral("Either the disk is full, or you have no right to write there.");
        QTest::newRow("at most") << 248 << other;
        QTest::newRow("too long to be written") << 249 << tooLong;
        QTest::newRow("too long at all") << 256 << tooLong;
    }

    void namesThatAreTooLongAreTold()
    {
        QFETCH(int, length);
        QFETCH(QString, reason);
        const QString file = m_dir.filePath(QString(length, QLatin1Char('n')));
        try {
            workbench::requireWritten(false, workbench::filePath(file));
            QFAIL("it is written");
        } catch (const workbench::FileError& error) {
            QCOMPARE(error.reason(), reason);
        }
    }

private:
    static void selectBlocks(Plan& plan, const QList<QRect>& blocks)
    {
        plan.goTo(blocks.first().top(), blocks.first().left());
        for (const QRect& block : blocks) {
            const QItemSelection cells(plan.model.index(block.top(), block.left()),
                                       plan.model.index(block.bottom(), block.right()));
            plan.view.selectionModel()->select(cells, QItemSelectionModel::Select);
        }
    }

    /// The first cell of each row, with a "-" if it is disabled.
    static QString firstsOf(const Plan& plan)
    {
        QStringList firsts;
        for (const workbench::TestPlanRow& row : plan.model.plan().rows)
            firsts.append((row.isDisabled ? QStringLiteral("-") : QString())
                          + workbench::cellText(row.cells.value(0)));
        return firsts.join(QLatin1Char(' '));
    }

    static QAction* actionOf(const Plan& plan, const char* name)
    {
        return plan.document.findChild<QAction*>(QString::fromLatin1(name));
    }

    const zvtest::StyleHost m_host;
    const QTemporaryDir m_dir;
};

QTEST_MAIN(tst_workbench_testplan)

#include "tst_workbench_testplan.moc"
