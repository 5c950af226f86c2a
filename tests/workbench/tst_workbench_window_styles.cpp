// Styles and accents that are chosen in the workbench's window.

#include "WindowTest.h"

#include "common/path_names.h"
#include "common/style_options.h"
#include "shell/AccentSwatches.h"
#include "shell/Workbench.h"
#include "shell/open_workbench.h"
#include "support/Files.h"

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>

#include <support/Background.h>
#include <support/RefusedWrite.h>
#include <support/StyleHost.h>
#include <support/WindowResponder.h>
#include <support/Workbench.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <optional>

using zvtest::actionOf;
using zvtest::dismiss;
using zvtest::failureOf;
using zvtest::longWait;
using zvtest::textsOf;
using zvtest::Window;
using namespace workbench;

class tst_workbench_window_styles : public zvtest::WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void stylesAreChosenAndKept()
    {
        using libzvutil::ZvStyleManager;
        const Window window;
        actionOf(*window, "style:Dark")->trigger();
        QCOMPARE(ZvStyleManager::CurrentStyle().name().toQString(), QString("Dark"));
        QVERIFY(!qApp->styleSheet().isEmpty());
        QVERIFY(optionsOf(*m_host).contains("Dark"));
        // As the menu is the next time, with other actions.
        auto* const menu = window->findChild<QMenu*>("styles");
        Q_EMIT menu->aboutToShow();
        QCOMPARE(textsOf(*menu), (QStringList{"Light", "Dark"}));
        QVERIFY(!menu->actions().at(0)->isChecked());
        QVERIFY(menu->actions().at(1)->isChecked());
        menu->actions().at(0)->trigger();
        QCOMPARE(ZvStyleManager::CurrentStyle().name().toQString(), QString("Light"));
    }

    void accentsAreChosenAndKept()
    {
        chooseAccent(QColor(0x10, 0x7C, 0x10));
        QCOMPARE(chosenAccent(), QColor(0x10, 0x7C, 0x10));
        QVERIFY(qApp->styleSheet().contains("#ff107c10"));
        // The next style has it as well.
        chooseStyle("Dark");
        QVERIFY(qApp->styleSheet().contains("#ff107c10"));
        chooseStyle("Light");
        host::writeOption("ZvStyle", "Dark");
        host::resetOption("ZvStyleAccent");
        applyStyleOptions();
        QCOMPARE(currentStyleName(), QString("Dark"));
        QVERIFY(!qApp->styleSheet().contains("#ff107c10"));
        // One that has gone is replaced by the default.
        host::writeOption("ZvStyle", "Gone");
        applyStyleOptions();
        QCOMPARE(currentStyleName(), QString("Light"));
    }

    void editedStylesAreKeptAndShown()
    {
        using libzvutil::ZvStyle;
        using libzvutil::ZvStyleBrush;
        using libzvutil::ZvStyleManager;
        const Window window;
        // The manager has made the folder of its first user only.
        QVERIFY(QDir(m_host->path()).mkpath("ui"));
        ZvStyle style = ZvStyleManager::Library().light().duplicate("Mine");
        libzvutil::ZvStyleLibrary library;
        library.update(style);
        ZvStyleManager::SetLibrary(library);
        QVERIFY(zvtest::contentOf(m_host->libraryFile()).contains("Mine"));
        chooseStyle("Mine");
        style.setColour(ZvStyleBrush::Panel, QColor(1, 2, 3));
        library.update(style);
        ZvStyleManager::SetLibrary(library);
        QVERIFY(zvtest::contentOf(m_host->libraryFile()).contains("#010203"));
        QVERIFY(qApp->styleSheet().contains("#ff010203"));
        ZvStyleManager::SetLibrary(libzvutil::ZvStyleLibrary());
    }

    void accentsAreChosenInTheMenu()
    {
        const Window window;
        auto* const menu = window->findChild<QMenu*>("accents");
        auto* const swatches = menu->findChild<AccentSwatches*>();
        QVERIFY(swatches);
        chooseAccent(QColor(0xE8, 0x11, 0x23));
        Q_EMIT menu->aboutToShow();
        QCOMPARE(swatches->current(), QColor(0xE8, 0x11, 0x23));
        Q_EMIT swatches->chosen(QColor(0x10, 0x7C, 0x10));
        QCOMPARE(chosenAccent(), QColor(0x10, 0x7C, 0x10));
        QVERIFY(qApp->styleSheet().contains("#ff107c10"));
        host::resetOption("ZvStyleAccent");
    }

    void firstPaintIsInTheCurrentStyle()
    {
        /// Whether there was a style sheet when the window was painted first.
        class FirstPaint : public QObject
        {
        public:
            FirstPaint() { qApp->installEventFilter(this); }

            std::optional<bool> isStyled;

        protected:
            bool eventFilter(QObject* watched, QEvent* event) override
            {
                if (event->type() == QEvent::Paint && !isStyled
                    && qobject_cast<Workbench*>(watched))
                    isStyled = !qApp->styleSheet().isEmpty();
                return false;
            }
        };
        QVERIFY(qApp->styleSheet().isEmpty());
        const FirstPaint firstPaint;
        QCOMPARE(openWorkbench({}), QString());
        QVERIFY(
            QTest::qWaitFor([&firstPaint] { return firstPaint.isStyled.has_value(); }, longWait));
        QVERIFY(*firstPaint.isStyled);
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (qobject_cast<Workbench*>(widget))
                QVERIFY(widget->close());
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void namesOfStylesAreNoMnemonics()
    {
        using libzvutil::ZvStyleManager;
        libzvutil::ZvStyleLibrary library;
        library.update(ZvStyleManager::Library().light().duplicate("A&B"));
        ZvStyleManager::SetLibrary(library);
        {
            const Window window;
            QCOMPARE(actionOf(*window, "style:A&B")->text(), QString("A&&B"));
        }
        ZvStyleManager::SetLibrary(libzvutil::ZvStyleLibrary());
    }

    void picturesOfAWindowInUseDoNotEndTheProgram()
    {
        const QString picture = m_folder->filePath("picture.png");
        QCOMPARE(openWorkbench({}), QString());
        QPointer<Workbench> window;
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (auto* const workbench = qobject_cast<Workbench*>(widget))
                window = workbench;
        }
        QVERIFY(window);
        QCOMPARE(openWorkbench({"--screenshot", picture}), QString());
        // The end of the program would end the loop with another result.
        constexpr int isThere = 7;
        QEventLoop loop;
        QTimer timer;
        timer.callOnTimeout(&loop, [&] {
            if (QFile::exists(picture))
                loop.exit(isThere);
        });
        timer.start(10);
        QTimer::singleShot(zvtest::longWait, &loop, [&loop] { loop.exit(1); });
        QCOMPARE(loop.exec(), isThere);
        QVERIFY(window->isVisible());
        QVERIFY(window->close());
        QTRY_VERIFY(!window);
    }

    void stylesThatCantBeKeptAreToldOf()
    {
        using libzvutil::ZvStyleManager;
        const Window window;
        // A folder of that name is in the way.
        QVERIFY(QDir().mkpath(m_host->libraryFile()));
        libzvutil::ZvStyleLibrary library;
        library.update(ZvStyleManager::Library().light().duplicate("Mine"));
        ZvStyleManager::SetLibrary(library);
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QCOMPARE(box->text(), QString("Your styles aren't kept for the next start."));
        QVERIFY(box->informativeText().contains("styles.xml"));
        dismiss(*box);
        QVERIFY(QDir().rmdir(m_host->libraryFile()));
        ZvStyleManager::SetLibrary(libzvutil::ZvStyleLibrary());
        QVERIFY(!window->findChild<QMessageBox*>());
    }
};

QTEST_MAIN(tst_workbench_window_styles)
#include "tst_workbench_window_styles.moc"
