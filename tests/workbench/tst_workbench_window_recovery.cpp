// Recovery copies of documents with changes: when they are there, what they hold, and how they come back.

#include "WindowTest.h"

#include "common/path_names.h"
#include "recovery/RecoveryCopy.h"
#include "recovery/RecoveryDialog.h"
#include "recovery/RecoverySlot.h"
#include "schematic/SchematicDocument.h"
#include "schematic/SchematicView.h"
#include "script/CodeEditor.h"
#include "script/ScriptDocument.h"
#include "support/Files.h"
#include "testplan/TestPlanDocument.h"
#include "testplan/TestPlanView.h"

#include <HostSupport/host.h>

#include <support/Process.h>
#include <support/RefusedWrite.h>
#include <support/StyleHost.h>
#include <support/WindowResponder.h>
#include <support/Workbench.h>

#include <QAction>
#include <QDir>
#include <QDirIterator>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QSemaphore>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <functional>
#include <memory>
#include <thread>

using zvtest::actionOf;
using zvtest::contentOf;
using zvtest::dismiss;
using zvtest::failureOf;
using zvtest::longWait;
using zvtest::namesOf;
using zvtest::Window;
using namespace workbench;

namespace {

/// A window that is lost without being closed, as in a crash.
class CrashingWindow
{
public:
    CrashingWindow()
        : m_window(std::make_unique<Workbench>())
    {
        m_window->setAttribute(Qt::WA_DeleteOnClose, false);
        m_window->restoreSession();
        m_window->show();
    }

    Workbench* operator->() const { return m_window.get(); }
    Workbench& operator*() const { return *m_window; }

    /// Looks for changes all the time instead of every few seconds.
    void hurry() const { m_window->findChild<QTimer*>("recoveryTimer")->setInterval(10); }

    void crash() { m_window.reset(); }

private:
    std::unique_ptr<Workbench> m_window;
};

ScriptDocument* newScript(Workbench& window, const char* text)
{
    auto* const script =
        qobject_cast<ScriptDocument*>(window.newDocument(*documentTypeOf("script")));
    QTest::keyClicks(&script->editor(), text);
    return script;
}

ScriptDocument* openScript(Workbench& window, const QString& file, const char* text)
{
    auto* const script = qobject_cast<ScriptDocument*>(window.openFile(file));
    QTest::keyClicks(&script->editor(), text);
    return script;
}

QString textOf(Document* document)
{
    return qobject_cast<ScriptDocument*>(document)->editor().toPlainText();
}

/// The files below the folder of the copies, but for locks.
QStringList copyFiles()
{
    QStringList files;
    QDirIterator each(recoveryRoot(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (each.hasNext()) {
        if (!each.next().endsWith(".lock"))
            files.append(each.filePath());
    }
    files.sort();
    return files;
}

QStringList contentFiles()
{
    QStringList files;
    for (const QString& file : copyFiles()) {
        if (!file.endsWith(".json"))
            files.append(file);
    }
    return files;
}

/// What the copies say, each of one document.
QByteArrayList contents()
{
    QByteArrayList contents;
    for (const QString& file : contentFiles())
        contents.append(contentOf(file));
    return contents;
}

RecoveryDialog* offerOf(const Window& window)
{
    window->offerRecovery();
    return window->findChild<RecoveryDialog*>();
}

QTreeWidget& listOf(const RecoveryDialog& dialog)
{
    return *dialog.findChild<QTreeWidget*>("copies");
}

QStringList offered(const RecoveryDialog& dialog)
{
    QStringList names;
    for (int row = 0; row < listOf(dialog).topLevelItemCount(); ++row)
        names.append(listOf(dialog).topLevelItem(row)->text(0));
    names.sort();
    return names;
}

void click(const RecoveryDialog& dialog, const char* button)
{
    dialog.findChild<QPushButton*>(QLatin1String(button))->click();
}

/// Has the user recover all that is offered.
bool recoverAll(const Window& window)
{
    const RecoveryDialog* const dialog = offerOf(window);
    if (!dialog)
        return false;
    click(*dialog, "recover");
    return true;
}

} // namespace

class tst_workbench_window_recovery : public zvtest::WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void changesAreCopiedSoon()
    {
        const CrashingWindow window;
        window.hurry();
        ScriptDocument* const script = newScript(*window, "one");
        QTRY_COMPARE_WITH_TIMEOUT(contents(), QByteArrayList{"one"}, longWait);
        QTest::keyClicks(&script->editor(), " two");
        QTRY_COMPARE_WITH_TIMEOUT(contents(), QByteArrayList{"one two"}, longWait);
        QVERIFY(script->isModified());
        QCOMPARE(window->documents().size(), 1);
    }

    // Whoever reads the constant knows the promise; the test is that both agree.
    void copiesAreBegunWithinHalfOfTheirAge()
    {
        const CrashingWindow window;
        newScript(*window, "one");
        const auto* const timer = window->findChild<QTimer*>("recoveryTimer");
        QVERIFY(timer->isActive());
        QVERIFY(timer->interval() <= 5'000);
    }

    void documentsOfEachTypeAreCopied_data()
    {
        QTest::addColumn<QString>("type");
        for (const DocumentType* const type : documentTypes())
            QTest::newRow(qPrintable(type->id)) << type->id;
    }

    void documentsOfEachTypeAreCopied()
    {
        QFETCH(QString, type);
        {
            CrashingWindow window;
            change(*window->newDocument(*documentTypeOf(type)));
            window->keepWork();
            QCOMPARE(contentFiles().size(), 1);
            window.crash();
        }
        const Window window;
        QVERIFY(recoverAll(window));
        QCOMPARE(window->documents().size(), 1);
        Document* const document = window->documents().constFirst();
        QCOMPARE(document->type().id, type);
        QVERIFY(document->isModified());
        const QString file = m_folder->filePath("saved" + document->type().extension);
        document->saveAs(filePath(file));
        QVERIFY(contentOf(file).contains("changed") || contentOf(file).contains("Resistor"));
        QTRY_VERIFY(contentFiles().isEmpty());
    }

    void copiesGoAwayWithTheChanges_data()
    {
        QTest::addColumn<QString>("way");
        for (const char* const way : {"save", "undo", "close without saving", "save as"})
            QTest::newRow(way) << way;
    }

    void copiesGoAwayWithTheChanges()
    {
        QFETCH(QString, way);
        const QString file = script("a.zvscr", "a");
        const CrashingWindow window;
        ScriptDocument* const script = openScript(*window, file, "x");
        window->keepWork();
        QCOMPARE(contents(), QByteArrayList{"xa"});
        if (way == "save") {
            window->commands().save();
        } else if (way == "save as") {
            script->saveAs(filePath(m_folder->filePath("b.zvscr")));
        } else if (way == "undo") {
            script->editor().undo();
        } else {
            const zvtest::WindowResponder<QMessageBox> answer(
                [](QMessageBox& box) { box.button(QMessageBox::Discard)->click(); });
            window->commands().close();
            QCOMPARE(answer.count, 1);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        QCOMPARE(copyFiles(), QStringList());
    }

    void anOrderlyEndLeavesNothing()
    {
        {
            Window window;
            newScript(*window, "one");
            window->keepWork();
            QCOMPARE(contentFiles().size(), 1);
            const zvtest::WindowResponder<QMessageBox> answer(
                [](QMessageBox& box) { box.button(QMessageBox::Discard)->click(); });
            QVERIFY(window.close());
        }
        QVERIFY(QDir(recoveryRoot()).isEmpty());
    }

    void copiesOfAProgramThatRunsAreLeftAlone()
    {
        CrashingWindow running;
        newScript(*running, "one");
        running->keepWork();
        // However old its lock is, as after a jump of the clock.
        const QStringList locks = QDir(recoveryRoot()).entryList({"*.lock"});
        QCOMPARE(locks.size(), 1);
        QFile lock(QDir(recoveryRoot()).filePath(locks.constFirst()));
#if !defined(Q_OS_WIN)
        QVERIFY(lock.open(QIODevice::ReadWrite));
        QVERIFY(
            lock.setFileTime(QDateTime::fromSecsSinceEpoch(0), QFileDevice::FileModificationTime));
        lock.close();
#else
        // Nobody else can change it while the program runs.
        QVERIFY(!lock.open(QIODevice::ReadWrite));
#endif
        const Window window;
        QVERIFY(!offerOf(window));
        running.crash();
        QVERIFY(offerOf(window));
    }

    void untitledDocumentsKeepTheirTitles()
    {
        {
            CrashingWindow window;
            newScript(*window, "one");
            newScript(*window, "two");
            window->keepWork();
            window.crash();
        }
        // Of two crashes the documents have the same names.
        {
            CrashingWindow window;
            newScript(*window, "three");
            window->keepWork();
            window.crash();
        }
        const Window window;
        const RecoveryDialog* const dialog = offerOf(window);
        QVERIFY(dialog);
        QCOMPARE(offered(*dialog), (QStringList{"Script 1", "Script 1", "Script 2"}));
        click(*dialog, "recover");
        QStringList texts;
        for (Document* const document : window->documents()) {
            QVERIFY(document->filename().isEmpty());
            QVERIFY(document->isModified());
            texts.append(textOf(document));
        }
        texts.sort();
        QCOMPARE(texts, (QStringList{"one", "three", "two"}));
        QCOMPARE(window->statusBar()->currentMessage(), QString("3 documents recovered"));
    }

    void recoveredDocumentsAreSavedToTheirFile()
    {
        // Beyond any code page of Windows.
        const QString file = script("\u0416\u4e2d\u0644 \u00e9.zvscr", "a");
        QVERIFY(!file.isEmpty());
        {
            CrashingWindow window;
            openScript(*window, file, "x");
            window->keepWork();
            window.crash();
        }
        QCOMPARE(contentOf(file), QByteArray("a"));
        const Window window;
        QVERIFY(recoverAll(window));
        QCOMPARE(window->documents().size(), 1);
        Document* const document = window->documents().constFirst();
        QCOMPARE(QDir::fromNativeSeparators(qtFileName(document->filename())), file);
        QCOMPARE(textOf(document), QString("xa"));
        QVERIFY(document->isModified());
        QVERIFY(document->isFileWatcherEnabled());
        window->commands().save();
        QCOMPARE(contentOf(file), QByteArray("xa"));
        QVERIFY(!document->isModified());
    }

    void recoveredChangesCantBeUndoneToBeClean_data()
    {
        documentsOfEachTypeAreCopied_data();
    }

    void recoveredChangesCantBeUndoneToBeClean()
    {
        QFETCH(QString, type);
        {
            CrashingWindow window;
            change(*window->newDocument(*documentTypeOf(type)));
            window->keepWork();
            window.crash();
        }
        const Window window;
        QVERIFY(recoverAll(window));
        Document* const document = window->documents().constFirst();
        change(*document);
        if (auto* const text = qobject_cast<EditorDocument*>(document))
            text->editor().undo();
        else
            document->findChild<QAction*>("undo")->trigger();
        QVERIFY(document->isModified());
    }

    void savingAsksIfTheFileIsNewerThanTheCopy()
    {
        const QString file = script("a.zvscr", "a");
        {
            CrashingWindow window;
            openScript(*window, file, "x");
            window->keepWork();
            window.crash();
        }
        QVERIFY(zvtest::writeTo(file, "newer"));
        const Window window;
        QVERIFY(recoverAll(window));
        QString question;
        const zvtest::WindowResponder<QMessageBox> answer([&question](QMessageBox& box) {
            question = box.text();
            box.button(QMessageBox::Cancel)->click();
        });
        window->commands().save();
        QCOMPARE(answer.count, 1);
        QCOMPARE(question, QString("“a.zvscr” has been changed by another program."));
        QCOMPARE(contentOf(file), QByteArray("newer"));
        QVERIFY(window->currentDocument()->isModified());
    }

    void filesThatAreGoneAreMadeAgain()
    {
        const QString file = script("a.zvscr", "a");
        {
            CrashingWindow window;
            openScript(*window, file, "x");
            window->keepWork();
            window.crash();
        }
        QVERIFY(QFile::remove(file));
        const Window window;
        QVERIFY(recoverAll(window));
        window->commands().save();
        QCOMPARE(contentOf(file), QByteArray("xa"));
    }

    void theUserDecidesForEachCopy()
    {
        {
            CrashingWindow window;
            newScript(*window, "one");
            newScript(*window, "two");
            newScript(*window, "three");
            window->keepWork();
            window.crash();
        }
        const Window window;
        RecoveryDialog* dialog = offerOf(window);
        QVERIFY(dialog);
        QVERIFY(QDir().mkpath(PICTURES));
        QVERIFY(dialog->grab().save(PICTURES "/workbench-recovery.png"));
        dialog->reject();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(contents().size(), 3);
        // One is discarded, and one of the others left for later.
        dialog = offerOf(window);
        tickOnly(*dialog, "Script 2");
        click(*dialog, "discard");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(contents().size(), 2);
        dialog = offerOf(window);
        QCOMPARE(offered(*dialog), (QStringList{"Script 1", "Script 3"}));
        tickOnly(*dialog, "Script 3");
        click(*dialog, "recover");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(window->documents().size(), 1);
        QCOMPARE(textOf(window->documents().constFirst()), QString("three"));
        dialog = offerOf(window);
        QCOMPARE(offered(*dialog), QStringList{"Script 1"});
        dialog->reject();
    }

    void damagedCopiesAreToldAndHarmNoOther_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("cut content") << ".zvscr" << QByteArray("o");
        QTest::newRow("empty content") << ".zvscr" << QByteArray();
        QTest::newRow("no description") << ".json" << QByteArray();
        QTest::newRow("cut description") << ".json" << QByteArray("{\"version\": 1, \"tit");
        QTest::newRow("other file in the description")
            << ".json"
            << QByteArray("{\"version\":1,\"type\":\"script\",\"content\":\"../../options.ini\"}");
    }

    void damagedCopiesAreToldAndHarmNoOther()
    {
        QFETCH(QString, suffix);
        QFETCH(QByteArray, bytes);
        {
            CrashingWindow window;
            newScript(*window, "one");
            newScript(*window, "two");
            window->keepWork();
            window.crash();
        }
        const QStringList files = copyFiles().filter(suffix);
        QCOMPARE(files.size(), 2);
        QVERIFY(zvtest::writeTo(files.constFirst(), bytes));
        const Window window;
        const RecoveryDialog* const dialog = offerOf(window);
        QCOMPARE(dialog ? offered(*dialog).size() : 0, 2);
        QCOMPARE(offered(*dialog).filter("(damaged)").size(), 1);
        click(*dialog, "recover");
        QCOMPARE(window->documents().size(), 1);
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QVERIFY(box->informativeText().startsWith("The copy is damaged."));
        dismiss(*box);
        // It can be discarded.
        const RecoveryDialog* const again = offerOf(window);
        QVERIFY(again);
        click(*again, "discard");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!offerOf(window));
    }

    void copiesOfUnknownTypesAreKept()
    {
        {
            CrashingWindow window;
            newScript(*window, "one");
            window->keepWork();
            window.crash();
        }
        const QString description = copyFiles().filter(".json").constFirst();
        QByteArray bytes = contentOf(description);
        bytes.replace("\"script\"", "\"checklist\"");
        QVERIFY(zvtest::writeTo(description, bytes));
        const Window window;
        QVERIFY(recoverAll(window));
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QVERIFY(box->informativeText().contains("type “checklist” is not loaded"));
        dismiss(*box);
        QCOMPARE(contents(), QByteArrayList{"one"});
    }

    // The old copy goes when there is a new one, and not before.
    void aCrashAfterTheRecoveryLosesNothing()
    {
        {
            CrashingWindow window;
            newScript(*window, "one");
            window->keepWork();
            window.crash();
        }
        for (int i = 0; i < 3; ++i) {
            CrashingWindow window;
            window->offerRecovery();
            click(*window->findChild<RecoveryDialog*>(), "recover");
            QCOMPARE(contents(), QByteArrayList{"one"});
            window.crash();
        }
        const Window window;
        {
            const zvtest::RefusedWrite refused(1);
            QVERIFY(recoverAll(window));
            QCOMPARE(window->documents().size(), 1);
        }
        QCOMPARE(contents(), QByteArrayList{"one"});
        QVERIFY(window->statusBar()->currentMessage().contains("Script 1"));
    }

    void aFullDiskIsToldOnceAndKeepsTheOldCopy()
    {
        const CrashingWindow window;
        window.hurry();
        ScriptDocument* const script = newScript(*window, "one");
        QTRY_COMPARE_WITH_TIMEOUT(contents(), QByteArrayList{"one"}, longWait);
        {
            const zvtest::RefusedWrite refused(1);
            QTest::keyClicks(&script->editor(), " two");
            QTRY_VERIFY_WITH_TIMEOUT(
                window->statusBar()->currentMessage().contains("would be lost in a crash"),
                longWait);
            window->statusBar()->clearMessage();
            QVERIFY(tick(*window));
            QVERIFY(tick(*window));
            QVERIFY(!window->statusBar()->currentMessage().contains("lost in a crash"));
            // Each further try leaves its file for a moment.
            QTRY_COMPARE_WITH_TIMEOUT(contents(), QByteArrayList{"one"}, longWait);
        }
        QTRY_COMPARE_WITH_TIMEOUT(contents(), QByteArrayList{"one two"}, longWait);
    }

    void aFolderThatCantBeMadeIsTold()
    {
        QVERIFY(zvtest::writeTo(recoveryRoot(), "no folder"));
        const CrashingWindow window;
        newScript(*window, "one");
        window->keepWork();
        QVERIFY(window->statusBar()->currentMessage().contains("recovery"));
        QVERIFY(window->documents().constFirst()->isModified());
    }

#if defined(Q_OS_UNIX)
    void copiesAreForTheirUserAlone()
    {
        const CrashingWindow window;
        newScript(*window, "secret");
        window->keepWork();
        const QFile::Permissions file =
            QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
        const QFile::Permissions folder = file | QFile::ExeOwner | QFile::ExeUser;
        QCOMPARE(QFile::permissions(recoveryRoot()), folder);
        QCOMPARE(copyFiles().size(), 2);
        for (const QString& each : copyFiles()) {
            QCOMPARE(QFile::permissions(each), file);
            QCOMPARE(QFile::permissions(QFileInfo(each).path()), folder);
        }
    }
#endif

    void whatIsTypedIntoACellIsCopied_data()
    {
        QTest::addColumn<bool>("isChanged");
        QTest::newRow("of a plan with changes") << true;
        QTest::newRow("of a plan without") << false;
    }

    void whatIsTypedIntoACellIsCopied()
    {
        QFETCH(bool, isChanged);
        CrashingWindow window;
        auto* const plan =
            qobject_cast<TestPlanDocument*>(window->newDocument(*documentTypeOf("testplan")));
        if (isChanged)
            change(*plan);
        window.hurry();
        TestPlanView& view = plan->view();
        view.setCurrentIndex(plan->model().index(3, 1));
        view.edit(view.currentIndex());
        auto* const editor = qobject_cast<QLineEdit*>(view.indexWidget(view.currentIndex()));
        QVERIFY(editor);
        editor->setFocus();
        if (!isChanged) {
            // An editor that is only open has nothing to lose.
            QVERIFY(tick(*window));
            QCOMPARE(copyFiles(), QStringList());
        }
        QTest::keyClicks(editor, "half a wo");
        QTRY_VERIFY_WITH_TIMEOUT(contents().value(0).contains("half a wo"), longWait);
        // It goes on as if nothing had happened.
        QCOMPARE(view.indexWidget(view.currentIndex()), editor);
        QCOMPARE(plan->model().value(3, 1), CellValue());
        QTest::keyClicks(editor, "rd");
        QTRY_VERIFY_WITH_TIMEOUT(contents().value(0).contains("half a word"), longWait);
        QTest::keyClick(editor, Qt::Key_Escape);
        QTRY_VERIFY_WITH_TIMEOUT(!contents().value(0).contains("half"), longWait);
        QTRY_COMPARE_WITH_TIMEOUT(contents().size(), isChanged ? 1 : 0, longWait);
    }

    void theEndCommitsWhatIsTyped()
    {
        CrashingWindow window;
        auto* const plan =
            qobject_cast<TestPlanDocument*>(window->newDocument(*documentTypeOf("testplan")));
        TestPlanView& view = plan->view();
        view.setCurrentIndex(plan->model().index(3, 1));
        view.edit(view.currentIndex());
        QTest::keyClicks(view.indexWidget(view.currentIndex()), "half a wo");
        window->keepWork();
        QVERIFY(contents().value(0).contains("half a wo"));
    }

    void aHugePlanIsCopiedWithoutWaiting()
    {
        constexpr int rows = 100'000;
        CrashingWindow window;
        auto* const plan =
            qobject_cast<TestPlanDocument*>(window->newDocument(*documentTypeOf("testplan")));
        QVERIFY(plan->model().insertRows(0, rows));
        window.hurry();
        // While it is written the user goes on; then the copy has what was there when it was begun, or more.
        int number = 0;
        QTRY_VERIFY_WITH_TIMEOUT(
            plan->model().setData(plan->model().index(number++, 0), QString("row"), Qt::EditRole)
                && !contentFiles().isEmpty(),
            longWait);
        QVERIFY(number > 1);
        window->keepWork();
        window.crash();
        const Window next;
        QVERIFY(recoverAll(next));
        auto* const recovered = qobject_cast<TestPlanDocument*>(next->documents().constFirst());
        QVERIFY(recovered->model().rowCount() > rows);
        QCOMPARE(recovered->model().value(number - 1, 0), CellValue(QString("row")));
    }

    // Whoever comes later removes the files.
    void slotsDiscardWhatIsBeingWritten()
    {
        const std::shared_ptr<RecoveryFolder> folder = RecoveryFolder::make();
        RecoverySlot slot(folder, 1);
        QSemaphore begun;
        QSemaphore mayEnd;
        std::thread writer([&] {
            slot.write(
                {}, ".txt",
                [&](const zvutil::ZvFilePath& file, const Progress&) {
                    zvtest::writeTo(qtFileName(file), "content");
                    begun.release();
                    mayEnd.acquire();
                },
                1);
        });
        begun.acquire();
        slot.discard();
        mayEnd.release();
        writer.join();
        QCOMPARE(copyFiles(), QStringList());
        // Nothing comes after that.
        slot.write(
            {}, ".txt", [](const zvutil::ZvFilePath&, const Progress&) { QFAIL("written"); }, 2);
    }

    void slotsPassOverOldCopies()
    {
        RecoverySlot slot(RecoveryFolder::make(), 1);
        const auto text = [](const char* words) {
            return [words](const zvutil::ZvFilePath& file, const Progress&) {
                zvtest::writeTo(qtFileName(file), words);
            };
        };
        slot.write({}, ".txt", text("new"), 2);
        slot.write({}, ".txt", text("old"), 1);
        QCOMPARE(contents(), QByteArrayList{"new"});
        QVERIFY_EXCEPTION_THROWN(slot.write(
                                     {}, ".txt",
                                     [](const zvutil::ZvFilePath& file, const Progress&) {
                                         zvtest::writeTo(qtFileName(file), "torn");
                                         throw std::runtime_error("full");
                                     },
                                     3),
                                 std::runtime_error);
        QCOMPARE(contents(), QByteArrayList{"new"});
    }

    void leftoversOfKilledProgramsAreRemoved()
    {
        const QString folder = recoveryRoot() + "/0f6b1c5c-4f0e-4f43-9d52-6d0b6e1c9a52";
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(zvtest::writeTo(folder + "/1-7.zvscr", "never finished"));
        QVERIFY(zvtest::writeTo(folder + "/1.json.Xq2dPz", "{"));
        const Window window;
        QVERIFY(!offerOf(window));
        QVERIFY(!QFileInfo::exists(folder));
    }

    void documentsThatAreOpenTakeTheirCopy()
    {
        const QString file = script("a.zvscr", "a");
        {
            CrashingWindow window;
            openScript(*window, file, "x");
            window->keepWork();
            window.crash();
        }
        const Window window;
        QCOMPARE(namesOf(*window), QStringList{"a.zvscr"});
        // Changes that were made before the answer count more.
        QTest::keyClicks(&qobject_cast<ScriptDocument*>(window->currentDocument())->editor(), "y");
        QVERIFY(recoverAll(window));
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QVERIFY(box->informativeText().contains("has been changed already"));
        dismiss(*box);
        QCOMPARE(textOf(window->currentDocument()), QString("ya"));
        qobject_cast<ScriptDocument*>(window->currentDocument())->editor().undo();
        QVERIFY(recoverAll(window));
        QCOMPARE(textOf(window->currentDocument()), QString("xa"));
        QCOMPARE(window->documents().size(), 1);
    }

    void picturesOfferNothing()
    {
        {
            CrashingWindow window;
            newScript(*window, "one");
            window->keepWork();
            window.crash();
        }
        const QString picture = m_folder->filePath("picture.png");
        const auto shown = [] {
            QPointer<Workbench> found;
            for (QWidget* const widget : QApplication::topLevelWidgets()) {
                if (auto* const window = qobject_cast<Workbench*>(widget))
                    found = window;
            }
            return found;
        };
        QCOMPARE(openWorkbench({"--screenshot", picture}), QString());
        QPointer<Workbench> window = shown();
        QVERIFY(window);
        QVERIFY(!window->findChild<RecoveryDialog*>());
        delete window;
        QCOMPARE(openWorkbench({"--new", "script"}), QString());
        window = shown();
        QVERIFY(window->findChild<RecoveryDialog*>());
        QCOMPARE(window->documents().size(), 1);
        delete window;
    }

private:
    /// Changes a document of any of the workbench's types.
    static void change(Document& document)
    {
        if (auto* const edited = qobject_cast<EditorDocument*>(&document)) {
            QTest::keyClicks(&edited->editor(), "changed");
        } else if (auto* const plan = qobject_cast<TestPlanDocument*>(&document)) {
            TestPlanModel& model = plan->model();
            const QString text = model.value(0, 0) == CellValue("changed") ? "again" : "changed";
            model.setData(model.index(0, 0), text, Qt::EditRole);
        } else if (auto* const schematic = qobject_cast<SchematicDocument*>(&document)) {
            schematic->scene().setPlacing(SymbolKind::Resistor);
            QTest::mouseClick(schematic->view().viewport(), Qt::LeftButton, {},
                              schematic->view().viewport()->rect().center());
        }
    }

    /// Waits until the keeper has looked once more.
    static bool tick(const Workbench& window)
    {
        QSignalSpy looked(window.findChild<QTimer*>("recoveryTimer"), &QTimer::timeout);
        return looked.wait(longWait);
    }

    static void tickOnly(const RecoveryDialog& dialog, const QString& name)
    {
        for (int row = 0; row < listOf(dialog).topLevelItemCount(); ++row) {
            QTreeWidgetItem* const item = listOf(dialog).topLevelItem(row);
            item->setCheckState(0, item->text(0) == name ? Qt::Checked : Qt::Unchecked);
        }
    }
};

QTEST_MAIN(tst_workbench_window_recovery)
#include "tst_workbench_window_recovery.moc"
