// Scripts in the workbench: their documents, the editor, the console.

#include "common/path_names.h"
#include "common/style_options.h"
#include "script/CodeEditor.h"
#include "script/ConsolePanel.h"
#include "script/OutputView.h"
#include "script/ScriptDocument.h"
#include "support/Files.h"
#include <ThreadScriptSession.h>

#include <zvutil/ZvProcessingIndicator.h>
#include <zvutil/ZvStyle.h>

#include <DockFramework/DockFrame.h>
#include <DockFramework/DockableWidget.h>

#include <HostSupport/host.h>

#include "support/BuiltInStyles.h"
#include <support/RefusedWrite.h>
#include <support/WindowResponder.h>
#include <support/Workbench.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QScrollBar>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>

#include <memory>
#include <utility>

using namespace workbench;
using zvtest::longWait;

namespace {

OutputView& outputOf(const QWidget& widget, const char* name)
{
    return *widget.findChild<OutputView*>(QLatin1String(name));
}

QAction* actionOf(const QWidget& widget, const QString& text)
{
    for (QAction* const action : widget.actions()) {
        if (action->text().remove(QLatin1Char('&')) == text)
            return action;
    }
    return nullptr;
}

bool waitForEnd(const ScriptDocument& document)
{
    return QTest::qWaitFor([&document] { return !document.isRunning(); }, longWait);
}

bool waitForEnd(const ConsolePanel& console)
{
    const auto* const spinner = console.findChild<ZvProcessingIndicator*>();
    return QTest::qWaitFor([spinner] { return spinner->isHidden(); }, longWait);
}

QColor colourAt(const CodeEditor& editor, int line, int column)
{
    const QTextBlock block = editor.document()->findBlockByNumber(line - 1);
    for (const QTextLayout::FormatRange& range : block.layout()->formats()) {
        if (column >= range.start && column < range.start + range.length)
            return range.format.foreground().color();
    }
    return {};
}

} // namespace

class tst_workbench_scripts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        host::setOptionsFile(m_folder.filePath("options.ini").toStdString());
        host::setScriptSessionMaker([](host::ScriptListener listener) {
            return std::make_unique<ThreadScriptSession>(registeredNames(), std::move(listener));
        });
    }

    void cleanupTestCase() { host::setScriptSessionMaker({}); }

    void runsTheTextThatIsThere()
    {
        ScriptDocument document("Script 1", nullptr);
        QSignalSpy running(&document, &ScriptDocument::runningChanged);
        document.editor().setPlainText("print('a');\nprint('b')");
        actionOf(document, "Run")->trigger();
        QVERIFY(document.isRunning());
        QVERIFY(!actionOf(document, "Run")->isEnabled());
        QVERIFY(waitForEnd(document));
        QCOMPARE(outputOf(document, "scriptOutput").toPlainText(), QString("a\nb"));
        QCOMPARE(running.size(), 2);
        QVERIFY(!actionOf(document, "Stop")->isEnabled());
        // A new run begins with an empty output.
        document.editor().setPlainText("print('c')");
        document.run();
        QVERIFY(waitForEnd(document));
        QCOMPARE(outputOf(document, "scriptOutput").toPlainText(), QString("c"));
    }

    void spinsWhileItRunsAndStops()
    {
        ScriptDocument document("Script 1", nullptr);
        document.show();
        const auto* const spinner = document.findChild<ZvProcessingIndicator*>();
        QVERIFY(!spinner->isVisible());
        document.editor().setPlainText("while (true) {}");
        document.run();
        QVERIFY(spinner->isVisible());
        // A second run is none.
        document.run();
        actionOf(document, "Stop")->trigger();
        QVERIFY(waitForEnd(document));
        QVERIFY(!spinner->isVisible());
        QCOMPARE(outputOf(document, "scriptOutput").toPlainText(), QString("Stopped."));
    }

    void closesWhileItRuns()
    {
        auto document = std::make_unique<ScriptDocument>(QString("Script 1"), nullptr);
        document->editor().setPlainText("while (true) print('more')");
        document->run();
        QTRY_VERIFY_WITH_TIMEOUT(!outputOf(*document, "scriptOutput").toPlainText().isEmpty(),
                                 longWait);
        QVERIFY(document->isRunning());
        document.reset();
    }

    void errorsShowTheirLine()
    {
        ScriptDocument document("Script 1", nullptr);
        document.editor().setPlainText("print(1)\n\nnothing.here\nprint(2)");
        document.run();
        QVERIFY(waitForEnd(document));
        QCOMPARE(outputOf(document, "scriptOutput").toPlainText(),
                 QString("1\nLine 3: ReferenceError: nothing is not defined"));
        QCOMPARE(document.editor().textCursor().blockNumber(), 2);
        QCOMPARE(document.editor().extraSelections().size(), 2);
        // A change of the text takes the mark away.
        QTest::keyClicks(&document.editor(), "x");
        QCOMPARE(document.editor().extraSelections().size(), 1);
    }

    void hostsWithoutScriptsAreToldOf()
    {
        host::setScriptSessionMaker({});
        ScriptDocument document("Script 1", nullptr);
        QSignalSpy failed(&document, &Document::failed);
        document.run();
        initTestCase();
        QCOMPARE(failed.size(), 1);
        QVERIFY(!document.isRunning());
    }

    void filesComeBackAsTheyWere_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("one line") << QByteArray("print(1)");
        QTest::newRow("line feeds") << QByteArray("print(1)\n\nprint(2)\n");
        QTest::newRow("Windows") << QByteArray("print(1)\r\n\r\nprint(2)\r\n");
        QTest::newRow("not ASCII") << QByteArray("print('\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80')\n");
        QTest::newRow("non-breaking blank") << QByteArray("print('a\xC2\xA0z')\n");
        QTest::newRow("tab") << QByteArray("\tprint(1)\n");
        QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBFprint(1)\n");
        QTest::newRow("line separator") << QByteArray("print('\xE2\x80\xA8')\n");
    }

    void filesComeBackAsTheyWere()
    {
        QFETCH(QByteArray, content);
        const QString file = m_folder.filePath("same.zvscr");
        QVERIFY(zvtest::writeTo(file, content));
        ScriptDocument document(file, nullptr);
        QVERIFY(document.load(filePath(file)));
        QVERIFY(!document.isModified());
        QVERIFY(document.isFileWatcherEnabled());
        QFile::remove(file);
        document.save();
        QCOMPARE(zvtest::contentOf(file), content);
    }

    void mixedEndsOfLinesBecomeLineFeeds()
    {
        const QString file = m_folder.filePath("mixed.zvscr");
        QVERIFY(zvtest::writeTo(file, "a\r\nb\nc\r\n"));
        ScriptDocument document(file, nullptr);
        QVERIFY(document.load(filePath(file)));
        document.save();
        QCOMPARE(zvtest::contentOf(file), QByteArray("a\nb\nc\n"));
    }

    void refusesWhatItCantKeep_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("reason");
        const QString notText = "The file is not UTF-8 text.";
        const QString characters = "The file contains characters that can't be edited here.";
        QTest::newRow("bad byte") << QByteArray("print('\xFF')") << notText;
        QTest::newRow("broken off") << QByteArray("print('\xE2\x82") << notText;
        QTest::newRow("NUL") << QByteArray("a\0b", 3) << characters;
        QTest::newRow("carriage return") << QByteArray("a\rb") << characters;
        QTest::newRow("paragraph separator") << QByteArray("a\xE2\x80\xA9") << characters;
        QTest::newRow("too large")
            << QByteArray(5'000'001, 'a')
            << "The file has 5,000,001 bytes; a script can have at most 5,000,000.";
    }

    void refusesWhatItCantKeep()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, reason);
        const QString file = m_folder.filePath("bad.zvscr");
        QVERIFY(zvtest::writeTo(file, content));
        ScriptDocument document("Script 1", nullptr);
        document.editor().setPlainText("mine");
        QSignalSpy failed(&document, &Document::failed);
        QVERIFY(!document.load(filePath(file)));
        QCOMPARE(failed.size(), 1);
        const auto failure = failed.at(0).at(0).value<Failure>();
        QVERIFY(failure.what.contains(QDir::toNativeSeparators(file)));
        QCOMPARE(failure.reason, reason);
        QVERIFY(!failure.advice.isEmpty());
        QCOMPARE(document.editor().toPlainText(), QString("mine"));
        QVERIFY(document.filename().isEmpty());
    }

    void missingFilesAreToldOf_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("missing") << m_folder.filePath("none.zvscr");
        QTest::newRow("folder") << m_folder.path();
    }

    void missingFilesAreToldOf()
    {
        QFETCH(QString, file);
        ScriptDocument document("Script 1", nullptr);
        QSignalSpy failed(&document, &Document::failed);
        QVERIFY(!document.load(filePath(file)));
        QCOMPARE(failed.size(), 1);
    }

    void failedSavesAreToldOf()
    {
        ScriptDocument document("Script 1", nullptr);
        QTest::keyClicks(&document.editor(), "x");
        QVERIFY(document.isModified());
        QSignalSpy failed(&document, &Document::failed);
        document.saveAs(filePath(m_folder.filePath("no/such/folder.zvscr")));
        QCOMPARE(failed.size(), 1);
        QVERIFY(document.isModified());
        QVERIFY(document.filename().isEmpty());
        document.saveAs(filePath(m_folder.filePath("good.zvscr")));
        QVERIFY(!document.isModified());
        QVERIFY(document.isFileWatcherEnabled());
        QCOMPARE(failed.size(), 1);
    }

    void fullDiskLeavesTheScriptAsItWas()
    {
        const QString name = m_folder.filePath("kept.zvscr");
        ScriptDocument document("Script 1", nullptr);
        document.editor().setPlainText("print('old')");
        document.saveAs(filePath(name));
        QVERIFY(!document.isModified());
        QTest::keyClicks(&document.editor(), "x");
        document.editor().appendPlainText(
            QString(2 * zvtest::RefusedWrite::limit, QLatin1Char(' ')));
        QSignalSpy failed(&document, &Document::failed);
        {
            const zvtest::RefusedWrite refused;
            document.save();
        }
        QCOMPARE(failed.size(), 1);
        QVERIFY(!failed[0][0].value<Failure>().reason.isEmpty());
        QVERIFY(document.isModified());
        QFile file(name);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("print('old')"));
        file.close();
        document.save();
        QVERIFY(!document.isModified());
        QVERIFY(file.size() > 2 * zvtest::RefusedWrite::limit);
    }

    void undoneChangesAreNone()
    {
        ScriptDocument document("Script 1", nullptr);
        QTest::keyClicks(&document.editor(), "x");
        QVERIFY(document.isModified());
        document.editor().undo();
        QVERIFY(!document.isModified());
    }

    void asksForAnExtension()
    {
        ScriptDocument document("Script 1", nullptr);
        QString title;
        zvtest::WindowResponder<QFileDialog> answer([this, &title](QFileDialog& dialog) {
            title = dialog.windowTitle();
            dialog.findChild<QLineEdit*>("fileNameEdit")->setText(m_folder.filePath("named"));
            QMetaObject::invokeMethod(&dialog, "accept");
        });
        document.save();
        QCOMPARE(answer.count, 1);
        QCOMPARE(title, QString("Save Script as..."));
        QVERIFY(QFile::exists(m_folder.filePath("named.zvscr")));
        QCOMPARE(document.shortTitle(), QString("named.zvscr"));
    }

    void changesOutsideCanBeReadAgain()
    {
        const QString file = m_folder.filePath("outside.zvscr");
        QVERIFY(zvtest::writeTo(file, "before"));
        ScriptDocument document(file, nullptr);
        QVERIFY(document.load(filePath(file)));
        QSignalSpy changed(&document, &DockableWidgetContents::fileChangedOutside);
        QVERIFY(zvtest::writeTo(file, "after"));
        QVERIFY(QTest::qWaitFor([&changed] { return !changed.isEmpty(); }, longWait));
        QCOMPARE(document.editor().toPlainText(), QString("before"));
        document.reloadFile();
        QCOMPARE(document.editor().toPlainText(), QString("after"));
        QVERIFY(!document.isModified());
    }

    void keysOfTheEditor_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<int>("anchor");
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("after");
        QTest::newRow("Return indents")
            << "    a" << 5 << 5 << int(Qt::Key_Return) << "    a\n    ";
        QTest::newRow("Return in the indentation")
            << "    a" << 2 << 2 << int(Qt::Key_Return) << "  \n    a";
        QTest::newRow("Return over a selection") << "ab" << 0 << 1 << int(Qt::Key_Return) << "\nb";
        QTest::newRow("Tab") << "a" << 1 << 1 << int(Qt::Key_Tab) << "a    ";
        QTest::newRow("Tab over a selection in a line")
            << "abc" << 1 << 2 << int(Qt::Key_Tab) << "a    c";
        QTest::newRow("Tab over lines")
            << "a\nb\nc" << 0 << 3 << int(Qt::Key_Tab) << "    a\n    b\nc";
        QTest::newRow("Backtab") << "      a" << 7 << 7 << int(Qt::Key_Backtab) << "  a";
        QTest::newRow("Backtab over lines")
            << "    a\n b\nc" << 0 << 9 << int(Qt::Key_Backtab) << "a\nb\nc";
        QTest::newRow("Backtab with nothing to take")
            << "a" << 0 << 0 << int(Qt::Key_Backtab) << "a";
    }

    void keysOfTheEditor()
    {
        QFETCH(QString, before);
        QFETCH(int, anchor);
        QFETCH(int, position);
        QFETCH(int, key);
        QFETCH(QString, after);
        CodeEditor editor;
        editor.setPlainText(before);
        QTextCursor cursor = editor.textCursor();
        cursor.setPosition(anchor);
        cursor.setPosition(position, QTextCursor::KeepAnchor);
        editor.setTextCursor(cursor);
        QTest::keyClick(&editor, static_cast<Qt::Key>(key));
        QCOMPARE(editor.toPlainText(), after);
        // One step to take back.
        if (before != after) {
            editor.undo();
            QCOMPARE(editor.toPlainText(), before);
        }
    }

    void linesAreNumberedInTheirRoom()
    {
        CodeEditor editor;
        editor.resize(300, 200);
        editor.show();
        const int narrow = editor.viewport()->x();
        QVERIFY(narrow > 0);
        editor.setPlainText(QString(20'000, QLatin1Char('\n')));
        QVERIFY(editor.viewport()->x() > narrow);
        editor.setLayoutDirection(Qt::RightToLeft);
        editor.resize(310, 200);
        QVERIFY(editor.viewport()->x() < narrow);
    }

    void scriptsAreColoured()
    {
        using libzvutil::ZvStyle;
        using libzvutil::ZvStyleBrush;
        CodeEditor editor;
        editor.setPlainText("var a = 'x\\'y'; // note\n/* one\ntwo */ return\nvariable \"open\n1");
        const QColor keyword = pageTextColour(styleColour(ZvStyleBrush::AccentD1));
        const QColor text = pageTextColour(styleColour(ZvStyleBrush::Accent));
        const QColor comment =
            pageTextColour(ZvStyle::Current().editorColour("Testplan", "CommentText"));
        QCOMPARE(colourAt(editor, 1, 0), keyword);
        QVERIFY(!colourAt(editor, 1, 4).isValid());
        QCOMPARE(colourAt(editor, 1, 8), text);
        QCOMPARE(colourAt(editor, 1, 12), text);
        QVERIFY(!colourAt(editor, 1, 14).isValid());
        QCOMPARE(colourAt(editor, 1, 17), comment);
        QCOMPARE(colourAt(editor, 2, 3), comment);
        QCOMPARE(colourAt(editor, 3, 5), comment);
        QCOMPARE(colourAt(editor, 3, 8), keyword);
        QVERIFY(!colourAt(editor, 4, 1).isValid());
        QCOMPARE(colourAt(editor, 4, 12), text);
        QVERIFY(!colourAt(editor, 5, 0).isValid());
    }

    void consoleTellsValuesAndErrors()
    {
        ConsolePanel console;
        const OutputView& output = outputOf(console, "consoleOutput");
        for (const char* line : {"var a = 20", "a + 1", "nowhere", "print('x')"}) {
            console.run(QLatin1String(line));
            QVERIFY(waitForEnd(console));
        }
        QCOMPARE(output.toPlainText(),
                 QString("> var a = 20\n> a + 1\n21\n> nowhere\n"
                         "ReferenceError: nowhere is not defined\n> print('x')\nx"));
    }

    void consoleRunsOnReturnAndKeepsAHistory()
    {
        ConsolePanel console;
        auto* const input = console.findChild<QLineEdit*>("consoleInput");
        const auto enter = [&](const char* line) {
            QTest::keyClicks(input, QLatin1String(line));
            QTest::keyClick(input, Qt::Key_Return);
            return input->text().isEmpty() && waitForEnd(console);
        };
        QVERIFY(enter(" 11"));
        QVERIFY(enter(" 22"));
        QTest::keyClicks(input, "typ");
        QTest::keyClick(input, Qt::Key_Up);
        QCOMPARE(input->text(), QString(" 22"));
        QTest::keyClick(input, Qt::Key_Up);
        QCOMPARE(input->text(), QString(" 11"));
        QTest::keyClick(input, Qt::Key_Up);
        QCOMPARE(input->text(), QString(" 11"));
        QTest::keyClick(input, Qt::Key_Down);
        QTest::keyClick(input, Qt::Key_Down);
        QCOMPARE(input->text(), QString("typ"));
        QTest::keyClick(input, Qt::Key_Down);
        QCOMPARE(input->text(), QString("typ"));

        QSettings settings(m_folder.filePath("session.ini"), QSettings::IniFormat);
        console.saveState(settings);
        ConsolePanel other;
        other.restoreState(settings);
        auto* const otherInput = other.findChild<QLineEdit*>("consoleInput");
        QTest::keyClick(otherInput, Qt::Key_Up);
        QCOMPARE(otherInput->text(), QString(" 22"));
    }

    void consoleTakesNoMoreLinesThanItSaves()
    {
        QStringList lines;
        for (int i = 0; i < 1'000; ++i)
            lines.append(QString::number(i));
        QSettings settings(m_folder.filePath("many.ini"), QSettings::IniFormat);
        settings.setValue("Console/history", lines);
        ConsolePanel console;
        console.restoreState(settings);
        console.saveState(settings);
        QCOMPARE(settings.value("Console/history").toStringList(), QStringList(lines.mid(800)));
    }

    void consoleStopsOnEscape()
    {
        ConsolePanel console;
        console.show();
        auto* const input = console.findChild<QLineEdit*>("consoleInput");
        const auto* const spinner = console.findChild<ZvProcessingIndicator*>();
        console.run(QString("while (true) {}"));
        QVERIFY(spinner->isVisible());
        // One at a time.
        console.run(QString("1"));
        QTest::keyClick(input, Qt::Key_Escape);
        QVERIFY(QTest::qWaitFor([spinner] { return !spinner->isVisible(); }, longWait));
        QCOMPARE(outputOf(console, "consoleOutput").toPlainText(),
                 QString("> while (true) {}\nStopped."));
    }

    void emptyLinesOfTheOutputAreKept()
    {
        OutputView output;
        output.append({});
        output.append(QString("a"));
        output.append({});
        output.append(QString("b"));
        QCOMPARE(output.toPlainText(), QString("\na\n\nb"));
        output.clear();
        output.append(QString("c"));
        QCOMPARE(output.toPlainText(), QString("c"));
    }

    void outputIsBoundedAndFollowsItsEnd()
    {
        OutputView output;
        output.resize(200, 100);
        output.show();
        for (int i = 0; i < 10'500; ++i)
            output.append(QString::number(i));
        QCOMPARE(output.blockCount(), 10'000);
        QCOMPARE(output.verticalScrollBar()->value(), output.verticalScrollBar()->maximum());
        output.verticalScrollBar()->setValue(10);
        output.append(QString("more"), OutputView::Kind::Error);
        QVERIFY(output.verticalScrollBar()->value() < output.verticalScrollBar()->maximum());
    }

    void looksRightInBothStyles_data() { zvtest::addStyleRows(); }

    void looksRightInBothStyles()
    {
        QFETCH(QString, style);
        zvtest::showStyle(style);
        ScriptDocument document("Script 1", nullptr);
        document.resize(700, 500);
        document.editor().setPlainText(
            "// Adds up the supply's currents.\nvar sum = 0;\n\n"
            "function add(name, current) {\n    sum += current;\n"
            "    print(name, current + \" mA\");\n}\n\nadd(\"amplifier\", 12.5);\n"
            "add(\"filter\", 3);\nprint(\"together\", sum, \"mA\");\nmissing();\n");
        document.show();
        document.run();
        QVERIFY(waitForEnd(document));
        QVERIFY(document.grab().save(QString(PICTURES "/workbench-script-%1.png").arg(style)));
        qApp->setStyleSheet(QString());
    }

private:
    QTemporaryDir m_folder;
};

QTEST_MAIN(tst_workbench_scripts)
#include "tst_workbench_scripts.moc"
