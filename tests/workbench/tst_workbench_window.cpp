// The workbench's window: the start page, menus, tool bar, panels and commands.

#include "WindowTest.h"

#include "common/style_options.h"
#include "files/FilesPanel.h"
#include "shell/Arguments.h"
#include "shell/OptionsDialog.h"
#include "shell/StartPage.h"
#include "shell/Workbench.h"
#include "shell/open_workbench.h"

#include <zvworkbench/Document.h>

#include <DockFramework/DockableWidget.h>

#include <zvutil/ZvStyleEditor.h>

#include <support/Background.h>
#include <support/RefusedWrite.h>
#include <support/StyleHost.h>
#include <support/WindowResponder.h>
#include <support/Workbench.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QToolBar>

#include <algorithm>

using zvtest::actionOf;
using zvtest::namesOf;
using zvtest::textsOf;
using zvtest::Window;
using namespace workbench;

namespace {

QMenu* menuOf(const Workbench& window, const QString& title)
{
    for (const QAction* const action : window.menuBar()->actions()) {
        if (action->text().remove(QLatin1Char('&')) == title)
            return action->menu();
    }
    return nullptr;
}

} // namespace

class tst_workbench_window : public zvtest::WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void theTitleNamesTheDocument()
    {
        const Window window;
        QCOMPARE(window->windowTitle(), QString("Workbench"));
#if defined(Q_OS_WIN)
        // The system has no file with an asterisk in its name.
        const char* const name = "[] & a.zvscr";
        const QString title = "[] & a.zvscr[*] – Workbench";
#else
        const char* const name = "[*] & a.zvscr";
        const QString title = "[*][*] & a.zvscr[*] – Workbench";
#endif
        Document* const document = window->openFile(script(name));
        QVERIFY(document);
        QCOMPARE(window->windowTitle(), title);
        QVERIFY(!window->isWindowModified());
        document->setModified(true);
        QVERIFY(window->isWindowModified());
        window->newDocument(*documentTypes().at(0));
        QCOMPARE(window->windowTitle(), QString("Test plan 1[*] – Workbench"));
        QVERIFY(!window->isWindowModified());
        window->openFile(script(name));
        QVERIFY(window->isWindowModified());
        document->setModified(false);
    }

    void theWindowFitsTheScreen()
    {
        const Window window;
        const QSize room = QGuiApplication::primaryScreen()->availableSize();
        QVERIFY(window->width() < room.width() && window->height() < room.height());
        QVERIFY(window->width() <= 1'200 && window->height() <= 800);
    }

    void windowsAreNamedForScreenReaders()
    {
        const Window window;
        for (const DocumentType* const type : documentTypes())
            window->newDocument(*type);
        for (const DockableWidget* const dock : window->dockableWidgets()) {
            QVERIFY(!dock->accessibleName().isEmpty());
            QCOMPARE(dock->accessibleName(), dock->contents()->shortTitle());
            QCOMPARE(dock->contents()->accessibleName(), dock->contents()->shortTitle());
        }
        for (const char* const name : {"consoleOutput", "consoleInput", "scriptText",
                                       "scriptOutput", "testPlanView", "schematicView"}) {
            const auto* const widget = window->findChild<QWidget*>(name);
            QVERIFY2(widget && !widget->accessibleName().isEmpty(), name);
        }
    }

    void startPageStandsInForDocuments()
    {
        const Window window;
        QVERIFY(window->findChild<workbench::StartPage*>());
        QVERIFY(!window->currentDocument());
        QVERIFY(!actionOf(*window, "save")->isEnabled());
        window->newDocument(*documentTypes().at(0));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!window->findChild<workbench::StartPage*>());
        QVERIFY(actionOf(*window, "save")->isEnabled());
        window->commands().close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(window->findChild<workbench::StartPage*>());
        QVERIFY(!window->currentDocument());
        QVERIFY(!actionOf(*window, "save")->isEnabled());
    }

    void startPageOffersAll()
    {
        const QString file = script("first.zvscr");
        {
            const Window window;
            QVERIFY(window->openFile(file));
            window->commands().close();
        }
        const Window window;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        auto* const page = window->findChild<workbench::StartPage*>();
        for (const char* name : {"new:testplan", "new:schematic", "new:script", "open"})
            QVERIFY2(page->findChild<QPushButton*>(QLatin1String(name)), name);
        const QList<QPushButton*> recent = page->findChildren<QPushButton*>("recent");
        QCOMPARE(recent.size(), 1);
        QVERIFY(recent.at(0)->text().startsWith("first.zvscr"));
        recent.at(0)->click();
        QCOMPARE(namesOf(*window), QStringList{"first.zvscr"});
    }

    void startPageMakesDocuments()
    {
        const Window window;
        window->findChild<QPushButton*>("new:testplan")->click();
        QCOMPARE(window->currentDocument()->type().id, QString("testplan"));
    }

    void editMenuIsTheDocuments()
    {
        const Window window;
        QMenu* const menu = menuOf(*window, "Edit");
        Q_EMIT menu->aboutToShow();
        QCOMPARE(textsOf(*menu), QStringList{"Find in Files…"});
        window->newDocument(*documentTypeOf("script"));
        Q_EMIT menu->aboutToShow();
        QCOMPARE(textsOf(*menu),
                 (QStringList{"Undo", "Redo", "Cut", "Copy", "Paste", "Delete", "Select All",
                              "Find…", "Replace…", "Find Next", "Find Previous", "Go to Line…",
                              "Zoom In", "Zoom Out", "Actual Size", "Comment Lines", "Run", "Stop",
                              "Find in Files…"}));
        window->newDocument(*documentTypeOf("testplan"));
        Q_EMIT menu->aboutToShow();
        QVERIFY(textsOf(*menu).contains("Paste"));
    }

    void toolBarFollowsTheDocument()
    {
        const Window window;
        const auto* const toolBar = window->findChild<QToolBar*>();
        QCOMPARE(toolBar->actions().size(), 2);
        Document* const document = window->newDocument(*documentTypeOf("script"));
        QCOMPARE(toolBar->actions().mid(3), document->toolBarActions());
        // Work in a panel doesn't change it.
        window->activate(window->panels().at(0));
        QCOMPARE(window->currentDocument(), document);
        QCOMPARE(toolBar->actions().mid(3), document->toolBarActions());
    }

    void viewMenuHasPanelsStylesAndCommands()
    {
        const Window window;
        QCOMPARE(textsOf(*menuOf(*window, "View")),
                 (QStringList{"Files", "Console", "Log", "Style", "Accent", "Dark Look for Now",
                              "Light Look for Now", "Style Editor", "Style Sheet Additions",
                              "Style as a Tree", "Options…"}));
        QCOMPARE(textsOf(*window->findChild<QMenu*>("styles")), (QStringList{"Light", "Dark"}));
    }

    void optionsAreApplied()
    {
        const Window window;
        actionOf(*window, "options")->trigger();
        auto* const dialog = window->findChild<OptionsDialog*>();
        QVERIFY(dialog);
        QVERIFY(dialog->isVisible());
        host::writeOption("ZvStyle", "Dark");
        Q_EMIT dialog->applied();
        QCOMPARE(currentStyleName(), QString("Dark"));
        chooseStyle("Light");
    }

    void commandShowsInTheWindowThatIsThere()
    {
        const QString file = script("told.zvscr");
        QVERIFY(openWorkbench({"--what"}).contains("--what"));
        QCOMPARE(openWorkbench({"--style", "Dark"}), QString());
        QCOMPARE(currentStyleName(), QString("Dark"));
        // Chosen for this time alone.
        QVERIFY(!optionsOf(*m_host).contains("Dark"));
        QCOMPARE(openWorkbench({"--new", "script", file}), QString());
        QPointer<Workbench> window;
        int windows = 0;
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (auto* const found = qobject_cast<Workbench*>(widget)) {
                window = found;
                ++windows;
            }
        }
        QCOMPARE(windows, 1);
        QCOMPARE(namesOf(*window), (QStringList{"Script 1", "told.zvscr"}));
        window->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(window.isNull());
        showStyle("Light");
    }

    void commandsOpenTheirWindows()
    {
        const Window window;
        window->findChild<QAction*>("_s1")->trigger();
        const QString dark = qApp->styleSheet();
        window->findChild<QAction*>("_s2")->trigger();
        QVERIFY(qApp->styleSheet() != dark);
        for (const char* name : {"_se", "_modifystyle", "_s3"}) {
            const int before = QApplication::topLevelWidgets().size();
            actionOf(*window, name)->trigger();
            QVERIFY2(QApplication::topLevelWidgets().size() > before, name);
        }
        QPointer<QWidget> editor;
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (qobject_cast<libzvutil::ZvStyleEditor*>(widget))
                editor = widget;
        }
        QVERIFY(editor);
        // They go along with the window.
        window->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(editor.isNull());
    }

    void windowMenuListsDocuments()
    {
        const Window window;
        window->openFiles({script("a&b.zvscr"), script("c.zvscr"), script("d.zvscr")});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QMenu* const menu = menuOf(*window, "Window");
        Q_EMIT menu->aboutToShow();
        QCOMPARE(menu->actions().at(3)->text(), QString("a&&b.zvscr"));
        QVERIFY(menu->actions().at(5)->isChecked());
        menu->actions().at(4)->trigger();
        QCOMPARE(window->currentDocument()->shortTitle(), QString("c.zvscr"));
        menu->actions().at(0)->trigger();
        QCOMPARE(window->currentDocument()->shortTitle(), QString("d.zvscr"));
        menu->actions().at(0)->trigger();
        QCOMPARE(window->currentDocument()->shortTitle(), QString("a&b.zvscr"));
        menu->actions().at(1)->trigger();
        QCOMPARE(window->currentDocument()->shortTitle(), QString("d.zvscr"));
    }

    void panelsKeepTheirSizes()
    {
        int width = 0;
        {
            const Window window;
            QVERIFY(window->openFile(script("a.zvscr")));
            const auto windowOf = [&window](const QWidget* contents) {
                const QList<DockableWidget*> all = window->dockableWidgets();
                return *std::find_if(all.begin(), all.end(), [contents](DockableWidget* dock) {
                    return dock->contents() == contents;
                });
            };
            const int before = window->filesPanel().width();
            window->resizeDocks(
                {windowOf(&window->filesPanel()), windowOf(window->currentDocument())},
                {before + 150, window->width() - before - 150}, Qt::Horizontal);
            QTRY_VERIFY(window->filesPanel().width() > before + 100);
            width = window->filesPanel().width();
        }
        const Window window;
        QTRY_VERIFY(qAbs(window->filesPanel().width() - width) < 20);
    }

    void arguments_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QString>("error");
        const auto words = [](const char* text) {
            return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        };
        QTest::newRow("none") << words("") << "";
        QTest::newRow("all") << words(
            "--style dark --new testplan --new script --screenshot p.png a.zvscr")
                             << "";
        QTest::newRow("unknown style")
            << words("--style Blue") << "There is no style “Blue”. Available styles: Light, Dark.";
        QTest::newRow("unknown type") << words("--new plan")
                                      << "There is no document type “plan”. Available types: "
                                         "testplan, schematic, script, text.";
        QTest::newRow("nothing behind") << words("a.zvscr --new") << "“--new” needs a value.";
        QTest::newRow("unknown") << words("--what ever") << "Unknown option “--what”.";
    }

    void arguments()
    {
        QFETCH(QStringList, words);
        QFETCH(QString, error);
        const Arguments arguments = Arguments::of(words);
        QCOMPARE(arguments.error, error);
        if (!error.isEmpty() || words.isEmpty())
            return;
        QCOMPARE(arguments.style, QString("dark"));
        QCOMPARE(arguments.newDocuments.size(), std::size_t(2));
        QCOMPARE(arguments.newDocuments.at(1)->id, QString("script"));
        QCOMPARE(arguments.picture, QDir::current().absoluteFilePath("p.png"));
        QCOMPARE(arguments.files, QStringList{QDir::current().absoluteFilePath("a.zvscr")});
    }
};

QTEST_MAIN(tst_workbench_window)
#include "tst_workbench_window.moc"
