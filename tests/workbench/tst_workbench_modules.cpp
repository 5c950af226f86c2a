// What modules add to the workbench: the example's documents, panel and menu entry, and additions that
// can't be used.

#include "WindowTest.h"

#include "support/Files.h"

#include <ChecklistDocument.h>
#include <checklist_file.h>

#include <zvworkbench/FileError.h>
#include <zvworkbench/MenuEntry.h>
#include <zvworkbench/Panel.h>

#include <DockFramework/DockableWidget.h>

#include <support/Warnings.h>
#include <support/Workbench.h>

#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>

#include <stdexcept>

using zvtest::actionOf;
using zvtest::chooseFile;
using zvtest::contentOf;
using zvtest::dismiss;
using zvtest::failureOf;
using zvtest::namesOf;
using zvtest::warningsOf;
using zvtest::Window;
using zvtest::writeTo;
using namespace workbench;

namespace {

QStringList textsOf(const Checklist& checklist)
{
    QStringList texts;
    for (const ChecklistPoint& point : checklist)
        texts.append((point.isDone ? "+" : "-") + point.text);
    return texts;
}

ChecklistDocument* newChecklist(Workbench& window)
{
    return qobject_cast<ChecklistDocument*>(window.newDocument(checklistType()));
}

QListWidget* templatesOf(const Workbench& window)
{
    for (DockableWidget* const panel : window.panels()) {
        if (panel->contents()->shortTitle() == "Checklist Templates")
            return panel->contents()->findChild<QListWidget*>();
    }
    return nullptr;
}

// Whether the additions below fail; the example's tests leave them off.
bool isFaulty = false;

const DocumentType faultyType = {
    "faulty", "Faulty", "Faulty ones", ".faulty",
    [](const QString&, QWidget*) -> Document* { throw std::runtime_error("no room"); }};
const Panel faultyPanel = {"faultyPanel",
                           [](WorkbenchWindow&, QWidget* parent) -> DockableWidgetContents* {
                               if (isFaulty)
                                   throw std::runtime_error("no panel");
                               return new DockableWidgetContents("Other", parent);
                           }};
const MenuEntry faultyEntry = {
    "faultyEntry", "Fa&il", {}, [](WorkbenchWindow&) { throw std::runtime_error("no work"); }};

} // namespace

class tst_workbench_modules : public zvtest::WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        workbench::installTranslations();
        workbench::addOwnDocumentTypes();
        QVERIFY(addDocumentType(faultyType));
        QVERIFY(addPanel(faultyPanel));
        QVERIFY(addMenuEntry(faultyEntry));
    }

    void aTypeIsOfferedEverywhere()
    {
        const Window window;
        QCOMPARE(actionOf(*window, "new:checklist")->text(), QString("Checklist"));
        QVERIFY(window->findChild<QPushButton*>("new:checklist"));
        actionOf(*window, "new:checklist")->trigger();
        QCOMPARE(namesOf(*window), QStringList("Checklist 1"));
        QVERIFY(qobject_cast<ChecklistDocument*>(window->currentDocument()));
        QCOMPARE(documentTypeOfFile("C:/a/b.CHECKLIST"), &checklistType());
        QCOMPARE(documentTypeOf("checklist"), &checklistType());
    }

    void aDocumentIsSavedAndOpenedAgain()
    {
        const QString file = m_folder->filePath("a.checklist");
        {
            const Window window;
            ChecklistDocument* const document = newChecklist(*window);
            document->setChecklist({{"<ä> & \"q\"", true}, {"second", false}});
            QVERIFY(document->isModified());
            const auto chooser = chooseFile(file);
            actionOf(*window, "save")->trigger();
            QVERIFY(!document->isModified());
            QCOMPARE(document->closeEventText(0), QString("Save the changes to “a.checklist”?"));
        }
        const Window window;
        auto* const document = qobject_cast<ChecklistDocument*>(window->currentDocument());
        QVERIFY(document);
        QCOMPARE(textsOf(document->checklist()), (QStringList{"+<ä> & \"q\"", "-second"}));
        QVERIFY(!document->isModified());
    }

    void whatIsWrongWithAFileIsTold_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("reason");
        QTest::newRow("other root")
            << QByteArray("<a/>") << QString("The file is not a checklist.");
        QTest::newRow("broken off")
            << QByteArray("<checklist points=\"2\"><point text=\"a\" done=\"true\"/>")
            << QString("The file is damaged: points are missing.");
        QTest::newRow("no attribute")
            << QByteArray("<checklist points=\"1\"><point text=\"a\"/></checklist>")
            << QString("The file is damaged: the attribute “done” is missing.");
    }

    void whatIsWrongWithAFileIsTold()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, reason);
        const QString file = m_folder->filePath("wrong.checklist");
        QVERIFY(writeTo(file, content));
        const Window window;
        QVERIFY(!window->openFile(file));
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QVERIFY2(box->informativeText().startsWith(reason), qPrintable(box->informativeText()));
        dismiss(*box);
        QCOMPARE(contentOf(file), content);
    }

    void anEmptyFileIsAnEmptyChecklist()
    {
        const QString file = m_folder->filePath("empty.checklist");
        QVERIFY(writeTo(file, ""));
        QCOMPARE(readChecklist(zvutil::ZvFilePath(file.toStdWString())).size(), 0);
        QVERIFY_EXCEPTION_THROWN(
            readChecklist(zvutil::ZvFilePath((file + ".missing").toStdWString())), FileError);
    }

    void aFileThatCantBeWrittenIsTold()
    {
        const Window window;
        ChecklistDocument* const document = newChecklist(*window);
        document->setChecklist({{"a", false}});
        const auto chooser = chooseFile(m_folder->filePath("missing/a.checklist"));
        document->writeFile(
            zvutil::ZvFilePath(m_folder->filePath("missing/a.checklist").toStdWString()));
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QVERIFY(box->informativeText().startsWith("The file can't be written."));
        QVERIFY(document->isModified());
        dismiss(*box);
    }

    void thePanelOpensTemplates()
    {
        const Window window;
        QListWidget* const templates = templatesOf(*window);
        QVERIFY(templates);
        Q_EMIT templates->itemActivated(templates->item(0));
        auto* const document = qobject_cast<ChecklistDocument*>(window->currentDocument());
        QVERIFY(document);
        QCOMPARE(textsOf(document->checklist()),
                 (QStringList{"-Supply is off", "-Polarity is right", "-Fuse is in"}));
        Q_EMIT templates->itemActivated(templates->item(1));
        QCOMPARE(window->documents().size(), 2);
    }

    void theMenuEntryWorksOnTheCurrentDocument()
    {
        const Window window;
        QAction* const tick = actionOf(*window, "module:tickAll");
        QVERIFY(tick);
        QCOMPARE(tick->shortcut(), QKeySequence("Ctrl+Alt+T"));
        tick->trigger();
        QCOMPARE(window->statusBar()->currentMessage(),
                 QString("The current document is not a checklist."));
        ChecklistDocument* const document = newChecklist(*window);
        document->setChecklist({{"a", false}, {"b", true}});
        tick->trigger();
        QCOMPARE(textsOf(document->checklist()), (QStringList{"+a", "+b"}));
        QCOMPARE(window->menuBar()->actions().at(3)->text(), QString("&Modules"));
    }

    void editActionsChangeTheDocument()
    {
        const Window window;
        ChecklistDocument* const document = newChecklist(*window);
        const QList<QAction*> actions = document->actions();
        QCOMPARE(actions.size(), 2);
        actions.at(1)->trigger();
        QVERIFY(!document->isModified());
        actions.at(0)->trigger();
        QCOMPARE(textsOf(document->checklist()), QStringList("-New point"));
        QVERIFY(document->isModified());
        document->findChild<QListWidget*>()->setCurrentRow(0);
        actions.at(1)->trigger();
        QVERIFY(document->checklist().isEmpty());
    }

    void whatAModuleThrowsIsTold()
    {
        const Window window;
        QVERIFY(!window->newDocument(faultyType));
        QMessageBox* box = failureOf(*window);
        QVERIFY(box);
        QVERIFY(box->informativeText().startsWith("no room"));
        dismiss(*box);
        QCOMPARE(window->documents().size(), 0);

        actionOf(*window, "module:faultyEntry")->trigger();
        box = failureOf(*window);
        QVERIFY(box);
        QCOMPARE(box->text(), QString("“Fail” failed."));
        QVERIFY(box->informativeText().startsWith("no work"));
        dismiss(*box);
    }

    void aPanelThatCantBeMadeIsLeftOut()
    {
        isFaulty = true;
        const Window window;
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QCOMPARE(box->text(), QString("The panel “faultyPanel” can't be shown."));
        dismiss(*box);
        QVERIFY(templatesOf(*window));
        isFaulty = false;
        QCOMPARE(Window()->panels().size(), window->panels().size() + 1);
    }

    void unusableAdditionsAreRefused()
    {
        const auto make = [](const QString&, QWidget*) -> Document* { return nullptr; };
        const std::size_t count = documentTypes().size();
        const auto refuses = [](const DocumentType& type, const char* reason) {
            bool isAdded = true;
            const QStringList warnings = warningsOf([&] { isAdded = addDocumentType(type); });
            return !isAdded && warnings.size() == 1
                && warnings.constFirst().contains(QLatin1String(reason));
        };
        QVERIFY(refuses({"", "A", "A", ".aaa", make}, "it has no id"));
        QVERIFY(refuses({"script", "A", "A", ".aaa", make}, "another one of that id"));
        QVERIFY(refuses({"a", "A", "A", ".aaa", nullptr}, "doesn't say how"));
        QVERIFY(refuses({"a", "A", "A", "aaa", make}, "\"aaa\" is not an extension"));
        QVERIFY(refuses({"a", "A", "A", ".", make}, "\".\" is not an extension"));
        QVERIFY(refuses({"a", "A", "A", ".ZVSCR", make}, "belongs to \"script\""));
        QVERIFY(addDocumentType(checklistType()));
        QCOMPARE(documentTypes().size(), count);

        const Panel noPanel = {"none", nullptr};
        const Panel samePanel = {"faultyPanel", faultyPanel.make};
        const MenuEntry noEntry = {"none", "None", {}, nullptr};
        const QStringList warnings = warningsOf([&] {
            QVERIFY(!addPanel(noPanel));
            QVERIFY(!addPanel(samePanel));
            QVERIFY(!addMenuEntry(noEntry));
        });
        QCOMPARE(warnings.size(), 3);
    }
};

QTEST_MAIN(tst_workbench_modules)

#include "tst_workbench_modules.moc"
