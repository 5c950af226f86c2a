// The stand-in for the host's docking framework.

#include "DockContents.h"

#include <DockFramework/ContentWidget.h>
#include <DockFramework/DockFrame.h>
#include <DockFramework/DockableWidget.h>

#include "support/WindowResponder.h"

#include <QAbstractButton>
#include <QApplication>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>
#include <QToolButton>

using zvtest::child;
using zvtest::Document;
using zvtest::WindowResponder;

namespace {

class Panel : public DockableWidgetContents
{
public:
    explicit Panel(const QString& name)
        : DockableWidgetContents(name, nullptr)
    {
    }

    DockLocationPreference getPreferredDockLocation() const override
    {
        return DockLocationPreference::Left;
    }
};

/// Presses a button of the box that asks, having looked at its texts.
WindowResponder<QMessageBox> answered(QMessageBox::StandardButton button)
{
    return WindowResponder<QMessageBox>([button](QMessageBox& box) {
        QCOMPARE(box.text(), QString("question"));
        QCOMPARE(box.informativeText(), QString("details"));
        box.button(button)->click();
    });
}

} // namespace

class tst_DockFramework : public zvtest::DockFrameworkTest
{
    Q_OBJECT

private Q_SLOTS:
    void contentsOnTheirOwn()
    {
        DockableWidgetContents contents(QString("name"), nullptr);
        QCOMPARE(contents.objectName(), QString("name"));
        QCOMPARE(contents.shortTitle(), QString("name"));
        QCOMPARE(contents.longTitle(), QString("name"));
        QCOMPARE(contents.getViewContextName(), QString("name"));
        QCOMPARE(contents.getToolBarContext(), QString("name"));
        const QSignalSpy titles(&contents, &DockableWidgetContents::titlesChanged);
        contents.setShortTitle("short");
        contents.setLongTitle("long");
        QCOMPARE(titles.count(), 2);
        QCOMPARE(contents.shortTitle(), QString("short"));
        QCOMPARE(contents.longTitle(), QString("long"));
        QCOMPARE(contents.windowTitle(), QString("short[*]"));
        QCOMPARE(contents.getShortName(), QString("short"));
        QCOMPARE(contents.getMenuTitle(), QString("short"));
        QCOMPARE(contents.getRightClickMenuTitle(), QString("short"));
        QVERIFY(!contents.updateEnabledMenusOnKeyPress());
        QVERIFY(!contents.isContentWidget());
        QVERIFY(contents.isSystemWidget());
        QVERIFY(!contents.canReloadFile());
        QVERIFY(contents.requireDefaultMenu());
        QVERIFY(contents.getIcon().isNull());
        QVERIFY(!contents.getPreferredNewWindowSize().isValid());
        QCOMPARE(contents.getPreferredDockLocation(), DockLocationPreference::Documents);
        const RestoreWidgetInfo info = contents.getRestoreWidgetInfo();
        QCOMPARE(info.name, QString("name"));
        QVERIFY(info.filename.isEmpty() && info.command.isEmpty());
    }

    void documentsOnTheirOwn()
    {
        ContentWidget document("name", nullptr, false);
        QVERIFY(document.isContentWidget());
        QVERIFY(!document.isSystemWidget());
        QVERIFY(!document.testAttribute(Qt::WA_DeleteOnClose));
        document.setShortTitle(QString());
        QCOMPARE(document.getShortName(), QString("name"));
        const QSignalSpy modified(&document, &DockableWidgetContents::modifiedChanged);
        document.setModified(true);
        document.setModified(true);
        QVERIFY(document.isModified() && document.isWindowModified());
        document.setWindowModified(false);
        QVERIFY(!document.isModified());
        QCOMPARE(modified.count(), 2);
        QCOMPARE(modified.at(0).at(0).toBool(), true);
        QCOMPARE(modified.at(1).at(0).toBool(), false);
    }

    void closeAsksOnlyForChanges()
    {
        auto* const document = new Document("a");
        const QPointer<Document> guard(document);
        document->show();
        QVERIFY(document->close());
        QCOMPARE(document->calls, (QStringList{"closing", "script"}));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!guard);
    }

    void closeWithChanges_data()
    {
        QTest::addColumn<int>("button");
        QTest::addColumn<bool>("saves");
        QTest::addColumn<bool>("closes");
        QTest::newRow("discard") << int(QMessageBox::Discard) << false << true;
        QTest::newRow("cancel") << int(QMessageBox::Cancel) << false << false;
        QTest::newRow("save") << int(QMessageBox::Save) << true << true;
        QTest::newRow("save that fails") << int(QMessageBox::Save) << false << false;
    }

    void closeWithChanges()
    {
        QFETCH(int, button);
        QFETCH(bool, saves);
        QFETCH(bool, closes);
        Document document("a");
        document.setAttribute(Qt::WA_DeleteOnClose, false);
        document.setModified(true);
        document.show();
        connect(&document, &DockableWidgetContents::saveRequested, &document,
                [&] { document.setModified(!saves); });
        const auto answer = answered(QMessageBox::StandardButton(button));
        QCOMPARE(document.close(), closes);
        QCOMPARE(answer.count, 1);
        QCOMPARE(document.calls.contains("closing"), closes);
    }

    void saveIsOfferedOnlyWhereSomebodySaves()
    {
        Document document("a");
        document.setAttribute(Qt::WA_DeleteOnClose, false);
        document.setModified(true);
        const WindowResponder<QMessageBox> answer([](QMessageBox& box) {
            QVERIFY(!box.button(QMessageBox::Save));
            QCOMPARE(box.defaultButton(), box.button(QMessageBox::Cancel));
            QTest::keyClick(&box, Qt::Key_Escape);
        });
        QVERIFY(!document.close());
        QCOMPARE(answer.count, 1);
    }

    void partsBearTheNamesOfTheStyleSheet()
    {
        DockFrame frame;
        auto* const window = frame.addContents(new Document("a"));
        QCOMPARE(QByteArray(window->metaObject()->className()), QByteArray("DockableWidget"));
        auto* const bar = child<QWidget>(*window, "dockWidgetTitleBar");
        QVERIFY(bar);
        auto* const label = child<QLabel>(*bar, "TitleBarLabel");
        QVERIFY(label);
        QCOMPARE(label->parentWidget(), bar);
        QVERIFY(child<QToolButton>(*bar, "toolButton_DockWidgetClose"));
        QVERIFY(child<QToolButton>(*bar, "toolButton_DockWidgetOptions"));
        auto* const border = child<QWidget>(*window, "borderObject");
        QVERIFY(border);
        QCOMPARE(border->parentWidget(), window);
        QVERIFY(label->property("highlight").isValid());
        for (const QToolButton* const button : bar->findChildren<QToolButton*>()) {
            QVERIFY(!button->accessibleName().isEmpty());
            QVERIFY(!button->toolTip().isEmpty());
        }
    }

    void titleBarShowsTitlesAndTheMark()
    {
        DockFrame frame;
        auto* const document = new Document("a");
        auto* const window = frame.addContents(document);
        frame.resize(600, 400);
        frame.show();
        const auto* const label = child<QLabel>(*window, "TitleBarLabel");
        QCOMPARE(label->text(), QString("a"));
        document->setShortTitle("plan.txt");
        document->setLongTitle("/folder/plan.txt");
        QCOMPARE(label->text(), QString("plan.txt"));
        QCOMPARE(label->toolTip(), QString("/folder/plan.txt"));
        document->setModified(true);
        QCOMPARE(label->text(), QString("plan.txt*"));
        QVERIFY(window->isWindowModified());
        document->setModified(false);
        QCOMPARE(label->text(), QString("plan.txt"));
        QVERIFY(!window->isWindowModified());
        // What is too long for the bar ends in dots, and is read out whole.
        const QString longName(200, QLatin1Char('x'));
        document->setShortTitle(longName);
        QTRY_VERIFY(label->text().endsWith(QChar(0x2026)));
        QCOMPARE(label->accessibleName(), longName);
    }

    void documentsAreTabs()
    {
        DockFrame frame;
        frame.resize(700, 500);
        auto* const first = frame.addContents(new Document("first"));
        auto* const second = frame.addContents(new Document("second"));
        auto* const panel = frame.addContents(new Panel("panel"));
        frame.show();
        QCOMPARE(frame.dockableWidgets(), (QList<DockableWidget*>{first, second, panel}));
        first->raise();
        QCOMPARE(frame.dockableWidgets(), (QList<DockableWidget*>{first, second, panel}));
        QCOMPARE(frame.tabifiedDockWidgets(first), QList<QDockWidget*>{second});
        QCOMPARE(frame.dockWidgetArea(panel), Qt::LeftDockWidgetArea);
        QTRY_VERIFY(frame.findChild<QTabBar*>());
        auto* const tabs = frame.findChild<QTabBar*>();
        QTRY_COMPARE(tabs->count(), 2);
        QTRY_COMPARE(tabs->tabText(0), QString("first"));
        second->contents()->setModified(true);
        QTRY_COMPARE(tabs->tabText(1), QString("second*"));
        // Most of the room is for documents.
        QTRY_VERIFY2(panel->width() < 250, qPrintable(QString::number(panel->width())));
    }

    void panelsKeepTheirSizes()
    {
        QByteArray layout;
        // The frame's own borders take a few pixels.
        const auto isAbout = [](int width, int wanted) { return qAbs(width - wanted) < 10; };
        const auto addAll = [](DockFrame& frame) {
            frame.resize(1000, 500);
            auto* const panel = frame.addContents(new Panel("panel"));
            frame.tabifyDockWidget(panel, frame.addContents(new Panel("behind")));
            panel->raise();
            return panel;
        };
        {
            DockFrame frame;
            auto* const panel = addAll(frame);
            auto* const document = frame.addContents(new Document("first"));
            frame.show();
            QTRY_VERIFY(isAbout(panel->width(), 250));
            frame.resizeDocks({panel, document}, {400, 600}, Qt::Horizontal);
            QTRY_VERIFY(isAbout(panel->width(), 400));
            // Without a document it gets all the room.
            document->close();
            QTRY_VERIFY(panel->width() > 900);
            frame.addContents(new Document("second"));
            QTRY_VERIFY(isAbout(panel->width(), 400));
            layout = frame.saveLayout();
        }
        DockFrame frame;
        const auto* const panel = addAll(frame);
        frame.addContents(new Document("second"));
        QVERIFY(!frame.restoreLayout(layout.left(layout.size() / 2)));
        QVERIFY(frame.restoreLayout(layout));
        frame.show();
        QTRY_VERIFY(isAbout(panel->width(), 400));
    }

    void titlesAreNoMnemonics()
    {
        DockFrame frame;
        auto* const window = frame.addContents(new Document("a&b"));
        frame.addContents(new Document("c"));
        frame.show();
        QTRY_VERIFY(frame.findChild<QTabBar*>());
        QTRY_COMPARE(frame.findChild<QTabBar*>()->tabText(0), QString("a&&b"));
        QCOMPARE(window->toggleViewAction()->text(), QString("a&&b"));
        // The title bar of a window of its own shows the name as it is.
        window->setFloating(true);
        QCOMPARE(window->windowTitle(), QString("a&b[*]"));
        window->setFloating(false);
        QCOMPARE(window->windowTitle(), QString("a&&b[*]"));
    }

    void preferredLocations_data()
    {
        QTest::addColumn<int>("location");
        QTest::addColumn<int>("area");
        QTest::newRow("left") << int(DockLocationPreference::Left) << int(Qt::LeftDockWidgetArea);
        QTest::newRow("right") << int(DockLocationPreference::Right)
                               << int(Qt::RightDockWidgetArea);
        QTest::newRow("top") << int(DockLocationPreference::Top) << int(Qt::TopDockWidgetArea);
        QTest::newRow("bottom") << int(DockLocationPreference::Bottom)
                                << int(Qt::BottomDockWidgetArea);
    }

    void preferredLocations()
    {
        QFETCH(int, location);
        QFETCH(int, area);
        DockFrame frame;
        auto* const document = new Document("a");
        document->location = DockLocationPreference(location);
        auto* const window = frame.addContents(document);
        QCOMPARE(int(frame.dockWidgetArea(window)), area);
        QVERIFY(document->calls.contains(QString("area %1").arg(area)));
    }

    void windowsFloatAndDock()
    {
        DockFrame frame;
        frame.resize(700, 500);
        frame.show();
        auto* const document = new Document("a");
        document->location = DockLocationPreference::Floating;
        auto* const window = frame.addContents(document);
        QVERIFY(window->isFloating());
        QVERIFY(document->calls.contains("window"));
        QCOMPARE(window->size(), QSize(321, 123));
        document->calls.clear();
        const WindowResponder<QMenu> dock([](QMenu& menu) {
            QCOMPARE(menu.actions().at(0)->text(), QString("&Dock"));
            menu.actions().at(0)->trigger();
            menu.close();
        });
        child<QToolButton>(*window, "toolButton_DockWidgetOptions")->click();
        QTRY_VERIFY(!window->isFloating());
        QVERIFY(document->calls.contains("window"));
        const WindowResponder<QMenu> undock([](QMenu& menu) {
            QCOMPARE(menu.actions().at(0)->text(), QString("&Float"));
            menu.actions().at(0)->trigger();
            menu.close();
        });
        child<QToolButton>(*window, "toolButton_DockWidgetOptions")->click();
        QTRY_VERIFY(window->isFloating());
    }

    void highlightFollowsTheFocus()
    {
        DockFrame frame;
        frame.resize(700, 500);
        auto* const first = new Document("first");
        auto* const second = new Document("second");
        second->location = DockLocationPreference::Left;
        auto* const firstWindow = frame.addContents(first);
        auto* const secondWindow = frame.addContents(second);
        frame.show();
        QApplication::setActiveWindow(&frame);
        QCOMPARE(frame.highlighted(), secondWindow);
        first->calls.clear();
        second->calls.clear();
        const QSignalSpy changes(&frame, &DockFrame::highlightedChanged);
        first->edit->setFocus();
        QTRY_COMPARE(frame.highlighted(), firstWindow);
        QCOMPARE(first->calls, (QStringList{"notify", "highlighted"}));
        QCOMPARE(second->calls, QStringList{"unhighlighted"});
        QVERIFY(child<QLabel>(*firstWindow, "TitleBarLabel")->property("highlight").toBool());
        QVERIFY(!child<QLabel>(*secondWindow, "TitleBarLabel")->property("highlight").toBool());
        QCOMPARE(changes.count(), 1);
        frame.activate(secondWindow);
        QCOMPARE(frame.highlighted(), secondWindow);
        QTest::mouseClick(child<QWidget>(*firstWindow, "dockWidgetTitleBar"), Qt::LeftButton);
        QVERIFY(first->calls.contains("pressed"));
    }

    void windowsGoWithTheirContents()
    {
        DockFrame frame;
        frame.show();
        const QPointer<Document> document = new Document("a");
        const QPointer<DockableWidget> window = frame.addContents(document);
        child<QToolButton>(*window, "toolButton_DockWidgetClose")->click();
        QVERIFY(window->isHidden());
        QTRY_VERIFY(!document);
        QTRY_VERIFY(!window);
        QVERIFY(!frame.highlighted());
        QVERIFY(frame.dockableWidgets().isEmpty());
    }

    void windowStaysWhereTheContentsRefuse()
    {
        DockFrame frame;
        frame.show();
        auto* const document = new Document("a");
        auto* const window = frame.addContents(document);
        frame.addContents(new Document("b"));
        document->setModified(true);
        {
            const auto answer = answered(QMessageBox::Cancel);
            QVERIFY(!window->close());
            QVERIFY(!window->isHidden());
        }
        {
            const auto answer = answered(QMessageBox::Cancel);
            QVERIFY(!frame.closeDocuments());
        }
        const auto answer = answered(QMessageBox::Discard);
        QVERIFY(frame.closeDocuments());
        QTRY_VERIFY(frame.dockableWidgets().isEmpty());
    }

    void closingAsksForChangesFirst()
    {
        DockFrame frame;
        frame.show();
        frame.addContents(new Document("unchanged"));
        auto* const changed = new Document("changed");
        frame.addContents(changed);
        changed->setModified(true);
        {
            const auto answer = answered(QMessageBox::Cancel);
            QVERIFY(!frame.closeDocuments());
            QCOMPARE(answer.count, 1);
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(frame.dockableWidgets().size(), 2);
    }

    void windowsMayGoWhileOneAsks()
    {
        DockFrame frame;
        frame.show();
        const QPointer<DockableWidget> other = frame.addContents(new Document("unchanged"));
        auto* const changed = new Document("changed");
        frame.addContents(changed);
        changed->setModified(true);
        const WindowResponder<QMessageBox> answer([&other](QMessageBox& box) {
            delete other;
            box.button(QMessageBox::Discard)->click();
        });
        QVERIFY(frame.closeDocuments());
        QCOMPARE(answer.count, 1);
        QTRY_VERIFY(frame.dockableWidgets().isEmpty());
    }

    void panelsAreHiddenAndStay()
    {
        DockFrame frame;
        frame.show();
        auto* const window = frame.addContents(new Panel("panel"));
        QVERIFY(window->close());
        QCoreApplication::processEvents();
        QCOMPARE(frame.dockableWidgets(), QList<DockableWidget*>{window});
        QVERIFY(window->isHidden());
        frame.activate(window);
        QVERIFY(window->isVisible() && window->contents()->isVisible());
        QVERIFY(frame.closeDocuments());
        QVERIFY(window->isVisible());
    }

    void contextMenu()
    {
        Document document("a");
        document.setAttribute(Qt::WA_DeleteOnClose, false);
        document.show();
        const auto ask = [&document] {
            QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(1, 1), QPoint(1, 1));
            QCoreApplication::sendEvent(&document, &event);
        };
        {
            const WindowResponder<QMenu> answer([](QMenu& menu) {
                QCOMPARE(menu.actions().at(0)->text(), QString("a"));
                menu.setActiveAction(menu.actions().at(1));
                QTest::keyClick(&menu, Qt::Key_Return);
            });
            ask();
            QCOMPARE(answer.count, 1);
        }
        QCOMPARE(document.calls, QStringList{"reload"});
        document.disableContextMenuOnce();
        ask();
        const WindowResponder<QMenu> answer([](QMenu& menu) {
            menu.setActiveAction(menu.actions().constLast());
            QTest::keyClick(&menu, Qt::Key_Return);
        });
        ask();
        QTRY_VERIFY(!document.isVisible());
    }
};

QTEST_MAIN(tst_DockFramework)

#include "tst_DockFramework.moc"
