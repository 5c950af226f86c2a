// The panel with the files of the user's folders, and what it is made of.

#include "common/StatusLine.h"
#include "files/FileItemDelegate.h"
#include "files/FilesPanel.h"
#include "files/FilteredFilesModel.h"
#include "files/NamePattern.h"
#include "files/RowFilter.h"
#include "files/TypesBox.h"

#include <zvutil/ZvMultiDirectoryListModel.h>
#include <zvutil/ZvSearchBar.h>

#include "shell/document_types.h"
#include "support/Answer.h"
#include "support/FileTree.h"
#include "support/StyleHost.h"
#include "support/Workbench.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QRegExp>
#include <QSettings>
#include <QSignalSpy>
#include <QStringListModel>
#include <QTest>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QToolButton>
#include <QToolTip>
#include <QUrl>

#include <memory>
#include <random>

using namespace workbench;
using namespace zvtest::literals;
using zvtest::longWait;

namespace {

// Wine looks at all files of a folder whenever one is made.
#if defined(ZV_SANITIZED) || defined(Q_OS_WIN)
constexpr int manyFiles = 4'000;
#else
constexpr int manyFiles = 20'000;
#endif

/// What the library's list model finds, with repetitions of the row before left out.
QStringList listed(const QStringList& folders, const QStringList& types = {})
{
    ZvMultiDirectoryListModel model;
    QSignalSpy stopped(&model, &ZvMultiDirectoryListModel::backgroundProcessStopped);
    model.setAllowedFileTypes(types);
    for (const QString& folder : folders)
        model.addDirectory(folder);
    // One scan comes by itself, and one for each call.
    const int scans = 2 + folders.size();
    if (!QTest::qWaitFor([&] { return stopped.count() == scans; }, longWait))
        qFatal("the scans don't end");
    QStringList rows;
    for (int row = 0; row < model.rowCount({}); ++row) {
        const QString path = model.index(row).data().toString();
        if (rows.isEmpty() || rows.last() != path)
            rows.append(path);
    }
    return rows;
}

/// Said once more, in another way than the filter's own.
QStringList matching(const QStringList& paths, const QString& text)
{
    QStringList result;
    const bool isWildcard = text.contains(QLatin1Char('*')) || text.contains(QLatin1Char('?'));
    const QRegExp wildcard(text, Qt::CaseInsensitive, QRegExp::WildcardUnix);
    for (const QString& path : paths) {
        const QString name = QFileInfo(path).fileName();
        if (isWildcard ? wildcard.exactMatch(name) : name.toLower().contains(text.toLower()))
            result.append(path);
    }
    return result;
}

/// The panel with names for what a user sees.
class Panel
{
public:
    Panel()
    {
        panel->resize(320, 600);
        panel->show();
        QApplication::setActiveWindow(panel.get());
    }

    template <typename Widget>
    Widget* child(const QString& name) const
    {
        return panel->findChild<Widget*>(name);
    }

    /// Shortcuts need it.
    bool activate() const { return zvtest::activate(*panel); }

    ZvSearchBar* search() const { return child<ZvSearchBar>("search"_q); }
    QListView* view() const { return child<QListView>("files"_q); }
    QListWidget* folders() const { return child<QListWidget>("folders"_q); }
    StatusLine* status() const { return child<StatusLine>("status"_q); }
    QToolButton* stop() const { return child<QToolButton>("stop"_q); }
    TypesBox* types() const { return child<TypesBox>("types"_q); }

    QStringList shown() const
    {
        const auto* const model = qobject_cast<FilteredFilesModel*>(view()->model());
        QStringList paths;
        for (int row = 0; row < model->rowCount(); ++row)
            paths.append(model->path(model->index(row)));
        return paths;
    }

    QAction* action(const QString& text) const
    {
        for (QAction* const action : panel->findChildren<QAction*>()) {
            if (action->text() == text)
                return action;
        }
        qFatal("there is no such action");
    }

    /// Waits until all is as it has to be in the end.
    bool comesToShow(const QStringList& paths) const
    {
        return QTest::qWaitFor([&] { return !panel->isWorking() && shown() == paths; }, longWait);
    }

    std::unique_ptr<FilesPanel> panel = std::make_unique<FilesPanel>();
};

/// Counts the events of one type that an object gets.
class EventCounter : public QObject
{
public:
    EventCounter(QObject& watched, QEvent::Type type)
        : m_type(type)
    {
        watched.installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        count += event->type() == m_type ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

    int count = 0;

private:
    QEvent::Type m_type;
};

QStringList rowsOf(const FilteredFilesModel& model)
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row)
        rows.append(model.path(model.index(row)));
    return rows;
}

/// Joins a filter and the model that shows its hits, as the panel does.
void join(RowFilter& filter, FilteredFilesModel& model)
{
    QObject::connect(&filter, &RowFilter::begun, &model, &FilteredFilesModel::clear);
    QObject::connect(&filter, &RowFilter::found, &model, &FilteredFilesModel::append);
}

} // namespace

class tst_workbench_files : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { addOwnDocumentTypes(); }

    void patterns_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("matches");
        QTest::newRow("empty") << ""_q
                               << "a.txt"_q << true;
        QTest::newRow("empty name") << "a"_q
                                    << ""_q << false;
        QTest::newRow("contained") << "lan"_q
                                   << "Plan.txt"_q << true;
        QTest::newRow("other case") << "PLAN"_q
                                    << "my plan.txt"_q << true;
        QTest::newRow("other case, wildcard") << "*PLAN*"_q
                                              << "my plan.txt"_q << true;
        QTest::newRow("umlaut") << "ÄR"_q
                                << "bär.txt"_q << true;
        QTest::newRow("umlaut, wildcard") << "*ÄR.txt"_q
                                          << "bär.txt"_q << true;
        QTest::newRow("not contained") << "plane"_q
                                       << "plan.txt"_q << false;
        QTest::newRow("star at the end is the whole name") << "lan*"_q
                                                           << "plan.txt"_q << false;
        QTest::newRow("extension") << "*.txt"_q
                                   << "plan.txt"_q << true;
        QTest::newRow("not at the end") << "*.txt"_q
                                        << "plan.txt.bak"_q << false;
        QTest::newRow("one character") << "plan?.txt"_q
                                       << "plan1.txt"_q << true;
        QTest::newRow("no character") << "plan?.txt"_q
                                      << "plan.txt"_q << false;
        QTest::newRow("pair is one character") << "a?b"_q
                                               << "a😀b"_q << true;
        QTest::newRow("pair isn't two characters") << "a??b"_q
                                                   << "a😀b"_q << false;
        QTest::newRow("star takes nothing") << "a*b"_q
                                            << "ab"_q << true;
        QTest::newRow("star goes back") << "*ab*b"_q
                                        << "aabab"_q << true;
        QTest::newRow("stars alone") << "**"_q
                                     << ""_q << true;
        QTest::newRow("question mark at the end") << "ab?"_q
                                                  << "ab"_q << false;
        QTest::newRow("brackets are text") << "[a]"_q
                                           << "x[a].txt"_q << true;
        QTest::newRow("brackets are text, wildcard") << "*[a]*"_q
                                                     << "a.txt"_q << false;
        QTest::newRow("backslash is text") << R"(a\*)"_q
                                           << "a*"_q << false;
        QTest::newRow("blanks count") << "a b"_q
                                      << "ab"_q << false;
    }

    void patterns()
    {
        QFETCH(QString, pattern);
        QFETCH(QString, name);
        QTEST(NamePattern(pattern).matches(name), "matches");
    }

    void longPatternsTakeNoTime()
    {
        const QString name(2'000, QLatin1Char('a'));
        const QString stars = "*a"_q.repeated(500);
        QVERIFY(NamePattern(stars).matches(name));
        QVERIFY(!NamePattern(stars + QLatin1Char('b')).matches(name));
    }

    void namesAndFolders_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("name");
        QTest::newRow("usual") << "/a/b.txt"_q
                               << "/a"_q
                               << "b.txt"_q;
        QTest::newRow("root") << "/b.txt"_q
                              << "/"_q
                              << "b.txt"_q;
        QTest::newRow("name alone") << "b.txt"_q
                                    << ""_q
                                    << "b.txt"_q;
        QTest::newRow("empty") << ""_q
                               << ""_q
                               << ""_q;
    }

    void namesAndFolders()
    {
        QFETCH(QString, path);
        QTEST(folderOf(path).toString(), "folder");
        QTEST(fileNameOf(path).toString(), "name");
    }

    void typedTypes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("types");
        QTest::newRow("none") << ""_q << QStringList();
        QTest::newRow("dot") << ".txt"_q << QStringList{".txt"_q};
        QTest::newRow("no dot") << "txt"_q << QStringList{".txt"_q};
        QTest::newRow("star") << "*.txt"_q << QStringList{".txt"_q};
        QTest::newRow("several") << " .a,b;  *.c "_q << QStringList{".a"_q, ".b"_q, ".c"_q};
        QTest::newRow("twice") << "a a"_q << QStringList{".a"_q};
        QTest::newRow("any") << "*.* * ."_q << QStringList();
    }

    void typedTypes()
    {
        QFETCH(QString, text);
        QTEST(TypesBox::typesIn(text), "types");
    }

    void typesAreChosenOrTyped()
    {
        TypesBox box(nullptr);
        QSignalSpy changed(&box, &TypesBox::typesChanged);
        QVERIFY(box.types().isEmpty());
        QCOMPARE(box.currentText(), "All files"_q);
        const auto type = [&box](const QString& text) {
            box.setEditText(text);
            QTest::keyClick(box.lineEdit(), Qt::Key_Return);
        };
        type("documents"_q);
        QCOMPARE(box.types(), (QStringList{".testplan"_q, ".zvsch"_q, ".zvscr"_q}));
        QCOMPARE(box.currentText(), "Documents"_q);
        QCOMPARE(changed.count(), 1);
        type("txt"_q);
        QCOMPARE(box.types(), QStringList{".txt"_q});
        QCOMPARE(box.currentText(), ".txt"_q);
        QCOMPARE(changed.count(), 2);
        type(".txt "_q);
        QCOMPARE(changed.count(), 2);
        type(""_q);
        QCOMPARE(box.currentText(), "All files"_q);
        QCOMPARE(changed.count(), 3);
        box.setTypes({".testplan"_q, ".zvsch"_q, ".zvscr"_q});
        QCOMPARE(box.currentText(), "Documents"_q);
        QCOMPARE(changed.count(), 3);
    }

    void filterFollowsItsList()
    {
        QStringListModel source({"/f/a.txt"_q, "/f/b.txt"_q, "/f/b.txt"_q});
        const RowFilter::Owner filter = RowFilter::make();
        FilteredFilesModel model(nullptr);
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        join(*filter, model);
        model.setSource(&source);
        filter->setSource(&source);
        QTRY_COMPARE_WITH_TIMEOUT(rowsOf(model), (QStringList{"/f/a.txt"_q, "/f/b.txt"_q}),
                                  longWait);
        QCOMPARE(filter->different(), 2);
        QCOMPARE(filter->lookedAt(), 3);

        source.insertRow(3);
        source.setData(source.index(3), "/f/c.txt"_q);
        QTRY_COMPARE_WITH_TIMEOUT(rowsOf(model).value(2), "/f/c.txt"_q, longWait);
        filter->setPattern("C"_q);
        QTRY_COMPARE_WITH_TIMEOUT(rowsOf(model), QStringList{"/f/c.txt"_q}, longWait);
        source.insertRow(0);
        source.setData(source.index(0), "/c/x.txt"_q);
        QTRY_VERIFY_WITH_TIMEOUT(filter->isDone(), longWait);
        QCOMPARE(rowsOf(model), QStringList{"/f/c.txt"_q});
        source.setStringList({"/f/1c"_q, "/c/2"_q});
        QTRY_COMPARE_WITH_TIMEOUT(rowsOf(model), QStringList{"/f/1c"_q}, longWait);
        source.removeRow(0);
        QTRY_VERIFY_WITH_TIMEOUT(filter->isDone(), longWait);
        QVERIFY(rowsOf(model).isEmpty());
        filter->setSource(nullptr);
        QVERIFY(filter->isDone());
    }

    void filteredFilesShowThemselves()
    {
        QStringListModel source({"/f/g/a.txt"_q});
        FilteredFilesModel model(nullptr);
        model.setSource(&source);
        model.append({0});
        const QModelIndex index = model.index(0);
        QCOMPARE(index.data().toString(), "a.txt"_q);
        QCOMPARE(index.data(Qt::ToolTipRole).toString(), "/f/g/a.txt"_q);
        QCOMPARE(index.data(FilteredFilesModel::FolderRole).toString(), "/f/g"_q);
        QCOMPARE(index.data(FilteredFilesModel::PathRole).toString(), "/f/g/a.txt"_q);
        QVERIFY(!index.data(Qt::EditRole).isValid());
        QVERIFY(model.path({}).isEmpty());
        model.setSource(nullptr);
        QCOMPARE(model.rowCount(), 0);
    }

    void filterEndsWithTheRightRowsWhateverHappens()
    {
        std::mt19937 random(20261121);
        const auto number = [&random](int below) { return int(random() % unsigned(below)); };
        for (int round = 0; round < 30; ++round) {
            QStringList all;
            QStringListModel source;
            const RowFilter::Owner filter = RowFilter::make();
            FilteredFilesModel model(nullptr);
            join(*filter, model);
            model.setSource(&source);
            filter->setSource(&source);
            QString pattern;
            for (int change = 0; change < 12; ++change) {
                if (number(3) == 0) {
                    pattern = QString::number(number(20));
                    filter->setPattern(pattern);
                } else {
                    const int first = source.rowCount();
                    const int count = number(3'000);
                    source.insertRows(first, count);
                    for (int row = first; row < first + count; ++row)
                        source.setData(source.index(row), "/f/%1.txt"_q.arg(row));
                }
                if (number(2) == 0)
                    QTest::qWait(number(3));
            }
            QTRY_VERIFY_WITH_TIMEOUT(filter->isDone() && !filter->running(), longWait);
            QCOMPARE(rowsOf(model), matching(source.stringList(), pattern));
        }
    }

    void filterMayGoWhileItRuns()
    {
        QStringList rows;
        for (int i = 0; i < 100'000; ++i)
            rows.append("/f/%1.txt"_q.arg(i));
        QStringListModel source(rows);
        RowFilter::Owner filter = RowFilter::make();
        const QPointer<RowFilter> seen(filter.get());
        filter->setSource(&source);
        bool wentWhileItRan = false;
        connect(filter.get(), &ZvAbstractIterativeProcess::started, &source, [&] {
            QMetaObject::invokeMethod(
                &source,
                [&] {
                    wentWhileItRan = filter->running();
                    filter.reset();
                },
                Qt::QueuedConnection);
        });
        QTRY_VERIFY_WITH_TIMEOUT(!filter, longWait);
        QVERIFY(wentWhileItRan);
        QTRY_VERIFY_WITH_TIMEOUT(!seen, longWait);
    }

    void emptyPanelTellsWhatToDo()
    {
        const Panel panel;
        QTRY_VERIFY_WITH_TIMEOUT(!panel.panel->isWorking(), longWait);
        QCOMPARE(panel.status()->text(), "Add a folder to list its files."_q);
        QVERIFY(!panel.stop()->isVisible());
        QCOMPARE(panel.panel->getPreferredDockLocation(), DockLocationPreference::Left);
        QCOMPARE(panel.panel->getPreferredNewWindowSize().width(), 320);
        QVERIFY(panel.panel->isSystemWidget());
        QCOMPARE(panel.panel->shortTitle(), "Files"_q);
    }

    void listsAndFilters()
    {
        zvtest::FileTree tree;
        tree.files(300, "plan %1.testplan"_q);
        tree.files(200, "sub/sheet %1.zvsch"_q);
        const Panel panel;
        QSignalSpy foldersChanged(panel.panel.get(), &FilesPanel::foldersChanged);
        panel.panel->addFolders({tree.path()});
        QCOMPARE(foldersChanged.count(), 1);
        QCOMPARE(panel.panel->folders(), QStringList{tree.path()});
        QVERIFY(panel.panel->isWorking());
        QVERIFY(panel.stop()->isVisible());
        const QStringList all = listed({tree.path()});
        QVERIFY(all.size() >= 499);
        QVERIFY(panel.comesToShow(all));
        QCOMPARE(panel.status()->text(), "%1 files"_q.arg(all.size()));
        QVERIFY(!panel.stop()->isVisible());

        QTest::keyClicks(panel.search(), "PLAN 1"_q);
        const QStringList plans = matching(all, "plan 1"_q);
        QVERIFY(plans.size() > 100);
        QVERIFY(panel.comesToShow(plans));
        QCOMPARE(panel.status()->text(), "%1 of %2 files"_q.arg(plans.size()).arg(all.size()));
        QTest::keyClick(panel.search(), Qt::Key_Escape);
        QVERIFY(panel.search()->text().isEmpty());
        QVERIFY(panel.comesToShow(all));
        panel.search()->setText("*9.zvsch"_q);
        QVERIFY(panel.comesToShow(matching(all, "*9.zvsch"_q)));
        panel.search()->setText("nothing of this kind"_q);
        QVERIFY(panel.comesToShow({}));
        panel.search()->clear();

        panel.types()->setEditText("zvsch"_q);
        QTest::keyClick(panel.types()->lineEdit(), Qt::Key_Return);
        QCOMPARE(panel.panel->types(), QStringList{".zvsch"_q});
        QVERIFY(panel.comesToShow(listed({tree.path()}, {".zvsch"_q})));
    }

    void emptyFolderHidesNoOther()
    {
        zvtest::FileTree tree;
        tree.file("empty/"_q);
        tree.files(5, "full/%1.txt"_q);
        const Panel panel;
        panel.panel->addFolders({tree.path("empty"_q), tree.path("full"_q)});
        QVERIFY(panel.comesToShow(listed({tree.path("full"_q)})));
        QCOMPARE(panel.folders()->count(), 2);
    }

    void folderThatIsNotThereIsTold()
    {
        zvtest::FileTree tree;
        tree.files(5, "a/%1.txt"_q);
        const Panel panel;
        panel.panel->addFolders({tree.path("gone"_q), tree.path("a"_q)});
        const QStringList all = listed({tree.path("a"_q)});
        QVERIFY(panel.comesToShow(all));
        QCOMPARE(panel.status()->text(),
                 "%1 files; folders that can't be read: 1"_q.arg(all.size()));
        const QString gone = QDir::toNativeSeparators(tree.path("gone"_q));
        QCOMPARE(panel.folders()->item(0)->text(), gone + " (can't be read)"_q);
        QVERIFY(panel.folders()->item(0)->toolTip().startsWith("“"_q + gone));
        QCOMPARE(panel.panel->folders().first(), tree.path("gone"_q));
        tree.files(3, "gone/%1.txt"_q);
        panel.action("Reload"_q)->trigger();
        QVERIFY(panel.comesToShow(listed({tree.path("gone"_q), tree.path("a"_q)})));
        QCOMPARE(panel.folders()->item(0)->text(), gone);
    }

    void foldersComeAndGo()
    {
        zvtest::FileTree tree;
        tree.files(3, "a/%1.txt"_q);
        tree.files(3, "b/%1.txt"_q);
        const Panel panel;
        const QString a = tree.path("a"_q);
        const QString b = tree.path("b"_q);
        QSignalSpy foldersChanged(panel.panel.get(), &FilesPanel::foldersChanged);
        panel.panel->addFolders({a, a + "/"_q, b});
        QCOMPARE(panel.panel->folders(), (QStringList{a, b}));
        QVERIFY(panel.comesToShow(listed({a, b})));
        QVERIFY(!panel.action("Remove"_q)->isEnabled());
        panel.folders()->setCurrentRow(0);
        panel.action("Remove"_q)->trigger();
        QCOMPARE(panel.panel->folders(), QStringList{b});
        QVERIFY(panel.comesToShow(listed({b})));
        panel.folders()->setCurrentRow(0);
        panel.folders()->setFocus();
        QVERIFY(panel.activate());
        QTest::keyClick(panel.folders(), Qt::Key_Delete);
        QVERIFY(panel.panel->folders().isEmpty());
        QVERIFY(panel.comesToShow({}));
        QCOMPARE(panel.status()->text(), "Add a folder to list its files."_q);
        QCOMPARE(foldersChanged.count(), 3);
    }

    void foldersAreChosenInADialog()
    {
        zvtest::FileTree tree;
        tree.files(3);
        const Panel panel;
        QFileDialog::FileMode mode = QFileDialog::AnyFile;
        const zvtest::Answer<QFileDialog> answer([&](QFileDialog& dialog) {
            mode = dialog.fileMode();
            dialog.setDirectory(tree.path());
            dialog.findChild<QLineEdit*>("fileNameEdit"_q)->setText(tree.path());
            dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
        });
        panel.action("Add folder…"_q)->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(answer.count, 1, longWait);
        QCOMPARE(mode, QFileDialog::Directory);
        QTRY_COMPARE_WITH_TIMEOUT(panel.panel->folders(), QStringList{tree.path()}, longWait);
    }

    void foldersAndFilesAreDropped()
    {
        zvtest::FileTree tree;
        tree.files(3);
        const Panel panel;
        QSignalSpy open(panel.panel.get(), &FilesPanel::openRequested);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(tree.path()), QUrl::fromLocalFile(tree.path("1.txt"_q))});
        for (QWidget* const target :
             {static_cast<QWidget*>(panel.panel.get()), panel.view()->viewport()}) {
            QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
            QDropEvent drop(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
            QApplication::sendEvent(target, &enter);
            QApplication::sendEvent(target, &drop);
        }
        QCOMPARE(panel.panel->folders(), QStringList{tree.path()});
        QCOMPARE(open.value(0).value(0).toStringList(), QStringList{tree.path("1.txt"_q)});
    }

    void listingStops()
    {
        zvtest::FileTree tree;
        tree.files(manyFiles, "d/%1.txt"_q);
        tree.files(2);
        const Panel panel;
        panel.panel->addFolders({tree.path()});
        QTest::mouseClick(panel.stop(), Qt::LeftButton);
        QVERIFY(!panel.panel->isWorking());
        QVERIFY(!panel.stop()->isVisible());
        const QString stopped = "Listing stopped. Press Reload to list the folders again."_q;
        QCOMPARE(panel.status()->text(), stopped);
        QTest::qWait(100);
        QVERIFY(panel.shown().isEmpty());
        QCOMPARE(panel.status()->text(), stopped);
        panel.panel->stop();
        QCOMPARE(panel.status()->text(), stopped);
        QVERIFY(panel.activate());
        QTest::keyClick(panel.view(), Qt::Key_F5);
        QVERIFY(panel.panel->isWorking());
        QVERIFY(panel.comesToShow(listed({tree.path()})));
    }

    void filteringStops()
    {
        zvtest::FileTree tree;
        tree.files(manyFiles);
        const Panel panel;
        panel.panel->addFolders({tree.path()});
        const QStringList all = listed({tree.path()});
        QVERIFY(panel.comesToShow(all));
        panel.search()->setText("7"_q);
        QVERIFY(panel.panel->isWorking());
        QVERIFY(panel.status()->text().startsWith("Filtering… "_q));
        panel.panel->stop();
        QVERIFY(!panel.panel->isWorking());
        QVERIFY2(panel.status()->text().startsWith("Filtering stopped at "_q),
                 qPrintable(panel.status()->text()));
        const QStringList hits = panel.shown();
        QVERIFY(hits.size() < matching(all, "7"_q).size());
        QTest::qWait(50);
        QCOMPARE(panel.shown(), hits);
        panel.search()->setText("77"_q);
        QVERIFY(panel.comesToShow(matching(all, "77"_q)));
    }

    void filterChangesWhileFilesAreListed()
    {
        zvtest::FileTree tree;
        for (int folder = 0; folder < 20; ++folder)
            tree.files(manyFiles / 20, "%1/%2.txt"_q.arg(folder).arg("%1"_q));
        const QStringList all = listed({tree.path()});
        QVERIFY(all.size() >= manyFiles - 1);
        const QStringList texts = {""_q, "1"_q, "12"_q, "*3.txt"_q, "99"_q, "?.txt"_q, "x"_q};
        for (int i = 0; i < texts.size() * 3; ++i) {
            const Panel panel;
            panel.panel->addFolders({tree.path()});
            panel.search()->setText(texts[(i + 3) % texts.size()]);
            QTest::qWait(i * 2);
            const QString& text = texts[i % texts.size()];
            panel.search()->setText(text);
            QVERIFY2(panel.comesToShow(matching(all, text)),
                     qPrintable(text + " "_q + panel.status()->text()));
        }
    }

    void panelMayGoAtAnyMoment()
    {
        zvtest::FileTree tree;
        tree.files(manyFiles / 4);
        for (int i = 0; i < 60; ++i) {
            Panel panel;
            panel.panel->addFolders({tree.path()});
            panel.search()->setText(QString::number(i % 3));
            if (i % 2 == 0) {
                QTest::qWait(i);
                panel.panel.reset();
                continue;
            }
            // From within the events between two steps of the filter.
            QTimer::singleShot(i, panel.panel.get(), [&panel] { panel.panel.reset(); });
            QTRY_VERIFY_WITH_TIMEOUT(!panel.panel, longWait);
        }
    }

    void keysAndMouseOpen()
    {
        zvtest::FileTree tree;
        tree.files(4, "%1.zvsch"_q);
        const Panel panel;
        panel.panel->addFolders({tree.path()});
        const QStringList all = listed({tree.path()});
        QVERIFY(panel.comesToShow(all));
        QSignalSpy open(panel.panel.get(), &FilesPanel::openRequested);
        QVERIFY(panel.activate());
        panel.search()->setFocus();
        QTest::keyClick(panel.search(), Qt::Key_Down);
        QCOMPARE(QApplication::focusWidget(), panel.view());
        QCOMPARE(panel.view()->currentIndex().row(), 0);
        QTest::keyClick(panel.view(), Qt::Key_Return);
        QCOMPARE(open.takeFirst().value(0).toStringList(), all.mid(0, 1));
        const QPoint second = panel.view()->visualRect(panel.view()->model()->index(1, 0)).center();
        QTest::mouseClick(panel.view()->viewport(), Qt::LeftButton, {}, second);
        QTest::mouseDClick(panel.view()->viewport(), Qt::LeftButton, {}, second);
        QCOMPARE(open.takeFirst().value(0).toStringList(), all.mid(1, 1));
        panel.view()->selectAll();
        QTest::keyClick(panel.view(), Qt::Key_Enter);
        QCOMPARE(open.takeFirst().value(0).toStringList(), all);
    }

    void tooManyFilesAreNotOpened()
    {
        zvtest::FileTree tree;
        tree.files(60);
        const Panel panel;
        panel.panel->addFolders({tree.path()});
        QVERIFY(panel.comesToShow(listed({tree.path()})));
        QSignalSpy open(panel.panel.get(), &FilesPanel::openRequested);
        QString told;
        const zvtest::Answer<QMessageBox> answer([&told](QMessageBox& box) {
            told = box.text();
            box.accept();
        });
        panel.view()->selectAll();
        panel.action("Open"_q)->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(answer.count, 1, longWait);
        QCOMPARE(told, "%1 files are too many to open at once."_q.arg(panel.shown().size()));
        QCOMPARE(open.count(), 0);
    }

    void pathsAreCopied()
    {
        zvtest::FileTree tree({"a b.txt"_q, "ü.txt"_q, "c.txt"_q});
        const Panel panel;
        panel.panel->addFolders({tree.path()});
        const QStringList all = listed({tree.path()});
        QVERIFY(panel.comesToShow(all));
        QVERIFY(!panel.action("Copy path"_q)->isEnabled());
        panel.view()->selectAll();
        panel.action("Copy path"_q)->trigger();
        QCOMPARE(QApplication::clipboard()->text(), all.join(QLatin1Char('\n')));
        QStringList uris;
        for (const QString& path : all)
            uris.append(QString::fromUtf8(QUrl::fromLocalFile(path).toEncoded()));
        panel.action("Copy as URI"_q)->trigger();
        QCOMPARE(QApplication::clipboard()->text(), uris.join(QLatin1Char('\n')));
    }

    void filesAreRenamed()
    {
        zvtest::FileTree tree({"a.txt"_q, "b.txt"_q, "c.txt"_q});
        const Panel panel;
        panel.panel->addFolders({tree.path()});
        QVERIFY(panel.comesToShow(listed({tree.path()})));
        panel.view()->setCurrentIndex(panel.view()->model()->index(0, 0));
        const QString old = panel.shown().first();
        const zvtest::Answer<QDialog> answer([](QDialog& dialog) {
            dialog.findChild<QLineEdit*>("name"_q)->setText("new.txt"_q);
            dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        });
        panel.action("Rename…"_q)->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(answer.count, 1, longWait);
        QVERIFY(QFileInfo::exists(tree.path("new.txt"_q)));
        QVERIFY(!QFileInfo::exists(old));
        QVERIFY(panel.comesToShow(listed({tree.path()})));
    }

    void renamingThatFailsIsTold()
    {
        zvtest::FileTree tree({"a.txt"_q, "b.txt"_q, "c.txt"_q});
        const Panel panel;
        panel.panel->addFolders({tree.path()});
        QVERIFY(panel.comesToShow(listed({tree.path()})));
        panel.view()->setCurrentIndex(panel.view()->model()->index(0, 0));
        const QString old = panel.shown().first();
        bool isRemoved = false;
        const zvtest::Answer<QDialog> answer([&](QDialog& dialog) {
            dialog.findChild<QLineEdit*>("name"_q)->setText("new.txt"_q);
            isRemoved = QFile::remove(old);
            dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        });
        panel.action("Rename…"_q)->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(answer.count, 1, longWait);
        QVERIFY(isRemoved);
        QString text;
        const zvtest::Answer<QMessageBox> told([&text](QMessageBox& box) {
            text = box.text();
            box.accept();
        });
        QTRY_COMPARE_WITH_TIMEOUT(told.count, 1, longWait);
        QCOMPARE(text, "“%1” was not renamed."_q.arg(old));
    }

    void stateComesBack()
    {
        zvtest::FileTree tree;
        tree.files(5, "%1.zvsch"_q);
        tree.files(5, "%1.txt"_q);
        QSettings settings(tree.path("state.ini"_q), QSettings::IniFormat);
        {
            const Panel panel;
            panel.panel->addFolders({tree.path()});
            panel.types()->setTypes({".zvsch"_q});
            panel.panel->saveState(settings);
        }
        QCOMPARE(settings.childGroups(), QStringList{"Files"_q});
        const Panel panel;
        QSignalSpy foldersChanged(panel.panel.get(), &FilesPanel::foldersChanged);
        panel.panel->restoreState(settings);
        QCOMPARE(panel.panel->folders(), QStringList{tree.path()});
        QCOMPARE(panel.panel->types(), QStringList{".zvsch"_q});
        QCOMPARE(foldersChanged.count(), 1);
        QVERIFY(panel.comesToShow(listed({tree.path()}, {".zvsch"_q})));
        QSettings nothing(tree.path("nothing.ini"_q), QSettings::IniFormat);
        panel.panel->restoreState(nothing);
        QVERIFY(panel.panel->folders().isEmpty());
    }

    void pictures_data() { zvtest::addStyleRows(); }

    void pictures()
    {
        QFETCH(QString, style);
        zvtest::showStyle(style);
        zvtest::FileTree tree;
        tree.files(400, "plans/bridge/part %1.testplan"_q);
        tree.files(400, "sheets/tower with a long name of its folder/sheet %1.zvsch"_q);
        const Panel panel;
        panel.panel->addFolders({tree.path("plans"_q), tree.path("sheets"_q)});
        panel.search()->setText("2"_q);
        QVERIFY(panel.comesToShow(
            matching(listed({tree.path("plans"_q), tree.path("sheets"_q)}), "2"_q)));
        panel.view()->setCurrentIndex(panel.view()->model()->index(2, 0));
        QVERIFY(QDir().mkpath(QStringLiteral(PICTURES)));
        QVERIFY(panel.panel->grab().save(QStringLiteral(PICTURES "/files-%1.png").arg(style)));

        panel.search()->setText("3"_q);
        panel.status()->setProgressMaximum(100);
        panel.status()->setProgressValue(40);
        panel.panel->resize(420, 500);
        const QPixmap working = panel.panel->grab();
        QVERIFY(working.save(QStringLiteral(PICTURES "/files-working-%1.png").arg(style)));
        // The bar is the accent's, whatever a style sheet does to line edits.
        const QImage bar = panel.status()->grab().toImage();
        QCOMPARE(bar.pixelColor(2, bar.height() - 1),
                 libzvutil::ZvStyle::Current()
                     .colour(libzvutil::ZvStyleBrush::Accent)
                     .qColour()
                     .toRgb());
        qApp->setStyleSheet(QString());
    }

    /// The list model runs several times, and the panel isn't idle in between.
    void panelWorksUntilAllIsListed()
    {
        zvtest::FileTree tree;
        tree.files(300);
        const Panel panel;
        const EventCounter hides(*panel.stop(), QEvent::Hide);
        panel.panel->addFolders({tree.path()});
        QVERIFY(panel.panel->isWorking());
        QVERIFY(panel.comesToShow(listed({tree.path()})));
        QCOMPARE(hides.count, 1);
        panel.panel->reload();
        QVERIFY(panel.comesToShow(listed({tree.path()})));
        QCOMPARE(hides.count, 2);
    }

    void actionsTakeWhatIsSelectedNotWhatIsCurrent()
    {
        zvtest::FileTree tree({"1/a.txt"_q, "1/b.txt"_q, "2/c.txt"_q, "2/d.txt"_q});
        const Panel panel;
        panel.panel->addFolders({tree.path("1"_q), tree.path("2"_q)});
        QVERIFY(panel.comesToShow(listed({tree.path("1"_q), tree.path("2"_q)})));
        const QStringList shown = panel.shown();
        QVERIFY(shown.size() >= 2);
        const int last = shown.size() - 1;
        const auto click = [&panel](int row, Qt::KeyboardModifiers modifiers) {
            const QRect place = panel.view()->visualRect(panel.view()->model()->index(row, 0));
            QTest::mouseClick(panel.view()->viewport(), Qt::LeftButton, modifiers, place.center());
        };
        click(0, Qt::NoModifier);
        click(last, Qt::ControlModifier);
        click(last, Qt::ControlModifier);
        QCOMPARE(panel.view()->currentIndex().row(), last);
        QVERIFY(panel.action("Rename…"_q)->isEnabled());

        panel.action("Show folder"_q)->trigger();
        QCOMPARE(QToolTip::text(), QDir::toNativeSeparators(QFileInfo(shown.first()).path()));
        QToolTip::hideText();
        const zvtest::Answer<QDialog> answer([](QDialog& dialog) {
            dialog.findChild<QLineEdit*>("name"_q)->setText("new.txt"_q);
            dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        });
        panel.action("Rename…"_q)->trigger();
        QTRY_COMPARE(answer.count, 1);
        QVERIFY(!QFileInfo::exists(shown.first()));
        QVERIFY(QFileInfo::exists(shown.last()));
    }

    void documentsStayDocuments_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("name");
        QTest::newRow("no extension") << "new"_q
                                      << "new.testplan"_q;
        QTest::newRow("its own") << "new.testplan"_q
                                 << "new.testplan"_q;
        QTest::newRow("another") << "new.txt"_q
                                 << "new.txt"_q;
    }

    void documentsStayDocuments()
    {
        QFETCH(QString, typed);
        QFETCH(QString, name);
        zvtest::FileTree tree;
        tree.files(3, "%1.testplan"_q);
        const Panel panel;
        panel.panel->addFolders({tree.path()});
        QVERIFY(panel.comesToShow(listed({tree.path()})));
        panel.view()->setCurrentIndex(panel.view()->model()->index(0, 0));
        const zvtest::Answer<QDialog> answer([&typed](QDialog& dialog) {
            dialog.findChild<QLineEdit*>("name"_q)->setText(typed);
            dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        });
        panel.action("Rename…"_q)->trigger();
        QTRY_COMPARE(answer.count, 1);
        QVERIFY(QFileInfo::exists(tree.path(name)));
    }

    void toolTipsShowPathsAsTheyAre()
    {
        const auto shown = [](const QString& tip) {
            return Qt::mightBeRichText(tip) ? QTextDocumentFragment::fromHtml(tip).toPlainText()
                                            : tip;
        };
        for (const QString& path : {"/a/<b>c</b>.txt"_q, "/a/b & c.txt"_q, "/a/i <b && c> d"_q}) {
            QStringListModel source({path});
            FilteredFilesModel model(nullptr);
            model.setSource(&source);
            model.append({0});
            QCOMPARE(shown(model.index(0).data(Qt::ToolTipRole).toString()), path);
        }
        const Panel panel;
        panel.panel->addFolders({"/a/<b>bold</b>"_q});
        const QString folder = QDir::toNativeSeparators("/a/<b>bold</b>"_q);
        const QString tip = shown(panel.folders()->item(0)->toolTip());
        QVERIFY2(tip.startsWith("“"_q + folder + "” isn't there"_q), qPrintable(tip));
    }

private:
    const zvtest::StyleHost m_host;
};

QTEST_MAIN(tst_workbench_files)

#include "tst_workbench_files.moc"
