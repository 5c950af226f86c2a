// The window in which a user edits the additions to the style sheet, opened by its command.

#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>

#include "support/Files.h"
#include "support/RefusedWrite.h"
#include "support/StyleHost.h"
#include "support/WindowResponder.h"

#include <QApplication>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTextCodec>

using libzvutil::styleManager;
using libzvutil::ZvStyleManager;

namespace {

const QString added = "QLabel { color: @panel }";
const QString addedInSheet = "QLabel { color: #fff0f0f0 }";

/// The window's controls.
struct Window
{
    QPointer<QWidget> widget;
    QPlainTextEdit* editor = nullptr;
    QPushButton* preview = nullptr;
    QPushButton* apply = nullptr;
};

Window openWindow()
{
    host::callCommand("_modifystyle", {}, {}, {"test", 1});
    Window window;
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (!widget->isVisible())
            continue;
        window.widget = widget;
        window.editor = widget->findChild<QPlainTextEdit*>();
        for (QPushButton* const button : widget->findChildren<QPushButton*>()) {
            if (button->text() == "Preview")
                window.preview = button;
            else if (button->text() == "Apply")
                window.apply = button;
        }
    }
    return window;
}

/// Answers the next question and tells what it was.
class QuestionAnswer
{
public:
    explicit QuestionAnswer(QMessageBox::StandardButton button)
        : m_responder([this, button](QMessageBox& box) {
            question = box.windowTitle() + QLatin1Char('|') + box.text();
            buttons = box.standardButtons();
            hasDefault = box.defaultButton() != nullptr;
            icon = box.icon();
            box.button(button)->click();
        })
    {
    }

    QString question;
    QMessageBox::StandardButtons buttons;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    bool hasDefault = false;

private:
    zvtest::WindowResponder<QMessageBox> m_responder;
};

} // namespace

class tst_StyleModifier : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_host.isValid());
        ZvStyleManager::SetStyle(ZvStyleManager::Library().light());
        connect(&styleManager(), &ZvStyleManager::currentStyleChanged, this,
                [this] { ++m_changes; });
    }

    void init()
    {
        QFile::remove(m_host.modificationsFile());
        ZvStyleManager::Refresh();
        m_sheet = qApp->styleSheet();
        m_changes = 0;
    }

    void layout()
    {
        const Window window = openWindow();
        QVERIFY(window.editor && window.preview && window.apply);
        QVERIFY(window.widget->isWindow());
        QVERIFY(window.widget->testAttribute(Qt::WA_DeleteOnClose));
        QCOMPARE(window.widget->windowTitle(), QString("Style Modifications"));
        const QFontMetrics metrics = window.widget->fontMetrics();
        const QSize wanted(80 * metrics.averageCharWidth(), 30 * metrics.lineSpacing());
        const QSize least = wanted.boundedTo(window.widget->screen()->availableSize());
        QCOMPARE(window.widget->size().boundedTo(least), least);
        QVERIFY(window.editor->toPlainText().isEmpty());
        QVERIFY(!window.apply->isEnabled());
        QVERIFY(window.preview->isEnabled());
        // The editor above, both buttons on the right of the row below it.
        QVERIFY(window.editor->geometry().bottom() < window.preview->geometry().top());
        QCOMPARE(window.preview->geometry().top(), window.apply->geometry().top());
        QVERIFY(window.preview->geometry().right() < window.apply->geometry().left());
        QVERIFY(window.apply->geometry().right() >= window.editor->geometry().right() - 1);
        window.widget->close();
    }

    void showsTheFile()
    {
        QVERIFY(m_host.write(m_host.modificationsFile(), "a { \xC3\xA4 }\nb"));
        const Window window = openWindow();
        QCOMPARE(window.editor->toPlainText(), QString("a { \u00E4 }\nb"));
        QVERIFY(!window.apply->isEnabled());
        closeWithoutQuestion(window);
    }

    void previewChangesTheScreenAlone()
    {
        const Window window = openWindow();
        QTest::keyClicks(window.editor, added);
        QVERIFY(window.apply->isEnabled());
        QCOMPARE(qApp->styleSheet(), m_sheet);
        QTest::mouseClick(window.preview, Qt::LeftButton);
        QCOMPARE(qApp->styleSheet(), m_sheet + addedInSheet);
        QVERIFY(!QFile::exists(m_host.modificationsFile()));
        QVERIFY(window.apply->isEnabled());
        QCOMPARE(m_changes, 0);

        // Closing with No takes the preview off the screen.
        const QuestionAnswer answer(QMessageBox::No);
        window.widget->close();
        QCOMPARE(answer.question,
                 QString("Style modified|Style modifications have been made, apply the style "
                         "before closing?"));
        QCOMPARE(answer.buttons, QMessageBox::Yes | QMessageBox::No);
        QCOMPARE(answer.icon, QMessageBox::Question);
        QCOMPARE(qApp->styleSheet(), m_sheet);
        QCOMPARE(m_changes, 1);
        QVERIFY(!QFile::exists(m_host.modificationsFile()));
        expectGone(window);
    }

    void applyWritesAndRefreshes()
    {
        const Window window = openWindow();
        QTest::keyClicks(window.editor, added);
        QTest::mouseClick(window.apply, Qt::LeftButton);
        QCOMPARE(zvtest::contentOf(m_host.modificationsFile()), added.toUtf8());
        QCOMPARE(qApp->styleSheet(), m_sheet + addedInSheet);
        QCOMPARE(m_changes, 1);
        QVERIFY(!window.apply->isEnabled());

        // A further edit makes it modified again.
        QTest::keyClick(window.editor, Qt::Key_Return);
        QVERIFY(window.apply->isEnabled());
        QTest::mouseClick(window.apply, Qt::LeftButton);
        QCOMPARE(zvtest::contentOf(m_host.modificationsFile()), added.toUtf8() + '\n');
        closeWithoutQuestion(window);
        QCOMPARE(m_changes, 2);
    }

    void closingWithYesApplies()
    {
        const Window window = openWindow();
        QTest::keyClicks(window.editor, added);
        const QuestionAnswer answer(QMessageBox::Yes);
        window.widget->close();
        QVERIFY(!answer.question.isEmpty());
        QCOMPARE(zvtest::contentOf(m_host.modificationsFile()), added.toUtf8());
        QCOMPARE(qApp->styleSheet(), m_sheet + addedInSheet);
        QCOMPARE(m_changes, 1);
        expectGone(window);
    }

    // NOLINTNEXTLINE(readability-make-member-function-const): a slot
    void closingWithoutAnEditAsksNothing()
    {
        const Window window = openWindow();
        QTest::mouseClick(window.preview, Qt::LeftButton);
        closeWithoutQuestion(window);
        QCOMPARE(m_changes, 0);
    }

    void fileThatCannotBeWritten()
    {
        // A directory in its place.
        QVERIFY(QDir(m_host.path()).mkpath("ui/modifications.qss"));
        const Window window = openWindow();
        QVERIFY(window.editor->toPlainText().isEmpty());
        QTest::keyClicks(window.editor, added);
        QTest::mouseClick(window.apply, Qt::LeftButton);
        QVERIFY(window.apply->isEnabled());
        QCOMPARE(qApp->styleSheet(), m_sheet);
        QCOMPARE(m_changes, 0);
        const QuestionAnswer answer(QMessageBox::Yes);
        window.widget->close();
        expectGone(window);
        QVERIFY(QDir(m_host.path()).rmdir("ui/modifications.qss"));
    }

    void fullDiskLeavesTheFileAsItWas()
    {
        QVERIFY(m_host.write(m_host.modificationsFile(), "a { }"));
        const Window window = openWindow();
        window.editor->setPlainText(QString(2 * zvtest::RefusedWrite::limit, QLatin1Char(' ')));
        {
            const zvtest::RefusedWrite refused;
            QTest::mouseClick(window.apply, Qt::LeftButton);
        }
        QCOMPARE(zvtest::contentOf(m_host.modificationsFile()), QByteArray("a { }"));
        QVERIFY(window.apply->isEnabled());
        QCOMPARE(m_changes, 0);
        // The text is still there, and is written as soon as there is space.
        QTest::mouseClick(window.apply, Qt::LeftButton);
        QCOMPARE(zvtest::contentOf(m_host.modificationsFile()).size(),
                 2 * zvtest::RefusedWrite::limit);
        closeWithoutQuestion(window);
    }

    void fileIsInTheLocalesEncoding()
    {
        QTextCodec* const codec = QTextCodec::codecForLocale();
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
        const Window window = openWindow();
        window.editor->setPlainText("\u00E4");
        QTest::mouseClick(window.apply, Qt::LeftButton);
        QTextCodec::setCodecForLocale(codec);
        QCOMPARE(zvtest::contentOf(m_host.modificationsFile()), QByteArray("\xE4"));
        closeWithoutQuestion(window);
    }

private:
    static void expectGone(const Window& window)
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!window.widget);
    }

    /// A question would wait for an answer that nobody gives.
    static void closeWithoutQuestion(const Window& window)
    {
        const QuestionAnswer answer(QMessageBox::No);
        window.widget->close();
        QVERIFY(answer.question.isEmpty());
        expectGone(window);
    }

    const zvtest::StyleHost m_host;
    QString m_sheet;
    int m_changes = 0;
};

QTEST_MAIN(tst_StyleModifier)
#include "tst_StyleModifier.moc"
