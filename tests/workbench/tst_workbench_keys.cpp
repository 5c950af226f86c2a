// Keys of a US and of a German keyboard. On X11 the display's server delivers what is pressed; elsewhere the window gets
// what Qt makes of it there.

#include "WindowTest.h"

#include <DockFramework/DockableWidget.h>

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QProcess>
#include <QVector>

#include <functional>
#include <map>
#include <memory>

using zvtest::actionOf;
using zvtest::longWait;
using zvtest::Window;
using namespace workbench;

namespace {

/// Keys of a PC's keyboard by their numbers in X11. Which sign is on one depends on the layout.
enum Key : int {
    digit0 = 19,
    digit7 = 16,
    rightOf0 = 20, // US "-"
    secondRightOf0 = 21, // US "="
    secondRightOfP = 35, // German "+"
    leftOfRightShift = 61, // US "/", German "-"
    leftOfX = 52, // US "z", German "y"
    rightOfT = 29, // US "y", German "z"
    letterD = 40,
    letterF = 41,
    letterG = 42,
    letterH = 43,
    letterS = 39,
    keypadPlus = 86,
    keypadMinus = 82,
    f3 = 69,
    f5 = 71,
    leftControl = 37,
    leftShift = 50,
    pauseKey = 127,
};

/// What is pressed, one key after the other, and the key and modifiers that Qt tells of it.
struct Stroke
{
    QVector<int> keys;
    int qtKey = 0;
    Qt::KeyboardModifiers modifiers;
};

bool isOnX11()
{
    return QGuiApplication::platformName() == "xcb";
}

bool run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(program, arguments);
    // The event loop goes on: this program owns the window that gets the keys.
    return QTest::qWaitFor([&process] { return process.state() == QProcess::NotRunning; }, longWait)
        && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

/// Has xdotool press keys, and waits until the window has got them: the last one is Pause, which nobody else gets to
/// see.
class Press : public QObject
{
public:
    explicit Press(const QStringList& words)
    {
        qApp->installEventFilter(this);
        m_hasArrived = run("xdotool", words + QStringList{"key", QString::number(pauseKey)})
            && QTest::qWaitFor([this] { return m_isPauseThere; }, longWait);
    }

    bool hasArrived() const { return m_hasArrived; }

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease
            || event->type() == QEvent::ShortcutOverride;
        if (!isKey || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Pause)
            return false;
        m_isPauseThere = m_isPauseThere || event->type() == QEvent::KeyRelease;
        return true;
    }

private:
    bool m_isPauseThere = false;
    bool m_hasArrived = false;
};

void pressByQt(int key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
}

bool press(const Stroke& stroke)
{
    if (!isOnX11()) {
        pressByQt(stroke.qtKey, stroke.modifiers);
        return true;
    }
    QStringList words;
    for (const int key : stroke.keys)
        words << "keydown" << QString::number(key);
    for (auto key = stroke.keys.rbegin(); key != stroke.keys.rend(); ++key)
        words << "keyup" << QString::number(*key);
    return Press(words).hasArrived();
}

/// Counts how often actions are called. They do nothing else from now on.
class Calls : public QObject
{
public:
    explicit Calls(const QList<QAction*>& actions)
    {
        for (QAction* const action : actions) {
            if (!m_calls.emplace(action, 0).second)
                continue;
            action->disconnect(SIGNAL(triggered(bool)));
            connect(action, &QAction::triggered, this, [this, action] { ++m_calls[action]; });
        }
    }

    /// Enables all of them: an action is disabled where it has nothing to do.
    void enable()
    {
        for (const auto& [action, calls] : m_calls)
            action->setEnabled(true);
    }

    /// Returns the names of those that were called since the last time.
    QStringList take()
    {
        QStringList called;
        for (auto& [action, calls] : m_calls) {
            for (; calls > 0; --calls)
                called.append(nameOf(*action));
        }
        return called;
    }

    static QString nameOf(const QAction& action)
    {
        return action.objectName().isEmpty() ? action.text().remove(QLatin1Char('&'))
                                             : action.objectName();
    }

private:
    std::map<QAction*, int> m_calls;
};

QList<QAction*> actionsBelow(QMenu& menu)
{
    Q_EMIT menu.aboutToShow();
    QList<QAction*> actions;
    for (QAction* const action : menu.actions()) {
        if (action->menu())
            actions += actionsBelow(*action->menu());
        else
            actions.append(action);
    }
    return actions;
}

QList<QAction*> menuActions(const Workbench& window)
{
    QList<QAction*> actions;
    for (const QAction* const entry : window.menuBar()->actions())
        actions += actionsBelow(*entry->menu());
    return actions;
}

/// The actions of a panel and all that is in it.
QList<QAction*> panelActions(const QWidget& panel)
{
    QList<QAction*> actions = panel.actions();
    for (const QWidget* const widget : panel.findChildren<QWidget*>())
        actions += widget->actions();
    return actions;
}

/// Returns what xdotool calls the keys of a shortcut, or an empty text for keys that keyboards don't have any more.
QString keysymsOf(const QKeySequence& shortcut)
{
    static const std::map<QString, QString> names = {
        {"+", "plus"},     {"-", "minus"},     {"=", "equal"},        {"/", "slash"},
        {"Del", "Delete"}, {"Ins", "Insert"},  {"Enter", "KP_Enter"}, {"Backspace", "BackSpace"},
        {"PgUp", "Prior"}, {"PgDown", "Next"}, {"Esc", "Escape"},     {"Space", "space"},
    };
    QString text = shortcut.toString(QKeySequence::PortableText);
    QStringList words;
    for (const QString modifier : {"Ctrl", "Shift", "Alt"}) {
        const QString start = modifier + '+';
        if (text.startsWith(start)) {
            words.append(modifier.toLower());
            text.remove(0, start.size());
        }
    }
    const bool isRare = text.startsWith("F") && text.mid(1).toInt() > 12;
    if (text.isEmpty() || isRare || text == "Copy" || text == "Paste" || text == "Cut"
        || text == "Undo" || text == "Redo" || text == "Find" || text == "New" || text == "Open"
        || text == "Save" || text == "Delete" || text == "Help")
        return {};
    const auto name = names.find(text);
    words.append(name != names.end() ? name->second : text.size() == 1 ? text.toLower() : text);
    return words.join('+');
}

/// Presses what a shortcut takes in the present layout; \p keysyms are its keys as xdotool calls them.
bool press(const QKeySequence& shortcut, const QString& keysyms)
{
    if (isOnX11())
        return Press({"key", keysyms}).hasArrived();
    pressByQt(shortcut[0] & ~int(Qt::KeyboardModifierMask),
              Qt::KeyboardModifiers(shortcut[0] & int(Qt::KeyboardModifierMask)));
    return true;
}

} // namespace

Q_DECLARE_METATYPE(Stroke)

class tst_workbench_keys : public zvtest::WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void aKeyDoesWhatItsSignSays_data()
    {
        QTest::addColumn<QString>("layout");
        QTest::addColumn<QString>("type");
        QTest::addColumn<Stroke>("stroke");
        QTest::addColumn<QString>("action");
        const auto add = [](const char* layout, const char* type, const char* action,
                            std::initializer_list<Stroke> strokes) {
            for (const Stroke& stroke : strokes) {
                const QKeySequence keys(stroke.qtKey | int(stroke.modifiers));
                QTest::addRow("%s, %s: %s by %s", layout, type, action,
                              qPrintable(keys.toString(QKeySequence::PortableText)))
                    << layout << type << stroke << action;
            }
        };
        const Qt::KeyboardModifiers ctrl = Qt::ControlModifier;
        const Qt::KeyboardModifiers ctrlShift = ctrl | Qt::ShiftModifier;
        const Qt::KeyboardModifiers ctrlPad = ctrl | Qt::KeypadModifier;
        const Stroke usPlus = {{leftControl, leftShift, secondRightOf0}, Qt::Key_Plus, ctrlShift};
        const Stroke usEqual = {{leftControl, secondRightOf0}, Qt::Key_Equal, ctrl};
        const Stroke usMinus = {{leftControl, rightOf0}, Qt::Key_Minus, ctrl};
        const Stroke usSlash = {{leftControl, leftOfRightShift}, Qt::Key_Slash, ctrl};
        const Stroke usZ = {{leftControl, leftOfX}, Qt::Key_Z, ctrl};
        const Stroke usY = {{leftControl, rightOfT}, Qt::Key_Y, ctrl};
        const Stroke germanPlus = {{leftControl, secondRightOfP}, Qt::Key_Plus, ctrl};
        const Stroke germanEqual = {{leftControl, leftShift, digit0}, Qt::Key_Equal, ctrlShift};
        const Stroke germanMinus = {{leftControl, leftOfRightShift}, Qt::Key_Minus, ctrl};
        const Stroke germanSlash = {{leftControl, leftShift, digit7}, Qt::Key_Slash, ctrlShift};
        const Stroke germanZ = {{leftControl, rightOfT}, Qt::Key_Z, ctrl};
        const Stroke germanY = {{leftControl, leftOfX}, Qt::Key_Y, ctrl};
        const Stroke padPlus = {{leftControl, keypadPlus}, Qt::Key_Plus, ctrlPad};
        const Stroke padMinus = {{leftControl, keypadMinus}, Qt::Key_Minus, ctrlPad};
        const Stroke zero = {{leftControl, digit0}, Qt::Key_0, ctrl};
        for (const char* const type : {"script", "text"}) {
            add("us", type, "zoomIn", {usPlus, usEqual, padPlus});
            add("us", type, "zoomOut", {usMinus, padMinus});
            add("us", type, "resetZoom", {zero});
            add("de", type, "zoomIn", {germanPlus, germanEqual, padPlus});
            add("de", type, "zoomOut", {germanMinus, padMinus});
            add("de", type, "resetZoom", {zero});
        }
        add("us", "script", "comment", {usSlash});
        add("de", "script", "comment", {germanSlash});
        add("us", "testplan", "insertRow", {usPlus, usEqual, padPlus});
        add("us", "testplan", "removeRow", {usMinus, padMinus});
        add("us", "testplan", "disableRows", {usSlash});
        add("us", "testplan", "undo", {usZ});
        add("us", "testplan", "redo", {usY});
        add("de", "testplan", "insertRow", {germanPlus, germanEqual, padPlus});
        add("de", "testplan", "removeRow", {germanMinus, padMinus});
        add("de", "testplan", "disableRows", {germanSlash});
        add("de", "testplan", "undo", {germanZ});
        add("de", "testplan", "redo", {germanY});
        for (const char* const layout : {"us", "de"}) {
            for (const char* const type : {"script", "text", "testplan"}) {
                add(layout, type, "find", {{{leftControl, letterF}, Qt::Key_F, ctrl}});
                add(layout, type, "replace", {{{leftControl, letterH}, Qt::Key_H, ctrl}});
                add(layout, type, "findNext", {{{f3}, Qt::Key_F3, {}}});
                add(layout, type, "findPrevious",
                    {{{leftShift, f3}, Qt::Key_F3, Qt::ShiftModifier}});
                add(layout, type, "goToLine", {{{leftControl, letterG}, Qt::Key_G, ctrl}});
                add(layout, type, "save", {{{leftControl, letterS}, Qt::Key_S, ctrl}});
                add(layout, type, "findInFiles",
                    {{{leftControl, leftShift, letterF}, Qt::Key_F, ctrlShift}});
            }
            add(layout, "testplan", "fillDown", {{{leftControl, letterD}, Qt::Key_D, ctrl}});
            add(layout, "script", "Run", {{{f5}, Qt::Key_F5, {}}});
            add(layout, "script", "Stop", {{{leftShift, f5}, Qt::Key_F5, Qt::ShiftModifier}});
            add(layout, "schematic", "save", {{{leftControl, letterS}, Qt::Key_S, ctrl}});
        }
    }

    void aKeyDoesWhatItsSignSays()
    {
        QFETCH(QString, layout);
        QFETCH(QString, type);
        QFETCH(Stroke, stroke);
        QFETCH(QString, action);
        const Window window;
        QVERIFY(show(*window, layout));
        QVERIFY(window->newDocument(*documentTypeOf(type)));
        Calls calls(menuActions(*window));
        calls.enable();
        QVERIFY(press(stroke));
        QCOMPARE(calls.take(), QStringList{action});
    }

    void eachShortcutCallsOneAction_data()
    {
        QTest::addColumn<QString>("layout");
        QTest::addColumn<QString>("place");
        for (const char* const layout : {"us", "de"}) {
            for (const char* const place :
                 {"script", "text", "testplan", "schematic", "files", "log"})
                QTest::addRow("%s, %s", layout, place) << layout << place;
        }
    }

    // What the editor of a text does itself calls no action; these are all.
    void eachShortcutCallsOneAction()
    {
        QFETCH(QString, layout);
        QFETCH(QString, place);
        const Window window;
        QVERIFY(show(*window, layout));
        QWidget* const panel = panelOf(*window, place);
        QVERIFY(window->newDocument(*documentTypeOf(panel ? "script" : place)));
        const QList<QAction*> ofMenus = menuActions(*window);
        const QList<QAction*> ofPanel = panel ? panelActions(*panel) : QList<QAction*>();
        const QList<QAction*> actions = panel ? ofPanel : ofMenus;
        QWidget* const focus = panel ? panel : QApplication::focusWidget();
        Calls calls(ofMenus + ofPanel);
        int pressed = 0;
        for (QAction* const action : actions) {
            for (const QKeySequence& shortcut : action->shortcuts()) {
                const QString keysyms = keysymsOf(shortcut);
                if (keysyms.isEmpty())
                    continue;
                // An action of one widget alone works there, the others anywhere in the panel.
                QWidget* const owner = panel ? ownerOf(*panel, *action) : nullptr;
                (owner ? owner : focus)->setFocus();
                calls.enable();
                QVERIFY(press(shortcut, keysyms));
                ++pressed;
                const QStringList called = calls.take();
                const bool isOfEditor = called.isEmpty() && isDoneByEditor(*action);
                QVERIFY2(isOfEditor || called == QStringList{Calls::nameOf(*action)},
                         qPrintable(QString("%1 for %2 called “%3”")
                                        .arg(keysyms, Calls::nameOf(*action), called.join(", "))));
            }
        }
        QVERIFY(pressed > 0);
        qInfo("%d shortcuts", pressed);
    }

private:
    /// Shows the window in front, and takes a layout of the keyboard.
    static bool show(Workbench& window, const QString& layout)
    {
        if (!zvtest::activate(window))
            return false;
        if (!isOnX11())
            return true;
        static QString present;
        if (present != layout && !run("setxkbmap", {layout}))
            return false;
        present = layout;
        // The window gets told of the layout some time: Y and Z have changed places then.
        QLineEdit field(&window);
        field.show();
        field.setFocus();
        const QString expected = layout == "de" ? "z" : "y";
        for (int i = 0; i < 1'000; ++i) {
            field.clear();
            if (!press({{rightOfT}, Qt::Key_unknown, {}}))
                return false;
            if (field.text() == expected)
                return true;
        }
        return false;
    }

    static QWidget* panelOf(const Workbench& window, const QString& place)
    {
        const std::map<QString, QString> titles = {{"files", "Files"}, {"log", "Log"}};
        const auto title = titles.find(place);
        if (title == titles.end())
            return nullptr;
        for (DockableWidget* const panel : window.panels()) {
            if (panel->contents()->shortTitle() != title->second)
                continue;
            panel->show();
            return panel->contents();
        }
        return nullptr;
    }

    /// The widget that has an action for itself alone, or null.
    static QWidget* ownerOf(const QWidget& panel, const QAction& action)
    {
        for (QWidget* const widget : panel.findChildren<QWidget*>()) {
            if (widget->actions().contains(const_cast<QAction*>(&action)))
                return widget;
        }
        return nullptr;
    }

    static bool isDoneByEditor(const QAction& action)
    {
        const QStringList ofEditor = {"undo",  "redo",   "cut",      "copy",
                                      "paste", "delete", "selectAll"};
        return ofEditor.contains(action.objectName());
    }
};

QTEST_MAIN(tst_workbench_keys)
#include "tst_workbench_keys.moc"
