// What users of Windows expect: backslashes, drives and shares, names that Windows refuses, long paths, files that
// another program holds open, files from the explorer.

#include "WindowTest.h"

#include "files/FilesPanel.h"
#include "support/ExclusiveFile.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QDropEvent>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QStatusBar>
#include <QUrl>

#include <cstring>
#include <string>

#include <shlobj.h>

using workbench::Document;
using workbench::documentTypeOf;
using zvtest::actionOf;
using zvtest::chooseFile;
using zvtest::dismiss;
using zvtest::failureOf;
using zvtest::longWait;
using zvtest::namesOf;
using zvtest::Window;

namespace {

void addTexts(QStringList& texts, const QAbstractItemView& view)
{
    const QAbstractItemModel* const model = view.model();
    for (int row = 0; model && row < model->rowCount(); ++row) {
        const QModelIndex index = model->index(row, 0);
        texts << index.data().toString() << index.data(Qt::ToolTipRole).toString();
    }
}

/// All that a user can read of the window.
QStringList textsOf(const workbench::Workbench& window)
{
    QStringList texts{window.windowTitle(), window.statusBar()->currentMessage()};
    for (const QWidget* const widget : window.findChildren<QWidget*>())
        texts << widget->toolTip() << widget->accessibleDescription()
              << (widget->isHidden() ? QString() : widget->windowTitle());
    for (const QLabel* const label : window.findChildren<QLabel*>())
        texts << label->text();
    for (const QLineEdit* const line : window.findChildren<QLineEdit*>())
        texts << line->text();
    for (const QAction* const action : window.findChildren<QAction*>())
        texts << action->text() << action->toolTip();
    for (const QMessageBox* const box : window.findChildren<QMessageBox*>())
        texts << box->text() << box->informativeText();
    for (const QAbstractItemView* const view : window.findChildren<QAbstractItemView*>())
        addTexts(texts, *view);
    return texts;
}

/// Puts files on the clipboard in the form in which the explorer hands them out there and in drags.
bool offerAsExplorer(const QStringList& files)
{
    std::wstring names;
    for (const QString& file : files)
        names += QDir::toNativeSeparators(file).toStdWString() + L'\0';
    names += L'\0';
    const DROPFILES head = {sizeof(DROPFILES), {}, FALSE, TRUE};
    const std::size_t size = names.size() * sizeof(wchar_t);
    const HGLOBAL data = GlobalAlloc(GMEM_MOVEABLE, sizeof(head) + size);
    auto* const bytes = static_cast<char*>(GlobalLock(data));
    std::memcpy(bytes, &head, sizeof(head));
    std::memcpy(bytes + sizeof(head), names.data(), size);
    GlobalUnlock(data);
    const bool isOffered =
        OpenClipboard(nullptr) && EmptyClipboard() && SetClipboardData(CF_HDROP, data);
    CloseClipboard();
    return isOffered;
}

} // namespace

class tst_workbench_window_native : public zvtest::WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void pathsHaveBackslashes()
    {
        const QString file = script("a.zvscr");
        const Window window;
        window->filesPanel().addFolders({m_folder->path()});
        QVERIFY(QTest::qWaitFor([&window] { return !window->isBusy(); }, longWait));
        Document* const document = window->openFile(file);
        QVERIFY(document);
        const zvtest::WindowResponder<QFileDialog> answer =
            chooseFile(m_folder->filePath("b.zvscr"));
        window->commands().saveAs();
        QVERIFY(!window->openFile(m_folder->filePath("missing.zvscr")));
        QVERIFY(failureOf(*window));
        const QString native = QDir::toNativeSeparators(m_folder->path());
        const QStringList texts = textsOf(*window);
        QVERIFY(texts.filter(native).size() > 5);
        const QStringList wrong = texts.filter(m_folder->path());
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join('\n')));
        dismiss(*failureOf(*window));
    }

    void failuresOfSavingHaveBackslashes()
    {
        const Window window;
        Document* const document = window->openFile(script("a.testplan", ""));
        QVERIFY(document);
        document->writeFile(workbench::filePath(m_folder->filePath("none/a.testplan")));
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        const QString folder = QDir::toNativeSeparators(m_folder->filePath("none"));
        QVERIFY2(box->informativeText().contains("“" + folder + "”"),
                 qPrintable(box->informativeText()));
        dismiss(*box);
    }

    void namesThatWindowsRefuses_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("problem");
        QTest::newRow("device") << "NUL"
                                << "“NUL.zvscr” is a reserved device name. Choose another name.";
        QTest::newRow("device, small letters")
            << "com1.zvscr"
            << "“com1.zvscr” is a reserved device name. Choose another name.";
        QTest::newRow("stream")
            << "a:b.zvscr"
            << "A name has at most 255 characters, and none of < > : \" / \\ | ? *";
    }

    void namesThatWindowsRefuses()
    {
        QFETCH(QString, name);
        QFETCH(QString, problem);
        const Window window;
        const Document* const document = window->newDocument(*documentTypeOf("script"));
        std::optional<zvtest::WindowResponder<QMessageBox>> told;
        std::optional<zvtest::WindowResponder<QFileDialog>> given;
        QString text;
        const zvtest::WindowResponder<QFileDialog> typed([&](QFileDialog& dialog) {
            told.emplace([&](QMessageBox& box) {
                text = box.text();
                given.emplace([](QFileDialog& again) { again.reject(); });
                box.accept();
            });
            dialog.findChild<QLineEdit*>("fileNameEdit")->setText(m_folder->path() + '/' + name);
            QMetaObject::invokeMethod(&dialog, "accept");
        });
        window->commands().saveAs();
        QCOMPARE(text, problem);
        QVERIFY(given && given->count == 1);
        QVERIFY(document->filename().isEmpty());
        QVERIFY(QDir(m_folder->path()).isEmpty());
    }

    void filesThatAreOpenElsewhere_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("script") << "a.zvscr";
        QTest::newRow("plan") << "a.testplan";
    }

    void filesThatAreOpenElsewhere()
    {
        QFETCH(QString, name);
        const QString file = script(qPrintable(name), "");
        const Window window;
        Document* const document = window->openFile(file);
        QVERIFY(document);
        zvtest::closeFiles();
        document->setModified(true);
        {
            const zvtest::ExclusiveFile held(file);
            QVERIFY(held.isOpen());
            document->save();
        }
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QVERIFY2(box->informativeText().contains("The file is open in another program."),
                 qPrintable(box->informativeText()));
        QVERIFY(document->isModified());
        dismiss(*box);
    }

    void drivesAndShares_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("text");
        QTest::newRow("drive") << "C:/"
                               << "C:\\";
        QTest::newRow("drive with a backslash") << "C:\\"
                                                << "C:\\";
        QTest::newRow("share") << "//nowhere/share"
                               << "\\\\nowhere\\share (can't be read)";
        QTest::newRow("share with backslashes") << "\\\\nowhere\\share\\"
                                                << "\\\\nowhere\\share (can't be read)";
    }

    void drivesAndShares()
    {
        QFETCH(QString, folder);
        QFETCH(QString, text);
        const Window window;
        window->filesPanel().addFolders({folder});
        const auto* const folders = window->filesPanel().findChild<QListWidget*>("folders");
        QCOMPARE(folders->count(), 1);
        QCOMPARE(folders->item(0)->text(), text);
    }

    void filesFromTheExplorerAreDropped()
    {
        if (QGuiApplication::platformName() != "windows")
            QSKIP("The clipboard of Windows belongs to its own platform");
        const QString file = script("a \u0436.zvscr");
        QVERIFY(offerAsExplorer({m_folder->path(), file}));
        const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
        QVERIFY(data->hasUrls());
        const Window window;
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, data, Qt::LeftButton, {});
        QDropEvent drop(QPoint(5, 5), Qt::CopyAction, data, Qt::LeftButton, {});
        QApplication::sendEvent(&window->filesPanel(), &enter);
        QVERIFY(enter.isAccepted());
        QApplication::sendEvent(&window->filesPanel(), &drop);
        QCOMPARE(window->filesPanel().folders(), QStringList{m_folder->path()});
        QTRY_VERIFY_WITH_TIMEOUT(window->currentDocument(), longWait);
        QCOMPARE(workbench::qtFileName(window->currentDocument()->filename()),
                 QDir::toNativeSeparators(file));
    }

    void longPaths()
    {
        QString folder = m_folder->path();
        while (folder.size() < 300)
            folder += "/a folder with a long name";
        QVERIFY(QDir().mkpath(folder));
        for (const char* const name : {"a.zvscr", "a.testplan", "a.zvsch"}) {
            const QString file = folder + '/' + QLatin1String(name);
            QVERIFY(zvtest::writeTo(file, ""));
            const Window window;
            Document* const document = window->openFile(file);
            QVERIFY2(document, name);
            zvtest::closeFiles();
            document->setModified(true);
            document->save();
            QVERIFY2(!document->isModified(), name);
            QVERIFY(window->findChildren<QMessageBox*>().isEmpty());
        }
        const Window window;
        window->filesPanel().addFolders({m_folder->path()});
        const auto* const files = window->filesPanel().findChild<QAbstractItemView*>("files");
        QVERIFY(QTest::qWaitFor(
            [files] {
                const QAbstractItemModel* const model = files->model();
                for (int row = 0; row < model->rowCount(); ++row) {
                    if (model->index(row, 0).data().toString().startsWith("a."))
                        return true;
                }
                return false;
            },
            longWait));
    }
};

QTEST_MAIN(tst_workbench_window_native)
#include "tst_workbench_window_native.moc"
