// Editing texts: find and replace, the Edit menu's actions, comments, zoom, and files of all kinds.

#include "DocumentTest.h"

#include "common/path_names.h"
#include "common/translations.h"
#include "script/CodeEditor.h"
#include "script/ScriptDocument.h"
#include "script/TextDocument.h"
#include "search/FindBar.h"
#include "support/AccessibleNames.h"
#include "support/BuiltInStyles.h"
#include "support/Files.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFontInfo>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>
#include <QTextBlock>
#include <QWheelEvent>

#include <functional>
#include <memory>

using namespace workbench;
using zvtest::longWait;

namespace {

/// A script or text in a window of its own, with the keys of its user.
template <typename Shown>
class Edited
{
public:
    explicit Edited(const QString& text = QString())
        : document(QString("New"), nullptr)
        , editor(document.editor())
    {
        document.setAttribute(Qt::WA_DeleteOnClose, false);
        QObject::connect(&document, &Document::failed, &document,
                         [this](const Failure& failure) { failures.append(failure.reason); });
        editor.setPlainText(text);
        document.resize(800, 500);
        document.show();
        editor.setFocus();
        if (!zvtest::activate(document))
            qFatal("the window doesn't become the active one");
    }

    template <typename Widget>
    Widget& child(const char* name) const
    {
        return *document.template findChild<Widget*>(QLatin1String(name));
    }

    QAction& action(const char* name) const { return child<QAction>(name); }
    bool isEnabled(const char* name) const { return action(name).isEnabled(); }
    QString status() const { return child<QLabel>("findStatus").text(); }
    QString selected() const { return editor.textCursor().selectedText(); }
    QString text() const { return editor.toPlainText(); }

    /// "line:column" of the selection's beginning, counted from 1.
    QString place() const
    {
        const int position = editor.textCursor().selectionStart();
        const QTextBlock block = editor.document()->findBlock(position);
        return QString("%1:%2").arg(block.blockNumber() + 1).arg(position - block.position() + 1);
    }

    void option(const char* name) const
    {
        for (auto* const box : document.template findChildren<QCheckBox*>()) {
            if (box->text() == QLatin1String(name))
                box->click();
        }
    }

    void select(int from, int to)
    {
        QTextCursor cursor = editor.textCursor();
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        editor.setTextCursor(cursor);
    }

    Shown document;
    CodeEditor& editor;
    QStringList failures;
};

/// Presses a key in the widget that has the focus.
void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

void type(const char* text)
{
    QTest::keyClicks(QApplication::focusWidget(), QLatin1String(text));
}

constexpr auto ctrl = Qt::ControlModifier;
constexpr auto shift = Qt::ShiftModifier;

} // namespace

class tst_workbench_editor : public zvtest::DocumentTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { installTranslations(); }

    void findsFromMatchToMatch()
    {
        Edited<ScriptDocument> script("One two\nthree one\nonerous\n");
        press(Qt::Key_F, ctrl);
        auto& field = script.child<QLineEdit>("findText");
        QVERIFY(field.hasFocus());
        type("one");
        QCOMPARE(script.place(), QString("1:1"));
        press(Qt::Key_Return);
        QCOMPARE(script.place(), QString("2:7"));
        press(Qt::Key_F3);
        QCOMPARE(script.place(), QString("3:1"));
        QCOMPARE(script.status(), QString());
        press(Qt::Key_F3);
        QCOMPARE(script.place(), QString("1:1"));
        QCOMPARE(script.status(), QString("Continued from the beginning"));
        press(Qt::Key_F3, shift);
        QCOMPARE(script.place(), QString("3:1"));
        QCOMPARE(script.status(), QString("Continued from the end"));
        press(Qt::Key_Return, shift);
        QCOMPARE(script.place(), QString("2:7"));
        QCOMPARE(script.status(), QString());
        press(Qt::Key_Escape);
        QVERIFY(script.editor.hasFocus());
        QVERIFY(!script.child<QWidget>("findBar").isVisible());
        QCOMPARE(script.selected(), QString("one"));
        // The keys still work, and the selection is what is searched for next.
        press(Qt::Key_F3);
        QCOMPARE(script.place(), QString("3:1"));
        script.select(8, 13);
        press(Qt::Key_F, ctrl);
        QCOMPARE(field.text(), QString("three"));
        QCOMPARE(field.selectedText(), QString("three"));
    }

    void nothingToFindIsSaid()
    {
        Edited<ScriptDocument> script("one\n");
        press(Qt::Key_F3);
        QVERIFY(script.child<QWidget>("findBar").isVisible());
        QCOMPARE(script.status(), QString("Type the text to find."));
        type("two");
        press(Qt::Key_Return);
        QCOMPARE(script.status(), QString("No matches"));
        QCOMPARE(script.selected(), QString());
        Edited<ScriptDocument> empty;
        press(Qt::Key_F, ctrl);
        type("a");
        press(Qt::Key_Return);
        QCOMPARE(empty.status(), QString("No matches"));
    }

    void options_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("wanted");
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("found");
        const auto row = [](const char* name, const char* text, const char* wanted,
                            const char* option, const char* found) {
            QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(wanted) << option
                                << QString::fromUtf8(found);
        };
        row("either case", "ONE one", "one", "", "ONE");
        row("match case", "ONE one", "one", "Match case", "one");
        row("umlauts", "STRÄHNE", "ähne", "", "ÄHNE");
        row("whole words", "onerous one", "one", "Whole words", "one");
        row("words of letters only", "größe öße", "öße", "Whole words", "öße");
        row("no expression", "a.b axb", "A.B", "", "a.b");
        row("an expression", "1 22 abc", "[a-c]+", "Regular expression", "abc");
        row("empty matches are none", "bbaab", "a*", "Regular expression", "aa");
        row("nothing but empty matches", "bbb", "^", "Regular expression", "");
        row("beyond the plane", "x \xF0\x9F\x98\x80 y", "\xF0\x9F\x98\x80", "", "\xF0\x9F\x98\x80");
    }

    void options()
    {
        QFETCH(QString, text);
        QFETCH(QString, wanted);
        QFETCH(QString, option);
        QFETCH(QString, found);
        Edited<ScriptDocument> script(text);
        press(Qt::Key_F, ctrl);
        script.child<QLineEdit>("findText").setText(wanted);
        if (!option.isEmpty())
            script.option(option.toUtf8());
        press(Qt::Key_Home, ctrl);
        script.select(0, 0);
        script.action("findNext").trigger();
        QCOMPARE(script.selected(), found);
        QCOMPARE(script.status(), found.isEmpty() ? QString("No matches") : QString());
    }

    void halvesOfCharactersDoNotEndASearch()
    {
        Edited<ScriptDocument> script(QString("a") + QChar(0xD800) + QString("b needle"));
        script.child<QLineEdit>("findText").setText("needle");
        script.action("findNext").trigger();
        QCOMPARE(script.selected(), QString("needle"));
        QCOMPARE(script.place(), QString("1:5"));
    }

    void invalidExpressionsAreSaid()
    {
        Edited<ScriptDocument> script("(one");
        press(Qt::Key_F, ctrl);
        script.option("Regular expression");
        type("(one");
        QVERIFY2(script.status().contains("missing"), qPrintable(script.status()));
        QVERIFY(script.status().endsWith("(character 5)"));
        press(Qt::Key_F3);
        QCOMPARE(script.selected(), QString());
        type(")");
        QCOMPARE(script.selected(), QString("one"));
        QCOMPARE(script.status(), QString());
    }

    void expressionsThatTakeTooLongAreGivenUp()
    {
        // It tries each way to split the letters, of which there are 2 to the power of 5,000.
        Edited<ScriptDocument> script(QString(5'000, QLatin1Char('a')) + QLatin1Char('b'));
        press(Qt::Key_H, ctrl);
        script.option("Regular expression");
        script.child<QLineEdit>("findText").setText("(a+)+$");
        for (const char* const name : {"findNext", "findPrevious"}) {
            script.action(name).trigger();
            QCOMPARE(script.status(),
                     QString("This expression takes too long here. Make it simpler."));
        }
        script.child<QPushButton>("replaceAll").click();
        QCOMPARE(script.status(), QString("This expression takes too long here. Make it simpler."));
        QVERIFY(!script.document.isModified());
    }

    void hitsInTheFileAreShown()
    {
        Edited<ScriptDocument> script("one\ntwo needle\nthree Needle");
        script.document.showHit(3, "needle");
        QCOMPARE(script.place(), QString("3:7"));
        QVERIFY(!script.child<QWidget>("findBar").isVisible());
        press(Qt::Key_F3);
        QCOMPARE(script.place(), QString("2:5"));
        script.document.showHit(2, "no longer there");
        QCOMPARE(script.place(), QString("2:1"));
    }

    void replacesOneAfterTheOther()
    {
        Edited<ScriptDocument> script("one two one three one");
        press(Qt::Key_H, ctrl);
        type("one");
        QVERIFY(script.child<QWidget>("replacement").isVisible());
        press(Qt::Key_Tab);
        auto& replacement = script.child<QLineEdit>("replacement");
        replacement.setFocus();
        type("1one");
        press(Qt::Key_Return);
        QCOMPARE(script.text(), QString("1one two one three one"));
        QCOMPARE(script.place(), QString("1:10"));
        press(Qt::Key_Return);
        press(Qt::Key_Return);
        QCOMPARE(script.text(), QString("1one two 1one three 1one"));
        QCOMPARE(script.status(), QString("Continued from the beginning"));
        // What isn't selected as a match is only found.
        script.select(5, 8);
        script.child<QPushButton>("replaceOne").click();
        QCOMPARE(script.text(), QString("1one two 1one three 1one"));
        QCOMPARE(script.selected(), QString("one"));
    }

    void replacesAllInOneStep()
    {
        Edited<ScriptDocument> script("one One\ntwo\none");
        press(Qt::Key_H, ctrl);
        type("one");
        script.child<QLineEdit>("replacement").setText("three\\n");
        auto& all = script.child<QPushButton>("replaceAll");
        all.click();
        QCOMPARE(script.text(), QString("three\\n three\\n\ntwo\nthree\\n"));
        QCOMPARE(script.status(), QString("3 matches replaced"));
        QVERIFY(script.document.isModified());
        press(Qt::Key_Escape);
        press(Qt::Key_Z, ctrl);
        QCOMPARE(script.text(), QString("one One\ntwo\none"));
        QVERIFY(!script.document.isModified());
        press(Qt::Key_Y, ctrl);
        QCOMPARE(script.text(), QString("three\\n three\\n\ntwo\nthree\\n"));
        script.child<QLineEdit>("findText").setText("TWO");
        all.click();
        QCOMPARE(script.status(), QString("1 match replaced"));
        all.click();
        QCOMPARE(script.status(), QString("No matches"));
    }

    void replacementsOfExpressions_data()
    {
        QTest::addColumn<QString>("wanted");
        QTest::addColumn<QString>("replacement");
        QTest::addColumn<QString>("result");
        QTest::newRow("groups") << "(\\w+)=(\\w+)"
                                << "\\2=\\1"
                                << "1=a, 2=b";
        QTest::newRow("all") << "\\d"
                             << "<\\0>"
                             << "a=<1>, b=<2>";
        QTest::newRow("line feed") << ", "
                                   << "\\n"
                                   << "a=1\nb=2";
        QTest::newRow("backslash") << "="
                                   << "\\\\"
                                   << "a\\1, b\\2";
        QTest::newRow("nothing") << "[ab]="
                                 << ""
                                 << "1, 2";
        QTest::newRow("a backslash at the end") << "="
                                                << "\\"
                                                << "a\\1, b\\2";
    }

    void replacementsOfExpressions()
    {
        QFETCH(QString, wanted);
        QFETCH(QString, replacement);
        QFETCH(QString, result);
        Edited<ScriptDocument> script("a=1, b=2");
        press(Qt::Key_H, ctrl);
        script.option("Regular expression");
        script.child<QLineEdit>("findText").setText(wanted);
        script.child<QLineEdit>("replacement").setText(replacement);
        script.child<QPushButton>("replaceAll").click();
        QCOMPARE(script.text(), result);
    }

    void textsThatWouldBecomeTooLongAreLeftAlone()
    {
        Edited<ScriptDocument> script(QString(100'000, QLatin1Char('a')));
        press(Qt::Key_H, ctrl);
        script.child<QLineEdit>("findText").setText("a");
        script.child<QLineEdit>("replacement").setText(QString(1'000, QLatin1Char('b')));
        script.child<QPushButton>("replaceAll").click();
        QCOMPARE(script.status(), QString("Nothing was replaced: the text would become too long."));
        QVERIFY(!script.document.isModified());
    }

    void theBarsFieldsKeepTheirKeys()
    {
        Edited<ScriptDocument> script("one\ntwo");
        press(Qt::Key_F, ctrl);
        type("one");
        // They would change the script, at which nobody looks now.
        press(Qt::Key_Slash, ctrl);
        press(Qt::Key_Z, ctrl);
        QCOMPARE(script.text(), QString("one\ntwo"));
        QCOMPARE(script.child<QLineEdit>("findText").text(), QString());
        type("x");
        press(Qt::Key_A, ctrl);
        QCOMPARE(script.child<QLineEdit>("findText").selectedText(), QString("x"));
        press(Qt::Key_Delete);
        QCOMPARE(script.text(), QString("one\ntwo"));
        QCOMPARE(script.child<QLineEdit>("findText").text(), QString());
    }

    void goesToALine()
    {
        Edited<ScriptDocument> script("one\ntwo\nthree\nfour");
        const auto answer = [](int line) {
            return zvtest::WindowResponder<QInputDialog>([line](QInputDialog& dialog) {
                auto* const field = dialog.findChild<QSpinBox*>();
                QCOMPARE(field->maximum(), 4);
                field->setValue(line);
                QTest::keyClick(field, Qt::Key_Return);
            });
        };
        auto there = answer(3);
        press(Qt::Key_G, ctrl);
        QCOMPARE(there.count, 1);
        QCOMPARE(script.place(), QString("3:1"));
        QVERIFY(zvtest::activate(script.document));
        auto beyond = answer(99);
        press(Qt::Key_G, ctrl);
        QCOMPARE(script.place(), QString("4:1"));
        QVERIFY(zvtest::activate(script.document));
        QVERIFY(script.editor.hasFocus());
    }

    void actionsAreEnabledRightly()
    {
        QApplication::clipboard()->clear();
        Edited<ScriptDocument> script("one two");
        for (const char* const name : {"undo", "redo", "cut", "copy", "paste", "delete"})
            QVERIFY2(!script.isEnabled(name), name);
        QVERIFY(script.isEnabled("selectAll"));
        script.action("selectAll").trigger();
        for (const char* const name : {"cut", "copy", "delete"})
            QVERIFY2(script.isEnabled(name), name);
        script.action("cut").trigger();
        QCOMPARE(script.text(), QString());
        QVERIFY(script.isEnabled("undo"));
        QVERIFY(script.isEnabled("paste"));
        QVERIFY(!script.isEnabled("cut"));
        script.action("paste").trigger();
        QCOMPARE(script.text(), QString("one two"));
        script.action("undo").trigger();
        QVERIFY(script.isEnabled("redo"));
        script.action("redo").trigger();
        script.select(0, 4);
        script.action("delete").trigger();
        QCOMPARE(script.text(), QString("two"));
        script.action("undo").trigger();
        QCOMPARE(script.text(), QString("one two"));
        QStringList icons;
        for (const QAction* const action : script.document.toolBarActions()) {
            if (!action->isSeparator() && action->icon().isNull())
                icons.append(action->text());
        }
        QCOMPARE(icons, QStringList());
    }

    void copyTakesWhatHasTheFocus()
    {
        Edited<ScriptDocument> script("script");
        auto& output = script.child<QPlainTextEdit>("scriptOutput");
        output.setPlainText("output");
        // Until the script runs it is folded away.
        output.show();
        output.setFocus();
        script.action("selectAll").trigger();
        QVERIFY(script.isEnabled("copy"));
        QVERIFY(!script.isEnabled("cut"));
        script.action("copy").trigger();
        QCOMPARE(QApplication::clipboard()->text(), QString("output"));
        press(Qt::Key_F, ctrl);
        type("field");
        script.action("selectAll").trigger();
        script.action("cut").trigger();
        QCOMPARE(QApplication::clipboard()->text(), QString("field"));
        QCOMPARE(script.text(), QString("script"));
    }

    void linesAreCommented_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<QString>("after");
        QTest::newRow("a line") << "a\nb" << 0 << 0 << "// a\nb";
        QTest::newRow("back") << "// a\nb" << 0 << 0 << "a\nb";
        QTest::newRow("without a blank") << "//a" << 1 << 1 << "a";
        QTest::newRow("lines") << "a\n  b\n\nc" << 0 << 8 << "// a\n//   b\n\n// c";
        QTest::newRow("indented") << "  a\n    b" << 0 << 9 << "  // a\n  //   b";
        QTest::newRow("lines back") << "  // a\n    //b" << 0 << 12 << "  a\n    b";
        QTest::newRow("some are comments") << "// a\nb" << 0 << 6 << "// // a\n// b";
        QTest::newRow("up to the start of a line") << "a\nb\nc" << 0 << 4 << "// a\n// b\nc";
        QTest::newRow("empty") << "" << 0 << 0 << "";
        QTest::newRow("blanks") << "   \n " << 0 << 5 << "   \n ";
    }

    void linesAreCommented()
    {
        QFETCH(QString, before);
        QFETCH(int, from);
        QFETCH(int, to);
        QFETCH(QString, after);
        Edited<ScriptDocument> script(before);
        script.select(from, to);
        press(Qt::Key_Slash, ctrl);
        QCOMPARE(script.text(), after);
        if (before == after)
            return;
        press(Qt::Key_Z, ctrl);
        QCOMPARE(script.text(), before);
        // A German keyboard has the sign on Shift+7.
        script.select(from, to);
        press(Qt::Key_Slash, ctrl | shift);
        QCOMPARE(script.text(), after);
    }

    void zooms()
    {
        Edited<ScriptDocument> script("one");
        const auto size = [&] { return QFontInfo(script.editor.font()).pointSizeF(); };
        const double full = size();
        const auto grows = [&](const char* what, const std::function<void()>& work) {
            const double before = size();
            work();
            QVERIFY2(size() > before, what);
        };
        grows("German +", [] { press(Qt::Key_Plus, ctrl); });
        grows("US +", [] { press(Qt::Key_Plus, ctrl | shift); });
        grows("US =", [] { press(Qt::Key_Equal, ctrl); });
        grows("keypad", [] { press(Qt::Key_Plus, ctrl | Qt::KeypadModifier); });
        const double large = size();
        zvtest::showPaintedStyle("Dark");
        QCOMPARE(size(), large);
        zvtest::showPaintedStyle("Light");
        press(Qt::Key_Minus, ctrl);
        QVERIFY(size() < large);
        press(Qt::Key_0, ctrl);
        QCOMPARE(size(), full);
        const QPointF middle = script.editor.viewport()->rect().center();
        const auto turn = [&](int notches) {
            QWheelEvent wheel(middle, script.editor.viewport()->mapToGlobal(middle.toPoint()), {},
                              {0, 120 * notches}, Qt::NoButton, ctrl, Qt::NoScrollPhase, false);
            QApplication::sendEvent(script.editor.viewport(), &wheel);
        };
        turn(1);
        QVERIFY(size() > full);
        for (int i = 0; i < 100; ++i)
            turn(-1);
        QVERIFY(size() >= full / 2 - 0.5);
        for (int i = 0; i < 100; ++i)
            press(Qt::Key_Plus, ctrl);
        QVERIFY(size() <= 4 * full + 0.5);
        QCOMPARE(script.text(), QString("one"));
    }

    void pastesThatAreTooLongAreRefused()
    {
        Edited<ScriptDocument> script("one");
        QApplication::clipboard()->setText(QString(2'500'000, QChar(0xE4)));
        press(Qt::Key_V, ctrl);
        QCOMPARE(script.text(), QString("one"));
        QCOMPARE(script.failures,
                 QStringList("It has 5,000,000 bytes; what is edited here can have at most "
                             "5,000,000 in all."));
        QApplication::clipboard()->setText(QString("a") + QChar(0) + QString("b"));
        press(Qt::Key_V, ctrl);
        QCOMPARE(script.editor.document()->toRawText(), QString("abone"));
    }

    void typingEndsWhereATextIsFull()
    {
        const int full = int(CodeEditor::maxSize);
        const int lineLength = 100;
        const QString line = QString(lineLength - 1, 'a') + '\n';
        Edited<ScriptDocument> script(line.repeated(full / lineLength).chopped(2));
        const auto* const note = &script.child<QLabel>("noteText");
        QTest::keyClicks(&script.editor, "bc");
        QCOMPARE(note->text(), QString());
        QTest::keyClicks(&script.editor, "d");
        press(Qt::Key_Return);
        press(Qt::Key_Tab);
        QCOMPARE(script.text().size(), full);
        QCOMPARE(note->text(),
                 QString("The text has reached 5,000,000 bytes, the most that can be edited here. "
                         "What you type is not added."));
        QVERIFY(note->isVisible());
        // What replaces something, or takes something away, is possible.
        press(Qt::Key_Backspace);
        QCOMPARE(note->text(), QString());
        QTest::keyClicks(&script.editor, "e");
        QCOMPARE(script.text().size(), full);
        script.select(0, 1);
        QTest::keyClicks(&script.editor, "f");
        QCOMPARE(script.text().size(), full);
        QCOMPARE(note->text(), QString());
    }

    void textsComeBackAsTheyWere_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("note");
        const QString latin1 = "This file isn't UTF-8. It is shown as Latin-1, and saved as such.";
        QTest::newRow("empty") << QByteArray() << QString();
        QTest::newRow("UTF-8") << QByteArray("\xC3\xA4\nb\n") << QString();
        QTest::newRow("byte order mark and Windows") << QByteArray("\xEF\xBB\xBF"
                                                                   "a\r\nb\r\n")
                                                     << QString();
        QTest::newRow("Latin-1") << QByteArray("gr\xFC\xDF\x85\x1F\x0C\r\n") << latin1;
        QByteArray all;
        for (int c = 1; c < 256; ++c) {
            if (c != '\r')
                all.append(static_cast<char>(c));
        }
        QTest::newRow("each byte") << all << latin1;
    }

    void textsComeBackAsTheyWere()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, note);
        const QString file = m_dir.filePath("same.log");
        QVERIFY(zvtest::writeTo(file, content));
        Edited<TextDocument> text;
        QVERIFY(text.document.load(filePath(file)));
        QCOMPARE(text.child<QLabel>("noteText").text(), note);
        QCOMPARE(text.child<QWidget>("note").isVisible(), !note.isEmpty());
        QVERIFY(QFile::remove(file));
        text.document.save();
        QCOMPARE(zvtest::contentOf(file), content);
        // A change changes nothing else.
        QTest::keyClicks(&text.editor, "x");
        text.document.save();
        QCOMPARE(zvtest::contentOf(file).size(), content.size() + 1);
        QCOMPARE(text.failures, QStringList());
    }

    void latin1HasNoOtherCharacters()
    {
        const QString file = m_dir.filePath("latin1.txt");
        const QByteArray content = "gr\xFC\xDF\nb";
        QVERIFY(zvtest::writeTo(file, content));
        Edited<TextDocument> text;
        QVERIFY(text.document.load(filePath(file)));
        text.editor.moveCursor(QTextCursor::End);
        text.editor.insertPlainText(QString::fromUtf8("€"));
        text.document.save();
        QCOMPARE(text.failures,
                 QStringList(QString::fromUtf8(
                     "Latin-1 has no “€”, which is in line 2. Convert the text to "
                     "UTF-8, or take the character out.")));
        QCOMPARE(zvtest::contentOf(file), content);
        QVERIFY(text.document.isModified());
        text.action("convertToUtf8").trigger();
        text.document.save();
        QCOMPARE(zvtest::contentOf(file), QByteArray("gr\xC3\xBC\xC3\x9F\nb\xE2\x82\xAC"));
        QVERIFY(!text.child<QWidget>("note").isVisible());
    }

    void whatCantBeEditedIsReadOnly()
    {
        const QString file = m_dir.filePath("returns.log");
        QVERIFY(zvtest::writeTo(file, "10 %\r20 %\rdone\n"));
        Edited<TextDocument> text;
        QVERIFY(text.document.load(filePath(file)));
        QVERIFY(text.editor.isReadOnly());
        QVERIFY(text.child<QLabel>("noteText").text().endsWith("so it is read-only."));
        QTest::keyClicks(&text.editor, "x");
        press(Qt::Key_V, ctrl);
        QVERIFY(!text.document.isModified());
        for (const char* const name : {"cut", "paste", "delete", "replace"})
            QVERIFY2(!text.isEnabled(name), name);
        press(Qt::Key_F, ctrl);
        type("20");
        QCOMPARE(text.selected(), QString("20"));
        text.document.saveAs(filePath(m_dir.filePath("copy.log")));
        QCOMPARE(text.failures.size(), 1);
        QVERIFY(!QFile::exists(m_dir.filePath("copy.log")));
        // A file that can be edited is, in the same window.
        QVERIFY(zvtest::writeTo(file, "a\nb\r\n"));
        text.document.reloadFile();
        QVERIFY(!text.editor.isReadOnly());
        QCOMPARE(text.child<QLabel>("noteText").text(),
                 QString("Some lines end in CR LF, others in LF. Saving ends all of them in LF."));
    }

    void filesThatAreNoTextsAreRefused_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("reason");
        QTest::newRow("NUL") << QByteArray("a\0b", 3) << "It is not a text: it contains a NUL.";
        QTest::newRow("too large")
            << QByteArray(5'000'001, 'a')
            << "The file has 5,000,001 bytes; a text file can have at most 5,000,000.";
    }

    void filesThatAreNoTextsAreRefused()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, reason);
        const QString file = m_dir.filePath("bad.log");
        QVERIFY(zvtest::writeTo(file, content));
        Edited<TextDocument> text("mine");
        QVERIFY(!text.document.load(filePath(file)));
        QCOMPARE(text.failures, QStringList(reason));
        QCOMPARE(text.text(), QString("mine"));
    }

    void allThatHasTheFocusIsNamed()
    {
        Edited<ScriptDocument> script("one");
        press(Qt::Key_H, ctrl);
        QCOMPARE(zvtest::unnamedIn(script.document), QStringList());
        Edited<TextDocument> text("one");
        press(Qt::Key_H, ctrl);
        QCOMPARE(zvtest::unnamedIn(text.document), QStringList());
    }

    void pictures_data() { zvtest::addStyleRows(); }

    void pictures()
    {
        QFETCH(QString, style);
        zvtest::showPaintedStyle(style.toUtf8());
        const QString file = m_dir.filePath("picture.log");
        QVERIFY(zvtest::writeTo(file, "gr\xFC\xDF\none two one\nthree\n"));
        Edited<TextDocument> text;
        QVERIFY(text.document.load(filePath(file)));
        press(Qt::Key_H, ctrl);
        type("one");
        for (int i = 0; i < 2; ++i)
            press(Qt::Key_F3);
        text.option("Match case");
        QVERIFY(text.document.grab().save(QString(PICTURES "/workbench-find-%1.png").arg(style)));
        zvtest::showPaintedStyle("Light");
    }
};

QTEST_MAIN(tst_workbench_editor)
#include "tst_workbench_editor.moc"
