// What the user does to documents by keys and menus, in the workbench's window.

#include "WindowTest.h"

#include "files/FilesPanel.h"
#include "script/CodeEditor.h"
#include "script/ScriptDocument.h"
#include "shell/Workbench.h"

#include <zvworkbench/Document.h>

#include <DockFramework/DockableWidget.h>

#include <HostSupport/ScriptSession.h>

#include <support/Workbench.h>

#include <QAction>
#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>
#include <utility>

using zvtest::longWait;
using zvtest::Window;
using namespace workbench;

namespace {

DockableWidget* windowOf(const Workbench& window, const Document* document)
{
    for (DockableWidget* const dock : window.dockableWidgets()) {
        if (dock->contents() == document)
            return dock;
    }
    return nullptr;
}

/// A session whose scripts do nothing but end.
class EndingSession : public host::ScriptSession
{
public:
    explicit EndingSession(host::ScriptListener listener)
        : m_listener(std::move(listener))
    {
    }

    void run(const std::string& /*text*/, const std::string& /*source*/) override
    {
        QTimer::singleShot(0, &m_context, [this] { m_listener.finished({}); });
    }
    void evaluate(const std::string& text) override { run(text, {}); }
    void stop() override { }

private:
    host::ScriptListener m_listener;
    QObject m_context;
};

/// Presses a key in the widget that has the focus.
void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

} // namespace

class tst_workbench_window_edits : public zvtest::WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        WindowTest::initTestCase();
        host::setScriptSessionMaker([](host::ScriptListener listener) {
            return std::make_unique<EndingSession>(std::move(listener));
        });
    }

    void cleanupTestCase() { host::setScriptSessionMaker({}); }

    void theCurrentScriptRunsFromAnywhere()
    {
        const Window window;
        QVERIFY(zvtest::activate(*window));
        const DocumentType& type = *documentTypeOf("script");
        Document* const first = window->newDocument(type);
        Document* const second = window->newDocument(type);
        // Both are shown, so that each could take the key.
        window->splitDockWidget(windowOf(*window, first), windowOf(*window, second),
                                Qt::Horizontal);
        QTRY_VERIFY(first->isVisible() && second->isVisible());
        QSignalSpy firstRuns(first, SIGNAL(runningChanged(bool)));
        QSignalSpy secondRuns(second, SIGNAL(runningChanged(bool)));
        const auto ends = [&](int ofFirst, int ofSecond) {
            return QTest::qWaitFor(
                [&] {
                    return firstRuns.size() == 2 * ofFirst && secondRuns.size() == 2 * ofSecond;
                },
                longWait);
        };

        window->activate(windowOf(*window, second));
        QCOMPARE(window->currentDocument(), second);
        auto* const search = window->filesPanel().findChild<QLineEdit*>("search");
        auto* const console = window->findChild<QLineEdit*>("consoleInput");
        for (QLineEdit* const field : {search, console}) {
            field->setFocus();
            QVERIFY(field->hasFocus());
            press(Qt::Key_F5);
            QVERIFY(ends(0, field == search ? 1 : 2));
        }
        second->findChild<QWidget*>("scriptOutput")->setFocus();
        press(Qt::Key_F5);
        QVERIFY(ends(0, 3));
        second->findChild<QWidget*>("scriptText")->setFocus();
        press(Qt::Key_F5);
        QVERIFY(ends(0, 4));
        first->findChild<QWidget*>("scriptText")->setFocus();
        QCOMPARE(window->currentDocument(), first);
        press(Qt::Key_F5);
        QVERIFY(ends(1, 4));
        search->setFocus();
        press(Qt::Key_F5);
        QVERIFY(ends(2, 4));
        // No key is left over from a document that has been closed.
        window->closeCurrent();
        QTRY_COMPARE(window->documents(), QList<Document*>{second});
        window->activate(windowOf(*window, second));
        search->setFocus();
        press(Qt::Key_F5);
        QTRY_COMPARE_WITH_TIMEOUT(secondRuns.size(), 10, longWait);
    }
};

QTEST_MAIN(tst_workbench_window_edits)
#include "tst_workbench_window_edits.moc"
