// Options, accents and names of files, as the user chooses them.

#include "documents/FileNameDialog.h"
#include "shell/AccentSwatches.h"
#include "shell/OptionEditor.h"
#include "shell/OptionsDialog.h"
#include "shell/accents.h"

#include <HostSupport/MakeOption.h>
#include <HostSupport/Options.h>
#include <HostSupport/host.h>
#include <zvutil/ZvStyleManager.h>

#include "support/BuiltInStyles.h"
#include "support/FileTree.h"
#include "support/StyleHost.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"

#include <QAbstractButton>
#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>
#include <QValidator>
#include <QWidgetAction>

#include <iterator>

using libzvutil::ZvStyleManager;
using namespace workbench;
using namespace zvtest::literals;
using zvtest::longWait;

namespace {

QString option(const char* name)
{
    YString value;
    sp_ReadOptionsInfo(name, &value, YString("not there"));
    return QString::fromUtf8(value.c_str());
}

QPushButton* button(const QWidget& dialog, QDialogButtonBox::StandardButton which)
{
    return dialog.findChild<QDialogButtonBox*>()->button(which);
}

void save(QWidget& widget, const QString& name, const QString& style)
{
    QVERIFY(QDir().mkpath(QStringLiteral(PICTURES)));
    QVERIFY(widget.grab().save(QStringLiteral(PICTURES "/%1-%2.png").arg(name, style)));
}

} // namespace

class tst_workbench_options : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const MakeOption plain("test", 1, YString("TestOption"), "a, default",
                               OPTION_DEFAULT_CACHING, false);
    }

    void init()
    {
        for (const host::OptionInfo& info : host::options())
            host::resetOption(info.name);
    }

    void accentsAreTheBuiltInOnes()
    {
        QCOMPARE(accents().size(), std::size(zvtest::builtInAccents));
        QCOMPARE(accents().size(), std::size_t(48));
        for (std::size_t i = 0; i < accents().size(); ++i) {
            QCOMPARE(accents()[i].name, QString::fromUtf8(zvtest::builtInAccents[i].name));
            QCOMPARE(accents()[i].colour,
                     QColor(QString::fromUtf8(zvtest::builtInAccents[i].colour)));
        }
        QCOMPARE(accentText(QColor(0x2D, 0x7D, 0x9A)), "#2d7d9a"_q);
    }

    void swatchesAreChosen()
    {
        AccentSwatches swatches;
        swatches.show();
        QApplication::setActiveWindow(&swatches);
        QSignalSpy chosen(&swatches, &AccentSwatches::chosen);
        const QList<QAbstractButton*> buttons = swatches.findChildren<QAbstractButton*>();
        QCOMPARE(buttons.size(), 48);
        QVERIFY(!swatches.current().isValid());
        QCOMPARE(buttons[1]->toolTip(), "#ff8c00"_q);
        QCOMPARE(buttons[1]->accessibleName(), "Gold"_q);

        swatches.setCurrent(QColor(0xFF, 0x8C, 0x00));
        QCOMPARE(swatches.current(), QColor(0xFF, 0x8C, 0x00));
        QCOMPARE(chosen.count(), 0);
        swatches.setCurrent(QColor(1, 2, 3));
        QVERIFY(!swatches.current().isValid());
        swatches.setCurrent(QColor());
        QVERIFY(!swatches.current().isValid());

        QTest::mouseClick(buttons[3], Qt::LeftButton);
        QCOMPARE(chosen.takeFirst().value(0).value<QColor>(), accents()[3].colour);
        QCOMPARE(swatches.current(), accents()[3].colour);
        QTest::mouseClick(buttons[3], Qt::LeftButton);
        QCOMPARE(chosen.takeFirst().value(0).value<QColor>(), accents()[3].colour);
    }

    void swatchesHaveKeys()
    {
        AccentSwatches swatches;
        swatches.show();
        QApplication::setActiveWindow(&swatches);
        QSignalSpy chosen(&swatches, &AccentSwatches::chosen);
        const QList<QAbstractButton*> buttons = swatches.findChildren<QAbstractButton*>();
        swatches.setCurrent(accents()[9].colour);
        swatches.setFocus();
        QCOMPARE(QApplication::focusWidget(), buttons[9]);
        const auto press = [](Qt::Key key) {
            QTest::keyClick(QApplication::focusWidget(), key);
            return QApplication::focusWidget();
        };
        QCOMPARE(press(Qt::Key_Right), buttons[10]);
        QCOMPARE(press(Qt::Key_Down), buttons[18]);
        QCOMPARE(press(Qt::Key_Left), buttons[17]);
        QCOMPARE(press(Qt::Key_Up), buttons[9]);
        QCOMPARE(press(Qt::Key_Up), buttons[1]);
        QCOMPARE(press(Qt::Key_Up), buttons[1]);
        QCOMPARE(chosen.count(), 0);
        press(Qt::Key_Return);
        QCOMPARE(chosen.takeFirst().value(0).value<QColor>(), accents()[1].colour);
        press(Qt::Key_Right);
        press(Qt::Key_Space);
        QCOMPARE(chosen.takeFirst().value(0).value<QColor>(), accents()[2].colour);
        QApplication::setLayoutDirection(Qt::RightToLeft);
        QCOMPARE(press(Qt::Key_Left), buttons[3]);
        QApplication::setLayoutDirection(Qt::LeftToRight);
    }

    void swatchesStandInAMenu()
    {
        QMenu menu;
        auto* const action = new QWidgetAction(&menu);
        auto* const swatches = new AccentSwatches;
        action->setDefaultWidget(swatches);
        menu.addAction(action);
        QSignalSpy chosen(swatches, &AccentSwatches::chosen);
        menu.popup(QPoint(0, 0));
        QVERIFY(QTest::qWaitForWindowExposed(&menu, longWait));
        QTest::keyClick(&menu, Qt::Key_Down);
        QTRY_VERIFY_WITH_TIMEOUT(swatches->isAncestorOf(QApplication::focusWidget()), longWait);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(chosen.takeFirst().value(0).value<QColor>(), accents()[1].colour);
    }

    void optionsAreShown()
    {
        host::writeOption("TestOption", "written");
        const OptionsDialog dialog;
        for (const host::OptionInfo& info : host::options()) {
            const auto* const editor =
                dialog.findChild<OptionEditor*>(QString::fromStdString(info.name));
            QVERIFY2(editor, info.name.c_str());
            QCOMPARE(editor->value(), option(info.name.c_str()));
        }
        QVERIFY(host::options().size() >= 3);
        QVERIFY(button(dialog, QDialogButtonBox::Ok)->isEnabled());
        QVERIFY(!button(dialog, QDialogButtonBox::Apply)->isEnabled());
    }

    void optionsAreWritten()
    {
        OptionsDialog dialog;
        QSignalSpy applied(&dialog, &OptionsDialog::applied);
        dialog.findChild<OptionEditor*>("TestOption"_q)
            ->findChild<QLineEdit*>()
            ->setText("one, two"_q);
        dialog.findChild<OptionEditor*>("ZvStyle"_q)
            ->findChild<QComboBox*>()
            ->setCurrentText("Dark"_q);
        QCOMPARE(option("ZvStyle"), "Light"_q);
        button(dialog, QDialogButtonBox::Apply)->click();
        QCOMPARE(applied.count(), 1);
        QCOMPARE(option("ZvStyle"), "Dark"_q);
        QCOMPARE(option("TestOption"), "one, two"_q);
        QVERIFY(!button(dialog, QDialogButtonBox::Apply)->isEnabled());
        QCOMPARE(QSettings(m_host.path() + "/options.ini"_q, QSettings::IniFormat).allKeys().size(),
                 2);

        dialog.findChild<QToolButton*>("reset TestOption"_q)->click();
        QCOMPARE(dialog.findChild<OptionEditor*>("TestOption"_q)->value(), "a, default"_q);
        QCOMPARE(option("TestOption"), "one, two"_q);
        QVERIFY(button(dialog, QDialogButtonBox::Apply)->isEnabled());
        button(dialog, QDialogButtonBox::Ok)->click();
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(applied.count(), 2);
        QCOMPARE(option("TestOption"), "a, default"_q);
        QCOMPARE(QSettings(m_host.path() + "/options.ini"_q, QSettings::IniFormat).allKeys(),
                 QStringList{"ZvStyle"_q});
    }

    void cancelWritesNothing()
    {
        OptionsDialog dialog;
        QSignalSpy applied(&dialog, &OptionsDialog::applied);
        dialog.findChild<OptionEditor*>("TestOption"_q)->setValue("other"_q);
        button(dialog, QDialogButtonBox::Cancel)->click();
        QCOMPARE(applied.count(), 0);
        QCOMPARE(option("TestOption"), "a, default"_q);
    }

    void styleThatHasGoneStays()
    {
        host::writeOption("ZvStyle", "Mine");
        const OptionsDialog dialog;
        auto* const box = dialog.findChild<OptionEditor*>("ZvStyle"_q)->findChild<QComboBox*>();
        QCOMPARE(box->currentText(), "Mine"_q);
        QCOMPARE(box->count(), ZvStyleManager::AvailableStyleNames().size() + 1);
        QVERIFY(!button(dialog, QDialogButtonBox::Apply)->isEnabled());
    }

    void accentIsValidated_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isColour");
        QTest::newRow("hex") << "#12aBcD"_q << true;
        QTest::newRow("name") << "red"_q << true;
        QTest::newRow("blanks around") << " #123456 "_q << true;
        QTest::newRow("no hash") << "12abcd"_q << false;
        QTest::newRow("short of a digit") << "#12345"_q << false;
        QTest::newRow("no digit") << "#12345g"_q << false;
        QTest::newRow("empty") << ""_q << false;
    }

    void accentIsValidated()
    {
        QFETCH(QString, text);
        QFETCH(bool, isColour);
        OptionsDialog dialog;
        auto* const editor = dialog.findChild<OptionEditor*>("ZvStyleAccent"_q);
        editor->findChild<QLineEdit*>()->setText(text);
        QCOMPARE(editor->problem().isEmpty(), isColour);
        QCOMPARE(dialog.findChild<QLabel*>("problem"_q)->text(), editor->problem());
        QCOMPARE(button(dialog, QDialogButtonBox::Ok)->isEnabled(), isColour);
        QCOMPARE(button(dialog, QDialogButtonBox::Apply)->isEnabled(), isColour);
        if (isColour) {
            button(dialog, QDialogButtonBox::Apply)->click();
            QCOMPARE(option("ZvStyleAccent"), text.trimmed());
        }
    }

    void accentIsChosenInADialog()
    {
        OptionsDialog dialog;
        dialog.show();
        auto* const editor = dialog.findChild<OptionEditor*>("ZvStyleAccent"_q);
        const zvtest::WindowResponder<QColorDialog> answer([](QColorDialog& colours) {
            colours.setCurrentColor(QColor(0x10, 0x20, 0x30));
            colours.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        });
        editor->findChild<QToolButton*>("colour"_q)->click();
        QTRY_COMPARE_WITH_TIMEOUT(answer.count, 1, longWait);
        QTRY_COMPARE_WITH_TIMEOUT(editor->value(), "#102030"_q, longWait);
    }

    void failureIsTold()
    {
        OptionsDialog dialog;
        dialog.show();
        const std::string file = host::optionsFile();
        host::setOptionsFile(m_host.path().toStdString());
        QString text;
        QString reason;
        const zvtest::WindowResponder<QMessageBox> answer([&](QMessageBox& box) {
            text = box.text();
            reason = box.informativeText();
            box.accept();
        });
        dialog.findChild<OptionEditor*>("TestOption"_q)->setValue("other"_q);
        button(dialog, QDialogButtonBox::Ok)->click();
        host::setOptionsFile(file);
        QTRY_COMPARE_WITH_TIMEOUT(answer.count, 1, longWait);
        QCOMPARE(text, "The option “TestOption” was not saved."_q);
        QVERIFY2(reason.contains("options file"_q), qPrintable(reason));
        QVERIFY(dialog.isVisible());
        QVERIFY(button(dialog, QDialogButtonBox::Apply)->isEnabled());
        QVERIFY(dialog.apply());
        QCOMPARE(option("TestOption"), "other"_q);
    }

    void namesOfFiles_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("problem");
        const QString banned =
            "A name has at most 255 characters, and none of < > : \" / \\ | ? *"_q;
        const auto device = [](const QString& name) {
            return "“%1” is the name of a device. Add something in front of it."_q.arg(name);
        };
        const QString end = "A name can't end with a dot or a blank."_q;
        QTest::newRow("good") << "new.txt"_q
                              << ""_q;
        QTest::newRow("umlaut") << "ü ö.txt"_q
                                << ""_q;
        QTest::newRow("begins with a dot") << ".profile"_q
                                           << ""_q;
        QTest::newRow("empty") << ""_q
                               << "Type a name."_q;
        for (const char* const character : {"<", ">", ":", "\"", "/", "\\", "|", "?", "*", "\t"})
            QTest::newRow(character) << "a%1b"_q.arg(QLatin1String(character)) << banned;
        QTest::newRow("255 units") << QString(255, QLatin1Char('a')) << ""_q;
        QTest::newRow("256 units") << QString(256, QLatin1Char('a')) << banned;
#if defined(Q_OS_UNIX)
        QTest::newRow("too many bytes")
            << "ä"_q.repeated(128) << "The name is too long for this disk."_q;
#endif
        QTest::newRow("dot at the end") << "a."_q << end;
        QTest::newRow("blank at the end") << "a "_q << end;
        QTest::newRow("this folder") << "."_q << end;
        QTest::newRow("parent folder") << ".."_q << end;
        for (const char* const name :
             {"CON", "nul", "Aux", "prn", "COM1", "lpt9", "CONIN$", "com²"})
            QTest::newRow(name) << QString::fromUtf8(name) << device(QString::fromUtf8(name));
        QTest::newRow("device with extension") << "NUL.tar.gz"_q << device("NUL.tar.gz"_q);
        QTest::newRow("device, blank, extension") << "con .txt"_q << device("con .txt"_q);
        QTest::newRow("com0 is no device") << "COM0"_q
                                           << ""_q;
        QTest::newRow("com10 is no device") << "COM10"_q
                                            << ""_q;
        QTest::newRow("begins like a device") << "console"_q
                                              << ""_q;
        QTest::newRow("ends like a device") << "a.con"_q
                                            << ""_q;
        QTest::newRow("taken") << "taken.txt"_q
                               << "There is a “taken.txt” in this folder already."_q;
        QTest::newRow("taken by a folder") << "folder"_q
                                           << "There is a “folder” in this folder already."_q;
        QTest::newRow("its own") << "mine.txt"_q
                                 << "There is a “mine.txt” in this folder already."_q;
        QTest::newRow("its own in another case") << "MINE.txt"_q
                                                 << ""_q;
    }

    void namesOfFiles()
    {
        QFETCH(QString, name);
        QFETCH(QString, problem);
        zvtest::FileTree tree({"taken.txt"_q, "folder/"_q, "mine.txt"_q});
        QCOMPARE(FileNameDialog::problemWith(name, tree.path(), "mine.txt"_q), problem);
    }

    void linkThatLeadsNowhereTakesItsName()
    {
#if defined(Q_OS_UNIX)
        zvtest::FileTree tree;
        tree.link("link"_q, "gone"_q);
        QVERIFY(!FileNameDialog::problemWith("link"_q, tree.path(), {}).isEmpty());
        tree.file("A.txt"_q);
        tree.file("a.txt"_q);
        QVERIFY(!FileNameDialog::problemWith("A.txt"_q, tree.path(), "a.txt"_q).isEmpty());
#else
        QSKIP("there are no symbolic links that this test could make");
#endif
    }

    void problemsShowAtOnce()
    {
        zvtest::FileTree tree({"a.tar.gz"_q});
        FileNameDialog dialog(nullptr, "Rename"_q, tree.path(), "a.tar.gz"_q);
        auto* const name = dialog.findChild<QLineEdit*>("name"_q);
        const auto* const problem = dialog.findChild<QLabel*>("problem"_q);
        const QPushButton* const ok = button(dialog, QDialogButtonBox::Ok);
        QVERIFY(name->validator());
        QCOMPARE(name->selectedText(), "a.tar"_q);
        QVERIFY(!ok->isEnabled());
        QCOMPARE(problem->text(), "There is a “a.tar.gz” in this folder already."_q);
        QTest::keyClicks(name, "b"_q);
        QCOMPARE(name->text(), "b.gz"_q);
        QVERIFY(ok->isEnabled());
        QVERIFY(problem->text().isEmpty());
        QTest::keyClicks(name, ":"_q);
        QCOMPARE(name->text(), "b.gz"_q);
        QVERIFY(problem->text().contains("none of"_q));
        QTest::keyClicks(name, "c"_q);
        QVERIFY(problem->text().isEmpty());
        name->clear();
        QCOMPARE(problem->text(), "Type a name."_q);
        QVERIFY(!ok->isEnabled());
        QCOMPARE(FileNameDialog(nullptr, {}, tree.path(), ".profile"_q)
                     .findChild<QLineEdit*>("name"_q)
                     ->selectedText(),
                 ".profile"_q);
    }

    void asksForAFile()
    {
        zvtest::FileTree tree;
        const auto ask = [&tree](QDialogButtonBox::StandardButton which) {
            const zvtest::WindowResponder<QDialog> answer(
                [which](QDialog& dialog) { button(dialog, which)->click(); });
            return FileNameDialog::ask(nullptr, "New"_q, tree.path(), "new.zvsch"_q);
        };
        QCOMPARE(ask(QDialogButtonBox::Ok), tree.path("new.zvsch"_q));
        QCOMPARE(ask(QDialogButtonBox::Cancel), ""_q);
        auto* const parent = new QWidget;
        const zvtest::WindowResponder<QDialog> parentGoes(
            [parent](QDialog& /*dialog*/) { delete parent; });
        QCOMPARE(FileNameDialog::ask(parent, "New"_q, tree.path(), "new.zvsch"_q), ""_q);
        QCOMPARE(parentGoes.count, 1);
    }

    void pictures_data()
    {
        zvtest::addStyleRows();
    }

    void pictures()
    {
        QFETCH(QString, style);
        zvtest::showStyle(style);
        OptionsDialog options;
        save(options, "options"_q, style);
        options.findChild<OptionEditor*>("ZvStyleAccent"_q)->setValue("#12"_q);
        save(options, "options-problem"_q, style);
        zvtest::FileTree tree({"bridge.testplan"_q});
        FileNameDialog name(nullptr, "Rename"_q, tree.path(), "bridge.testplan"_q);
        save(name, "name"_q, style);
        AccentSwatches swatches;
        swatches.setCurrent(QColor(0x2D, 0x7D, 0x9A));
        save(swatches, "swatches"_q, style);
        qApp->setStyleSheet(QString());
    }

private:
    const zvtest::StyleHost m_host;
};

QTEST_MAIN(tst_workbench_options)

#include "tst_workbench_options.moc"
