// Takes pictures of each of the workbench's windows on the present display, for people to look at.
//
//   window_pictures FOLDER NAME STYLE WIDTH HEIGHT [-reverse]
//
// They are called FOLDER/NAME-WINDOW.png. WIDTH and HEIGHT are those of the main window; -reverse lays everything out from
// right to left.

#include "common/translations.h"
#include "files/FilesPanel.h"
#include "recovery/RecoveryCopy.h"
#include "recovery/RecoveryDialog.h"
#include "script/CodeEditor.h"
#include "script/EditorDocument.h"
#include "search/FindInFilesDialog.h"
#include "shell/AboutDialog.h"
#include "shell/OptionsDialog.h"
#include "shell/SaveChangesDialog.h"
#include "shell/ShortcutsDialog.h"
#include "shell/Workbench.h"
#include "shell/document_types.h"

#include <zvworkbench/Document.h>

#include <DockFramework/DockableWidget.h>

#include <HostSupport/host.h>

#include <support/Files.h>
#include <support/StyleHost.h>
#include <support/Workbench.h>

#include <QAction>
#include <QApplication>
#include <QDateTime>
#include <QDialog>
#include <QDir>
#include <QLineEdit>
#include <QScreen>
#include <QTreeView>

#include <cstdio>

using namespace workbench;
using zvtest::longWait;

namespace {

/// The folder and the beginning of the name of each picture.
QString pictures;

void take(const char* name)
{
    // What has just been shown is painted after a while, and the server shows it later still.
    QTest::qWait(200);
    const QString file = QString("%1-%2.png").arg(pictures, QLatin1String(name));
    if (!QGuiApplication::primaryScreen()->grabWindow(0).save(file))
        qFatal("%s can't be written", qPrintable(file));
}

/// Shows a dialog in the middle of the window, takes its picture and closes it.
void takeDialog(const char* name, QDialog& dialog, const Workbench& window)
{
    dialog.show();
    dialog.move(window.geometry().center() - dialog.rect().center());
    zvtest::activate(dialog);
    take(name);
    dialog.close();
}

void takeDocuments(Workbench& window, const QString& folder)
{
    take("start");
    for (const char* const name : {"currents.zvscr", "amplifier.zvsch", "amplifier.testplan"})
        window.openFile(folder + '/' + QLatin1String(name));
    take("plan");
    window.openFile(folder + "/amplifier.zvsch");
    take("schematic");
    auto* const script = qobject_cast<EditorDocument*>(window.openFile(folder + "/currents.zvscr"));
    take("script");
    for (DockableWidget* const panel : window.panels())
        panel->show();
    script->findChild<QAction*>("replace")->trigger();
    QTest::keyClicks(script->findChild<QLineEdit*>("findText"), "current");
    take("find-bar-and-panels");
    script->findChild<QWidget*>("findBar")->hide();
}

void takeConflict(Workbench& window, const QString& folder)
{
    auto* const script = qobject_cast<EditorDocument*>(window.openFile(folder + "/currents.zvscr"));
    QTest::keyClicks(&script->editor(), "// ");
    if (!zvtest::writeTo(folder + "/currents.zvscr", "print(1)\n"))
        qFatal("the script can't be written");
    const bool isThere = QTest::qWaitFor(
        [&] {
            for (const QWidget* const bar : window.findChildren<QWidget*>("reloadBar")) {
                if (bar->isVisible())
                    return true;
            }
            return false;
        },
        longWait);
    if (!isThere)
        qFatal("there is no bar");
    take("conflict");
}

void takeSearch(Workbench& window)
{
    window.findInFiles();
    auto* const dialog = window.findChild<FindInFilesDialog*>();
    auto* const text = dialog->findChild<QLineEdit*>("text");
    text->setText("current");
    zvtest::activate(*dialog);
    QTest::keyClick(text, Qt::Key_Return);
    const auto* const hits = dialog->findChild<QTreeView*>("hits");
    if (!QTest::qWaitFor([hits] { return hits->model()->rowCount() > 0; }, longWait))
        qFatal("nothing is found");
    takeDialog("find-in-files", *dialog, window);
}

void takeDialogs(Workbench& window)
{
    takeSearch(window);
    OptionsDialog options(&window);
    takeDialog("options", options, window);
    AboutDialog about(&window);
    takeDialog("about", about, window);
    ShortcutsDialog shortcuts(window);
    takeDialog("shortcuts", shortcuts, window);
    SaveChangesDialog changes(window.documents(), &window);
    takeDialog("save-changes", changes, window);
    RecoveryCopy copy;
    copy.title = "amplifier.testplan";
    copy.file = "/home/me/boards/amplifier/amplifier.testplan";
    copy.written = QDateTime(QDate(2026, 3, 14), QTime(15, 9));
    RecoveryCopy other = copy;
    other.title = "Script 1";
    other.file.clear();
    RecoveryDialog recovery({copy, other}, &window);
    takeDialog("recovery", recovery, window);
    window.showFailure({"“/home/me/boards/filter.testplan” was not saved.", "The disk is full.",
                        "Free some space, or save it under another name."});
    take("failure");
    QApplication::activeModalWidget()->close();
    host::callCommand("_se", {}, {}, {"pictures", 0});
    take("style-editor");
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    if (words.size() != 6) {
        std::fputs("usage: window_pictures FOLDER NAME STYLE WIDTH HEIGHT [-reverse]\n", stderr);
        return 2;
    }
    const zvtest::StyleHost host;
    const QTemporaryDir files;
    pictures = words.at(1) + '/' + words.at(2);
    for (const QString& name : QDir(EXAMPLES "/workbench").entryList(QDir::Files))
        QFile::copy(EXAMPLES "/workbench/" + name, files.filePath(name));
    installTranslations();
    addOwnDocumentTypes();
    zvtest::showStyle(words.at(3));
    auto* const window = new Workbench;
    window->setGeometry(0, 0, words.at(4).toInt(), words.at(5).toInt());
    window->filesPanel().addFolders({files.path()});
    window->show();
    zvtest::activate(*window);
    takeDocuments(*window, files.path());
    takeConflict(*window, files.path());
    takeDialogs(*window);
    return 0;
}
