// Colours that are changed in the style editor, and what becomes of them.

#include "StyleEditorTest.h"

#include <zvutil/ZvStyleEditor.h>

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>
#include <zvutil/ZvStyleModel.h>

#include "support/BuiltInStyles.h"
#include "support/StyleHost.h"

#include <QApplication>
#include <QColorDialog>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <vector>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleBrush;
using libzvutil::ZvStyleEditor;
using libzvutil::ZvStyleLibrary;
using libzvutil::ZvStyleManager;
using libzvutil::ZvStyleModel;
using zvtest::Brushes;
using zvtest::builtIn;
using zvtest::Colours;
using zvtest::copyOfLight;
using zvtest::Editors;
using zvtest::Icons;
using zvtest::lightPanel;
using zvtest::setLibrary;
using zvtest::Window;

class tst_ZvStyleEditor_edits : public zvtest::StyleEditorTest
{
    Q_OBJECT

private Q_SLOTS:
    void rowsWithoutAColourOpenNoDialog_data()
    {
        QTest::addColumn<QVector<int>>("rows");
        QTest::newRow("brushes") << QVector<int>{Brushes};
        QTest::newRow("icons") << QVector<int>{Icons};
        QTest::newRow("editors") << QVector<int>{Editors};
        QTest::newRow("icon") << QVector<int>{Icons, 0};
        QTest::newRow("editor") << QVector<int>{Editors, 0};
    }

    void rowsWithoutAColourOpenNoDialog()
    {
        QFETCH(QVector<int>, rows);
        const Window window;
        const QModelIndex index =
            rows.size() == 1 ? window.row({rows[0]}) : window.row({rows[0], rows[1]});
        QSignalSpy activations(window.tree, &QAbstractItemView::activated);
        const Colours colours(Qt::red);
        window.enter(index);
        window.doubleClick(index);
        QCoreApplication::processEvents();
        QCOMPARE(activations.count(), 2);
        QCOMPARE(colours.opened, 0);
        QCOMPARE(window.styles(), builtIn);
    }

    void dialogOffersTheRowsColour()
    {
        const Window window;
        const Colours colours((QColor()));
        window.enter(window.row({Brushes, 0}));
        QCOMPARE(colours.opened, 1);
        QCOMPARE(colours.offered, lightPanel);
        QCOMPARE(colours.options, QColorDialog::ColorDialogOptions());
        QCOMPARE(colours.parent, window.editor.get());
        window.doubleClick(window.row({Editors, 0, 3}));
        QCOMPARE(colours.opened, 2);
        QCOMPARE(colours.offered, QColor(0xFF, 0x43, 0x43));
        // One that isn't valid is a colour to choose, too.
        window.enter(window.row({Brushes, int(ZvStyleBrush::AccentForeground)}));
        QCOMPARE(colours.opened, 3);
    }

    void cancelChangesNothing()
    {
        const Window window;
        Spy previews(*window.editor);
        const Colours colours((QColor()));
        window.enter(window.row({Brushes, 0}));
        QCOMPARE(colours.opened, 1);
        QCOMPARE(window.panelColour(), lightPanel);
        QCOMPARE(window.styles(), builtIn);
        QCOMPARE(previews.names, QStringList());
    }

    void firstColourOnABuiltInStyleMakesACopy_data() { zvtest::addStyleRows(); }

    void firstColourOnABuiltInStyleMakesACopy()
    {
        QFETCH(QString, style);
        const Window window;
        window.choose(style);
        const QColor before = window.panelColour();
        const QString copy = "User " + style;

        chooseColour(window, window.row({Brushes, 0}), Qt::red);
        QCOMPARE(window.styles(), builtIn + QStringList{copy});
        QCOMPARE(window.combo->currentText(), copy);
        QCOMPARE(window.model->style().name().toQString(), copy);
        QVERIFY(!window.model->style().isDefaultStyle());
        QVERIFY(!window.model->signalsBlocked());
        expectPreview(window, Qt::red);

        // Again, in place, also for an editor's brush.
        chooseColour(window, window.row({Brushes, 0}), Qt::blue);
        chooseColour(window, window.row({Editors, 0, 1}), Qt::green);
        QCOMPARE(window.styles(), builtIn + QStringList{copy});
        expectPreview(window, Qt::blue);

        // The built-in one is as it was, and the copy as it was left.
        window.choose(style);
        QCOMPARE(window.panelColour(), before);
        QVERIFY(window.model->style().isDefaultStyle());
        window.choose(copy);
        QCOMPARE(window.panelColour(), QColor(Qt::blue));
        QCOMPARE(window.model->style().editorColour("Testplan", "DisabledText"), QColor(Qt::green));

        // A further edit of the built-in one makes a further copy.
        window.choose(style);
        chooseColour(window, window.row({Editors, 0, 1}), Qt::red);
        QCOMPARE(window.combo->currentText(), copy + " 1");
        QCOMPARE(window.model->style().editorColour("Testplan", "DisabledText"), QColor(Qt::red));
    }

    void editingTheAccentLeavesItsShades()
    {
        const Window window;
        window.click(window.duplicate);
        const QColor shade = window.colour(ZvStyleBrush::AccentD2);
        chooseColour(window, window.row({Brushes, int(ZvStyleBrush::Accent)}), Qt::red);
        QCOMPARE(window.colour(ZvStyleBrush::Accent), QColor(Qt::red));
        QCOMPARE(window.colour(ZvStyleBrush::AccentD2), shade);
        QVERIFY(window.panel->styleSheet().contains("#ffff0000"));
        QVERIFY(window.panel->styleSheet().contains(shade.name(QColor::HexArgb)));
    }

    void duplicates_data()
    {
        QTest::addColumn<QStringList>("users");
        QTest::addColumn<QString>("style");
        QTest::addColumn<QStringList>("copies");
        const auto row =
            [](const char* name, const char* users, const char* style, const char* copies) {
                QTest::newRow(name)
                    << QString::fromLatin1(users).split(QLatin1Char('|'), Qt::SkipEmptyParts)
                    << QString::fromLatin1(style)
                    << QString::fromLatin1(copies).split(QLatin1Char('|'));
            };
        row("built-in", "", "Light", "User Light");
        row("built-in twice", "", "Light|Light", "User Light|User Light 1");
        row("dark", "", "Dark", "User Dark");
        row("copy", "User Light", "User Light", "User Light 1");
        row("copy whose number is taken", "User Light|User Light 1", "User Light", "User Light 2");
        row("gap", "User Light|User Light 2", "User Light", "User Light 1");
        row("numbered copy", "User Light 1", "User Light 1", "User Light 1 1");
        row("own name", "Mine", "Mine", "Mine 1");
    }

    void duplicates()
    {
        QFETCH(QStringList, users);
        QFETCH(QString, style);
        QFETCH(QStringList, copies);
        ZvStyleLibrary library;
        for (const QString& user : users)
            library.update(copyOfLight(user.toUtf8().constData(), Qt::red));
        ZvStyleManager::SetLibrary(library);
        const Window window;
        QStringList expected = builtIn + users;
        int i = 0;
        for (const QString& source : style.split(QLatin1Char('|'))) {
            window.choose(source);
            const QColor panel = window.panelColour();
            window.click(window.duplicate);
            expected += copies[i];
            QCOMPARE(window.combo->currentText(), copies[i++]);
            QCOMPARE(window.model->style().name().toQString(), window.combo->currentText());
            QCOMPARE(window.panelColour(), panel);
            QVERIFY(!window.model->style().isDefaultStyle());
        }
        QCOMPARE(window.styles(), expected);
    }

    void copyReplacesAStyleWhoseNameDiffersInCase()
    {
        setLibrary({copyOfLight("USER LIGHT", Qt::red)});
        const Window window;
        window.click(window.duplicate);
        QCOMPARE(window.styles(), builtIn + QStringList{"User Light"});
        QCOMPARE(window.combo->currentText(), QString("User Light"));
        QCOMPARE(window.panelColour(), lightPanel);
    }

    void lastNumberIsTakenWithoutATest()
    {
        QByteArray xml =
            "<StyleLibrary><Styles><Style name='User Light'><Brushes/><Icons/></Style>";
        for (int i = 1; i < 10'000; ++i)
            xml +=
                "<Style name='User Light " + QByteArray::number(i) + "'><Brushes/><Icons/></Style>";
        const QString file = m_host.path() + "/many.xml";
        QVERIFY(m_host.write(file, xml + "</Styles><Accents/></StyleLibrary>"));
        ZvStyleLibrary library;
        library.add(zvutil::ZvFilePath(file.toStdWString()));
        ZvStyleManager::SetLibrary(library);
        const Window window;
        window.click(window.duplicate);
        QCOMPARE(window.combo->count(), 10'002);
        QCOMPARE(window.combo->currentText(), QString("User Light 9999"));
        QCOMPARE(window.panelColour(), lightPanel);
    }

    void previewSignals()
    {
        const Window window;
        Spy previews(*window.editor);
        window.choose("Dark");
        QCOMPARE(previews.names, QStringList{"Dark"});
        QVERIFY(previews.isModels);
        previews.names.clear();

        // The list is filled anew, which begins with its first style.
        window.click(window.duplicate);
        QCOMPARE(previews.names, (QStringList{"Light", "Dark", "User Dark"}));
        previews.names.clear();
        chooseColour(window, window.row({Brushes, 0}), Qt::red);
        QCOMPARE(previews.names, QStringList{"User Dark"});
        previews.names.clear();

        // Nobody hears of what happens while a built-in style is copied.
        window.choose("Light");
        previews.names.clear();
        chooseColour(window, window.row({Brushes, 0}), Qt::red);
        QCOMPARE(previews.names, QStringList{"User Light"});
    }

    void libraryHasTheEditBeforeAnybodyHearsOfIt()
    {
        setLibrary({copyOfLight("Mine", Qt::red)});
        const Window window;
        window.choose("Mine");
        std::vector<QColor> seen;
        connect(window.editor.get(), &ZvStyleEditor::previewStyleChanged, window.editor.get(), [&] {
            window.editor->apply();
            seen.push_back(ZvStyleManager::Style("Mine").colour(ZvStyleBrush::Panel).qColour());
        });
        QVERIFY(
            window.model->setData(window.row({Brushes, 0}), QColor(Qt::blue), Qt::DecorationRole));
        QCOMPARE(seen, std::vector<QColor>{Qt::blue});
    }

    void applyHandsTheLibraryOver() const
    {
        const Window window;
        chooseColour(window, window.row({Brushes, 0}), Qt::red);
        QCOMPARE(m_libraryChanges, 0);
        QCOMPARE(ZvStyleManager::AvailableStyleNames(), builtIn);
        window.click(window.apply);
        QCOMPARE(m_libraryChanges, 1);
        QCOMPARE(ZvStyleManager::AvailableStyleNames(), window.styles());
        const ZvStyle style = ZvStyleManager::Style("User Light");
        QCOMPARE(style.colour(ZvStyleBrush::Panel).qColour(), QColor(Qt::red));
        QCOMPARE(ZvStyle::Current().name().toQString(), QString("Light"));

        // The editor's stays its own.
        chooseColour(window, window.row({Brushes, 0}), Qt::blue);
        QCOMPARE(ZvStyleManager::Style("User Light").colour(ZvStyleBrush::Panel).qColour(),
                 QColor(Qt::red));
        window.editor->apply();
        QCOMPARE(m_libraryChanges, 2);
        QCOMPARE(ZvStyleManager::Style("User Light").colour(ZvStyleBrush::Panel).qColour(),
                 QColor(Qt::blue));
    }

    void closingAsksNothingAndLosesEdits() const
    {
        {
            const Window window;
            chooseColour(window, window.row({Brushes, 0}), Qt::red);
            QVERIFY(window.editor->close());
        }
        QCOMPARE(m_libraryChanges, 0);
        QCOMPARE(ZvStyleManager::AvailableStyleNames(), builtIn);
        const Window window;
        QCOMPARE(window.styles(), builtIn);
        QCOMPARE(window.panelColour(), lightPanel);
    }

    void editorsDoNotSeeEachOther()
    {
        const Window first;
        const Window second;
        first.click(first.duplicate);
        QCOMPARE(second.styles(), builtIn);
        first.click(first.apply);
        QCOMPARE(second.styles(), builtIn);
        // The last one to apply has its way.
        second.click(second.apply);
        QCOMPARE(ZvStyleManager::AvailableStyleNames(), builtIn);
    }

    void modelThatIsResetBehindTheDialog()
    {
        const Window window;
        const QModelIndex row = window.row({Editors, 0, 0});
        QTimer::singleShot(0, window.editor.get(),
                           [&window] { window.combo->setCurrentText("Dark"); });
        chooseColour(window, row, Qt::red);
        QCOMPARE(window.styles(), builtIn);
        QCOMPARE(window.combo->currentText(), QString("Dark"));
    }

    void keysAloneChangeAColourAndApplyIt()
    {
        const Window window;
        window.combo->setFocus();
        QTest::keyClick(window.combo, Qt::Key_Down);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), window.tree);
        const Colours colours(Qt::red);
        for (const Qt::Key key :
             {Qt::Key_Home, Qt::Key_Down, Qt::Key_Right, Qt::Key_Down, Qt::Key_Left, Qt::Key_End,
              Qt::Key_Right, Qt::Key_Down, Qt::Key_Right, Qt::Key_Down, Qt::Key_Down})
            QTest::keyClick(window.tree, key);
        QCOMPARE(window.tree->currentIndex().data().toString(), QString("DisabledText"));
        QTest::keyClick(window.tree, Qt::Key_Enter);
        QCOMPARE(colours.opened, 1);
        // The offscreen platform doesn't give the focus back by itself.
        window.editor->activateWindow();
        QTRY_COMPARE(QApplication::focusWidget(), window.tree);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        QCOMPARE(QApplication::focusWidget(), window.apply);
        QTest::keyClick(window.apply, Qt::Key_Space);
        QCOMPARE(ZvStyleManager::Style("User Dark").editorColour("Testplan", "DisabledText"),
                 QColor(Qt::red));
    }

private:
    /// The styles that an editor tells its listeners of.
    class Spy
    {
    public:
        explicit Spy(const ZvStyleEditor& editor)
        {
            auto* const model =
                dynamic_cast<ZvStyleModel*>(editor.findChild<QTreeView*>()->model());
            QObject::connect(&editor, &ZvStyleEditor::previewStyleChanged, &m_context,
                             [this, model](const ZvStyle& style) {
                                 names += style.name().toQString();
                                 isModels &= &style == &model->style();
                             });
        }

        QStringList names;
        bool isModels = true;

    private:
        QObject m_context;
    };
};

QTEST_MAIN(tst_ZvStyleEditor_edits)
#include "tst_ZvStyleEditor_edits.moc"
