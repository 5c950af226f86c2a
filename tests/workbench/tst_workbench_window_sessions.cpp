// What the workbench's window keeps until it is opened again.

#include "WindowTest.h"

#include "common/path_names.h"
#include "common/style_options.h"
#include "files/FilesPanel.h"
#include "script/ScriptDocument.h"
#include "shell/RecentFiles.h"
#include "shell/SaveChangesDialog.h"
#include "shell/Session.h"
#include "shell/Workbench.h"
#include "support/Files.h"

#include <DockFramework/DockableWidget.h>
#include <script/CodeEditor.h>

#include <HostSupport/saving.h>

#include <zv_logging/host.h>
#include <zv_logging/zv_logging.h>

#include <support/Background.h>
#include <support/RefusedWrite.h>
#include <support/StyleHost.h>
#include <support/WindowResponder.h>
#include <support/Workbench.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QListWidget>
#include <QLockFile>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

using zvtest::actionOf;
using zvtest::chooseFile;
using zvtest::dismiss;
using zvtest::failureOf;
using zvtest::namesOf;
using zvtest::Window;
using namespace workbench;

namespace {

void click(const QDialog& dialog, const char* button)
{
    dialog.findChild<QPushButton*>(QLatin1String(button))->click();
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

/// Returns what locks call this machine, which isn't what else is told of it on Windows.
QString hostName()
{
    const QTemporaryDir folder;
    QLockFile lock(folder.filePath("lock"));
    qint64 process = 0;
    QString host;
    QString program;
    if (!lock.tryLock() || !lock.getLockInfo(&process, &host, &program))
        return {};
    return host;
}

} // namespace

class tst_workbench_window_sessions : public zvtest::WindowTest
{
    Q_OBJECT

    static void typeInto(Workbench& window, const QStringList& files)
    {
        for (const QString& file : files) {
            auto* const document = qobject_cast<ScriptDocument*>(window.openFile(file));
            QTest::keyClicks(&document->editor(), "x");
        }
    }

    static QSettings& settings()
    {
        static std::optional<QSettings> settings;
        settings.emplace(sessionFile(), host::settingsFormat());
        return *settings;
    }

    static QStringList sessionFiles() { return settings().value("Session/files").toStringList(); }

private Q_SLOTS:
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
        QCOMPARE(namesOf(*window), (QStringList{"a.zvscr", "b.zvscr"}));
        QCOMPARE(window->currentDocument()->shortTitle(), QString("a.zvscr"));
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
                window->newDocument(*documentTypeOf("script"))->parentWidget()->parentWidget());
            QVERIFY(dock);
            dock->setFloating(true);
            // Under the name that it gets now.
            const zvtest::WindowResponder<QFileDialog> answer =
                chooseFile(m_folder->filePath("float.zvscr"));
            window->commands().save();
            QCOMPARE(answer.count, 1);
            QVERIFY(window->openFile(file));
        }
        const Window window;
        QCOMPARE(namesOf(*window).size(), 2);
        for (const DockableWidget* const dock : window->dockableWidgets()) {
            if (dock->contents()->isContentWidget())
                QCOMPARE(dock->isFloating(), dock->contents()->getShortName() == "float.zvscr");
        }
    }

    void sessionKeepsWhatWasAskedAbout()
    {
        const QStringList files = {script("a.zvscr"), script("b.zvscr"), script("c.zvscr")};
        {
            Window window;
            typeInto(*window, files);
            const zvtest::WindowResponder<SaveChangesDialog> answer(
                [](SaveChangesDialog& dialog) { click(dialog, "dontSave"); });
            QVERIFY(window.close());
            QCOMPARE(answer.count, 1);
        }
        const Window window;
        QCOMPARE(namesOf(*window), (QStringList{"a.zvscr", "b.zvscr", "c.zvscr"}));
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
        QTest::keyClicks(&document->editor(), "x");
        QString question;
        const zvtest::WindowResponder<QMessageBox> answer([button, &question](QMessageBox& box) {
            question = box.text();
            box.button(static_cast<QMessageBox::StandardButton>(button))->click();
        });
        QCOMPARE(window.close(), closes);
        QCOMPARE(answer.count, 1);
        QCOMPARE(question, QString("Save the changes to “a.zvscr”?"));
        QCOMPARE(zvtest::contentOf(file), content);
        if (!closes) // Nothing has been closed.
            QCOMPARE(window->documents().size(), 2);
    }

    void severalChangesAreAskedAboutAtOnce_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<bool>("closes");
        QTest::addColumn<QByteArray>("first");
        QTest::addColumn<QByteArray>("second");
        const QByteArray a = "a";
        QTest::newRow("save all that are ticked") << "saveSelected" << true << "x" + a << a;
        QTest::newRow("save nothing") << "dontSave" << true << a << a;
        QTest::newRow("cancel") << "" << false << a << a;
    }

    // The second one isn't ticked.
    void severalChangesAreAskedAboutAtOnce()
    {
        QFETCH(QString, button);
        QFETCH(bool, closes);
        QFETCH(QByteArray, first);
        QFETCH(QByteArray, second);
        const QStringList files = {script("a.zvscr", "a"), script("b.zvscr", "a")};
        Window window;
        window->openFile(script("unchanged.zvscr"));
        typeInto(*window, files);
        QStringList listed;
        const zvtest::WindowResponder<SaveChangesDialog> answer([&](SaveChangesDialog& dialog) {
            auto* const list = dialog.findChild<QListWidget*>("documents");
            for (int row = 0; row < list->count(); ++row)
                listed.append(list->item(row)->text());
            list->item(1)->setCheckState(Qt::Unchecked);
            QVERIFY(QDir().mkpath(QString::fromLatin1(PICTURES)));
            QVERIFY(dialog.grab().save(PICTURES "/workbench-save-changes.png"));
            if (button.isEmpty())
                dialog.reject();
            else
                click(dialog, qPrintable(button));
        });
        QCOMPARE(window.close(), closes);
        QCOMPARE(answer.count, 1);
        QCOMPARE(listed, (QStringList{"a.zvscr", "b.zvscr"}));
        QCOMPARE(zvtest::contentOf(files.at(0)), first);
        QCOMPARE(zvtest::contentOf(files.at(1)), second);
        if (closes)
            return;
        QCOMPARE(window->documents().size(), 3);
        QVERIFY(window->documents().at(1)->isModified());
        QVERIFY(window->documents().at(2)->isModified());
    }

    // A save that fails or is given up keeps all documents open.
    void nothingClosesAfterASaveThatFailed()
    {
        const QStringList files = {script("a.zvscr", "a"), script("b.zvscr", "b")};
        Window window;
        typeInto(*window, files);
        auto* const untitled =
            qobject_cast<ScriptDocument*>(window->newDocument(*documentTypeOf("script")));
        QTest::keyClicks(&untitled->editor(), "new");
        {
            const zvtest::WindowResponder<SaveChangesDialog> answer(
                [](SaveChangesDialog& dialog) { click(dialog, "saveSelected"); });
            // The user gives up choosing a name.
            const zvtest::WindowResponder<QFileDialog> name(
                [](QFileDialog& dialog) { dialog.reject(); });
            QVERIFY(!window.close());
            QCOMPARE(name.count, 1);
        }
        QCOMPARE(window->documents().size(), 3);
        QCOMPARE(zvtest::contentOf(files.at(0)), QByteArray("xa"));
        QVERIFY(untitled->isModified());
        typeInto(*window, files);
        {
            const zvtest::WindowResponder<SaveChangesDialog> answer(
                [](SaveChangesDialog& dialog) { click(dialog, "saveSelected"); });
            const zvtest::RefusedWrite refused(1);
            QVERIFY(!window.close());
        }
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        dismiss(*box);
        QCOMPARE(window->documents().size(), 3);
        QCOMPARE(zvtest::contentOf(files.at(0)), QByteArray("xa"));
    }

    void sessionsThatCantBeKeptAreToldOf()
    {
        host::setOptionsFile(m_folder->filePath("file/options.ini").toStdString());
        script("file", "no folder");
        Window window;
        QVERIFY(window.close());
        QMessageBox* const box = shownBox();
        QVERIFY(box);
        QVERIFY(box->informativeText().contains("workbench.ini"));
        dismiss(*box);
    }

    void fullDiskLeavesTheSessionAsItWas()
    {
        const QString name = sessionFile();
        {
            QSettings settings(name, host::settingsFormat());
            settings.setValue("Other/long",
                              QString(2 * zvtest::RefusedWrite::limit, QLatin1Char('x')));
        }
        const QByteArray before = zvtest::contentOf(name);
        {
            Window window;
            window->openFile(script("a.zvscr"));
            const zvtest::RefusedWrite refused;
            QVERIFY(window.close());
        }
        QCOMPARE(zvtest::contentOf(name), before);
        QMessageBox* const box = shownBox();
        QVERIFY(box);
        dismiss(*box);
    }

    void sessionIsWrittenAsItChanges()
    {
        auto* const window = new Workbench;
        window->restoreSession();
        const QString file = script("a.zvscr");
        QVERIFY(window->openFile(file));
        QTRY_VERIFY_WITH_TIMEOUT(sessionFiles() == QStringList{file}, zvtest::longWait);
        QVERIFY(settings().value("recentFiles").toStringList() == QStringList{file});
        window->commands().close();
        QTRY_VERIFY_WITH_TIMEOUT(sessionFiles().isEmpty(), zvtest::longWait);
        // As in a crash nothing is closed.
        QVERIFY(window->openFile(file));
        QTRY_VERIFY_WITH_TIMEOUT(sessionFiles() == QStringList{file}, zvtest::longWait);
        delete window;
        const Window next;
        QCOMPARE(namesOf(*next), QStringList{"a.zvscr"});
    }

#if defined(Q_OS_UNIX)
    void sessionIsForItsUserAlone()
    {
        const QFile::Permissions own =
            QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
        QVERIFY(zvtest::writeTo(sessionFile(), ""));
        QVERIFY(QFile::setPermissions(sessionFile(), own | QFile::ReadGroup | QFile::ReadOther));
        Window().close();
        QCOMPARE(QFile::permissions(sessionFile()), own);
        QVERIFY(QFile::remove(sessionFile()));
        Window().close();
        QCOMPARE(QFile::permissions(sessionFile()), own);
    }
#endif

    void theFirstOfTwoWindowsOwnsTheSession()
    {
        const QString file = script("a.zvscr");
        const QString other = script("b.zvscr");
        {
            const Window before;
            QVERIFY(before->openFile(file));
        }
        Window owner;
        QCOMPARE(namesOf(*owner), QStringList{"a.zvscr"});
        {
            Window second;
            QVERIFY(second->statusBar()->currentMessage().startsWith("Another workbench is open"));
            // Each file is open once, or two programs would save it.
            QCOMPARE(namesOf(*second), QStringList());
            QVERIFY(second->openFile(other));
            // Look before it closes, which closes the other one, too.
            second->keepWork();
            QVERIFY(!sessionFiles().contains(other));
            QVERIFY(second.close());
        }
        QVERIFY(owner.close());
        QCOMPARE(sessionFiles(), QStringList{file});
        // Both have put their files there, the one that was written first below.
        QCOMPARE(settings().value("recentFiles").toStringList(), (QStringList{file, other}));
        const Window next;
        QVERIFY(!next->statusBar()->currentMessage().startsWith("Another workbench"));
    }

    // Nobody is asked at a start whether the system shall open a file.
    void filesThatAreNoTextsAnyMoreAreSkipped()
    {
        add_sink(2);
        const QString file = script("notes.md", "text");
        const QString other = script("a.zvscr");
        {
            const Window window;
            window->openFiles({file, other});
        }
        QVERIFY(zvtest::writeTo(file, QByteArray("\0\1\2", 3)));
        const Window window;
        QCOMPARE(namesOf(*window), QStringList{"a.zvscr"});
        QVERIFY(!shownBox());
        const std::vector<zvutil::logging::host::Record> lines = zvutil::logging::host::records();
        QVERIFY(std::any_of(lines.begin(), lines.end(), [](const auto& line) {
            return line.text.find("notes.md") != std::string::npos
                && line.text.find("neither a document") != std::string::npos;
        }));
    }

    void ownersThatHaveCrashedAreFollowed()
    {
        // The number of a process that can't be there.
        QVERIFY(zvtest::writeTo(QFileInfo(sessionFile()).path() + "/workbench.owner",
                                "2147483646\ntst_workbench\n" + hostName().toUtf8() + "\n"));
        const QString file = script("a.zvscr");
        Window window;
        QCOMPARE(window->statusBar()->currentMessage(), QString());
        QVERIFY(window->openFile(file));
        QVERIFY(window.close());
        QCOMPARE(sessionFiles(), QStringList{file});
    }

    void picturesLeaveTheSessionAlone()
    {
        auto* const window = new Workbench;
        window->restoreSession(workbench::WindowSession::Use::Look);
        QVERIFY(window->openFile(script("a.zvscr")));
        const auto* const timer = window->findChild<QTimer*>("sessionTimer");
        QVERIFY(timer);
        QVERIFY(!timer->isActive());
        delete window;
        QVERIFY(!QFile::exists(sessionFile()));
    }

    void choicesThatCantBeKeptAreToldOf()
    {
        host::setOptionsFile(m_folder->filePath("file/options.ini").toStdString());
        script("file", "no folder");
        Workbench window;
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        actionOf(window, "style:Dark")->trigger();
        QCOMPARE(currentStyleName(), QString("Dark"));
        QMessageBox* const box = failureOf(window);
        QVERIFY(box);
        QVERIFY(box->informativeText().contains("options.ini"));
        dismiss(*box);
        // An accent is shown as well, though it isn't kept.
        QVERIFY_EXCEPTION_THROWN(chooseAccent(QColor(0x10, 0x7C, 0x10)), std::runtime_error);
        QVERIFY(qApp->styleSheet().contains("#ff107c10"));
        showStyle("Light");
    }
};

QTEST_MAIN(tst_workbench_window_sessions)
#include "tst_workbench_window_sessions.moc"
