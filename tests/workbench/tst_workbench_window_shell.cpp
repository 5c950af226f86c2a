// The workbench's window around the documents: tabs, panels that fold away, boxes, help, and colours that can
// be read.

#include "WindowTest.h"

#include "common/EmptyHint.h"
#include "common/readable_colour.h"
#include "common/style_options.h"
#include "files/FilesPanel.h"
#include "script/CodeEditor.h"
#include "script/ScriptDocument.h"
#include "shell/AboutDialog.h"
#include "shell/PanelButton.h"
#include "shell/ShortcutsDialog.h"
#include "shell/Workbench.h"

#include <zvworkbench/Document.h>

#include <DockFramework/DockableWidget.h>

#include <zvutil/ZvStyleEditor.h>

#include <HostSupport/ScriptSession.h>

#include <support/AccessibleNames.h>
#include <support/StyleHost.h>
#include <support/Warnings.h>
#include <support/Workbench.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFontMetrics>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTabBar>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>
#include <QToolBar>
#include <QTreeWidget>
#include <QWindow>

using zvtest::actionOf;
using zvtest::failureOf;
using zvtest::namesOf;
using zvtest::Window;
using namespace workbench;

namespace {

DockableWidget* panelOf(const Workbench& window, const QString& name)
{
    for (DockableWidget* const panel : window.panels()) {
        if (panel->contents()->objectName() == name)
            return panel;
    }
    return nullptr;
}

/// A script that never ends.
class SilentSession : public host::ScriptSession
{
public:
    void run(const std::string& /*text*/, const std::string& /*source*/) override { }
    void evaluate(const std::string& /*text*/) override { }
    void stop() override { }
};

/// The tabs of the documents.
QTabBar* documentTabs(const Workbench& window)
{
    for (QTabBar* const bar :
         window.findChildren<QTabBar*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (bar->isVisible() && bar->tabText(0).contains(".zvscr"))
            return bar;
    }
    return nullptr;
}

/// Puts the keyboard where a desktop may put it although a box is open.
void giveKeyboardTo(Workbench& window)
{
    QApplication::setActiveWindow(&window);
    window.setFocus();
}

int boxesOf(const Workbench& window)
{
    return window.findChildren<QDialog*>().size();
}

/// The colours in which a line of an editor is written.
QList<QColor> coloursOf(const QTextBlock& line)
{
    QList<QColor> colours;
    for (const QTextLayout::FormatRange& range : line.layout()->formats())
        colours.append(range.format.foreground().color());
    return colours;
}

} // namespace

class tst_workbench_window_shell : public zvtest::WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void consoleAndLogAreFoldedAwayAtFirst()
    {
        const Window window;
        QVERIFY(!panelOf(*window, "Files")->isHidden());
        for (const char* const name : {"Console", "Log"}) {
            QVERIFY2(panelOf(*window, name)->isHidden(), name);
            auto* const button = window->findChild<PanelButton*>(QString("show:") + name);
            QVERIFY2(button && button->isVisible() && !button->isChecked(), name);
            QCOMPARE(button->text(), QString(name));
        }
    }

    void buttonsBringPanelsToTheFront()
    {
        const Window window;
        auto* const console = window->findChild<PanelButton*>("show:Console");
        auto* const log = window->findChild<PanelButton*>("show:Log");
        const DockableWidget* const consolePanel = panelOf(*window, "Console");
        console->click();
        QVERIFY(!consolePanel->isHidden());
        QTRY_VERIFY(console->isChecked());
        log->click();
        // Behind the log, not closed: the button fetches it instead of closing it.
        QTRY_VERIFY(log->isChecked() && !console->isChecked());
        QVERIFY(!consolePanel->isHidden());
        console->click();
        QTRY_VERIFY(console->isChecked() && !log->isChecked());
        QVERIFY(!consolePanel->isHidden());
        console->click();
        QVERIFY(consolePanel->isHidden());
        QTRY_VERIFY(!console->isChecked());
    }

    void anOpenPanelIsOpenAgain()
    {
        {
            const Window window;
            window->findChild<PanelButton*>("show:Log")->click();
        }
        const Window window;
        QVERIFY(!panelOf(*window, "Log")->isHidden());
        QVERIFY(panelOf(*window, "Console")->isHidden());
    }

    void theOutputIsFoldedAwayUntilAScriptRuns()
    {
        const Window window;
        auto* const document = qobject_cast<ScriptDocument*>(window->openFile(script("a.zvscr")));
        QVERIFY(document);
        const auto* const output = document->findChild<QWidget*>("scriptOutput");
        QVERIFY(output->isHidden());
        QVERIFY(document->editor().height() > document->height() * 4 / 5);
        host::setScriptSessionMaker(
            [](host::ScriptListener) { return std::make_unique<SilentSession>(); });
        document->run();
        host::setScriptSessionMaker({});
        QVERIFY(!output->isHidden());
        QTRY_VERIFY(output->height() > document->height() / 8);
    }

    void allThatCanHaveTheFocusHasAName()
    {
        const Window window;
        QTRY_COMPARE(zvtest::unnamedIn(*window), QStringList());
        for (const DocumentType* const type : documentTypes())
            window->newDocument(*type);
        for (const char* const name : {"show:Console", "show:Log"}) {
            window->findChild<PanelButton*>(name)->click();
            QTRY_COMPARE(zvtest::unnamedIn(*window), QStringList());
        }
        for (Document* const document : window->documents()) {
            window->activate(
                qobject_cast<DockableWidget*>(document->parentWidget()->parentWidget()));
            QTRY_COMPARE(zvtest::unnamedIn(*window), QStringList());
        }
        for (const char* const name : {"options", "shortcuts", "about", "findInFiles"}) {
            actionOf(*window, name)->trigger();
            QDialog* const dialog = window->findChildren<QDialog*>().last();
            QVERIFY2(dialog->isVisible(), name);
            QTRY_VERIFY2(zvtest::unnamedIn(*dialog).isEmpty(),
                         qPrintable(name + (": " + zvtest::unnamedIn(*dialog).join(", "))));
            dialog->close();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    void tabsCloseTheirDocuments()
    {
        const Window window;
        window->openFiles({script("a.zvscr"), script("b.zvscr"), script("c.zvscr")});
        QTRY_VERIFY(documentTabs(*window) && documentTabs(*window)->count() == 3);
        QTabBar* const tabs = documentTabs(*window);
        QVERIFY(tabs->tabsClosable());
        QVERIFY(!tabs->accessibleName().isEmpty());
        Q_EMIT tabs->tabCloseRequested(1);
        QTRY_COMPARE(namesOf(*window), (QStringList{"a.zvscr", "c.zvscr"}));
        QTest::mouseClick(tabs, Qt::MiddleButton, {}, tabs->tabRect(0).center());
        QTRY_COMPARE(namesOf(*window), QStringList{"c.zvscr"});
    }

    // In a dark style the line would be white.
    void tabsHaveNoLineBesideThem()
    {
        const Window window;
        window->openFiles({script("a.zvscr"), script("b.zvscr")});
        QTRY_VERIFY(documentTabs(*window) && documentTabs(*window)->count() == 2);
        QTRY_VERIFY(!documentTabs(*window)->drawBase());
        window->openFile(script("c.zvscr"));
        QTRY_COMPARE(documentTabs(*window)->count(), 3);
        QTRY_VERIFY(!documentTabs(*window)->drawBase());
    }

    void aTabStandsForTheTitleBar()
    {
        const Window window;
        window->openFile(script("a.zvscr"));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        auto* const first = qobject_cast<DockableWidget*>(
            window->currentDocument()->parentWidget()->parentWidget());
        QVERIFY(first);
        QTRY_VERIFY(first->titleBarWidget()->isVisible());
        window->openFile(script("b.zvscr"));
        auto* const second = qobject_cast<DockableWidget*>(
            window->currentDocument()->parentWidget()->parentWidget());
        QTRY_VERIFY(!second->titleBarWidget()->isVisible());
        QCOMPARE(second->titleBarWidget()->sizeHint().height(), 0);
        // A window of its own has no tab, and is moved by its title bar.
        second->setFloating(true);
        QTRY_VERIFY(second->titleBarWidget()->isVisible());
        QTRY_VERIFY(first->titleBarWidget()->isVisible());
        QVERIFY(second->titleBarWidget()->height() > 10);
    }

    void theLayoutIsSavedWithoutWarnings()
    {
        const Window window;
        for (const DocumentType* const type : documentTypes())
            window->newDocument(*type);
        window->openFile(script("a.zvscr"));
        auto* const document = qobject_cast<DockableWidget*>(
            window->currentDocument()->parentWidget()->parentWidget());
        document->setFloating(true);
        QByteArray layout;
        QCOMPARE(zvtest::warningsOf([&] { layout = window->saveLayout(); }), QStringList());
        QVERIFY(!layout.isEmpty());
    }

    void shortcutsRestBehindABox()
    {
        const Window window;
        window->openFile(script("a.zvscr"));
        QVERIFY(zvtest::activate(*window));
        window->showFailure({"It failed.", "There is a reason.", "Try again."});
        QVERIFY(failureOf(*window));
        QCOMPARE(boxesOf(*window), 1);
        giveKeyboardTo(*window);
        QTest::keyClick(&*window, Qt::Key_F1);
        QTest::keyClick(&*window, Qt::Key_N, Qt::ControlModifier);
        QTest::keyClick(&*window, Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(boxesOf(*window), 1);
        QCOMPARE(namesOf(*window), QStringList{"a.zvscr"});
        zvtest::dismiss(*failureOf(*window));
        giveKeyboardTo(*window);
        QTest::keyClick(&*window, Qt::Key_W, Qt::ControlModifier);
        QTRY_COMPARE(namesOf(*window), QStringList());
    }

    void helpListsTheShortcutsOfAllMenus()
    {
        const Window window;
        for (const DocumentType* const type : documentTypes())
            window->newDocument(*type);
        QVERIFY(zvtest::activate(*window));
        giveKeyboardTo(*window);
        QTest::keyClick(&*window, Qt::Key_F1);
        auto* const dialog = window->findChild<ShortcutsDialog*>();
        QVERIFY(dialog && dialog->isVisible());
        auto* const list = dialog->findChild<QTreeWidget*>("shortcuts");
        for (const QAction* const entry : window->menuBar()->actions()) {
            for (const QAction* const action : entry->menu()->actions()) {
                if (action->menu() || action->shortcut().isEmpty())
                    continue;
                const QString keys = action->shortcut().toString(QKeySequence::NativeText);
                const QString name = action->text().remove('&').remove(QString("…"));
                bool isListed = false;
                for (const QTreeWidgetItem* const item :
                     list->findItems(name, Qt::MatchExactly | Qt::MatchRecursive))
                    isListed = isListed || item->text(1).split(", ").contains(keys);
                QVERIFY2(isListed, qPrintable(name + ' ' + keys));
            }
        }
        QVERIFY(!list->findItems("Files", Qt::MatchExactly).isEmpty());
        dialog->findChild<QLineEdit*>("search")->setText("ctrl+q");
        QCOMPARE(
            list->findItems("Quit", Qt::MatchExactly | Qt::MatchRecursive).value(0)->isHidden(),
            false);
        QVERIFY(
            list->findItems("Save", Qt::MatchExactly | Qt::MatchRecursive).value(0)->isHidden());
        dialog->close();
    }

    void aboutTellsVersionsAndLicences()
    {
        const Window window;
        actionOf(*window, "about")->trigger();
        auto* const dialog = window->findChild<AboutDialog*>();
        QVERIFY(dialog && dialog->isVisible());
        const QString versions = dialog->findChild<QLabel*>("versions")->text();
        QVERIFY2(versions.contains(QRegularExpression("^Workbench \\d+\\.\\d+\\.\\d+\n")),
                 qPrintable(versions));
        QVERIFY(versions.contains(QString("Qt ") + qVersion()));
        QVERIFY(!window->windowIcon().isNull());
        QVERIFY(!window->windowIcon().pixmap(32).isNull());
        dialog->close();
    }

    void toolTipsNameTheKeys()
    {
        const Window window;
        window->newDocument(*documentTypeOf("testplan"));
        auto* const bar = window->findChild<QToolBar*>("toolBar");
        for (int round = 0; round < 2; ++round) {
            for (const QAction* const action : bar->actions()) {
                const QString keys = action->shortcut().toString(QKeySequence::NativeText);
                if (!keys.isEmpty())
                    QCOMPARE(action->toolTip().count("(" + keys + ")"), 1);
            }
            window->newDocument(*documentTypeOf("testplan"));
        }
    }

    void emptyListsSayWhatToDo()
    {
        const Window window;
        FilesPanel& files = window->filesPanel();
        const auto* const hint = files.findChild<EmptyHint*>();
        QTRY_COMPARE(hint->text(), QString("Add a folder to list its files, or drop one here."));
        QVERIFY(hint->isVisible());
        QVERIFY(!files.findChild<QWidget*>("folders")->isVisible());
        script("a.zvscr");
        script("b.zvscr");
        files.addFolders({m_folder->path()});
        QTRY_VERIFY(!hint->isVisible());
        QVERIFY(files.findChild<QWidget*>("folders")->isVisible());
        files.findChild<QLineEdit*>("search")->setText("nothing");
        QTRY_VERIFY(hint->isVisible());
        QTRY_COMPARE(hint->text(), QString("No name of a file matches the search."));
        QVERIFY(panelOf(*window, "Log")->findChild<EmptyHint*>());
    }

    void theStyleEditorStaysInFront()
    {
        const Window window;
        QVERIFY(QTest::qWaitForWindowExposed(&*window));
        actionOf(*window, "_se")->trigger();
        libzvutil::ZvStyleEditor* editor = nullptr;
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (auto* const shown = qobject_cast<libzvutil::ZvStyleEditor*>(widget))
                editor = shown;
        }
        QVERIFY(editor && editor->isVisible());
        QVERIFY(!editor->windowTitle().isEmpty());
        QCOMPARE(editor->windowHandle()->transientParent(), window->windowHandle());
        auto* const names = editor->findChild<QComboBox*>();
        const int before = names->sizeHint().width();
        names->addItem("User Light of a long name 2");
        QVERIFY(names->sizeHint().width() > before);
        QVERIFY(names->sizeHint().width()
                > names->fontMetrics().horizontalAdvance("User Light of a long name 2"));
        editor->close();
    }

    void contrastIsThatOfTheGuidelines()
    {
        QCOMPARE(contrast(Qt::black, Qt::white), 21.0);
        QCOMPARE(contrast(Qt::white, Qt::black), 21.0);
        QCOMPARE(contrast(Qt::red, Qt::red), 1.0);
        // The darkest grey that is enough on white, and the next one.
        QVERIFY(contrast(QColor(0x76, 0x76, 0x76), Qt::white) >= 4.5);
        QVERIFY(contrast(QColor(0x77, 0x77, 0x77), Qt::white) < 4.5);
    }

    void readableColours_data()
    {
        QTest::addColumn<QColor>("text");
        QTest::addColumn<QColor>("background");
        QTest::newRow("comment") << QColor("#00CC6A") << QColor(Qt::white);
        QTest::newRow("accent in Dark") << QColor("#2D7D9A") << QColor("#333333");
        QTest::newRow("half black") << QColor(0, 0, 0, 0x61) << QColor(Qt::white);
        QTest::newRow("half white") << QColor(255, 255, 255, 0x40) << QColor(Qt::black);
        QTest::newRow("the same") << QColor(Qt::gray) << QColor(Qt::gray);
        QTest::newRow("white on white") << QColor(Qt::white) << QColor(Qt::white);
        QTest::newRow("invalid") << QColor() << QColor(Qt::black);
    }

    void readableColours()
    {
        QFETCH(QColor, text);
        QFETCH(QColor, background);
        QVERIFY(contrast(readable(text, background), background) >= leastContrast);
    }

    void readableColoursStay()
    {
        QCOMPARE(readable(Qt::black, Qt::white), QColor(Qt::black));
        QCOMPARE(readable(QColor("#aa0000"), Qt::white), QColor("#aa0000"));
    }

    void textsCanBeRead_data()
    {
        QTest::addColumn<QString>("style");
        QTest::newRow("Light") << "Light";
        QTest::newRow("Dark") << "Dark";
    }

    void textsCanBeRead()
    {
        QFETCH(QString, style);
        showStyle(style);
        const Window window;
        auto* const document = qobject_cast<ScriptDocument*>(window->openFile(
            script("a.zvscr", "// remark\nif (\"text\") { print(1); } /* remark */")));
        QVERIFY(document);
        const QColor page = styleColour(libzvutil::ZvStyleBrush::EditorEnabled);
        int coloured = 0;
        for (QTextBlock line = document->editor().document()->firstBlock(); line.isValid();
             line = line.next()) {
            for (const QColor& colour : coloursOf(line)) {
                ++coloured;
                QVERIFY2(contrast(colour, page) >= leastContrast, qPrintable(colour.name()));
            }
        }
        QVERIFY(coloured >= 4);
        QVERIFY(contrast(pageTextColour(styleColour(libzvutil::ZvStyleBrush::TextDisabled)), page)
                >= leastContrast);
    }
};

QTEST_MAIN(tst_workbench_window_shell)
#include "tst_workbench_window_shell.moc"
