// The panel with the files of the user's folders, and what it is made of.

#include "FilesPanelTest.h"

#include "files/FilesPanel.h"
#include "files/FilteredFilesModel.h"

#include "support/BuiltInStyles.h"
#include "support/FileTree.h"
#include "support/StyleHost.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QStringListModel>
#include <QTest>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QToolTip>
#include <QUrl>

using zvtest::join;
using zvtest::listed;
using zvtest::longWait;
using zvtest::manyFiles;
using zvtest::matching;
using zvtest::Panel;
using namespace workbench;

namespace {

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

} // namespace

class tst_workbench_files : public zvtest::FilesPanelTest
{
    Q_OBJECT

private Q_SLOTS:
    void emptyPanelTellsWhatToDo()
    {
        const Panel panel;
        QTRY_VERIFY_WITH_TIMEOUT(!panel.panel->isWorking(), longWait);
        QCOMPARE(panel.status()->text(), QString("Add a folder to list its files."));
        QVERIFY(!panel.stop()->isVisible());
        QCOMPARE(panel.panel->getPreferredDockLocation(), DockLocationPreference::Left);
        QCOMPARE(panel.panel->getPreferredNewWindowSize().width(), 320);
        QVERIFY(panel.panel->isSystemWidget());
        QCOMPARE(panel.panel->shortTitle(), QString("Files"));
    }

    void emptyFolderHidesNoOther()
    {
        zvtest::FileTree tree;
        tree.file(QString("empty/"));
        tree.files(5, "full/%1.txt");
        const Panel panel;
        panel.panel->addFolders({tree.path("empty"), tree.path("full")});
        QVERIFY(panel.comesToShow(listed({tree.path("full")})));
        QCOMPARE(panel.folders()->count(), 2);
    }

    void folderThatIsNotThereIsTold()
    {
        zvtest::FileTree tree;
        tree.files(5, "a/%1.txt");
        const Panel panel;
        panel.panel->addFolders({tree.path("gone"), tree.path("a")});
        const QStringList all = listed({tree.path("a")});
        QVERIFY(panel.comesToShow(all));
        QCOMPARE(panel.status()->text(), QString("%1 files; 1 unreadable folder").arg(all.size()));
        const QString gone = QDir::toNativeSeparators(tree.path("gone"));
        QCOMPARE(panel.folders()->item(0)->text(), gone + " (can't be read)");
        QVERIFY(panel.folders()->item(0)->toolTip().startsWith("“" + gone));
        QCOMPARE(panel.panel->folders().first(), tree.path("gone"));
        tree.files(3, "gone/%1.txt");
        panel.action("Reload")->trigger();
        QVERIFY(panel.comesToShow(listed({tree.path("gone"), tree.path("a")})));
        QCOMPARE(panel.folders()->item(0)->text(), gone);
    }

    void foldersComeAndGo()
    {
        zvtest::FileTree tree;
        tree.files(3, "a/%1.txt");
        tree.files(3, "b/%1.txt");
        const Panel panel;
        const QString a = tree.path("a");
        const QString b = tree.path("b");
        QSignalSpy foldersChanged(panel.panel.get(), &FilesPanel::foldersChanged);
        panel.panel->addFolders({a, a + "/", b});
        QCOMPARE(panel.panel->folders(), (QStringList{a, b}));
        QVERIFY(panel.comesToShow(listed({a, b})));
        QVERIFY(!panel.action("Remove")->isEnabled());
        panel.folders()->setCurrentRow(0);
        panel.action("Remove")->trigger();
        QCOMPARE(panel.panel->folders(), QStringList{b});
        QVERIFY(panel.comesToShow(listed({b})));
        panel.folders()->setCurrentRow(0);
        panel.folders()->setFocus();
        QVERIFY(panel.activate());
        QTest::keyClick(panel.folders(), Qt::Key_Delete);
        QVERIFY(panel.panel->folders().isEmpty());
        QVERIFY(panel.comesToShow({}));
        QCOMPARE(panel.status()->text(), QString("Add a folder to list its files."));
        QCOMPARE(foldersChanged.count(), 3);
    }

    void foldersAreChosenInADialog()
    {
        zvtest::FileTree tree;
        tree.files(3);
        const Panel panel;
        QFileDialog::FileMode mode = QFileDialog::AnyFile;
        const zvtest::WindowResponder<QFileDialog> answer([&](QFileDialog& dialog) {
            mode = dialog.fileMode();
            dialog.setDirectory(tree.path());
            dialog.findChild<QLineEdit*>("fileNameEdit")->setText(tree.path());
            dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
        });
        panel.action("Add Folder…")->trigger();
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
        data.setUrls({QUrl::fromLocalFile(tree.path()), QUrl::fromLocalFile(tree.path("1.txt"))});
        for (QWidget* const target :
             {static_cast<QWidget*>(panel.panel.get()), panel.view()->viewport()}) {
            QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
            QDropEvent drop(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
            QApplication::sendEvent(target, &enter);
            QApplication::sendEvent(target, &drop);
        }
        QCOMPARE(panel.panel->folders(), QStringList{tree.path()});
        QCOMPARE(open.value(0).value(0).toStringList(), QStringList{tree.path("1.txt")});
    }

    void filteringStops()
    {
        zvtest::FileTree tree;
        tree.files(manyFiles);
        const Panel panel;
        panel.panel->addFolders({tree.path()});
        const QStringList all = listed({tree.path()});
        QVERIFY(panel.comesToShow(all));
        panel.search()->setText("7");
        QVERIFY(panel.panel->isWorking());
        QVERIFY(panel.status()->text().startsWith("Filtering… "));
        panel.panel->stop();
        QVERIFY(!panel.panel->isWorking());
        QVERIFY2(panel.status()->text().startsWith("Filtering stopped at "),
                 qPrintable(panel.status()->text()));
        const QStringList hits = panel.shown();
        QVERIFY(hits.size() < matching(all, "7").size());
        QTest::qWait(50);
        QCOMPARE(panel.shown(), hits);
        panel.search()->setText("77");
        QVERIFY(panel.comesToShow(matching(all, "77")));
    }

    void keysAndMouseOpen()
    {
        zvtest::FileTree tree;
        tree.files(4, "%1.zvsch");
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
        const zvtest::WindowResponder<QMessageBox> answer([&told](QMessageBox& box) {
            told = box.text();
            box.accept();
        });
        panel.view()->selectAll();
        panel.action("Open")->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(answer.count, 1, longWait);
        QCOMPARE(told, QString("%1 files are too many to open at once.").arg(panel.shown().size()));
        QCOMPARE(open.count(), 0);
    }

    void pathsAreCopied()
    {
        zvtest::FileTree tree({"a b.txt", "ü.txt", "c.txt"});
        const Panel panel;
        panel.panel->addFolders({tree.path()});
        const QStringList all = listed({tree.path()});
        QVERIFY(panel.comesToShow(all));
        QVERIFY(!panel.action("Copy Path")->isEnabled());
        panel.view()->selectAll();
        panel.action("Copy Path")->trigger();
        QCOMPARE(QApplication::clipboard()->text(), all.join(QLatin1Char('\n')));
        QStringList uris;
        for (const QString& path : all)
            uris.append(QString::fromUtf8(QUrl::fromLocalFile(path).toEncoded()));
        panel.action("Copy as URI")->trigger();
        QCOMPARE(QApplication::clipboard()->text(), uris.join(QLatin1Char('\n')));
    }

    void filesAreRenamed()
    {
        zvtest::FileTree tree({"a.txt", "b.txt", "c.txt"});
        const Panel panel;
        panel.panel->addFolders({tree.path()});
        QVERIFY(panel.comesToShow(listed({tree.path()})));
        panel.view()->setCurrentIndex(panel.view()->model()->index(0, 0));
        const QString old = panel.shown().first();
        const zvtest::WindowResponder<QDialog> answer([](QDialog& dialog) {
            dialog.findChild<QLineEdit*>("name")->setText("new.txt");
            dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        });
        panel.action("Rename…")->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(answer.count, 1, longWait);
        QVERIFY(QFileInfo::exists(tree.path("new.txt")));
        QVERIFY(!QFileInfo::exists(old));
        QVERIFY(panel.comesToShow(listed({tree.path()})));
    }

    void renamingThatFailsIsTold()
    {
        zvtest::FileTree tree({"a.txt", "b.txt", "c.txt"});
        const Panel panel;
        panel.panel->addFolders({tree.path()});
        QVERIFY(panel.comesToShow(listed({tree.path()})));
        panel.view()->setCurrentIndex(panel.view()->model()->index(0, 0));
        const QString old = panel.shown().first();
        bool isRemoved = false;
        const zvtest::WindowResponder<QDialog> answer([&](QDialog& dialog) {
            dialog.findChild<QLineEdit*>("name")->setText("new.txt");
            isRemoved = QFile::remove(old);
            dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        });
        panel.action("Rename…")->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(answer.count, 1, longWait);
        QVERIFY(isRemoved);
        QString text;
        const zvtest::WindowResponder<QMessageBox> told([&text](QMessageBox& box) {
            text = box.text();
            box.accept();
        });
        QTRY_COMPARE_WITH_TIMEOUT(told.count, 1, longWait);
        QCOMPARE(text, QString("“%1” was not renamed.").arg(old));
    }

    void stateComesBack()
    {
        zvtest::FileTree tree;
        tree.files(5, "%1.zvsch");
        tree.files(5, "%1.txt");
        QSettings settings(tree.path("state.ini"), QSettings::IniFormat);
        {
            const Panel panel;
            panel.panel->addFolders({tree.path()});
            panel.types()->setTypes({".zvsch"});
            panel.panel->saveState(settings);
        }
        QCOMPARE(settings.childGroups(), QStringList{"Files"});
        const Panel panel;
        QSignalSpy foldersChanged(panel.panel.get(), &FilesPanel::foldersChanged);
        panel.panel->restoreState(settings);
        QCOMPARE(panel.panel->folders(), QStringList{tree.path()});
        QCOMPARE(panel.panel->types(), QStringList{".zvsch"});
        QCOMPARE(foldersChanged.count(), 1);
        QVERIFY(panel.comesToShow(listed({tree.path()}, {".zvsch"})));
        QSettings nothing(tree.path("nothing.ini"), QSettings::IniFormat);
        panel.panel->restoreState(nothing);
        QVERIFY(panel.panel->folders().isEmpty());
    }

    void pictures_data() { zvtest::addStyleRows(); }

    void pictures()
    {
        QFETCH(QString, style);
        zvtest::showStyle(style);
        zvtest::FileTree tree;
        tree.files(400, "plans/bridge/part %1.testplan");
        tree.files(400, "sheets/tower with a long name of its folder/sheet %1.zvsch");
        const Panel panel;
        panel.panel->addFolders({tree.path("plans"), tree.path("sheets")});
        panel.search()->setText("2");
        QVERIFY(
            panel.comesToShow(matching(listed({tree.path("plans"), tree.path("sheets")}), "2")));
        panel.view()->setCurrentIndex(panel.view()->model()->index(2, 0));
        QVERIFY(QDir().mkpath(PICTURES));
        QVERIFY(panel.panel->grab().save(QString(PICTURES "/files-%1.png").arg(style)));

        panel.search()->setText("3");
        panel.status()->setProgressMaximum(100);
        panel.status()->setProgressValue(40);
        panel.panel->resize(420, 500);
        const QPixmap working = panel.panel->grab();
        QVERIFY(working.save(QString(PICTURES "/files-working-%1.png").arg(style)));
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
        zvtest::FileTree tree({"1/a.txt", "1/b.txt", "2/c.txt", "2/d.txt"});
        const Panel panel;
        panel.panel->addFolders({tree.path("1"), tree.path("2")});
        QVERIFY(panel.comesToShow(listed({tree.path("1"), tree.path("2")})));
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
        QVERIFY(panel.action("Rename…")->isEnabled());

        panel.action("Show Folder")->trigger();
        QCOMPARE(QToolTip::text(), QDir::toNativeSeparators(QFileInfo(shown.first()).path()));
        QToolTip::hideText();
        const zvtest::WindowResponder<QDialog> answer([](QDialog& dialog) {
            dialog.findChild<QLineEdit*>("name")->setText("new.txt");
            dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        });
        panel.action("Rename…")->trigger();
        QTRY_COMPARE(answer.count, 1);
        QVERIFY(!QFileInfo::exists(shown.first()));
        QVERIFY(QFileInfo::exists(shown.last()));
    }

    void documentsStayDocuments_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("name");
        QTest::newRow("no extension") << "new"
                                      << "new.testplan";
        QTest::newRow("its own") << "new.testplan"
                                 << "new.testplan";
        QTest::newRow("another") << "new.txt"
                                 << "new.txt";
    }

    void documentsStayDocuments()
    {
        QFETCH(QString, typed);
        QFETCH(QString, name);
        zvtest::FileTree tree;
        tree.files(3, "%1.testplan");
        const Panel panel;
        panel.panel->addFolders({tree.path()});
        QVERIFY(panel.comesToShow(listed({tree.path()})));
        panel.view()->setCurrentIndex(panel.view()->model()->index(0, 0));
        const zvtest::WindowResponder<QDialog> answer([&typed](QDialog& dialog) {
            dialog.findChild<QLineEdit*>("name")->setText(typed);
            dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        });
        panel.action("Rename…")->trigger();
        QTRY_COMPARE(answer.count, 1);
        QVERIFY(QFileInfo::exists(tree.path(name)));
    }

    void toolTipsShowPathsAsTheyAre()
    {
        const auto shown = [](const QString& tip) {
            return Qt::mightBeRichText(tip) ? QTextDocumentFragment::fromHtml(tip).toPlainText()
                                            : tip;
        };
        for (const QString path : {"/a/<b>c</b>.txt", "/a/b & c.txt", "/a/i <b && c> d"}) {
            QStringListModel source({path});
            FilteredFilesModel model(nullptr);
            model.setSource(&source);
            model.append({0});
            QCOMPARE(shown(model.index(0).data(Qt::ToolTipRole).toString()), path);
        }
        const Panel panel;
        panel.panel->addFolders({"/a/<b>bold</b>"});
        const QString folder = QDir::toNativeSeparators("/a/<b>bold</b>");
        const QString tip = shown(panel.folders()->item(0)->toolTip());
        QVERIFY2(tip.startsWith("“" + folder + "” does not exist"), qPrintable(tip));
    }
};

QTEST_MAIN(tst_workbench_files)

#include "tst_workbench_files.moc"
