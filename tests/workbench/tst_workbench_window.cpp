// The workbench's window: documents, sessions, menus, exchange.

#include "common/file_uri.h"
#include "common/path_names.h"
#include "common/requests.h"
#include "common/styles.h"
#include "documents/CompressionTask.h"
#include "documents/Document.h"
#include "documents/FileNameDialog.h"
#include "files/FilesPanel.h"
#include "script/CodeEditor.h"
#include "script/ScriptDocument.h"
#include "search/FindInFilesDialog.h"
#include "shell/AccentSwatches.h"
#include "shell/Arguments.h"
#include "shell/OptionsDialog.h"
#include "shell/RecentFiles.h"
#include "shell/Session.h"
#include "shell/StartPage.h"
#include "shell/Workbench.h"
#include "shell/document_types.h"
#include "shell/open.h"

#include <DockFramework/DockableWidget.h>

#include <HostSupport/saving.h>

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleEditor.h>
#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>

#include <support/Answer.h>
#include <support/Background.h>
#include <support/RefusedWrite.h>
#include <support/StyleHost.h>
#include <support/Workbench.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QProgressDialog>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QTreeView>
#include <QUrl>

#include <algorithm>
#include <future>
#include <memory>
#include <optional>
#include <stdexcept>

using namespace workbench;
using zvtest::longWait;

namespace {

/// Closes and deletes itself, as it does in the program.
class Window
{
public:
    Window()
        : m_window(new Workbench)
    {
        m_window->restoreSession();
        m_window->show();
    }

    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Asks for nothing: nobody would answer behind a test that has failed.
    ~Window()
    {
        if (m_window) {
            for (Document* const document : m_window->documents())
                document->setModified(false);
        }
        close();
    }

    Workbench* operator->() const { return m_window; }
    Workbench& operator*() const { return *m_window; }

    bool close()
    {
        if (!m_window)
            return true;
        if (!m_window->close())
            return false;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return m_window.isNull();
    }

private:
    QPointer<Workbench> m_window;
};

QAction* actionOf(const Workbench& window, const char* name)
{
    return window.findChild<QAction*>(QLatin1String(name));
}

QMessageBox* shownBox()
{
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        auto* const box = qobject_cast<QMessageBox*>(widget);
        if (box && box->isVisible())
            return box;
    }
    return nullptr;
}

QStringList textsOf(const QMenu& menu)
{
    QStringList texts;
    for (const QAction* const action : menu.actions()) {
        if (!action->isSeparator())
            texts.append(action->text().remove(QLatin1Char('&')));
    }
    return texts;
}

QMenu* menuOf(const Workbench& window, const QString& title)
{
    for (const QAction* const action : window.menuBar()->actions()) {
        if (action->text().remove(QLatin1Char('&')) == title)
            return action->menu();
    }
    return nullptr;
}

QStringList namesOf(const Workbench& window)
{
    QStringList names;
    for (const Document* const document : window.documents())
        names.append(document->shortTitle());
    return names;
}

/// The box that tells of a failure, once it is there.
QMessageBox* failureOf(const Workbench& window)
{
    QMessageBox* box = nullptr;
    const bool isThere = QTest::qWaitFor(
        [&] {
            box = window.findChild<QMessageBox*>();
            return box != nullptr;
        },
        longWait);
    return isThere ? box : nullptr;
}

void dismiss(QMessageBox& box)
{
    box.close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

zvtest::Answer<QFileDialog> chooseFile(const QString& file)
{
    return zvtest::Answer<QFileDialog>([file](QFileDialog& dialog) {
        dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(file);
        QMetaObject::invokeMethod(&dialog, "accept");
    });
}

} // namespace

class tst_workbench_window : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { addOwnDocumentTypes(); }

    void init()
    {
        m_host.emplace();
        m_folder.emplace();
        QVERIFY(m_host->isValid());
    }

    void cleanup()
    {
        qApp->setStyleSheet(QString());
        m_folder.reset();
        m_host.reset();
    }

    void startPageStandsInForDocuments()
    {
        const Window window;
        QVERIFY(window->findChild<StartPage*>());
        QVERIFY(!window->currentDocument());
        QVERIFY(!actionOf(*window, "save")->isEnabled());
        window->newDocument(*documentTypes().at(0));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!window->findChild<StartPage*>());
        QVERIFY(actionOf(*window, "save")->isEnabled());
        window->closeCurrent();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(window->findChild<StartPage*>());
        QVERIFY(!window->currentDocument());
        QVERIFY(!actionOf(*window, "save")->isEnabled());
    }

    void startPageOffersAll()
    {
        const QString file = script("first.zvscr");
        {
            const Window window;
            QVERIFY(window->openFile(file));
            window->closeCurrent();
        }
        const Window window;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        auto* const page = window->findChild<StartPage*>();
        for (const char* name : {"new:testplan", "new:schematic", "new:script", "open"})
            QVERIFY2(page->findChild<QPushButton*>(QLatin1String(name)), name);
        const QList<QPushButton*> recent =
            page->findChildren<QPushButton*>(QStringLiteral("recent"));
        QCOMPARE(recent.size(), 1);
        QVERIFY(recent.at(0)->text().startsWith(QStringLiteral("first.zvscr")));
        recent.at(0)->click();
        QCOMPARE(namesOf(*window), QStringList{QStringLiteral("first.zvscr")});
    }

    void startPageMakesDocuments()
    {
        const Window window;
        window->findChild<QPushButton*>(QStringLiteral("new:testplan"))->click();
        QCOMPARE(window->currentDocument()->type().id, QStringLiteral("testplan"));
    }

    void newDocumentsAreCounted()
    {
        const Window window;
        for (const DocumentType* const type : documentTypes())
            actionOf(*window, qPrintable(QStringLiteral("new:") + type->id))->trigger();
        QCOMPARE(namesOf(*window),
                 (QStringList{QStringLiteral("Test plan 1"), QStringLiteral("Schematic 2"),
                              QStringLiteral("Script 3")}));
        QCOMPARE(window->currentDocument()->type().id, QStringLiteral("script"));
    }

    void aFileIsOpenOnce()
    {
        const Window window;
        const QString file = script("one.zvscr");
        Document* const document = window->openFile(file);
        QVERIFY(document);
        window->openFile(script("two.zvscr"));
        QVERIFY(window->currentDocument() != document);
        QCOMPARE(window->openFile(m_folder->path() + QStringLiteral("/./one.zvscr")), document);
        QCOMPARE(window->currentDocument(), document);
        QCOMPARE(window->documents().size(), 2);
        QCOMPARE(window->recentFiles().files().size(), 2);
#if defined(Q_OS_UNIX)
        const QString link = m_folder->filePath(QStringLiteral("link.zvscr"));
        QVERIFY(QFile::link(file, link));
        QCOMPARE(window->openFile(link), document);
#endif
    }

    void whatCantBeOpenedIsToldOf_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        QTest::newRow("missing") << "none.zvscr"
                                 << "There is no such file.";
        QTest::newRow("other type") << "note.txt"
                                    << "It is no test plan, schematic or script.";
        QTest::newRow("broken plan") << "bad.testplan"
                                     << "It is no test plan: it holds “nonsense”.";
    }

    void whatCantBeOpenedIsToldOf()
    {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        if (!name.startsWith(QStringLiteral("none")))
            script(qPrintable(name), "<nonsense/>");
        const Window window;
        QVERIFY(!window->openFile(m_folder->filePath(name)));
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QVERIFY(box->text().contains(name));
        QVERIFY(box->informativeText().startsWith(reason));
        QVERIFY(box->informativeText().contains(QLatin1Char('\n')));
        dismiss(*box);
        QVERIFY(window->documents().isEmpty());
        QVERIFY(window->recentFiles().files().isEmpty());
        QVERIFY(window->findChild<StartPage*>());
    }

    void filesAreChosenInADialog()
    {
        const Window window;
        const QString file = script("chosen.zvscr");
        const zvtest::Answer<QFileDialog> answer = chooseFile(file);
        actionOf(*window, "open")->trigger();
        QCOMPARE(answer.count, 1);
        QCOMPARE(namesOf(*window), QStringList{QStringLiteral("chosen.zvscr")});
    }

    void savedDocumentsAreRecent()
    {
        const Window window;
        Document* const document = window->newDocument(*documentTypeOf(QStringLiteral("script")));
        const QString file = m_folder->filePath(QStringLiteral("new.zvscr"));
        const zvtest::Answer<QFileDialog> answer = chooseFile(file);
        actionOf(*window, "save")->trigger();
        QCOMPARE(answer.count, 1);
        QCOMPARE(document->shortTitle(), QStringLiteral("new.zvscr"));
        QCOMPARE(window->recentFiles().files(), QStringList{file});
        QVERIFY(document->isFileWatcherEnabled());
    }

    void filesGetTheirExtension_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("saved");
        for (const DocumentType* const type : documentTypes()) {
            QTest::addRow("%s, none", qPrintable(type->id))
                << type->id << "typed" << QStringLiteral("typed") + type->extension;
            QTest::addRow("%s, its own", qPrintable(type->id))
                << type->id << QStringLiteral("typed") + type->extension
                << QStringLiteral("typed") + type->extension;
        }
    }

    void filesGetTheirExtension()
    {
        QFETCH(QString, type);
        QFETCH(QString, name);
        QFETCH(QString, saved);
        const Window window;
        const Document* const document = window->newDocument(*documentTypeOf(type));
        const zvtest::Answer<QFileDialog> answer = chooseFile(m_folder->filePath(name));
        window->saveCurrentAs();
        QCOMPARE(answer.count, 1);
        QCOMPARE(document->shortTitle(), saved);
        QVERIFY(QFile::exists(m_folder->filePath(saved)));
        QVERIFY(window->openFile(m_folder->filePath(saved)) == document);
    }

    void saveAllSavesWhatHasChanged()
    {
        const Window window;
        const QString first = script("a.zvscr", "a");
        const QString second = script("b.zvscr", "b");
        auto* const changed = qobject_cast<ScriptDocument*>(window->openFile(first));
        auto* const unchanged = qobject_cast<ScriptDocument*>(window->openFile(second));
        const QSignalSpy saved(unchanged, &ZvContentWidget::saved);
        QTest::keyClicks(&changed->editor(), QStringLiteral("x"));
        QVERIFY(changed->isModified());
        actionOf(*window, "saveAll")->trigger();
        QVERIFY(!changed->isModified());
        QCOMPARE(zvtest::bytesOf(first), QByteArray("xa"));
        QCOMPARE(saved.size(), 0);
    }

    void sessionsComeBack()
    {
        const QStringList files = {script("a.zvscr"), script("b.zvscr"), script("gone.zvscr")};
        QByteArray geometry;
        {
            const Window window;
            window->resize(900, 650);
            window->openFiles(files);
            window->newDocument(*documentTypes().at(0));
            window->openFile(files.at(0));
            window->filesPanel().addFolders({m_folder->path()});
            window->panels().at(2)->close();
        }
        QVERIFY(QFile::remove(files.at(2)));
        const Window window;
        QCOMPARE(namesOf(*window),
                 (QStringList{QStringLiteral("a.zvscr"), QStringLiteral("b.zvscr")}));
        QCOMPARE(window->currentDocument()->shortTitle(), QStringLiteral("a.zvscr"));
        QCOMPARE(window->size(), QSize(900, 650));
        QCOMPARE(window->filesPanel().folders(), QStringList{m_folder->path()});
        QCOMPARE(window->recentFiles().files().size(), 3);
        QVERIFY(window->panels().at(2)->isHidden());
        QVERIFY(!window->panels().at(0)->isHidden());
    }

    void floatingDocumentsComeBackFloating()
    {
        const QString file = script("a.zvscr");
        {
            const Window window;
            auto* const dock = qobject_cast<DockableWidget*>(
                window->newDocument(*documentTypeOf(QStringLiteral("script")))
                    ->parentWidget()
                    ->parentWidget());
            QVERIFY(dock);
            dock->setFloating(true);
            // Under the name that it gets now.
            const zvtest::Answer<QFileDialog> answer =
                chooseFile(m_folder->filePath(QStringLiteral("float.zvscr")));
            window->saveCurrent();
            QCOMPARE(answer.count, 1);
            QVERIFY(window->openFile(file));
        }
        const Window window;
        QCOMPARE(namesOf(*window).size(), 2);
        for (const DockableWidget* const dock : window->dockableWidgets()) {
            if (dock->contents()->isContentWidget())
                QCOMPARE(dock->isFloating(),
                         dock->contents()->getShortName() == QStringLiteral("float.zvscr"));
        }
    }

    void sessionKeepsWhatWasAskedAbout()
    {
        const QStringList files = {script("a.zvscr"), script("b.zvscr"), script("c.zvscr")};
        {
            Window window;
            for (const QString& file : files) {
                auto* const document = qobject_cast<ScriptDocument*>(window->openFile(file));
                QTest::keyClicks(&document->editor(), QStringLiteral("x"));
            }
            int asked = 0;
            const auto discard = [&asked](QMessageBox& box) {
                ++asked;
                box.button(QMessageBox::Discard)->click();
            };
            // Documents that were closed before another asks are deleted later than that.
            QEventLoop loop;
            QTimer::singleShot(0, &loop, [&] {
                const zvtest::Answer<QMessageBox> first(discard);
                const zvtest::Answer<QMessageBox> second(discard);
                const zvtest::Answer<QMessageBox> third(discard);
                loop.exit(window->close() ? 0 : 1);
            });
            const int result = loop.exec();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCOMPARE(result, 0);
            QCOMPARE(asked, 3);
        }
        const Window window;
        QCOMPARE(namesOf(*window),
                 (QStringList{QStringLiteral("a.zvscr"), QStringLiteral("b.zvscr"),
                              QStringLiteral("c.zvscr")}));
    }

    void closingAsksForChanges_data()
    {
        QTest::addColumn<int>("button");
        QTest::addColumn<bool>("closes");
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("cancel") << int(QMessageBox::Cancel) << false << QByteArray("a");
        QTest::newRow("discard") << int(QMessageBox::Discard) << true << QByteArray("a");
        QTest::newRow("save") << int(QMessageBox::Save) << true << QByteArray("xa");
    }

    void closingAsksForChanges()
    {
        QFETCH(int, button);
        QFETCH(bool, closes);
        QFETCH(QByteArray, content);
        const QString unchanged = script("unchanged.zvscr");
        const QString file = script("a.zvscr", "a");
        Window window;
        window->openFile(unchanged);
        auto* const document = qobject_cast<ScriptDocument*>(window->openFile(file));
        QTest::keyClicks(&document->editor(), QStringLiteral("x"));
        QString question;
        const zvtest::Answer<QMessageBox> answer([button, &question](QMessageBox& box) {
            question = box.text();
            box.button(static_cast<QMessageBox::StandardButton>(button))->click();
        });
        QCOMPARE(window.close(), closes);
        QCOMPARE(answer.count, 1);
        QCOMPARE(question, QStringLiteral("Save the changes to “a.zvscr”?"));
        QCOMPARE(zvtest::bytesOf(file), content);
        if (!closes) // Nothing has been closed.
            QCOMPARE(window->documents().size(), 2);
    }

    void renamesTheFile()
    {
        const QString file = script("before.zvscr", "a");
        const QString renamed = m_folder->filePath(QStringLiteral("after.zvscr"));
        const Window window;
        Document* const document = window->openFile(file);
        const zvtest::Answer<FileNameDialog> answer([](FileNameDialog& dialog) {
            dialog.findChild<QLineEdit*>()->setText(QStringLiteral("after.zvscr"));
            dialog.accept();
        });
        actionOf(*window, "rename")->trigger();
        QCOMPARE(answer.count, 1);
        QVERIFY(!QFile::exists(file));
        QCOMPARE(zvtest::bytesOf(renamed), QByteArray("a"));
        QCOMPARE(document->shortTitle(), QStringLiteral("after.zvscr"));
        QVERIFY(document->isFileWatcherEnabled());
        QCOMPARE(window->openFile(renamed), document);
    }

    void exportsAndImports()
    {
        const QString file = script("plan.zvscr", "print('as it was')");
        const QString compressed = m_folder->filePath(QStringLiteral("plan.zvscr.z"));
        const QString restored = m_folder->filePath(QStringLiteral("copy.zvscr"));
        const Window window;
        window->openFile(file);
        {
            const zvtest::Answer<QFileDialog> answer = chooseFile(compressed);
            actionOf(*window, "export")->trigger();
            QCOMPARE(answer.count, 1);
        }
        QTRY_COMPARE_WITH_TIMEOUT(zvtest::bytesOf(compressed),
                                  qCompress(QByteArray("print('as it was')")), longWait);
        QString proposed;
        std::optional<zvtest::Answer<FileNameDialog>> name;
        const zvtest::Answer<QFileDialog> answer([&](QFileDialog& dialog) {
            name.emplace([&proposed](FileNameDialog& nameDialog) {
                auto* const edit = nameDialog.findChild<QLineEdit*>();
                proposed = edit->text();
                edit->setText(QStringLiteral("copy.zvscr"));
                nameDialog.accept();
            });
            dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(compressed);
            QMetaObject::invokeMethod(&dialog, "accept");
        });
        actionOf(*window, "import")->trigger();
        QVERIFY(QTest::qWaitFor([&] { return window->documents().size() == 2; }, longWait));
        QCOMPARE(proposed, QStringLiteral("plan.zvscr"));
        QCOMPARE(zvtest::bytesOf(restored), QByteArray("print('as it was')"));
        QCOMPARE(window->currentDocument()->shortTitle(), QStringLiteral("copy.zvscr"));
        QVERIFY(!QFile::exists(restored + QStringLiteral(".part")));
    }

    void compressionFails_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<bool>("compresses");
        QTest::addColumn<QString>("target");
        QTest::newRow("broken") << qCompress(QByteArray(1'000, 'a')).left(15) << false << "t.zvscr";
        QTest::newRow("not compressed") << QByteArray("just a text") << false << "t.zvscr";
        QTest::newRow("too short") << QByteArray("ab") << false << "t.zvscr";
        QTest::newRow("no folder") << QByteArray("a") << true << "no/such/t.z";
        QTest::newRow("target is a folder") << QByteArray("a") << true << ".";
    }

    void compressionFails()
    {
        QFETCH(QByteArray, source);
        QFETCH(bool, compresses);
        QFETCH(QString, target);
        using Direction = CompressionRequest::Direction;
        const QString file = script("source", source);
        const QString old = script("t.zvscr", "what was there");
        QWidget parent;
        QPointer<CompressionTask> task(
            new CompressionTask(compresses ? Direction::Compress : Direction::Decompress,
                                filePath(file), filePath(m_folder->filePath(target)), &parent));
        QSignalSpy failed(task, &CompressionTask::failed);
        QSignalSpy completed(task, &CompressionTask::completed);
        QVERIFY(QTest::qWaitFor([&] { return task.isNull(); }, longWait));
        QCOMPARE(failed.size(), 1);
        QCOMPARE(completed.size(), 0);
        const auto failure = failed.at(0).at(0).value<Failure>();
        QVERIFY(failure.what.contains(QStringLiteral("source")));
        QVERIFY(!failure.reason.isEmpty());
        QVERIFY(!failure.advice.isEmpty());
        QCOMPARE(zvtest::bytesOf(old), QByteArray("what was there"));
        QVERIFY(!QFile::exists(m_folder->filePath(target) + QStringLiteral(".part")));
    }

    void emptyFilesAreExchanged()
    {
        using Direction = CompressionRequest::Direction;
        const QString file = script("empty.zvscr", "");
        const QString compressed = m_folder->filePath(QStringLiteral("empty.z"));
        const QString restored = m_folder->filePath(QStringLiteral("again.zvscr"));
        QWidget parent;
        for (const Direction direction : {Direction::Compress, Direction::Decompress}) {
            const bool compresses = direction == Direction::Compress;
            QPointer<CompressionTask> task(
                new CompressionTask(direction, filePath(compresses ? file : compressed),
                                    filePath(compresses ? compressed : restored), &parent));
            QSignalSpy completed(task, &CompressionTask::completed);
            QVERIFY(QTest::qWaitFor([&] { return task.isNull(); }, longWait));
            QCOMPARE(completed.size(), 1);
        }
        QCOMPARE(zvtest::bytesOf(restored), QByteArray());
    }

    void cancelledExportsLeaveNothing()
    {
        using Direction = CompressionRequest::Direction;
        const QString file = script("plan.zvscr");
        const QString target = m_folder->filePath(QStringLiteral("plan.z"));
        // It waits behind another one until it is cancelled.
        std::promise<void> isCancelled;
        const std::shared_future<void> end = isCancelled.get_future().share();
        requests().add(std::make_shared<zvtest::Request>([end](zvtest::Request& request) {
            end.wait();
            Q_EMIT request.completed();
        }));
        QWidget parent;
        parent.show();
        QPointer<CompressionTask> task(
            new CompressionTask(Direction::Compress, filePath(file), filePath(target), &parent));
        QSignalSpy cancelled(task, &CompressionTask::cancelled);
        auto* const dialog = parent.findChild<QProgressDialog*>();
        QVERIFY(dialog);
        dialog->findChild<QPushButton*>()->click();
        isCancelled.set_value();
        QVERIFY(QTest::qWaitFor([&] { return task.isNull(); }, longWait));
        QCOMPARE(cancelled.size(), 1);
        QVERIFY(!QFile::exists(target));
        QVERIFY(!QFile::exists(target + QStringLiteral(".part")));
    }

    void compressionsAbortedOnTheWayLeaveNothing()
    {
        using Direction = CompressionRequest::Direction;
        const QString file = script("plan.zvscr");
        const QString target = m_folder->filePath(QStringLiteral("plan.z"));
        CompressionRequest request(Direction::Compress, filePath(file), filePath(target));
        QSignalSpy completed(&request, &CompressionRequest::completed);
        QSignalSpy failed(&request, &CompressionRequest::failed);
        // From another thread it comes as an event, too.
        connect(&request, &CompressionRequest::started, &request, &CompressionRequest::abort,
                Qt::QueuedConnection);
        request.start();
        QCOMPARE(completed.size(), 0);
        QCOMPARE(failed.size(), 1);
        QVERIFY(request.abort_requested());
        QVERIFY(!QFile::exists(target));
        QVERIFY(!QFile::exists(target + QStringLiteral(".part")));
    }

    void windowMayGoWhileItCompresses()
    {
        const QString file = script("large", QByteArray(30'000'000, 'a'));
        auto parent = std::make_unique<QWidget>();
        parent->show();
        const QPointer<CompressionTask> task(new CompressionTask(
            CompressionRequest::Direction::Compress, filePath(file),
            filePath(m_folder->filePath(QStringLiteral("large.z"))), parent.get()));
        parent->findChild<QProgressDialog*>()->show();
        parent.reset();
        QVERIFY(task.isNull());
        // The request goes on, and the next one comes behind it.
        QWidget other;
        const QPointer<CompressionTask> next(
            new CompressionTask(CompressionRequest::Direction::Compress, filePath(file),
                                filePath(m_folder->filePath(QStringLiteral("next.z"))), &other));
        QVERIFY(QTest::qWaitFor([&next] { return next.isNull(); }, longWait));
        QVERIFY(QFile::exists(m_folder->filePath(QStringLiteral("large.z"))));
        QVERIFY(QFile::exists(m_folder->filePath(QStringLiteral("next.z"))));
    }

    void copiesTheUri()
    {
        const QString file = script("with blank#1.zvscr");
        const Window window;
        window->openFile(file);
        actionOf(*window, "copyUri")->trigger();
        const QString uri = QGuiApplication::clipboard()->text();
        QVERIFY2(uri.startsWith(QStringLiteral("file:///")), qPrintable(uri));
        QVERIFY2(uri.endsWith(QStringLiteral("/with%20blank%231.zvscr")), qPrintable(uri));
        QCOMPARE(QUrl(uri).toLocalFile(), file);
    }

    void urisOfFiles_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("uri");
        QTest::newRow("POSIX") << "/home/me/a b.zvscr"
                               << "file:///home/me/a%20b.zvscr";
        QTest::newRow("Windows") << "C:/a b/c.zvscr"
                                 << "file:///C:/a%20b/c.zvscr";
        QTest::newRow("share") << "//server/share/c.zvscr"
                               << "file://server/share/c.zvscr";
        QTest::newRow("not ASCII") << QStringLiteral("/ä") << "file:///%C3%A4";
    }

    void urisOfFiles()
    {
        QFETCH(QString, file);
        QFETCH(QString, uri);
        QCOMPARE(fileUri(file), uri);
    }

    void editMenuIsTheDocuments()
    {
        const Window window;
        QMenu* const menu = menuOf(*window, QStringLiteral("Edit"));
        Q_EMIT menu->aboutToShow();
        QCOMPARE(textsOf(*menu), QStringList{QStringLiteral("Find in Files…")});
        window->newDocument(*documentTypeOf(QStringLiteral("script")));
        Q_EMIT menu->aboutToShow();
        QCOMPARE(textsOf(*menu),
                 (QStringList{QStringLiteral("Run"), QStringLiteral("Stop"),
                              QStringLiteral("Find in Files…")}));
        window->newDocument(*documentTypeOf(QStringLiteral("testplan")));
        Q_EMIT menu->aboutToShow();
        QVERIFY(textsOf(*menu).contains(QStringLiteral("Paste")));
    }

    void toolBarFollowsTheDocument()
    {
        const Window window;
        const auto* const toolBar = window->findChild<QToolBar*>();
        QCOMPARE(toolBar->actions().size(), 2);
        Document* const document = window->newDocument(*documentTypeOf(QStringLiteral("script")));
        QCOMPARE(toolBar->actions().mid(3), document->toolBarActions());
        // Work in a panel doesn't change it.
        window->activate(window->panels().at(0));
        QCOMPARE(window->currentDocument(), document);
        QCOMPARE(toolBar->actions().mid(3), document->toolBarActions());
    }

    void viewMenuHasPanelsStylesAndCommands()
    {
        const Window window;
        QCOMPARE(
            textsOf(*menuOf(*window, QStringLiteral("View"))),
            (QStringList{QStringLiteral("Files"), QStringLiteral("Console"), QStringLiteral("Log"),
                         QStringLiteral("Style"), QStringLiteral("Accent"),
                         QStringLiteral("Dark Look for Now"), QStringLiteral("Light Look for Now"),
                         QStringLiteral("Style Editor"), QStringLiteral("Style Sheet Additions"),
                         QStringLiteral("Style as a Tree"), QStringLiteral("Options…")}));
        QCOMPARE(textsOf(*window->findChild<QMenu*>(QStringLiteral("styles"))),
                 (QStringList{QStringLiteral("Light"), QStringLiteral("Dark")}));
    }

    void stylesAreChosenAndKept()
    {
        using libzvutil::ZvStyleManager;
        const Window window;
        actionOf(*window, "style:Dark")->trigger();
        QCOMPARE(ZvStyleManager::CurrentStyle().name().toQString(), QStringLiteral("Dark"));
        QVERIFY(!qApp->styleSheet().isEmpty());
        QVERIFY(optionsOf(*m_host).contains("Dark"));
        // As the menu is the next time, with other actions.
        auto* const menu = window->findChild<QMenu*>(QStringLiteral("styles"));
        Q_EMIT menu->aboutToShow();
        QCOMPARE(textsOf(*menu), (QStringList{QStringLiteral("Light"), QStringLiteral("Dark")}));
        QVERIFY(!menu->actions().at(0)->isChecked());
        QVERIFY(menu->actions().at(1)->isChecked());
        menu->actions().at(0)->trigger();
        QCOMPARE(ZvStyleManager::CurrentStyle().name().toQString(), QStringLiteral("Light"));
    }

    void accentsAreChosenAndKept()
    {
        chooseAccent(QColor(0x10, 0x7C, 0x10));
        QCOMPARE(chosenAccent(), QColor(0x10, 0x7C, 0x10));
        QVERIFY(qApp->styleSheet().contains(QStringLiteral("#ff107c10")));
        // The next style has it as well.
        chooseStyle(QStringLiteral("Dark"));
        QVERIFY(qApp->styleSheet().contains(QStringLiteral("#ff107c10")));
        chooseStyle(QStringLiteral("Light"));
        host::writeOption("ZvStyle", "Dark");
        host::resetOption("ZvStyleAccent");
        applyStyleOptions();
        QCOMPARE(currentStyleName(), QStringLiteral("Dark"));
        QVERIFY(!qApp->styleSheet().contains(QStringLiteral("#ff107c10")));
        // One that has gone is replaced by the default.
        host::writeOption("ZvStyle", "Gone");
        applyStyleOptions();
        QCOMPARE(currentStyleName(), QStringLiteral("Light"));
    }

    void editedStylesAreKeptAndShown()
    {
        using libzvutil::ZvStyle;
        using libzvutil::ZvStyleBrush;
        using libzvutil::ZvStyleManager;
        const Window window;
        // The manager has made the folder of its first user only.
        QVERIFY(QDir(m_host->path()).mkpath(QStringLiteral("ui")));
        ZvStyle style = ZvStyleManager::Library().light().duplicate("Mine");
        libzvutil::ZvStyleLibrary library;
        library.update(style);
        ZvStyleManager::SetLibrary(library);
        QVERIFY(m_host->read(m_host->libraryFile()).contains("Mine"));
        chooseStyle(QStringLiteral("Mine"));
        style.setColour(ZvStyleBrush::Panel, QColor(1, 2, 3));
        library.update(style);
        ZvStyleManager::SetLibrary(library);
        QVERIFY(m_host->read(m_host->libraryFile()).contains("#010203"));
        QVERIFY(qApp->styleSheet().contains(QStringLiteral("#ff010203")));
        ZvStyleManager::SetLibrary(libzvutil::ZvStyleLibrary());
    }

    void accentsAreChosenInTheMenu()
    {
        const Window window;
        auto* const menu = window->findChild<QMenu*>(QStringLiteral("accents"));
        auto* const swatches = menu->findChild<AccentSwatches*>();
        QVERIFY(swatches);
        chooseAccent(QColor(0xE8, 0x11, 0x23));
        Q_EMIT menu->aboutToShow();
        QCOMPARE(swatches->current(), QColor(0xE8, 0x11, 0x23));
        Q_EMIT swatches->chosen(QColor(0x10, 0x7C, 0x10));
        QCOMPARE(chosenAccent(), QColor(0x10, 0x7C, 0x10));
        QVERIFY(qApp->styleSheet().contains(QStringLiteral("#ff107c10")));
        host::resetOption("ZvStyleAccent");
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
        QCOMPARE(currentStyleName(), QStringLiteral("Dark"));
        chooseStyle(QStringLiteral("Light"));
    }

    void hitsAreOpenedAtTheirLine()
    {
        const QString file = script("hit.zvscr", "one\ntwo\nthree needle\n");
        const Window window;
        window->filesPanel().addFolders({m_folder->path()});
        actionOf(*window, "findInFiles")->trigger();
        auto* const dialog = window->findChild<FindInFilesDialog*>();
        QVERIFY(dialog->isVisible());
        dialog->setText(QStringLiteral("needle"));
        QSignalSpy ended(dialog, &FindInFilesDialog::searchEnded);
        dialog->find();
        QVERIFY(QTest::qWaitFor([&ended] { return !ended.isEmpty(); }, longWait));
        auto* const hits = dialog->findChild<QTreeView*>(QStringLiteral("hits"));
        QCOMPARE(hits->model()->rowCount(), 1);
        Q_EMIT hits->doubleClicked(hits->model()->index(0, 0));
        auto* const opened = qobject_cast<ScriptDocument*>(window->currentDocument());
        QVERIFY(opened);
        QCOMPARE(opened->shortTitle(), QStringLiteral("hit.zvscr"));
        QCOMPARE(opened->editor().textCursor().blockNumber(), 2);
        // The same dialog comes again.
        dialog->close();
        actionOf(*window, "findInFiles")->trigger();
        QCOMPARE(window->findChildren<FindInFilesDialog*>().size(), 1);
        QVERIFY(dialog->isVisible());
    }

    void filesAreOpenedFromThePanelAndByDrops()
    {
        const QString first = script("first.zvscr");
        const QString second = script("second.zvscr");
        const Window window;
        Q_EMIT window->filesPanel().openRequested({first, second});
        QCOMPARE(window->documents().size(), 2);
        Q_EMIT window->documents().at(0)->filesDropped({script("third.zvscr")});
        QCOMPARE(window->currentDocument()->shortTitle(), QStringLiteral("third.zvscr"));
    }

    void sessionsThatCantBeKeptAreToldOf()
    {
        host::setOptionsFile(m_folder->filePath(QStringLiteral("file/options.ini")).toStdString());
        script("file", "no folder");
        Window window;
        QVERIFY(window.close());
        QMessageBox* const box = shownBox();
        QVERIFY(box);
        QVERIFY(box->informativeText().contains(QStringLiteral("workbench.ini")));
        dismiss(*box);
    }

    void fullDiskLeavesTheSessionAsItWas()
    {
        const QString name = sessionFile();
        {
            QSettings settings(name, host::settingsFormat());
            settings.setValue(QStringLiteral("Other/long"),
                              QString(2 * zvtest::RefusedWrite::limit, QLatin1Char('x')));
        }
        const QByteArray before = zvtest::bytesOf(name);
        {
            Window window;
            window->openFile(script("a.zvscr"));
            const zvtest::RefusedWrite refused(name);
            QVERIFY(window.close());
        }
        QCOMPARE(zvtest::bytesOf(name), before);
        QMessageBox* const box = shownBox();
        QVERIFY(box);
        dismiss(*box);
    }

    void firstPaintIsInTheCurrentStyle()
    {
        /// Whether there was a style sheet when the window was painted first.
        class FirstPaint : public QObject
        {
        public:
            FirstPaint() { qApp->installEventFilter(this); }

            std::optional<bool> isStyled;

        protected:
            bool eventFilter(QObject* watched, QEvent* event) override
            {
                if (event->type() == QEvent::Paint && !isStyled
                    && qobject_cast<Workbench*>(watched))
                    isStyled = !qApp->styleSheet().isEmpty();
                return false;
            }
        };
        QVERIFY(qApp->styleSheet().isEmpty());
        const FirstPaint firstPaint;
        QCOMPARE(open({}), QString());
        QVERIFY(
            QTest::qWaitFor([&firstPaint] { return firstPaint.isStyled.has_value(); }, longWait));
        QVERIFY(*firstPaint.isStyled);
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (qobject_cast<Workbench*>(widget))
                QVERIFY(widget->close());
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void commandShowsInTheWindowThatIsThere()
    {
        const QString file = script("told.zvscr");
        QVERIFY(open({QStringLiteral("--what")}).contains(QStringLiteral("--what")));
        QCOMPARE(open({QStringLiteral("--style"), QStringLiteral("Dark")}), QString());
        QCOMPARE(currentStyleName(), QStringLiteral("Dark"));
        // Chosen for this time alone.
        QVERIFY(!optionsOf(*m_host).contains("Dark"));
        QCOMPARE(open({QStringLiteral("--new"), QStringLiteral("script"), file}), QString());
        QPointer<Workbench> window;
        int windows = 0;
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (auto* const found = qobject_cast<Workbench*>(widget)) {
                window = found;
                ++windows;
            }
        }
        QCOMPARE(windows, 1);
        QCOMPARE(namesOf(*window),
                 (QStringList{QStringLiteral("Script 1"), QStringLiteral("told.zvscr")}));
        window->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(window.isNull());
        showStyle(QStringLiteral("Light"));
    }

    void commandsOpenTheirWindows()
    {
        const Window window;
        window->findChild<QAction*>(QStringLiteral("_s1"))->trigger();
        const QString dark = qApp->styleSheet();
        window->findChild<QAction*>(QStringLiteral("_s2"))->trigger();
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

    void choicesThatCantBeKeptAreToldOf()
    {
        host::setOptionsFile(m_folder->filePath(QStringLiteral("file/options.ini")).toStdString());
        script("file", "no folder");
        Workbench window;
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        actionOf(window, "style:Dark")->trigger();
        QCOMPARE(currentStyleName(), QStringLiteral("Dark"));
        QMessageBox* const box = failureOf(window);
        QVERIFY(box);
        QVERIFY(box->informativeText().contains(QStringLiteral("options.ini")));
        dismiss(*box);
        // An accent is shown as well, though it isn't kept.
        QVERIFY_EXCEPTION_THROWN(chooseAccent(QColor(0x10, 0x7C, 0x10)), std::runtime_error);
        QVERIFY(qApp->styleSheet().contains(QStringLiteral("#ff107c10")));
        showStyle(QStringLiteral("Light"));
    }

    void namesOfStylesAreNoMnemonics()
    {
        using libzvutil::ZvStyleManager;
        libzvutil::ZvStyleLibrary library;
        library.update(ZvStyleManager::Library().light().duplicate("A&B"));
        ZvStyleManager::SetLibrary(library);
        {
            const Window window;
            QCOMPARE(actionOf(*window, "style:A&B")->text(), QStringLiteral("A&&B"));
        }
        ZvStyleManager::SetLibrary(libzvutil::ZvStyleLibrary());
    }

    void windowMenuListsDocuments()
    {
        const Window window;
        window->openFiles({script("a&b.zvscr"), script("c.zvscr"), script("d.zvscr")});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QMenu* const menu = menuOf(*window, QStringLiteral("Window"));
        Q_EMIT menu->aboutToShow();
        QCOMPARE(menu->actions().at(3)->text(), QStringLiteral("a&&b.zvscr"));
        QVERIFY(menu->actions().at(5)->isChecked());
        menu->actions().at(4)->trigger();
        QCOMPARE(window->currentDocument()->shortTitle(), QStringLiteral("c.zvscr"));
        menu->actions().at(0)->trigger();
        QCOMPARE(window->currentDocument()->shortTitle(), QStringLiteral("d.zvscr"));
        menu->actions().at(0)->trigger();
        QCOMPARE(window->currentDocument()->shortTitle(), QStringLiteral("a&b.zvscr"));
        menu->actions().at(1)->trigger();
        QCOMPARE(window->currentDocument()->shortTitle(), QStringLiteral("d.zvscr"));
    }

    void recentFilesAreBoundedAndForgotten()
    {
        RecentFiles recent;
        QVERIFY(!recent.isEnabled());
        QSignalSpy requested(&recent, &RecentFiles::openRequested);
        for (int i = 0; i < 12; ++i)
            recent.add(QStringLiteral("/folder/%1.zvscr").arg(i));
        recent.add(QStringLiteral("/folder/5.zvscr"));
        QCOMPARE(recent.files().size(), 10);
        QCOMPARE(recent.files().first(), QStringLiteral("/folder/5.zvscr"));
        QCOMPARE(recent.files().last(), QStringLiteral("/folder/2.zvscr"));
        recent.actions().at(1)->trigger();
        QCOMPARE(requested.at(0).at(0).toString(), QStringLiteral("/folder/11.zvscr"));
        recent.actions().last()->trigger();
        QVERIFY(recent.files().isEmpty());
        QVERIFY(!recent.isEnabled());
    }

    void extensionIsAddedToNamesWithADot()
    {
        const Window window;
        const Document* const document = window->newDocument(*documentTypes().at(0));
        const QString dotted = m_folder->filePath(QStringLiteral("bridge v1.2"));
        {
            const zvtest::Answer<QFileDialog> answer = chooseFile(dotted);
            window->saveCurrentAs();
            QCOMPARE(answer.count, 1);
        }
        const QString file = dotted + QStringLiteral(".testplan");
        QCOMPARE(document->filename().toQString(),
                 filePath(QDir::toNativeSeparators(file)).toQString());
        QVERIFY(QFile::exists(file));
        // Then it may be the name of another file, for which the dialog hasn't asked.
        QVERIFY(zvtest::writeTo(file, "other"));
        QStringList questions;
        const zvtest::Answer<QFileDialog> choice = chooseFile(dotted);
        const zvtest::Answer<QMessageBox> no([&questions](QMessageBox& box) {
            questions.append(box.text());
            // What comes back is the dialog, which is given up.
            QTimer::singleShot(0, [] {
                QTRY_VERIFY(qobject_cast<QFileDialog*>(QApplication::activeModalWidget()));
                static_cast<QFileDialog*>(QApplication::activeModalWidget())->reject();
            });
            box.button(QMessageBox::No)->click();
        });
        window->saveCurrentAs();
        QCOMPARE(questions.size(), 1);
        QVERIFY(questions.constFirst().contains(QDir::toNativeSeparators(file)));
        QCOMPARE(zvtest::bytesOf(file), QByteArray("other"));
    }

    void renamedDocumentsKeepTheirExtension()
    {
        const Window window;
        QVERIFY(window->openFile(script("a.zvscr")));
        QString problem;
        bool isAccepted = true;
        const zvtest::Answer<FileNameDialog> answer([&](FileNameDialog& dialog) {
            dialog.findChild<QLineEdit*>(QStringLiteral("name"))->setText(QStringLiteral("b.txt"));
            problem = dialog.findChild<QLabel*>(QStringLiteral("problem"))->text();
            isAccepted =
                dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->isEnabled();
            dialog.reject();
        });
        window->renameCurrent();
        QCOMPARE(problem, QStringLiteral("The name has to end in “.zvscr”."));
        QVERIFY(!isAccepted);
    }

    void documentsWithoutAFileTellSo()
    {
        const Window window;
        window->newDocument(*documentTypes().at(2));
        window->renameCurrent();
        QCOMPARE(window->statusBar()->currentMessage(),
                 QStringLiteral("“Script 1” has no file yet. Save it first."));
        window->statusBar()->clearMessage();
        window->copyCurrentAsUri();
        QVERIFY(!window->statusBar()->currentMessage().isEmpty());
    }

    void failuresAreToldInOneBox()
    {
        const Window window;
        QStringList files;
        for (int i = 0; i < 12; ++i)
            files.append(script(qPrintable(QStringLiteral("%1.dat").arg(i))));
        files.append(script("good.zvscr"));
        window->openFiles(files);
        QCOMPARE(window->documents().size(), 1);
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QCOMPARE(window->findChildren<QMessageBox*>().size(), 1);
        QCOMPARE(box->text(), QStringLiteral("12 of the files can't be opened."));
        const QStringList lines = box->informativeText().split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 12);
        QVERIFY(lines.at(9).contains(QStringLiteral("9.dat")));
        QCOMPARE(lines.at(10), QStringLiteral("…"));
        dismiss(*box);
        // One alone is told as ever.
        window->openFiles({files.constFirst()});
        QMessageBox* const one = failureOf(*window);
        QVERIFY(one);
        QVERIFY(one->text().contains(QStringLiteral("0.dat")));
        dismiss(*one);
    }

    void tooManyFilesAreNotOpened()
    {
        const Window window;
        QStringList files;
        for (int i = 0; i < 51; ++i)
            files.append(m_folder->filePath(QStringLiteral("%1.zvscr").arg(i)));
        window->openFiles(files);
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QCOMPARE(box->text(), QStringLiteral("51 files are too many to open at once."));
        QCOMPARE(window->findChildren<QMessageBox*>().size(), 1);
        dismiss(*box);
    }

    void failuresShowNamesAsTheyAre()
    {
        const Window window;
        window->showFailure({QStringLiteral("<b>a</b>"), QStringLiteral("<i>b</i>"), {}});
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        int shown = 0;
        for (const QLabel* const label : box->findChildren<QLabel*>()) {
            if (label->text().startsWith(QLatin1Char('<'))) {
                QCOMPARE(label->textFormat(), Qt::PlainText);
                ++shown;
            }
        }
        QCOMPARE(shown, 2);
        dismiss(*box);
    }

    void windowClosesWhenAnExportHasEnded()
    {
        const QString source = script("a.zvscr");
        const QString target = m_folder->filePath(QStringLiteral("a.zvscr.z"));
        const QPointer<Workbench> window(new Workbench);
        window->show();
        QVERIFY(window->openFile(source));
        for (const QString& file : {target, m_folder->filePath(QStringLiteral("b.z"))})
            new CompressionTask(CompressionRequest::Direction::Compress, filePath(source),
                                filePath(file), window);
        // They can't have ended before events are handled. Nobody is that patient.
        QVERIFY(!window->close());
        QVERIFY(!window->close());
        QVERIFY(window->isVisible());
        const auto* const dialog = window->findChild<QProgressDialog*>();
        QVERIFY(dialog && dialog->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(!window, zvtest::longWait);
        QVERIFY(QFile::exists(target));
        QVERIFY(!QFile::exists(target + QStringLiteral(".part")));
        // The session is kept once.
        const Window next;
        QCOMPARE(namesOf(*next), QStringList{QStringLiteral("a.zvscr")});
    }

    void picturesOfAWindowInUseDoNotEndTheProgram()
    {
        const QString picture = m_folder->filePath(QStringLiteral("picture.png"));
        QCOMPARE(open({}), QString());
        QPointer<Workbench> window;
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (auto* const workbench = qobject_cast<Workbench*>(widget))
                window = workbench;
        }
        QVERIFY(window);
        QCOMPARE(open({QStringLiteral("--screenshot"), picture}), QString());
        // The end of the program would end the loop with another result.
        constexpr int isThere = 7;
        QEventLoop loop;
        QTimer timer;
        timer.callOnTimeout(&loop, [&] {
            if (QFile::exists(picture))
                loop.exit(isThere);
        });
        timer.start(10);
        QTimer::singleShot(zvtest::longWait, &loop, [&loop] { loop.exit(1); });
        QCOMPARE(loop.exec(), isThere);
        QVERIFY(window->isVisible());
        QVERIFY(window->close());
        QTRY_VERIFY(!window);
    }

    void stylesThatCantBeKeptAreToldOf()
    {
        using libzvutil::ZvStyleManager;
        const Window window;
        // A folder of that name is in the way.
        QVERIFY(QDir().mkpath(m_host->libraryFile()));
        libzvutil::ZvStyleLibrary library;
        library.update(ZvStyleManager::Library().light().duplicate("Mine"));
        ZvStyleManager::SetLibrary(library);
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QCOMPARE(box->text(), QStringLiteral("Your styles aren't kept for the next start."));
        QVERIFY(box->informativeText().contains(QStringLiteral("styles.xml")));
        dismiss(*box);
        QVERIFY(QDir().rmdir(m_host->libraryFile()));
        ZvStyleManager::SetLibrary(libzvutil::ZvStyleLibrary());
        QVERIFY(!window->findChild<QMessageBox*>());
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
            << words("--style Blue") << "There is no style “Blue”. There are: Light, Dark.";
        QTest::newRow("unknown type") << words("--new plan")
                                      << "There is no type of document “plan”. There are: "
                                         "testplan, schematic, script.";
        QTest::newRow("nothing behind")
            << words("a.zvscr --new") << "Something is missing behind “--new”.";
        QTest::newRow("unknown") << words("--what ever") << "“--what” isn't known.";
    }

    void arguments()
    {
        QFETCH(QStringList, words);
        QFETCH(QString, error);
        const Arguments arguments = Arguments::of(words);
        QCOMPARE(arguments.error, error);
        if (!error.isEmpty() || words.isEmpty())
            return;
        QCOMPARE(arguments.style, QStringLiteral("dark"));
        QCOMPARE(arguments.newDocuments.size(), std::size_t(2));
        QCOMPARE(arguments.newDocuments.at(1)->id, QStringLiteral("script"));
        QCOMPARE(arguments.picture, QDir::current().absoluteFilePath(QStringLiteral("p.png")));
        QCOMPARE(arguments.files,
                 QStringList{QDir::current().absoluteFilePath(QStringLiteral("a.zvscr"))});
    }

private:
    static QByteArray optionsOf(const zvtest::StyleHost& host)
    {
        return zvtest::bytesOf(host.path() + QStringLiteral("/options.ini"));
    }

    QString script(const char* name, const QByteArray& content = "print(1)") const
    {
        QFile file(m_folder->filePath(QString::fromUtf8(name)));
        if (file.open(QIODevice::WriteOnly))
            file.write(content);
        return file.fileName();
    }

    std::optional<zvtest::StyleHost> m_host;
    std::optional<QTemporaryDir> m_folder;
};

QTEST_MAIN(tst_workbench_window)
#include "tst_workbench_window.moc"
