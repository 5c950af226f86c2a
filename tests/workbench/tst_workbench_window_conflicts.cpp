// Files that another program changes while they are open: no save overwrites them without a question.

#include "WindowTest.h"

#include "script/CodeEditor.h"
#include "script/ScriptDocument.h"
#include "shell/SaveChangesDialog.h"
#include "support/Files.h"

#include <support/StyleHost.h>
#include <support/WindowResponder.h>
#include <support/Workbench.h>

#include <QAction>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>

using zvtest::actionOf;
using zvtest::chooseFile;
using zvtest::contentOf;
using zvtest::longWait;
using zvtest::Window;
using zvtest::writeTo;
using namespace workbench;

namespace {

ScriptDocument* changed(Workbench& window, const QString& file)
{
    auto* const script = qobject_cast<ScriptDocument*>(window.openFile(file));
    QTest::keyClicks(&script->editor(), "x");
    return script;
}

/// Presses a button of the question about the changes of the other program.
zvtest::WindowResponder<QMessageBox> press(const QString& text)
{
    return zvtest::WindowResponder<QMessageBox>([text](QMessageBox& box) {
        QVERIFY2(box.text().endsWith("has been changed by another program."),
                 qPrintable(box.text()));
        for (QAbstractButton* const button : box.buttons()) {
            if (button->text().remove(QLatin1Char('&')) == text) {
                button->click();
                return;
            }
        }
        QFAIL("there is no such button");
    });
}

} // namespace

class tst_workbench_window_conflicts : public zvtest::WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void eachSaveAsks_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("isSaved");
        for (const char* const action : {"save", "saveAll"}) {
            QTest::addRow("%s, overwrite", action)
                << action << "Overwrite" << QByteArray("xmine") << true;
            QTest::addRow("%s, cancel", action)
                << action << "Cancel" << QByteArray("theirs") << false;
            QTest::addRow("%s, save as", action)
                << action << "Save As…" << QByteArray("theirs") << true;
        }
    }

    void eachSaveAsks()
    {
        QFETCH(QString, action);
        QFETCH(QString, answer);
        QFETCH(QByteArray, content);
        QFETCH(bool, isSaved);
        const QString file = script("a.zvscr", "mine");
        const QString other = m_folder->filePath("other.zvscr");
        const Window window;
        const Document* const document = changed(*window, file);
        QVERIFY(writeTo(file, "theirs"));
        {
            const auto name = chooseFile(other);
            const auto pressed = press(answer);
            actionOf(*window, qPrintable(action))->trigger();
            QCOMPARE(pressed.count, 1);
            QCOMPARE(name.count, answer == "Save As…" ? 1 : 0);
        }
        QCOMPARE(contentOf(file), content);
        QCOMPARE(document->isModified(), !isSaved);
        if (answer == "Save As…") {
            QCOMPARE(contentOf(other), QByteArray("xmine"));
            QCOMPARE(document->shortTitle(), QString("other.zvscr"));
        }
        // Once it is settled nobody asks again.
        if (isSaved) {
            QTest::keyClicks(&qobject_cast<ScriptDocument*>(window->currentDocument())->editor(),
                             "y");
            window->commands().save();
            QVERIFY(!document->isModified());
        }
    }

    // The bar is there, and the user has let it go.
    void savingAsksAlsoAfterTheBarIsIgnored()
    {
        const QString file = script("a.zvscr", "mine");
        const Window window;
        Document* const document = changed(*window, file);
        QSignalSpy told(document, &DockableWidgetContents::fileChangedOutside);
        QVERIFY(writeTo(file, "theirs"));
        QTRY_COMPARE_WITH_TIMEOUT(told.size(), 1, longWait);
        auto* const bar = document->parentWidget()->findChild<QWidget*>("reloadBar");
        QVERIFY(bar);
        for (QPushButton* const button : bar->findChildren<QPushButton*>()) {
            if (button->text() == "Ignore")
                button->click();
        }
        const auto pressed = press("Cancel");
        window->commands().save();
        QCOMPARE(pressed.count, 1);
        QCOMPARE(contentOf(file), QByteArray("theirs"));
    }

    void aFileOfTheSameSizeIsNoticed()
    {
        const QString file = script("a.zvscr", "mine");
        const QString other = script("b.zvscr", "them");
        const Window window;
        changed(*window, file);
        const QDateTime time = QFileInfo(file).lastModified();
        {
            QFile replacing(other);
            QVERIFY(replacing.open(QIODevice::ReadWrite));
            QVERIFY(replacing.setFileTime(time, QFileDevice::FileModificationTime));
        }
        QVERIFY(QFile::remove(file));
        QVERIFY(QFile::rename(other, file));
        QCOMPARE(QFileInfo(file).lastModified(), time);
        const auto pressed = press("Cancel");
        window->commands().save();
        QCOMPARE(pressed.count, 1);
        QCOMPARE(contentOf(file), QByteArray("them"));
    }

    void aFileThatIsGoneIsMadeAgain()
    {
        const QString file = script("a.zvscr", "mine");
        const Window window;
        const Document* const document = changed(*window, file);
        QVERIFY(QFile::remove(file));
        window->commands().save();
        QCOMPARE(contentOf(file), QByteArray("xmine"));
        QVERIFY(!document->isModified());
    }

    void aFileThatIsReadAgainIsKnown()
    {
        const QString file = script("a.zvscr", "mine");
        const Window window;
        Document* document = window->openFile(file);
        QVERIFY(writeTo(file, "theirs"));
        document->reloadFile();
        document = changed(*window, file);
        window->commands().save();
        QCOMPARE(contentOf(file), QByteArray("xtheirs"));
    }

    void renamedFilesAreKnown()
    {
        const QString file = script("a.zvscr", "mine");
        const Window window;
        ScriptDocument* const document = changed(*window, file);
        const QString renamed = m_folder->filePath("b.zvscr");
        QVERIFY(QFile::rename(file, renamed));
        document->setFilename(filePath(renamed));
        window->commands().save();
        QCOMPARE(contentOf(renamed), QByteArray("xmine"));
    }

    void quittingAsks()
    {
        const QString file = script("a.zvscr", "mine");
        Window window;
        changed(*window, file);
        QVERIFY(writeTo(file, "theirs"));
        {
            std::unique_ptr<zvtest::WindowResponder<QMessageBox>> pressed;
            const zvtest::WindowResponder<QMessageBox> save([&pressed](QMessageBox& box) {
                pressed.reset(new zvtest::WindowResponder<QMessageBox>(
                    [](QMessageBox& question) { question.button(QMessageBox::Cancel)->click(); }));
                box.button(QMessageBox::Save)->click();
            });
            QVERIFY(!window.close());
            QVERIFY(pressed);
            QCOMPARE(pressed->count, 1);
        }
        QCOMPARE(contentOf(file), QByteArray("theirs"));
        QCOMPARE(window->documents().size(), 1);
        // The same with several.
        changed(*window, script("b.zvscr", "b"));
        const zvtest::WindowResponder<SaveChangesDialog> several([](SaveChangesDialog& dialog) {
            dialog.findChild<QPushButton*>("saveSelected")->click();
        });
        const auto pressed = press("Cancel");
        QVERIFY(!window.close());
        QCOMPARE(pressed.count, 1);
        QCOMPARE(contentOf(file), QByteArray("theirs"));
        QCOMPARE(window->documents().size(), 2);
    }
};

QTEST_MAIN(tst_workbench_window_conflicts)
#include "tst_workbench_window_conflicts.moc"
