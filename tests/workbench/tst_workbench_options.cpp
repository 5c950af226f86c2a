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
    QVERIFY(QDir().mkpath(PICTURES));
    QVERIFY(widget.grab().save(QString(PICTURES "/%1-%2.png").arg(name, style)));
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
        QCOMPARE(accentText(QColor(0x2D, 0x7D, 0x9A)), QString("#2d7d9a"));
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
        QCOMPARE(buttons[1]->toolTip(), QString("#ff8c00"));
        QCOMPARE(buttons[1]->accessibleName(), QString("Gold"));

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
        dialog.findChild<OptionEditor*>("TestOption")->findChild<QLineEdit*>()->setText("one, two");
        dialog.findChild<OptionEditor*>("ZvStyle")->findChild<QComboBox*>()->setCurrentText("Dark");
        QCOMPARE(option("ZvStyle"), QString("Light"));
        button(dialog, QDialogButtonBox::Apply)->click();
        QCOMPARE(applied.count(), 1);
        QCOMPARE(option("ZvStyle"), QString("Dark"));
        QCOMPARE(option("TestOption"), QString("one, two"));
        QVERIFY(!button(dialog, QDialogButtonBox::Apply)->isEnabled());
        QCOMPARE(QSettings(m_host.path() + "/options.ini", QSettings::IniFormat).allKeys().size(),
                 2);

        dialog.findChild<QToolButton*>("reset TestOption")->click();
        QCOMPARE(dialog.findChild<OptionEditor*>("TestOption")->value(), QString("a, default"));
        QCOMPARE(option("TestOption"), QString("one, two"));
        QVERIFY(button(dialog, QDialogButtonBox::Apply)->isEnabled());
        button(dialog, QDialogButtonBox::Ok)->click();
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(applied.count(), 2);
        QCOMPARE(option("TestOption"), QString("a, default"));
        QCOMPARE(QSettings(m_host.path() + "/options.ini", QSettings::IniFormat).allKeys(),
                 QStringList{"ZvStyle"});
    }

    void cancelWritesNothing()
    {
        OptionsDialog dialog;
        QSignalSpy applied(&dialog, &OptionsDialog::applied);
        dialog.findChild<OptionEditor*>("TestOption")->setValue("other");
        button(dialog, QDialogButtonBox::Cancel)->click();
        QCOMPARE(applied.count(), 0);
        QCOMPARE(option("TestOption"), QString("a, default"));
    }

    void styleThatHasGoneStays()
    {
        host::writeOption("ZvStyle", "Mine");
        const OptionsDialog dialog;
        auto* const box = dialog.findChild<OptionEditor*>("ZvStyle")->findChild<QComboBox*>();
        QCOMPARE(box->currentText(), QString("Mine"));
        QCOMPARE(box->count(), ZvStyleManager::AvailableStyleNames().size() + 1);
        QVERIFY(!button(dialog, QDialogButtonBox::Apply)->isEnabled());
    }

    void accentIsValidated_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isColour");
        QTest::newRow("hex") << "#12aBcD" << true;
        QTest::newRow("name") << "red" << true;
        QTest::newRow("blanks around") << " #123456 " << true;
        QTest::newRow("no hash") << "12abcd" << false;
        QTest::newRow("short of a digit") << "#12345" << false;
        QTest::newRow("no digit") << "#12345g" << false;
        QTest::newRow("empty") << "" << false;
    }

    void accentIsValidated()
    {
        QFETCH(QString, text);
        QFETCH(bool, isColour);
        OptionsDialog dialog;
        auto* const editor = dialog.findChild<OptionEditor*>("ZvStyleAccent");
        editor->findChild<QLineEdit*>()->setText(text);
        QCOMPARE(editor->problem().isEmpty(), isColour);
        QCOMPARE(dialog.findChild<QLabel*>("problem")->text(), editor->problem());
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
        auto* const editor = dialog.findChild<OptionEditor*>("ZvStyleAccent");
        const zvtest::WindowResponder<QColorDialog> answer([](QColorDialog& colours) {
            colours.setCurrentColor(QColor(0x10, 0x20, 0x30));
            colours.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        });
        editor->findChild<QToolButton*>("colour")->click();
        QTRY_COMPARE_WITH_TIMEOUT(answer.count, 1, longWait);
        QTRY_COMPARE_WITH_TIMEOUT(editor->value(), QString("#102030"), longWait);
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
        const QSignalSpy applied(&dialog, &OptionsDialog::applied);
        dialog.findChild<OptionEditor*>("TestOption")->setValue("other");
        button(dialog, QDialogButtonBox::Ok)->click();
        QCOMPARE(applied.count(), 0);
        host::setOptionsFile(file);
        QTRY_COMPARE_WITH_TIMEOUT(answer.count, 1, longWait);
        QCOMPARE(text, QString("The option “TestOption” was not saved."));
        QVERIFY2(reason.contains("options file"), qPrintable(reason));
        QVERIFY(dialog.isVisible());
        QVERIFY(button(dialog, QDialogButtonBox::Apply)->isEnabled());
        QVERIFY(dialog.apply());
        QCOMPARE(option("TestOption"), QString("other"));
    }

    void namesOfFiles_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("problem");
        const QString banned = "A name has at most 255 characters, and none of < > : \" / \\ | ? *";
        const auto device = [](const QString& name) {
            return QString("“%1” is a reserved device name. Choose another name.").arg(name);
        };
        const QString end = "A name can't end with a dot or a space.";
        QTest::newRow("good") << "new.txt"
                              << "";
        QTest::newRow("umlaut") << "ü ö.txt"
                                << "";
        QTest::newRow("begins with a dot") << ".profile"
                                           << "";
        QTest::newRow("empty") << ""
                               << "Type a name.";
        for (const char* const character : {"<", ">", ":", "\"", "/", "\\", "|", "?", "*", "\t"})
            QTest::newRow(character) << QString("a%1b").arg(QLatin1String(character)) << banned;
        QTest::newRow("255 units") << QString(255, QLatin1Char('a')) << "";
        QTest::newRow("256 units") << QString(256, QLatin1Char('a')) << banned;
#if defined(Q_OS_UNIX)
        QTest::newRow("too many bytes")
            << QString("ä").repeated(128) << "The name is too long for this disk.";
#endif
        QTest::newRow("dot at the end") << "a." << end;
        QTest::newRow("blank at the end") << "a " << end;
        QTest::newRow("this folder") << "." << end;
        QTest::newRow("parent folder") << ".." << end;
        for (const char* const name :
             {"CON", "nul", "Aux", "prn", "COM1", "lpt9", "CONIN$", "com²"})
            QTest::newRow(name) << QString::fromUtf8(name) << device(QString::fromUtf8(name));
        QTest::newRow("device with extension") << "NUL.tar.gz" << device(QString("NUL.tar.gz"));
        QTest::newRow("device, blank, extension") << "con .txt" << device(QString("con .txt"));
        QTest::newRow("com0 is no device") << "COM0"
                                           << "";
        QTest::newRow("com10 is no device") << "COM10"
                                            << "";
        QTest::newRow("begins like a device") << "console"
                                              << "";
        QTest::newRow("ends like a device") << "a.con"
                                            << "";
        QTest::newRow("taken") << "taken.txt"
                               << "“taken.txt” already exists in this folder.";
        QTest::newRow("taken by a folder") << "folder"
                                           << "“folder” already exists in this folder.";
        QTest::newRow("its own") << "mine.txt"
                                 << "“mine.txt” already exists in this folder.";
        QTest::newRow("its own in another case") << "MINE.txt"
                                                 << "";
    }

    void namesOfFiles()
    {
        QFETCH(QString, name);
        QFETCH(QString, problem);
        zvtest::FileTree tree({"taken.txt", "folder/", "mine.txt"});
        QCOMPARE(FileNameDialog::problemWith(name, tree.path(), "mine.txt"), problem);
    }

    void linkThatLeadsNowhereTakesItsName()
    {
#if defined(Q_OS_UNIX)
        zvtest::FileTree tree;
        tree.link("link", "gone");
        QVERIFY(!FileNameDialog::problemWith("link", tree.path(), {}).isEmpty());
        tree.file(QString("A.txt"));
        tree.file(QString("a.txt"));
        QVERIFY(!FileNameDialog::problemWith("A.txt", tree.path(), "a.txt").isEmpty());
#else
        QSKIP("there are no symbolic links that this test could make");
#endif
    }

    void problemsShowAtOnce()
    {
        zvtest::FileTree tree({"a.tar.gz"});
        FileNameDialog dialog(nullptr, "Rename", tree.path(), "a.tar.gz");
        auto* const name = dialog.findChild<QLineEdit*>("name");
        const auto* const problem = dialog.findChild<QLabel*>("problem");
        const QPushButton* const ok = button(dialog, QDialogButtonBox::Ok);
        QVERIFY(name->validator());
        QCOMPARE(name->selectedText(), QString("a.tar"));
        QVERIFY(!ok->isEnabled());
        QCOMPARE(problem->text(), QString("“a.tar.gz” already exists in this folder."));
        QTest::keyClicks(name, "b");
        QCOMPARE(name->text(), QString("b.gz"));
        QVERIFY(ok->isEnabled());
        QVERIFY(problem->text().isEmpty());
        QTest::keyClicks(name, ":");
        QCOMPARE(name->text(), QString("b.gz"));
        QVERIFY(problem->text().contains("none of"));
        QTest::keyClicks(name, "c");
        QVERIFY(problem->text().isEmpty());
        name->clear();
        QCOMPARE(problem->text(), QString("Type a name."));
        QVERIFY(!ok->isEnabled());
        QCOMPARE(FileNameDialog(nullptr, {}, tree.path(), ".profile")
                     .findChild<QLineEdit*>("name")
                     ->selectedText(),
                 QString(".profile"));
    }

    void asksForAFile()
    {
        zvtest::FileTree tree;
        const auto ask = [&tree](QDialogButtonBox::StandardButton which) {
            const zvtest::WindowResponder<QDialog> answer(
                [which](QDialog& dialog) { button(dialog, which)->click(); });
            return FileNameDialog::ask(nullptr, "New", tree.path(), "new.zvsch");
        };
        QCOMPARE(ask(QDialogButtonBox::Ok), tree.path("new.zvsch"));
        QCOMPARE(ask(QDialogButtonBox::Cancel), QString(""));
        auto* const parent = new QWidget;
        const zvtest::WindowResponder<QDialog> parentGoes(
            [parent](QDialog& /*dialog*/) { delete parent; });
        QCOMPARE(FileNameDialog::ask(parent, "New", tree.path(), "new.zvsch"), QString(""));
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
        save(options, "options", style);
        options.findChild<OptionEditor*>("ZvStyleAccent")->setValue("#12");
        save(options, "options-problem", style);
        zvtest::FileTree tree({"bridge.testplan"});
        FileNameDialog name(nullptr, "Rename", tree.path(), "bridge.testplan");
        save(name, "name", style);
        AccentSwatches swatches;
        swatches.setCurrent(QColor(0x2D, 0x7D, 0x9A));
        save(swatches, "swatches", style);
        qApp->setStyleSheet(QString());
    }

private:
    const zvtest::StyleHost m_host;
};

QTEST_MAIN(tst_workbench_options)

#include "tst_workbench_options.moc"
