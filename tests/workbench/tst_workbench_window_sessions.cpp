// What the workbench's window keeps until it is opened again.

#include "WindowTest.h"

#include "common/path_names.h"
#include "common/style_options.h"
#include "files/FilesPanel.h"
#include "script/ScriptDocument.h"
#include "shell/RecentFiles.h"
#include "shell/Session.h"
#include "shell/Workbench.h"
#include "support/Files.h"

#include <DockFramework/DockableWidget.h>
#include <script/CodeEditor.h>

#include <HostSupport/saving.h>

#include <support/Background.h>
#include <support/RefusedWrite.h>
#include <support/StyleHost.h>
#include <support/WindowResponder.h>
#include <support/Workbench.h>

#include <QAction>
#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <QTimer>

#include <stdexcept>

using zvtest::actionOf;
using zvtest::chooseFile;
using zvtest::dismiss;
using zvtest::failureOf;
using zvtest::namesOf;
using zvtest::Window;
using namespace workbench;

namespace {

QMessageBox* shownBox()
{
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        auto* const box = qobject_cast<QMessageBox*>(widget);
        if (box && box->isVisible())
            return box;
    }
    return nullptr;
}

} // namespace

class tst_workbench_window_sessions : public zvtest::WindowTest
{
    Q_OBJECT

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
            window->saveCurrent();
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
            for (const QString& file : files) {
                auto* const document = qobject_cast<ScriptDocument*>(window->openFile(file));
                QTest::keyClicks(&document->editor(), "x");
            }
            int asked = 0;
            const auto discard = [&asked](QMessageBox& box) {
                ++asked;
                box.button(QMessageBox::Discard)->click();
            };
            // Documents that were closed before another asks are deleted later than that.
            QEventLoop loop;
            QTimer::singleShot(0, &loop, [&] {
                const zvtest::WindowResponder<QMessageBox> first(discard);
                const zvtest::WindowResponder<QMessageBox> second(discard);
                const zvtest::WindowResponder<QMessageBox> third(discard);
                loop.exit(window->close() ? 0 : 1);
            });
            const int result = loop.exec();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCOMPARE(result, 0);
            QCOMPARE(asked, 3);
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
