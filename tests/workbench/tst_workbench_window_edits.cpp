// What the user does to documents by keys and menus, in the workbench's window.

#include "WindowTest.h"

#include "files/FilesPanel.h"
#include "script/CodeEditor.h"
#include "script/ScriptDocument.h"
#include "shell/Workbench.h"
#include "testplan/TestPlanDocument.h"

#include <zvworkbench/Document.h>

#include <DockFramework/DockableWidget.h>

#include <HostSupport/ScriptSession.h>

#include <support/Files.h>
#include <support/WindowResponder.h>
#include <support/Workbench.h>

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include <memory>
#include <utility>

#if defined(Q_OS_UNIX)
#include <sys/stat.h>
#endif

using zvtest::longWait;
using zvtest::Window;
using namespace workbench;

namespace {

DockableWidget* windowOf(const Workbench& window, const Document* document)
{
    for (DockableWidget* const dock : window.dockableWidgets()) {
        if (dock->contents() == document)
            return dock;
    }
    return nullptr;
}

/// A session whose scripts do nothing but end.
class EndingSession : public host::ScriptSession
{
public:
    explicit EndingSession(host::ScriptListener listener)
        : m_listener(std::move(listener))
    {
    }

    void run(const std::string& /*text*/, const std::string& /*source*/) override
    {
        QTimer::singleShot(0, &m_context, [this] { m_listener.finished({}); });
    }
    void evaluate(const std::string& text) override { run(text, {}); }
    void stop() override { }

private:
    host::ScriptListener m_listener;
    QObject m_context;
};

/// Takes the files that the system is asked to open.
class Given : public QObject
{
    Q_OBJECT

public:
    QList<QUrl> urls;

public Q_SLOTS:
    void open(const QUrl& url) { urls.append(url); }
};

/// Presses a key in the widget that has the focus.
void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

} // namespace

class tst_workbench_window_edits : public zvtest::WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        WindowTest::initTestCase();
        host::setScriptSessionMaker([](host::ScriptListener listener) {
            return std::make_unique<EndingSession>(std::move(listener));
        });
    }

    void cleanupTestCase() { host::setScriptSessionMaker({}); }

    void theCurrentScriptRunsFromAnywhere()
    {
        const Window window;
        QVERIFY(zvtest::activate(*window));
        const DocumentType& type = *documentTypeOf("script");
        Document* const first = window->newDocument(type);
        Document* const second = window->newDocument(type);
        // Both are shown, so that each could take the key.
        window->splitDockWidget(windowOf(*window, first), windowOf(*window, second),
                                Qt::Horizontal);
        QTRY_VERIFY(first->isVisible() && second->isVisible());
        QSignalSpy firstRuns(first, SIGNAL(runningChanged(bool)));
        QSignalSpy secondRuns(second, SIGNAL(runningChanged(bool)));
        const auto ends = [&](int ofFirst, int ofSecond) {
            return QTest::qWaitFor(
                [&] {
                    return firstRuns.size() == 2 * ofFirst && secondRuns.size() == 2 * ofSecond;
                },
                longWait);
        };

        window->activate(windowOf(*window, second));
        QCOMPARE(window->currentDocument(), second);
        auto* const search = window->filesPanel().findChild<QLineEdit*>("search");
        auto* const console = window->findChild<QLineEdit*>("consoleInput");
        for (QLineEdit* const field : {search, console}) {
            field->setFocus();
            QVERIFY(field->hasFocus());
            press(Qt::Key_F5);
            QVERIFY(ends(0, field == search ? 1 : 2));
        }
        second->findChild<QWidget*>("scriptOutput")->setFocus();
        press(Qt::Key_F5);
        QVERIFY(ends(0, 3));
        second->findChild<QWidget*>("scriptText")->setFocus();
        press(Qt::Key_F5);
        QVERIFY(ends(0, 4));
        first->findChild<QWidget*>("scriptText")->setFocus();
        QCOMPARE(window->currentDocument(), first);
        press(Qt::Key_F5);
        QVERIFY(ends(1, 4));
        search->setFocus();
        press(Qt::Key_F5);
        QVERIFY(ends(2, 4));
        // No key is left over from a document that has been closed: the one beside it is the current one now.
        window->commands().close();
        QTRY_COMPARE(window->documents(), QList<Document*>{second});
        QTRY_COMPARE(window->currentDocument(), second);
        QCOMPARE(window->highlighted(), windowOf(*window, second));
        search->setFocus();
        press(Qt::Key_F5);
        QTRY_COMPARE_WITH_TIMEOUT(secondRuns.size(), 10, longWait);
    }

    void anyTextIsOpened()
    {
        const Window window;
        for (const char* const name : {"notes.md", "NOTES", "page.html", "empty.bin"}) {
            const QByteArray content = QByteArray(name) == "empty.bin" ? "" : "<a>\nb";
            Document* const document = window->openFile(script(name, content));
            QVERIFY2(document, name);
            QCOMPARE(document->type().id, QString("text"));
            QCOMPARE(document->shortTitle(), QString(name));
        }
        // The extension comes first, whatever the content is.
        QCOMPARE(window->openFile(script("a.zvscr", "print(1)"))->type().id, QString("script"));
        QCOMPARE(window->openFile(m_folder->filePath("NOTES")), window->documents().at(1));
        QCOMPARE(window->documents().size(), 5);
    }

    void textsKeepTheirExtensionsWhenTheyAreRenamed()
    {
        const Window window;
        QVERIFY(window->openFile(script("notes.md")));
        const zvtest::WindowResponder<QDialog> answer([](QDialog& dialog) {
            dialog.findChild<QLineEdit*>()->setText("plans.md");
            auto* const ok = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
            QMetaObject::invokeMethod(&dialog, ok->isEnabled() ? "accept" : "reject");
        });
        window->commands().rename();
        QCOMPARE(answer.count, 1);
        QVERIFY(QFile::exists(m_folder->filePath("plans.md")));
        QCOMPARE(window->currentDocument()->shortTitle(), QString("plans.md"));
    }

    void otherFilesAreGivenToTheSystem()
    {
        Given given;
        QDesktopServices::setUrlHandler("file", &given, "open");
        const auto reset = qScopeGuard([] { QDesktopServices::unsetUrlHandler("file"); });
        const QString file = script("picture.raw", QByteArray("ab\0c", 4));
        const Window window;
        const auto answer = [&](QMessageBox::StandardButton button) {
            QVERIFY(!window->openFile(file));
            QMessageBox* const box = zvtest::failureOf(*window);
            QVERIFY(box);
            QVERIFY(box->text().contains("picture.raw"));
            QCOMPARE(box->defaultButton(), box->button(QMessageBox::Cancel));
            for (QAbstractButton* const choice : box->buttons()) {
                if ((choice == box->button(QMessageBox::Cancel)) == (button == QMessageBox::Cancel))
                    QTest::mouseClick(choice, Qt::LeftButton);
            }
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        };
        answer(QMessageBox::Cancel);
        QCOMPARE(given.urls, QList<QUrl>());
        answer(QMessageBox::Open);
        QCOMPARE(given.urls, QList<QUrl>{QUrl::fromLocalFile(file)});
        QCOMPARE(window->documents(), QList<Document*>());
    }

    void whatIsNoFileIsNotRead_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        QTest::newRow("folder") << "folder"
                                << "It is a folder.";
        QTest::newRow("folder called like CSV") << "folder.csv"
                                                << "It is a folder.";
        QTest::newRow("nothing") << "nothing"
                                 << "The file does not exist.";
#if defined(Q_OS_UNIX)
        const char* const pipe = "It is not a file, but a device or a pipe.";
        QTest::newRow("pipe") << "pipe" << pipe;
        QTest::newRow("pipe called like CSV") << "pipe.csv" << pipe;
        QTest::newRow("device") << "device" << pipe;
#endif
    }

    void whatIsNoFileIsNotRead()
    {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        const QString path = m_folder->filePath(name);
        if (name.startsWith("folder"))
            QVERIFY(QDir().mkdir(path));
#if defined(Q_OS_UNIX)
        if (name.startsWith("pipe"))
            QCOMPARE(mkfifo(path.toUtf8(), 0600), 0);
        if (name == "device")
            QVERIFY(QFile::link("/dev/zero", path));
#endif
        const Window window;
        QVERIFY(!window->openFile(path));
        QMessageBox* const box = zvtest::failureOf(*window);
        QVERIFY(box);
        QVERIFY2(box->informativeText().startsWith(reason), qPrintable(box->informativeText()));
        zvtest::dismiss(*box);
    }

    void hugeFilesAreToldOf()
    {
        const QString path = m_folder->filePath("huge.log");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write(QByteArray(10'000, 'a')) > 0);
        // A file with a hole takes no room on the disk.
        QVERIFY(file.resize(2'000'000'000));
        file.close();
        const Window window;
        QVERIFY(!window->openFile(path));
        QMessageBox* const box = zvtest::failureOf(*window);
        QVERIFY(box);
        QVERIFY(box->informativeText().startsWith(
            "The file has 2,000,000,000 bytes; a text file can have at most 5,000,000."));
        zvtest::dismiss(*box);
    }

    void csvBecomesANewPlan()
    {
        const QByteArray csv = "Step,Value\n1,a\n";
        const QString file = script("data.csv", csv);
        const Window window;
        auto* const plan = qobject_cast<TestPlanDocument*>(window->openFile(file));
        QVERIFY(plan);
        QCOMPARE(plan->shortTitle(), QString("data.csv (imported)"));
        QVERIFY(!plan->isModified());
        QVERIFY(plan->filename().isEmpty());
        QCOMPARE(window->openFile(file), plan);
        plan->model().setData(plan->model().index(0, 1), "b", Qt::EditRole);
        QVERIFY(plan->isModified());
        QString proposed;
        const zvtest::WindowResponder<QFileDialog> answer([&](QFileDialog& dialog) {
            proposed = dialog.findChild<QLineEdit*>("fileNameEdit")->text();
            QMetaObject::invokeMethod(&dialog, "accept");
        });
        window->commands().save();
        QCOMPARE(answer.count, 1);
        QVERIFY2(proposed.endsWith("data.testplan"), qPrintable(proposed));
        QVERIFY(QFile::exists(m_folder->filePath("data.testplan")));
        QCOMPARE(plan->shortTitle(), QString("data.testplan"));
        QVERIFY(!plan->isModified());
        QCOMPARE(zvtest::contentOf(file), csv);
        // The file is opened anew, since the plan is another file's now.
        QVERIFY(window->openFile(file) != plan);
    }
};

QTEST_MAIN(tst_workbench_window_edits)
#include "tst_workbench_window_edits.moc"
