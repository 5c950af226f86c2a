// One day at the workbench, from end to end: the module as the host loads it, a real display, keys, the
// mouse, other programs. Each station leaves a picture of the screen.

#include "Ink.h"
#include "Printed.h"
#include "host_look.h"

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleEditor.h>
#include <zvutil/ZvStyleManager.h>

#include <HostSupport/host.h>

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QColorDialog>
#include <QDialog>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QGraphicsView>
#include <QLibrary>
#include <QLineEdit>
#include <QLocale>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPrinterInfo>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>

#include <support/WalkOracle.h>
#include <support/WindowResponder.h>
#include <support/Workbench.h>

#include "support/Files.h"

#include <algorithm>
#include <cstdio>
#include <memory>

using zvtest::longWait;

namespace {

constexpr int folders = 50;
constexpr int filesInEach = 1'000;

/// The folder of all that the journey leaves, for the process that comes back.
const char folderVariable[] = "ZV_JOURNEY_FOLDER";

/// 50,000 files in folders, and some documents.
bool makeTree(const QDir& root)
{
    for (int i = 0; i < folders; ++i) {
        const QString folder = root.filePath(QString("board %1").arg(i, 2, 10, QLatin1Char('0')));
        if (!QDir().mkpath(folder))
            return false;
        for (int j = 0; j < filesInEach; ++j) {
            if (!QFile(folder + QString("/part-%1.dat").arg(j)).open(QIODevice::WriteOnly))
                return false;
        }
    }
    const QDir examples(EXAMPLES "/workbench");
    for (const QString& name : examples.entryList(QDir::Files)) {
        if (!QFile::copy(examples.filePath(name), root.filePath("board 07/" + name)))
            return false;
    }
    return true;
}

/// The longest time between two events of a timer, while it lives.
class EventLoopDelays
{
public:
    EventLoopDelays()
    {
        m_timer.callOnTimeout(&m_timer,
                              [this] { m_longest = std::max(m_longest, m_clock.restart()); });
        m_clock.start();
        m_timer.start(0);
    }

    qint64 longest() const { return m_longest; }

private:
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_longest = 0;
};

QMainWindow* theWindow()
{
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        auto* const window = qobject_cast<QMainWindow*>(widget);
        if (window && window->objectName() == "workbench" && window->isVisible())
            return window;
    }
    return nullptr;
}

template <typename Widget>
Widget* part(const char* name)
{
    return theWindow()->findChild<Widget*>(QLatin1String(name));
}

void click(QWidget* widget, const QPoint& position = {})
{
    QTest::mouseClick(widget, Qt::LeftButton, {}, position);
}

/// Opens a menu of the menu bar by the mouse, and chooses by the mouse along the path of texts. Whether
/// all of them are there.
bool chooseInMenus(const QStringList& path)
{
    QMenuBar* const bar = theWindow()->menuBar();
    QMenu* menu = nullptr;
    for (QAction* const action : bar->actions()) {
        if (action->text().remove(QLatin1Char('&')) == path.first()) {
            click(bar, bar->actionGeometry(action).center());
            menu = action->menu();
        }
    }
    for (const QString& text : path.mid(1)) {
        if (!menu || !QTest::qWaitFor([menu] { return menu->isVisible(); }, longWait))
            return false;
        QAction* chosen = nullptr;
        for (QAction* const action : menu->actions()) {
            if (action->text().remove(QLatin1Char('&')) == text)
                chosen = action;
        }
        if (!chosen)
            return false;
        click(menu, menu->actionGeometry(chosen).center());
        menu = chosen->menu();
    }
    return true;
}

void typeIntoFileDialog(QFileDialog& dialog, const QString& path)
{
    dialog.findChild<QLineEdit*>("fileNameEdit")->setText(path);
    QMetaObject::invokeMethod(&dialog, "accept");
}

/// Another program that offers a table on the clipboard.
class Spreadsheet
{
public:
    explicit Spreadsheet(const QString& table)
    {
        m_process.start(PEER_FILE, {"offer", "text/plain", table});
        m_isReady = QTest::qWaitFor([this] { return m_process.canReadLine(); }, longWait)
            && QTest::qWaitFor([&table] { return QGuiApplication::clipboard()->text() == table; },
                               longWait);
    }

    ~Spreadsheet()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    Spreadsheet(const Spreadsheet&) = delete;
    Spreadsheet& operator=(const Spreadsheet&) = delete;

    bool isReady() const { return m_isReady; }

private:
    QProcess m_process;
    bool m_isReady = false;
};

/// The program at another time: one of the functions of this test in a process of its own, with the same folder.
class Return
{
public:
    Return(const char* function, const QDir& root)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QLatin1String(folderVariable), root.path());
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationFilePath(), {QLatin1String(function)});
    }

    /// Waits for its end. It waits itself, and for more than one thing.
    bool hasPassed()
    {
        return m_process.waitForFinished(3 * longWait)
            && m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    }

    /// Waits until it has printed \p word.
    bool tells(const char* word)
    {
        while (!output().contains(word)) {
            if (!m_process.waitForReadyRead(3 * longWait))
                return false;
        }
        return true;
    }

    bool kill()
    {
        m_process.kill();
        return m_process.waitForFinished(longWait) && m_process.exitStatus() == QProcess::CrashExit;
    }

    QByteArray output()
    {
        m_output += m_process.readAllStandardOutput();
        return m_output;
    }

private:
    QProcess m_process;
    QByteArray m_output;
};

void takePicture(const char* station)
{
    QTest::qWait(100);
    const QPixmap picture = QGuiApplication::primaryScreen()->grabWindow(0);
    QVERIFY(picture.save(QString(PICTURES "/journey-%1.png").arg(QLatin1String(station))));
}

} // namespace

class tst_workbench_journey : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // Nobody could type into a dialog of Windows from here.
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        useHostLook();
        const bool comesBack = qEnvironmentVariableIsSet(folderVariable);
        if (!comesBack)
            m_own = std::make_unique<QTemporaryDir>();
        m_root = QDir(comesBack ? qEnvironmentVariable(folderVariable) : m_own->path());
        host::setOptionsFile(m_root.filePath("options.ini").toStdString());
        host::setPathSymbol("ZVAPPDATAPATH", m_root.path().toStdString());
        if (!comesBack)
            QVERIFY(makeTree(m_root.filePath("boards")));
        QLibrary module(MODULE_FILE);
        QVERIFY2(module.load(), qPrintable(module.errorString()));
        host::callCommand("_workbench", {}, {}, {"journey", 0});
        QVERIFY(theWindow());
        theWindow()->setGeometry(0, 0, 1'280, 900);
    }

    /// There is no window manager that would do it, also when a dialog has closed.
    void init()
    {
        QMainWindow* const window = theWindow();
        if (!window)
            return;
        // The display takes the keyboard from a dialog that has closed, and would do so after we have given it.
        QGuiApplication::sync();
        QVERIFY(zvtest::activate(*window));
    }

    void opensInTheCurrentStyle()
    {
        QCOMPARE(libzvutil::ZvStyleManager::CurrentStyle().name().toQString(), QString("Light"));
        QVERIFY(!qApp->styleSheet().isEmpty());
        takePicture("1-start");
    }

    void listsAFolder()
    {
        const int rows = expectedRows();
        const EventLoopDelays delays;
        zvtest::WindowResponder<QFileDialog> answer(
            [this](QFileDialog& dialog) { typeIntoFileDialog(dialog, m_root.filePath("boards")); });
        auto* const add = part<QAction>("addFolder");
        for (QToolButton* const button : theWindow()->findChildren<QToolButton*>()) {
            if (button->defaultAction() == add)
                click(button);
        }
        QVERIFY(QTest::qWaitFor([&answer] { return answer.count == 1; }, longWait));
        QVERIFY(listsAllFiles(rows));
        qInfo("longest gap while listing: %lld ms", delays.longest());
        takePicture("2-listed");
    }

    void filters()
    {
        const EventLoopDelays delays;
        auto* const search = part<QLineEdit>("search");
        click(search);
        QTest::keyClicks(search, "part-77");
        // 77 and 770 to 779 of each folder.
        QVERIFY(showsFiles(11 * folders, QString("%1 of ").arg(11 * folders)));
        qInfo("longest gap while filtering: %lld ms", delays.longest());
        takePicture("3-filtered");
    }

    void opensATestPlan()
    {
        auto* const search = part<QLineEdit>("search");
        search->selectAll();
        QTest::keyClicks(search, "*.testplan");
        auto* const files = part<QAbstractItemView>("files");
        QVERIFY(QTest::qWaitFor([files] { return files->model()->rowCount() == 1; }, longWait));
        const QRect row = files->visualRect(files->model()->index(0, 0));
        QTest::mouseClick(files->viewport(), Qt::LeftButton, {}, row.center());
        QTest::mouseDClick(files->viewport(), Qt::LeftButton, {}, row.center());
        QVERIFY(QTest::qWaitFor([] { return part<QAbstractItemView>("testPlanView"); }, longWait));
        takePicture("4-test-plan");
    }

    void pastesATable()
    {
        const Spreadsheet spreadsheet("91\tMeasure the ripple\n92\tMeasure the noise");
        QVERIFY(spreadsheet.isReady());
        QVERIFY(zvtest::activate(*theWindow()));
        QAbstractItemView& view = plan();
        select(view, view.model()->rowCount() - 2, 0);
        QTest::keyClick(&view, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(textAt(view, view.model()->rowCount() - 2, 1), QString("Measure the ripple"));
        QCOMPARE(textAt(view, view.model()->rowCount() - 1, 0), QString("92"));
        takePicture("5-pasted");
    }

    void edits()
    {
        QAbstractItemView& view = plan();
        select(view, 0, 1);
        QTest::keyClicks(&view, "C");
        const QWidget* const field = view.viewport();
        QVERIFY(QTest::qWaitFor(
            [field] { return field->isAncestorOf(QApplication::focusWidget()); }, longWait));
        QWidget* const editor = QApplication::focusWidget();
        QTest::keyClicks(editor, "heck the fuse");
        QTest::keyClick(editor, Qt::Key_Return);
        QCOMPARE(textAt(view, 0, 1), QString("Check the fuse"));
        QCOMPARE(view.currentIndex().row(), 1);
        QVERIFY(isModified());
        takePicture("6-edited");
    }

    void saves()
    {
        QTest::keyClick(&plan(), Qt::Key_S, Qt::ControlModifier);
        QVERIFY(!isModified());
        QVERIFY(zvtest::contentOf(planFile()).contains("Check the fuse"));
        QVERIFY(zvtest::contentOf(planFile()).contains("Measure the noise"));
    }

    void noticesAChangeOutside()
    {
        QByteArray changed = zvtest::contentOf(planFile());
        changed.replace("Check the fuse", "Replace the fuse");
        QVERIFY(zvtest::writeTo(planFile(), changed));
        auto* const bar = plan().window()->findChild<QWidget*>("reloadBar");
        QVERIFY(bar);
        QWidget* shown = nullptr;
        QVERIFY(QTest::qWaitFor(
            [&shown] {
                for (QWidget* const each : theWindow()->findChildren<QWidget*>("reloadBar"))
                    shown = each->isVisible() ? each : shown;
                return shown != nullptr;
            },
            longWait));
        takePicture("7-changed-outside");
        for (QPushButton* const button : shown->findChildren<QPushButton*>()) {
            if (button->text().remove(QLatin1Char('&')) == "Reload")
                click(button);
        }
        QCOMPARE(textAt(plan(), 0, 1), QString("Replace the fuse"));
        QVERIFY(!shown->isVisible());
    }

    void findsInFiles()
    {
        const EventLoopDelays delays;
        QTest::keyClick(theWindow(), Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
        QDialog* dialog = nullptr;
        QVERIFY(QTest::qWaitFor(
            [&dialog] {
                for (QWidget* const widget : QApplication::topLevelWidgets()) {
                    auto* const found = qobject_cast<QDialog*>(widget);
                    dialog = found && found->isVisible() ? found : dialog;
                }
                return dialog != nullptr;
            },
            longWait));
        QVERIFY(zvtest::activate(*dialog));
        auto* const text = dialog->findChild<QLineEdit*>("text");
        QTest::keyClicks(text, "Replace the fuse");
        QTest::keyClick(text, Qt::Key_Return);
        const auto* const hits = dialog->findChild<QTreeView*>("hits");
        const auto* const status = dialog->findChild<QLineEdit*>("status");
        QVERIFY(QTest::qWaitFor([status] { return status->text().startsWith("1 line in 1 of "); },
                                longWait));
        QCOMPARE(hits->model()->rowCount(), 1);
        qInfo("longest gap while searching: %lld ms", delays.longest());
        takePicture("8-found");
        QTest::keyClick(dialog, Qt::Key_Escape);
        QVERIFY(QTest::qWaitFor([dialog] { return !dialog->isVisible(); }, longWait));
    }

    void printsToPdf()
    {
        const QString target = m_root.filePath("plan.pdf");
        const zvtest::WindowResponder<QMessageBox> noPrinter(
            [](QMessageBox& box) { box.defaultButton()->click(); });
        const zvtest::WindowResponder<QFileDialog> answer(
            [&target](QFileDialog& dialog) { typeIntoFileDialog(dialog, target); });
        // Nobody can tell what a printer prints, so one that is there isn't asked.
        const bool hasPrinter = !QPrinterInfo::availablePrinterNames().isEmpty();
        QGuiApplication::sync();
        QVERIFY(zvtest::activate(*theWindow()));
        QTest::keyClick(&plan(), hasPrinter ? Qt::Key_E : Qt::Key_P,
                        hasPrinter ? Qt::ControlModifier | Qt::ShiftModifier : Qt::ControlModifier);
        QCOMPARE(noPrinter.count, hasPrinter ? 0 : 1);
        QCOMPARE(answer.count, 1);
        QVERIFY(zvtest::contentOf(target).startsWith("%PDF-"));
        QVERIFY(!isModified());
        if (zvtest::pdfReader().isEmpty()) {
            qInfo("there is no pdftotext to read the PDF file");
            return;
        }
        const QStringList pages = zvtest::textOfPdf(target);
        const QString words = zvtest::wordsOf(pages.join(QLatin1Char(' ')));
        for (const char* const text :
             {"amplifier.testplan", "Replace the fuse", "92 Measure the noise", "Page 1 of "})
            QVERIFY2(words.contains(text), qPrintable(words));
    }

    // At most 1 % of the dark pixels of the picture and of what the view shows have none of the other's near.
    void exportsAPicture()
    {
        auto* const search = part<QLineEdit>("search");
        search->selectAll();
        QTest::keyClicks(search, "*.zvsch");
        auto* const files = part<QAbstractItemView>("files");
        QVERIFY(QTest::qWaitFor([files] { return files->model()->rowCount() == 1; }, longWait));
        const QRect row = files->visualRect(files->model()->index(0, 0));
        QTest::mouseClick(files->viewport(), Qt::LeftButton, {}, row.center());
        QTest::mouseDClick(files->viewport(), Qt::LeftButton, {}, row.center());
        QVERIFY(QTest::qWaitFor([] { return part<QGraphicsView>("schematicView"); }, longWait));
        auto* const view = part<QGraphicsView>("schematicView");
        const QString target = m_root.filePath("amplifier.svg");
        const zvtest::WindowResponder<QFileDialog> answer(
            [&target](QFileDialog& dialog) { typeIntoFileDialog(dialog, target); });
        QTest::keyClick(view, Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(answer.count, 1);
        const QByteArray svg = zvtest::contentOf(target);
        const QRect area = QSvgRenderer(svg).viewBox();
        const QImage drawn = zvtest::rendered(svg, 2 * area.size());
        const QImage shown = zvtest::rendered(*view->scene(), area, 2 * area.size());
        takePicture("8b-exported");
        QGuiApplication::sync();
        QVERIFY(zvtest::activate(*theWindow()));
        QVERIFY(zvtest::inkOf(shown) > 1'000);
        QVERIFY(zvtest::strayInk(shown, drawn) < 0.01);
        QVERIFY(zvtest::strayInk(drawn, shown) < 0.01);
        QTest::keyClick(view, Qt::Key_W, Qt::ControlModifier);
        QVERIFY(QTest::qWaitFor([] { return !part<QGraphicsView>("schematicView"); }, longWait));
    }

    void switchesStyles()
    {
        QVERIFY(chooseInMenus({"View", "Style", "Dark"}));
        QTRY_COMPARE_WITH_TIMEOUT(libzvutil::ZvStyleManager::CurrentStyle().name().toQString(),
                                  QString("Dark"), longWait);
        takePicture("9-dark");
    }

    void editsAStyle()
    {
        QVERIFY(chooseInMenus({"View", "Style Editor"}));
        libzvutil::ZvStyleEditor* editor = nullptr;
        QVERIFY(QTest::qWaitFor(
            [&editor] {
                for (QWidget* const widget : QApplication::topLevelWidgets()) {
                    if (auto* const found = qobject_cast<libzvutil::ZvStyleEditor*>(widget))
                        editor = found;
                }
                return editor != nullptr;
            },
            longWait));
        editor->setGeometry(120, 80, 900, 640);
        QVERIFY(zvtest::activate(*editor));
        auto* const tree = editor->findChild<QTreeView*>();
        const QModelIndex brushes = tree->model()->index(0, 0, QModelIndex());
        tree->expand(brushes);
        tree->setCurrentIndex(tree->indexBelow(brushes));
        tree->setFocus();
        const zvtest::WindowResponder<QColorDialog> answer([](QColorDialog& dialog) {
            dialog.setCurrentColor(QColor(0x10, 0x20, 0x38));
            dialog.accept();
        });
        QTest::keyClick(tree, Qt::Key_Return);
        QCOMPARE(answer.count, 1);
        takePicture("10-style-editor");
        for (QPushButton* const button : editor->findChildren<QPushButton*>()) {
            if (button->text() == "Apply")
                click(button);
        }
        QCOMPARE(libzvutil::ZvStyleManager::AvailableStyleNames().size(), 3);
        editor->close();
        QVERIFY(zvtest::activate(*theWindow()));
        const QString name = libzvutil::ZvStyleManager::AvailableStyleNames().last();
        QVERIFY(chooseInMenus({"View", "Style", name}));
        QVERIFY(qApp->styleSheet().contains("#ff102038"));
        takePicture("11-edited-style");
    }

    void closes()
    {
        const QPointer<QWidget> window = theWindow();
        QTest::keyClick(window, Qt::Key_Q, Qt::ControlModifier);
        QVERIFY(QTest::qWaitFor([&window] { return window.isNull(); }, longWait));
    }

    void findsTheSessionAgain()
    {
        Return next("sessionIsThere", m_root);
        QVERIFY2(next.hasPassed(), next.output().constData());
    }

    // The power fails while the user works on a script that has never been saved and on one that has.
    void isKilledInTheMiddleOfWork()
    {
        Return victim("worksUntilItIsKilled", m_root);
        QVERIFY(victim.tells("copied"));
        QVERIFY(victim.kill());
        Return next("changesAreRecovered", m_root);
        QVERIFY2(next.hasPassed(), next.output().constData());
        QVERIFY(zvtest::contentOf(scriptFile()).endsWith("// kept\n"));
    }

    /// This one and the next ones run in processes that come back.
    void sessionIsThere()
    {
        if (!qEnvironmentVariableIsSet(folderVariable))
            QSKIP("Checked by the process that comes back");
        // The edited style has been kept.
        QVERIFY(!libzvutil::ZvStyleManager::CurrentStyle().isDefaultStyle());
        QVERIFY(qApp->styleSheet().contains("#ff102038"));
        QCOMPARE(textAt(plan(), 0, 1), QString("Replace the fuse"));
        QVERIFY(listsAllFiles(expectedRows()));
        takePicture("12-next-day");
    }

    void worksUntilItIsKilled()
    {
        if (!qEnvironmentVariableIsSet(folderVariable))
            QSKIP("Done by the process that is killed");
        host::callCommand("_workbench", {"--new", "script"}, {}, {"journey", 0});
        QTest::keyClicks(script(), "// never saved");
        host::callCommand("_workbench", {scriptFile().toStdString()}, {}, {"journey", 0});
        QTest::keyClick(script(), Qt::Key_End, Qt::ControlModifier);
        QTest::keyClicks(script(), "// kept");
        QTest::keyClick(script(), Qt::Key_Return);
        QVERIFY(QTest::qWaitFor(
            [this] {
                const QByteArrayList copies = copiedScripts();
                return copies.size() == 2 && copies.join().contains("// never saved")
                    && copies.join().contains("// kept\n");
            },
            longWait));
        std::puts("copied");
        std::fflush(stdout);
        QTest::qWait(longWait);
        QFAIL("nobody has killed it");
    }

    void changesAreRecovered()
    {
        if (!qEnvironmentVariableIsSet(folderVariable))
            QSKIP("Checked by the process that comes back");
        auto* const dialog = theWindow()->findChild<QDialog*>();
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->windowTitle(), QString("Recover Documents"));
        QCOMPARE(dialog->findChild<QAbstractItemView*>("copies")->model()->rowCount(), 2);
        QVERIFY(zvtest::activate(*dialog));
        takePicture("13-recovery-offered");
        QTest::keyClick(dialog, Qt::Key_Return);
        QVERIFY(zvtest::activate(*theWindow()));
        QStringList texts;
        for (const auto* const text : theWindow()->findChildren<QPlainTextEdit*>("scriptText"))
            texts.append(text->toPlainText());
        QCOMPARE(texts.filter("// never saved").size(), 1);
        QCOMPARE(texts.filter("// kept\n").size(), 1);
        takePicture("14-recovered");
        QVERIFY(!zvtest::contentOf(scriptFile()).contains("// kept"));
        host::callCommand("_workbench", {scriptFile().toStdString()}, {}, {"journey", 0});
        QTest::keyClick(script(), Qt::Key_S, Qt::ControlModifier);
        QTRY_VERIFY_WITH_TIMEOUT(zvtest::contentOf(scriptFile()).endsWith("// kept\n"), longWait);
    }

private:
    /// Waits until the panel has so many rows and tells so.
    static bool showsFiles(int rows, const QString& beginOfStatus)
    {
        const auto* const status = part<QWidget>("Files")->findChild<QLineEdit*>("status");
        const auto* const model = part<QAbstractItemView>("files")->model();
        const bool isSo = QTest::qWaitFor(
            [&] { return model->rowCount() == rows && status->text().startsWith(beginOfStatus); },
            longWait);
        if (!isSo)
            qWarning("%d rows instead of %d: %s", model->rowCount(), rows,
                     qPrintable(status->text()));
        return isSo;
    }

    /// The scan passes over the folder that comes first, but not over what is in it, and ends with
    /// the one that comes last, as if that were a file; see the list model.
    int expectedRows() const { return zvtest::expectedRows({m_root.filePath("boards")}).size(); }

    static bool listsAllFiles(int rows)
    {
        const QLocale english(QLocale::English, QLocale::UnitedStates);
        return rows > folders * filesInEach && showsFiles(rows, english.toString(rows) + " files");
    }

    static QAbstractItemView& plan() { return *part<QAbstractItemView>("testPlanView"); }

    QString scriptFile() const { return m_root.filePath("boards/board 07/currents.zvscr"); }

    /// The editor of the current document.
    static QPlainTextEdit* script()
    {
        for (auto* const text : theWindow()->findChildren<QPlainTextEdit*>("scriptText")) {
            if (text->hasFocus())
                return text;
        }
        return nullptr;
    }

    /// The recovery copies of scripts.
    QByteArrayList copiedScripts() const
    {
        QByteArrayList copies;
        QDirIterator each(m_root.path(), {"*.zvscr"}, QDir::Files | QDir::Hidden,
                          QDirIterator::Subdirectories);
        while (each.hasNext()) {
            if (!each.next().startsWith(m_root.filePath("boards")))
                copies.append(zvtest::contentOf(each.filePath()));
        }
        return copies;
    }

    QString planFile() const { return m_root.filePath("boards/board 07/amplifier.testplan"); }

    static bool isModified() { return plan().parentWidget()->isWindowModified(); }

    static void select(QAbstractItemView& view, int row, int column)
    {
        const QModelIndex index = view.model()->index(row, column);
        view.scrollTo(index);
        click(view.viewport(), view.visualRect(index).center());
    }

    static QString textAt(const QAbstractItemView& view, int row, int column)
    {
        return view.model()->index(row, column).data().toString();
    }

    std::unique_ptr<QTemporaryDir> m_own;
    QDir m_root;
};

QTEST_MAIN(tst_workbench_journey)
#include "tst_workbench_journey.moc"
