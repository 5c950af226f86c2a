// The files of the workbench's window: opened, saved, renamed, and those that can't be.

#include "WindowTest.h"

#include "common/file_uri.h"
#include "common/path_names.h"
#include "documents/FileNameDialog.h"
#include "files/FilesPanel.h"
#include "script/ScriptDocument.h"
#include "search/FindInFilesDialog.h"
#include "shell/RecentFiles.h"
#include "shell/StartPage.h"
#include "support/Files.h"

#include <zvworkbench/Document.h>

#include <script/CodeEditor.h>

#include <support/Background.h>
#include <support/RefusedWrite.h>
#include <support/StyleHost.h>
#include <support/WindowResponder.h>
#include <support/Workbench.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <QUrl>

using zvtest::actionOf;
using zvtest::chooseFile;
using zvtest::dismiss;
using zvtest::failureOf;
using zvtest::longWait;
using zvtest::namesOf;
using zvtest::Window;
using namespace workbench;

class tst_workbench_window_files : public zvtest::WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void typesAreAddedOnce()
    {
        const std::vector<const DocumentType*> types = documentTypes();
        QCOMPARE(types.size(), std::size_t(4));
        addOwnDocumentTypes();
        QVERIFY(documentTypes() == types);
    }

    void newDocumentsAreCounted()
    {
        const Window window;
        for (const DocumentType* const type : documentTypes())
            actionOf(*window, qPrintable("new:" + type->id))->trigger();
        QCOMPARE(namesOf(*window),
                 (QStringList{"Test plan 1", "Schematic 2", "Script 3", "Text file 4"}));
        QCOMPARE(window->currentDocument()->type().id, QString("text"));
    }

    void aNewDocumentIsProposedByName()
    {
        const Window window;
        Document* const document = window->newDocument(*documentTypeOf("script"));
        QStringList proposals;
        const auto proposal = [&proposals](QFileDialog& dialog) {
            proposals.append(dialog.findChild<QLineEdit*>("fileNameEdit")->text());
            proposals.append(dialog.directory().absolutePath());
            dialog.findChild<QLineEdit*>("fileNameEdit")->setText("kept.zvscr");
            QMetaObject::invokeMethod(&dialog, "accept");
        };
        {
            const auto chooser = chooseFile(script("there.zvscr"));
            const zvtest::WindowResponder<QMessageBox> replace(
                [](QMessageBox& box) { box.button(QMessageBox::Yes)->click(); });
            document->save();
        }
        QCOMPARE(document->shortTitle(), QString("there.zvscr"));
        // The next new one goes beside it, with its own name.
        Document* const next = window->newDocument(*documentTypeOf("script"));
        {
            const zvtest::WindowResponder<QFileDialog> answer(proposal);
            next->save();
        }
        QCOMPARE(proposals, (QStringList{"Script 2.zvscr", QDir(m_folder->path()).absolutePath()}));
        QVERIFY(QFile::exists(m_folder->filePath("kept.zvscr")));
    }

    void aFileIsOpenOnce()
    {
        const Window window;
        const QString file = script("one.zvscr");
        Document* const document = window->openFile(file);
        QVERIFY(document);
        window->openFile(script("two.zvscr"));
        QVERIFY(window->currentDocument() != document);
        QCOMPARE(window->openFile(m_folder->path() + "/./one.zvscr"), document);
        QCOMPARE(window->currentDocument(), document);
        QCOMPARE(window->documents().size(), 2);
        QCOMPARE(window->recentFiles().files().size(), 2);
#if defined(Q_OS_UNIX)
        const QString link = m_folder->filePath("link.zvscr");
        QVERIFY(QFile::link(file, link));
        QCOMPARE(window->openFile(link), document);
#endif
    }

    void whatCantBeOpenedIsToldOf_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        QTest::newRow("missing") << "none.zvscr"
                                 << "The file does not exist.";
        QTest::newRow("no text") << "note.txt"
                                 << "It is not a text: it contains a NUL.";
        QTest::newRow("broken plan") << "bad.testplan"
                                     << "This is not a test plan (root element “nonsense”).";
    }

    void whatCantBeOpenedIsToldOf()
    {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        if (!name.startsWith("none"))
            script(qPrintable(name),
                   name == "note.txt" ? QByteArray("a\0b", 3) : QByteArray("<nonsense/>"));
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
        QVERIFY(window->findChild<workbench::StartPage*>());
    }

    void filesAreChosenInADialog()
    {
        const Window window;
        const QString file = script("chosen.zvscr");
        const zvtest::WindowResponder<QFileDialog> answer = chooseFile(file);
        actionOf(*window, "open")->trigger();
        QCOMPARE(answer.count, 1);
        QCOMPARE(namesOf(*window), QStringList{"chosen.zvscr"});
    }

    void savedDocumentsAreRecent()
    {
        const Window window;
        Document* const document = window->newDocument(*documentTypeOf("script"));
        const QString file = m_folder->filePath("new.zvscr");
        const zvtest::WindowResponder<QFileDialog> answer = chooseFile(file);
        actionOf(*window, "save")->trigger();
        QCOMPARE(answer.count, 1);
        QCOMPARE(document->shortTitle(), QString("new.zvscr"));
        QCOMPARE(window->recentFiles().files(), QStringList{file});
        QVERIFY(document->isFileWatcherEnabled());
    }

    void filesGetTheirExtension_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("saved");
        for (const DocumentType* const type : documentTypes()) {
            QTest::addRow("%s, none", qPrintable(type->id)) << type->id << "typed"
                                                            << "typed" + type->extension;
            QTest::addRow("%s, its own", qPrintable(type->id))
                << type->id << "typed" + type->extension << "typed" + type->extension;
        }
    }

    void filesGetTheirExtension()
    {
        QFETCH(QString, type);
        QFETCH(QString, name);
        QFETCH(QString, saved);
        const Window window;
        const Document* const document = window->newDocument(*documentTypeOf(type));
        const zvtest::WindowResponder<QFileDialog> answer = chooseFile(m_folder->filePath(name));
        window->commands().saveAs();
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
        QTest::keyClicks(&changed->editor(), "x");
        QVERIFY(changed->isModified());
        actionOf(*window, "saveAll")->trigger();
        QVERIFY(!changed->isModified());
        QCOMPARE(zvtest::contentOf(first), QByteArray("xa"));
        QCOMPARE(saved.size(), 0);
    }

    void renamesTheFile()
    {
        const QString file = script("before.zvscr", "a");
        const QString renamed = m_folder->filePath("after.zvscr");
        const Window window;
        Document* const document = window->openFile(file);
        const zvtest::WindowResponder<FileNameDialog> answer([](FileNameDialog& dialog) {
            dialog.findChild<QLineEdit*>()->setText("after.zvscr");
            dialog.accept();
        });
        actionOf(*window, "rename")->trigger();
        QCOMPARE(answer.count, 1);
        QVERIFY(!QFile::exists(file));
        QCOMPARE(zvtest::contentOf(renamed), QByteArray("a"));
        QCOMPARE(document->shortTitle(), QString("after.zvscr"));
        QVERIFY(document->isFileWatcherEnabled());
        QCOMPARE(window->openFile(renamed), document);
    }

    void copiesTheUri()
    {
        const QString file = script("with blank#1.zvscr");
        const Window window;
        window->openFile(file);
        actionOf(*window, "copyUri")->trigger();
        const QString uri = QGuiApplication::clipboard()->text();
        QVERIFY2(uri.startsWith("file:///"), qPrintable(uri));
        QVERIFY2(uri.endsWith("/with%20blank%231.zvscr"), qPrintable(uri));
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
        QTest::newRow("not ASCII") << "/ä"
                                   << "file:///%C3%A4";
    }

    void urisOfFiles()
    {
        QFETCH(QString, file);
        QFETCH(QString, uri);
        QCOMPARE(fileUri(file), uri);
    }

    void menusThatWereShownStillWork()
    {
        const Window window;
        // QMenu::clear(), by which menus are filled again, disconnects actions from their menu.
        for (QMenu* const menu : window->findChildren<QMenu*>())
            Q_EMIT menu->aboutToShow();
        actionOf(*window, "findInFiles")->trigger();
        QVERIFY(window->findChild<FindInFilesDialog*>());
        actionOf(*window, "new:script")->trigger();
        QVERIFY(window->currentDocument());
    }

    void hitsAreOpenedAtTheirLine()
    {
        const QString file = script("hit.zvscr", "one\ntwo\nthree needle\n");
        const Window window;
        window->filesPanel().addFolders({m_folder->path()});
        actionOf(*window, "findInFiles")->trigger();
        auto* const dialog = window->findChild<FindInFilesDialog*>();
        QVERIFY(dialog->isVisible());
        dialog->setText("needle");
        QSignalSpy ended(dialog, &FindInFilesDialog::searchEnded);
        dialog->find();
        QVERIFY(QTest::qWaitFor([&ended] { return !ended.isEmpty(); }, longWait));
        auto* const hits = dialog->findChild<QTreeView*>("hits");
        QCOMPARE(hits->model()->rowCount(), 1);
        Q_EMIT hits->doubleClicked(hits->model()->index(0, 0));
        auto* const opened = qobject_cast<ScriptDocument*>(window->currentDocument());
        QVERIFY(opened);
        QCOMPARE(opened->shortTitle(), QString("hit.zvscr"));
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
        QCOMPARE(window->currentDocument()->shortTitle(), QString("third.zvscr"));
    }

    void recentFilesAreBoundedAndForgotten()
    {
        RecentFiles recent;
        QVERIFY(!recent.isEnabled());
        QSignalSpy requested(&recent, &RecentFiles::openRequested);
        for (int i = 0; i < 12; ++i)
            recent.add(QString("/folder/%1.zvscr").arg(i));
        recent.add(QString("/folder/5.zvscr"));
        QCOMPARE(recent.files().size(), 10);
        QCOMPARE(recent.files().first(), QString("/folder/5.zvscr"));
        QCOMPARE(recent.files().last(), QString("/folder/2.zvscr"));
        recent.actions().at(1)->trigger();
        QCOMPARE(requested.at(0).at(0).toString(), QString("/folder/11.zvscr"));
        recent.actions().last()->trigger();
        QVERIFY(recent.files().isEmpty());
        QVERIFY(!recent.isEnabled());
    }

    void extensionIsAddedToNamesWithADot()
    {
        const Window window;
        const Document* const document = window->newDocument(*documentTypes().at(0));
        const QString dotted = m_folder->filePath("bridge v1.2");
        {
            const zvtest::WindowResponder<QFileDialog> answer = chooseFile(dotted);
            window->commands().saveAs();
            QCOMPARE(answer.count, 1);
        }
        const QString file = dotted + ".testplan";
        QCOMPARE(document->filename().toQString(),
                 filePath(QDir::toNativeSeparators(file)).toQString());
        QVERIFY(QFile::exists(file));
        // Then it may be the name of another file, for which the dialog hasn't asked.
        QVERIFY(zvtest::writeTo(file, "other"));
        QStringList questions;
        const zvtest::WindowResponder<QFileDialog> choice = chooseFile(dotted);
        const zvtest::WindowResponder<QMessageBox> no([&questions](QMessageBox& box) {
            questions.append(box.text());
            // What comes back is the dialog, which is given up.
            QTimer::singleShot(0, [] {
                QTRY_VERIFY(qobject_cast<QFileDialog*>(QApplication::activeModalWidget()));
                static_cast<QFileDialog*>(QApplication::activeModalWidget())->reject();
            });
            box.button(QMessageBox::No)->click();
        });
        window->commands().saveAs();
        QCOMPARE(questions.size(), 1);
        QVERIFY(questions.constFirst().contains(QDir::toNativeSeparators(file)));
        QCOMPARE(zvtest::contentOf(file), QByteArray("other"));
    }

    void renamedDocumentsKeepTheirExtension()
    {
        const Window window;
        QVERIFY(window->openFile(script("a.zvscr")));
        QString problem;
        bool isAccepted = true;
        const zvtest::WindowResponder<FileNameDialog> answer([&](FileNameDialog& dialog) {
            dialog.findChild<QLineEdit*>("name")->setText("b.txt");
            problem = dialog.findChild<QLabel*>("problem")->text();
            isAccepted =
                dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->isEnabled();
            dialog.reject();
        });
        window->commands().rename();
        QCOMPARE(problem, QString("The name must end with “.zvscr”."));
        QVERIFY(!isAccepted);
    }

    void documentsWithoutAFileTellSo()
    {
        const Window window;
        window->newDocument(*documentTypes().at(2));
        window->commands().rename();
        QCOMPARE(window->statusBar()->currentMessage(),
                 QString("“Script 1” has no file yet. Save it first."));
        window->statusBar()->clearMessage();
        window->commands().copyAsUri();
        QVERIFY(!window->statusBar()->currentMessage().isEmpty());
    }

    void failuresAreToldInOneBox()
    {
        const Window window;
        QStringList files;
        for (int i = 0; i < 12; ++i)
            files.append(script(qPrintable(QString("%1.dat").arg(i)), QByteArray("\0", 1)));
        files.append(script("good.zvscr"));
        window->openFiles(files);
        QCOMPARE(window->documents().size(), 1);
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QCOMPARE(window->findChildren<QMessageBox*>().size(), 1);
        QCOMPARE(box->text(), QString("12 files can't be opened."));
        const QStringList lines = box->informativeText().split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 12);
        QVERIFY(lines.at(9).contains("9.dat"));
        QCOMPARE(lines.at(10), QString("…"));
        dismiss(*box);
        // One alone is told as ever.
        window->openFiles({files.constFirst()});
        QMessageBox* const one = failureOf(*window);
        QVERIFY(one);
        QVERIFY(one->text().contains("0.dat"));
        dismiss(*one);
    }

    void tooManyFilesAreNotOpened()
    {
        const Window window;
        QStringList files;
        for (int i = 0; i < 51; ++i)
            files.append(m_folder->filePath(QString("%1.zvscr").arg(i)));
        window->openFiles(files);
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QCOMPARE(box->text(), QString("51 files are too many to open at once."));
        QCOMPARE(window->findChildren<QMessageBox*>().size(), 1);
        dismiss(*box);
    }

    void failuresShowNamesAsTheyAre()
    {
        const Window window;
        window->showFailure({"<b>a</b>", "<i>b</i>", {}});
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
};

QTEST_MAIN(tst_workbench_window_files)
#include "tst_workbench_window_files.moc"
