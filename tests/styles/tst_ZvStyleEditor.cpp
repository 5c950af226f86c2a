// The style editor as a person uses it, with keys and the mouse.

#include <zvutil/ZvStyleEditor.h>

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>
#include <zvutil/ZvStyleModel.h>

#include "support/StyleHost.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMetaMethod>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>
#include <type_traits>
#include <vector>

using libzvutil::styleManager;
using libzvutil::ZvStyle;
using libzvutil::ZvStyleBrush;
using libzvutil::ZvStyleEditor;
using libzvutil::ZvStyleLibrary;
using libzvutil::ZvStyleManager;
using libzvutil::ZvStyleModel;

namespace {

static_assert(std::is_base_of_v<QWidget, ZvStyleEditor>);
static_assert(std::is_default_constructible_v<ZvStyleEditor>);

const QStringList builtIn = {QStringLiteral("Light"), QStringLiteral("Dark")};
const QColor lightPanel(0xF0, 0xF0, 0xF0);
const QColor darkPanel(0x20, 0x20, 0x20);

enum Group { Brushes, Icons, Editors };

QString inSheet(const QColor& panel)
{
    return QStringLiteral("background-color:%1;").arg(panel.name(QColor::HexArgb));
}

ZvStyle userStyle(const char* name, const QColor& panel)
{
    ZvStyle style = ZvStyleManager::Library().light().duplicate(name);
    style.setColour(ZvStyleBrush::Panel, panel);
    return style;
}

void setLibrary(std::initializer_list<ZvStyle> styles)
{
    ZvStyleLibrary library;
    for (const ZvStyle& style : styles)
        library.update(style);
    ZvStyleManager::SetLibrary(library);
}

/// An editor with its controls.
class Window
{
public:
    Window()
        : Window(std::make_unique<ZvStyleEditor>())
    {
    }

    explicit Window(std::unique_ptr<ZvStyleEditor> shown)
        : editor(std::move(shown))
        , combo(editor->findChild<QComboBox*>())
        , tree(editor->findChild<QTreeView*>())
        , tabs(editor->findChild<QTabWidget*>())
    {
        for (QPushButton* const button : editor->findChildren<QPushButton*>()) {
            if (button->text() == QLatin1String("Duplicate"))
                duplicate = button;
            else if (button->text() == QLatin1String("Apply"))
                apply = button;
        }
        model = dynamic_cast<ZvStyleModel*>(tree->model());
        panel = tabs->parentWidget();
        editor->resize(800, 600);
        editor->show();
        editor->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(editor.get()));
    }

    QStringList styles() const
    {
        QStringList names;
        for (int i = 0; i < combo->count(); ++i)
            names += combo->itemText(i);
        return names;
    }

    /// A row by the way to it from the root, opened so that it can be seen. It is the view's own index.
    QModelIndex row(std::initializer_list<int> rows) const
    {
        QModelIndex index;
        for (const int row : rows) {
            if (!index.isValid()) {
                index = model->index(row, 0, index);
                continue;
            }
            tree->expand(index);
            for (int i = 0; i <= row; ++i)
                index = tree->indexBelow(index);
        }
        return index;
    }

    QColor colour(ZvStyleBrush brush) const { return model->style().colour(brush).qColour(); }
    QColor panelColour() const { return colour(ZvStyleBrush::Panel); }

    /// Chooses a style in the list, by keys.
    void choose(const QString& name) const
    {
        combo->setFocus();
        QTest::keyClick(combo, Qt::Key_Home);
        for (int i = combo->findText(name); i > 0; --i)
            QTest::keyClick(combo, Qt::Key_Down);
        QCOMPARE(combo->currentText(), name);
    }

    void click(QAbstractButton* button) const { QTest::mouseClick(button, Qt::LeftButton); }

    /// Double-clicks a row of the tree.
    void doubleClick(const QModelIndex& index) const
    {
        tree->scrollTo(index);
        const QPoint centre = tree->visualRect(index).center();
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, centre);
        QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, centre);
    }

    /// Presses Enter on a row of the tree.
    void enter(const QModelIndex& index) const
    {
        tree->setFocus();
        tree->setCurrentIndex(index);
        QTest::keyClick(tree, Qt::Key_Return);
    }

    std::unique_ptr<ZvStyleEditor> editor;
    QComboBox* combo;
    QTreeView* tree;
    QTabWidget* tabs;
    ZvStyleModel* model = nullptr;
    QWidget* panel = nullptr;
    QPushButton* duplicate = nullptr;
    QPushButton* apply = nullptr;
};

/// Answers the dialogs for a colour that open while it lives: types a colour and presses Enter, or
/// presses Escape for an invalid one.
class Colours
{
public:
    explicit Colours(const QColor& colour)
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this, colour] {
            auto* const dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
            if (!dialog || !dialog->isVisible())
                return;
            ++opened;
            offered = dialog->currentColor();
            title = dialog->windowTitle();
            options = dialog->options();
            parent = dialog->parentWidget();
            if (colour.isValid()) {
                // The one line edit that isn't a spin box's: the name of the colour.
                for (QLineEdit* const edit : dialog->findChildren<QLineEdit*>()) {
                    if (!edit->text().startsWith(QLatin1Char('#')))
                        continue;
                    edit->setFocus();
                    edit->selectAll();
                    QTest::keyClicks(edit, colour.name());
                    QTest::keyClick(edit, Qt::Key_Return);
                }
            } else {
                QTest::keyClick(dialog, Qt::Key_Escape);
            }
        });
        m_timer.start(0);
    }

    int opened = 0;
    QColor offered;
    QString title;
    QColorDialog::ColorDialogOptions options;
    QWidget* parent = nullptr;

private:
    QTimer m_timer;
};

QWidget* sampleTab(const ZvStyleEditor* editor)
{
    auto* const label = new QLabel(QStringLiteral("Sample"));
    label->setProperty("editor", QVariant::fromValue(const_cast<ZvStyleEditor*>(editor)));
    return label;
}

QWidget* emptyTab(const ZvStyleEditor* /*editor*/)
{
    return nullptr;
}

QStringList tabNames(const QTabWidget& tabs)
{
    QStringList names;
    for (int i = 0; i < tabs.count(); ++i)
        names += tabs.tabText(i);
    return names;
}

} // namespace

class tst_ZvStyleEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_host.isValid());
        // The platform's own dialog couldn't be driven.
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        ZvStyleManager::Refresh();
        m_sheet = qApp->styleSheet();
        QVERIFY(!m_sheet.isEmpty());
        connect(&styleManager(), &ZvStyleManager::styleLibraryChanged, this,
                [this] { ++m_libraryChanges; });
    }

    void init()
    {
        ZvStyleManager::SetLibrary(ZvStyleLibrary());
        ZvStyleManager::SetStyle(ZvStyleManager::Library().light());
        m_libraryChanges = 0;
    }

    void cleanup()
    {
        // Nothing that an editor does shows elsewhere or is saved.
        QCOMPARE(qApp->styleSheet(), m_sheet);
        QVERIFY(!QFile::exists(m_host.libraryFile()));
    }

    void metaObject()
    {
        const QMetaObject& meta = ZvStyleEditor::staticMetaObject;
        QCOMPARE(meta.className(), "libzvutil::ZvStyleEditor");
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
        const QMetaMethod method = meta.method(meta.methodOffset());
        QCOMPARE(method.methodType(), QMetaMethod::Signal);
        QCOMPARE(method.methodSignature(), QByteArray("previewStyleChanged(ZvStyle)"));
    }

    void layout()
    {
        const Window window;
        QVERIFY(window.combo && window.duplicate && window.tree && window.tabs && window.apply);
        QVERIFY(!window.editor->testAttribute(Qt::WA_DeleteOnClose));
        auto* const main = qobject_cast<QVBoxLayout*>(window.editor->layout());
        QVERIFY(main);
        QCOMPARE(main->count(), 3);

        QLayout* const top = main->itemAt(0)->layout();
        QCOMPARE(top->count(), 3);
        QCOMPARE(top->itemAt(0)->widget(), window.combo);
        QVERIFY(top->itemAt(1)->spacerItem());
        QCOMPARE(top->itemAt(2)->widget(), window.duplicate);

        auto* const splitter = qobject_cast<QSplitter*>(main->itemAt(1)->widget());
        QVERIFY(splitter);
        QCOMPARE(splitter->count(), 2);
        QCOMPARE(splitter->widget(0), window.tree);
        QCOMPARE(splitter->widget(1), window.panel);
        QCOMPARE(splitter->widget(0)->sizePolicy().horizontalStretch(), 0);
        QCOMPARE(splitter->widget(1)->sizePolicy().horizontalStretch(), 1);
        QCOMPARE(window.panel->layout()->itemAt(0)->widget(), window.tabs);
        QVERIFY(qobject_cast<QVBoxLayout*>(window.panel->layout()));

        QLayout* const bottom = main->itemAt(2)->layout();
        QCOMPARE(bottom->count(), 2);
        QVERIFY(bottom->itemAt(0)->spacerItem());
        QCOMPARE(bottom->itemAt(1)->widget(), window.apply);

        QVERIFY(window.tree->isHeaderHidden());
        QVERIFY(window.model);
        QCOMPARE(static_cast<QObject*>(window.model)->parent(), window.tree);
        QVERIFY(!window.combo->isEditable());
        QVERIFY(window.editor->windowTitle().isEmpty());
    }

    void basicControls_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QByteArray>("type");
        const auto row = [](int number, const char* name, const QMetaObject& type) {
            QTest::newRow(name) << number << QByteArray(type.className());
        };
        row(1, "Button", QPushButton::staticMetaObject);
        row(2, "Checkbox", QCheckBox::staticMetaObject);
        row(3, "RadioButton", QRadioButton::staticMetaObject);
        row(4, "ToolButton", QToolButton::staticMetaObject);
        row(5, "PartialCheckbox", QCheckBox::staticMetaObject);
    }

    void basicControls()
    {
        QFETCH(int, row);
        QFETCH(QByteArray, type);
        const Window window;
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        const QGridLayout* const grid = basicGrid(window);
        QCOMPARE(label(grid, row, 0), name);
        const bool canBeChecked = row == 2 || row == 3 || row == 5;
        for (int column = 1; column <= 4; ++column) {
            const auto* const control =
                qobject_cast<QAbstractButton*>(grid->itemAtPosition(row, column)->widget());
            QVERIFY(control);
            QCOMPARE(QByteArray(control->metaObject()->className()), type);
            QCOMPARE(control->text(), QStringLiteral("Label"));
            QCOMPARE(control->isEnabled(), column != 2);
            QCOMPARE(control->isDown(), column == 3);
            QCOMPARE(control->isChecked(), canBeChecked && (column == 4 || row == 5));
            QCOMPARE(control->accessibleName(), name + QLatin1Char(' ') + label(grid, 0, column));
            if (row == 5)
                QCOMPARE(qobject_cast<const QCheckBox*>(control)->checkState(),
                         column == 4 ? Qt::Checked : Qt::PartiallyChecked);
        }
    }

    void basicTab()
    {
        const Window window;
        QCOMPARE(tabNames(*window.tabs), QStringList{QStringLiteral("Basic UI")});
        const auto* const area = qobject_cast<QScrollArea*>(window.tabs->widget(0));
        QVERIFY(area);
        QVERIFY(area->widgetResizable());
        QCOMPARE(area->widget()->metaObject(), &QWidget::staticMetaObject);
        const QLayout* const layout = area->widget()->layout();
        QVERIFY(qobject_cast<const QVBoxLayout*>(layout));
        QCOMPARE(layout->count(), 2);
        QVERIFY(layout->itemAt(1)->spacerItem());
        const QGridLayout* const grid = basicGrid(window);
        QCOMPARE(grid->rowCount(), 6);
        QCOMPARE(grid->columnCount(), 5);
        QStringList header;
        for (int column = 0; column < 5; ++column)
            header += label(grid, 0, column);
        QCOMPARE(header.join(QLatin1Char(' ')),
                 QStringLiteral("Type Enabled Disabled Pressed Checked"));
    }

    void startsWithTheCurrentStyle()
    {
        setLibrary({userStyle("Mine", Qt::red)});
        ZvStyleManager::SetStyle(ZvStyleManager::Library().style("Mine"));
        const Window window;
        QCOMPARE(window.styles(), builtIn + QStringList{QStringLiteral("Mine")});
        QCOMPARE(window.combo->currentText(), QStringLiteral("Mine"));
        QCOMPARE(window.model->style().name().toQString(), QStringLiteral("Mine"));
        expectPreview(window, Qt::red);
    }

    void startsWithAStyleThatIsNotInTheLibrary()
    {
        ZvStyleManager::SetStyle(userStyle("Unknown", Qt::red));
        const Window window;
        QCOMPARE(window.styles(), builtIn);
        // The list has nothing else to show.
        QCOMPARE(window.combo->currentText(), QStringLiteral("Light"));
        QCOMPARE(window.model->style().name().toQString(), QStringLiteral("Unknown"));
        expectPreview(window, Qt::red);

        // An edit puts it into the library; the list learns of it with the next copy.
        chooseColour(window, window.row({Brushes, 0}), Qt::blue);
        QCOMPARE(window.styles(), builtIn);
        window.click(window.duplicate);
        QCOMPARE(window.styles(),
                 (builtIn + QStringList{QStringLiteral("Unknown"), QStringLiteral("Unknown 1")}));
        QCOMPARE(window.combo->currentText(), QStringLiteral("Unknown 1"));
    }

    void previewShowsOnThePanelAlone()
    {
        const Window window;
        expectPreview(window, lightPanel);
        window.choose(QStringLiteral("Dark"));
        expectPreview(window, darkPanel);
        for (const QWidget* const widget : window.panel->findChildren<QWidget*>())
            QCOMPARE(widget->styleSheet(), window.panel->styleSheet());
        QCOMPARE(window.panel->grab().toImage().pixelColor(1, 1), darkPanel);
        for (const QWidget* const widget :
             {static_cast<const QWidget*>(window.editor.get()),
              static_cast<const QWidget*>(window.tree), static_cast<const QWidget*>(window.combo),
              static_cast<const QWidget*>(window.apply)})
            QVERIFY(widget->styleSheet().isEmpty());
        window.choose(QStringLiteral("Light"));
        expectPreview(window, lightPanel);
    }

    void previewHasTheUsersAdditions()
    {
        QVERIFY(m_host.write(m_host.modificationsFile(), "QLabel { color: @panel }"));
        const Window window;
        QVERIFY(window.panel->styleSheet().endsWith(QStringLiteral("QLabel { color: #fff0f0f0 }")));
        QVERIFY(QFile::remove(m_host.modificationsFile()));
    }

    void switchingStylesKeepsNothingOfABuiltInOne()
    {
        const Window window;
        QSignalSpy resets(window.model, &QAbstractItemModel::modelReset);
        window.choose(QStringLiteral("Dark"));
        QCOMPARE(window.panelColour(), darkPanel);
        QCOMPARE(window.model->style().name().toQString(), QStringLiteral("Dark"));
        QCOMPARE(resets.count(), 1);
        window.choose(QStringLiteral("Light"));
        QCOMPARE(window.panelColour(), lightPanel);
        QCOMPARE(window.styles(), builtIn);
    }

    void nameThatTheLibraryDoesNotHaveChangesNothing()
    {
        const Window window;
        window.choose(QStringLiteral("Dark"));
        window.combo->addItem(QStringLiteral("Nowhere"));
        window.combo->setCurrentText(QStringLiteral("Nowhere"));
        QCOMPARE(window.model->style().name().toQString(), QStringLiteral("Dark"));
        window.combo->clear();
        QCOMPARE(window.model->style().name().toQString(), QStringLiteral("Dark"));
    }

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

    void firstColourOnABuiltInStyleMakesACopy_data()
    {
        QTest::addColumn<QString>("style");
        QTest::newRow("Light") << QStringLiteral("Light");
        QTest::newRow("Dark") << QStringLiteral("Dark");
    }

    void firstColourOnABuiltInStyleMakesACopy()
    {
        QFETCH(QString, style);
        const Window window;
        window.choose(style);
        const QColor before = window.panelColour();
        const QString copy = QStringLiteral("User ") + style;

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
        QCOMPARE(window.combo->currentText(), copy + QStringLiteral(" 1"));
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
        QVERIFY(window.panel->styleSheet().contains(QStringLiteral("#ffff0000")));
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
            library.update(userStyle(user.toUtf8().constData(), Qt::red));
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
        setLibrary({userStyle("USER LIGHT", Qt::red)});
        const Window window;
        window.click(window.duplicate);
        QCOMPARE(window.styles(), builtIn + QStringList{QStringLiteral("User Light")});
        QCOMPARE(window.combo->currentText(), QStringLiteral("User Light"));
        QCOMPARE(window.panelColour(), lightPanel);
    }

    void lastNumberIsTakenWithoutATest()
    {
        QByteArray xml = "<a><b><c name='User Light'><d/><e/></c>";
        for (int i = 1; i < 10'000; ++i)
            xml += "<c name='User Light " + QByteArray::number(i) + "'><d/><e/></c>";
        const QString file = m_host.path() + QStringLiteral("/many.xml");
        QVERIFY(m_host.write(file, xml + "</b><f/></a>"));
        ZvStyleLibrary library;
        library.add(zvutil::ZvFilePath(file.toStdWString()));
        ZvStyleManager::SetLibrary(library);
        const Window window;
        window.click(window.duplicate);
        QCOMPARE(window.combo->count(), 10'002);
        QCOMPARE(window.combo->currentText(), QStringLiteral("User Light 9999"));
        QCOMPARE(window.panelColour(), lightPanel);
    }

    void previewSignals()
    {
        const Window window;
        Spy previews(*window.editor);
        window.choose(QStringLiteral("Dark"));
        QCOMPARE(previews.names, QStringList{QStringLiteral("Dark")});
        QVERIFY(previews.isModels);
        previews.names.clear();

        // The list is filled anew, which begins with its first style.
        window.click(window.duplicate);
        QCOMPARE(previews.names,
                 (QStringList{QStringLiteral("Light"), QStringLiteral("Dark"),
                              QStringLiteral("User Dark")}));
        previews.names.clear();
        chooseColour(window, window.row({Brushes, 0}), Qt::red);
        QCOMPARE(previews.names, QStringList{QStringLiteral("User Dark")});
        previews.names.clear();

        // Nobody hears of what happens while a built-in style is copied.
        window.choose(QStringLiteral("Light"));
        previews.names.clear();
        chooseColour(window, window.row({Brushes, 0}), Qt::red);
        QCOMPARE(previews.names, QStringList{QStringLiteral("User Light")});
    }

    void libraryHasTheEditBeforeAnybodyHearsOfIt()
    {
        setLibrary({userStyle("Mine", Qt::red)});
        const Window window;
        window.choose(QStringLiteral("Mine"));
        std::vector<QColor> seen;
        connect(window.editor.get(), &ZvStyleEditor::previewStyleChanged, window.editor.get(), [&] {
            window.editor->apply();
            seen.push_back(ZvStyleManager::Style(QStringLiteral("Mine"))
                               .colour(ZvStyleBrush::Panel)
                               .qColour());
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
        const ZvStyle style = ZvStyleManager::Style(QStringLiteral("User Light"));
        QCOMPARE(style.colour(ZvStyleBrush::Panel).qColour(), QColor(Qt::red));
        QCOMPARE(ZvStyle::Current().name().toQString(), QStringLiteral("Light"));

        // The editor's stays its own.
        chooseColour(window, window.row({Brushes, 0}), Qt::blue);
        QCOMPARE(ZvStyleManager::Style(QStringLiteral("User Light"))
                     .colour(ZvStyleBrush::Panel)
                     .qColour(),
                 QColor(Qt::red));
        window.editor->apply();
        QCOMPARE(m_libraryChanges, 2);
        QCOMPARE(ZvStyleManager::Style(QStringLiteral("User Light"))
                     .colour(ZvStyleBrush::Panel)
                     .qColour(),
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
                           [&window] { window.combo->setCurrentText(QStringLiteral("Dark")); });
        chooseColour(window, row, Qt::red);
        QCOMPARE(window.styles(), builtIn);
        QCOMPARE(window.combo->currentText(), QStringLiteral("Dark"));
    }

    void command()
    {
        const QWidgetList before = QApplication::topLevelWidgets();
        host::callCommand("_se", {"ignored"}, {}, {"test", 1});
        QPointer<ZvStyleEditor> window;
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (!before.contains(widget) && qobject_cast<ZvStyleEditor*>(widget))
                window = qobject_cast<ZvStyleEditor*>(widget);
        }
        QVERIFY(window);
        QVERIFY(window->isVisible());
        QVERIFY(!window->parent());
        QVERIFY(window->testAttribute(Qt::WA_DeleteOnClose));
        window->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!window);
    }

    void commandShowsAllSamples_data()
    {
        QTest::addColumn<QString>("style");
        QTest::newRow("no sheet") << QString();
        QTest::newRow("Light") << QStringLiteral("Light");
        QTest::newRow("Dark") << QStringLiteral("Dark");
    }

    void commandShowsAllSamples()
    {
        QFETCH(QString, style);
        if (style.isNull()) {
            qApp->setStyleSheet(QString());
        } else {
            ZvStyleManager::SetStyle(ZvStyleManager::Style(style));
            ZvStyleManager::Refresh();
        }
        const auto back = qScopeGuard([this] { qApp->setStyleSheet(m_sheet); });
        const QWidgetList before = QApplication::topLevelWidgets();
        host::callCommand("_se", {}, {}, {"test", 1});
        const QWidgetList all = QApplication::topLevelWidgets();
        const auto found = std::find_if(all.begin(), all.end(), [&before](QWidget* widget) {
            return !before.contains(widget) && qobject_cast<ZvStyleEditor*>(widget);
        });
        QVERIFY(found != all.end());
        const std::unique_ptr<QWidget> window(*found);
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        QCOMPARE(window->windowTitle(), QStringLiteral("Style Editor"));
        QVERIFY(window->screen()->availableGeometry().size().expandedTo(window->size())
                == window->screen()->availableGeometry().size());
        const auto* const area = window->findChild<QScrollArea*>();
        QVERIFY(!area->horizontalScrollBar()->isVisible());
        QVERIFY(!area->verticalScrollBar()->isVisible());
        const QRect room = area->viewport()->rect();
        const QList<QLabel*> headers = area->widget()->findChildren<QLabel*>();
        QVERIFY(headers.size() >= 5);
        for (const QLabel* const header : headers)
            QVERIFY(
                room.contains(QRect(header->mapTo(area->viewport(), QPoint()), header->size())));
        // The list of names beside it isn't squeezed for that.
        const QTreeView& tree = *window->findChild<QTreeView*>();
        QVERIFY(tree.width() >= tree.sizeHint().width());
    }

    void listOfNamesGrowsWithTheNames()
    {
        const Window window;
        const int narrow = window.combo->width();
        window.click(window.duplicate);
        window.click(window.duplicate);
        QCOMPARE(window.combo->currentText(), QStringLiteral("User Light 1"));
        QTRY_VERIFY(window.combo->width() > narrow);
        QVERIFY(window.combo->width() >= window.combo->sizeHint().width());
        QVERIFY(window.combo->width()
                > window.combo->fontMetrics().horizontalAdvance(QStringLiteral("User Light 1")));
    }

    void keysReachEveryControlInOrder()
    {
        const Window window;
        window.editor->addPreviewWidget(QStringLiteral("Added"), new QPushButton);
        QCOMPARE(
            reachedByTab(window),
            (QStringList{QStringLiteral("Style"), QStringLiteral("Duplicate"),
                         QStringLiteral("Colours and icons"), QStringLiteral("Basic UI tab"),
                         QStringLiteral("Basic UI"), QStringLiteral("Button Enabled"),
                         QStringLiteral("Button Pressed"), QStringLiteral("Button Checked"),
                         QStringLiteral("Checkbox Enabled"), QStringLiteral("Checkbox Pressed"),
                         QStringLiteral("Checkbox Checked"), QStringLiteral("RadioButton Enabled"),
                         QStringLiteral("ToolButton Enabled"), QStringLiteral("ToolButton Pressed"),
                         QStringLiteral("ToolButton Checked"),
                         QStringLiteral("PartialCheckbox Enabled"),
                         QStringLiteral("PartialCheckbox Pressed"),
                         QStringLiteral("PartialCheckbox Checked"), QStringLiteral("Apply")}));
        // With another tab in front its page takes the place of the first one's.
        auto* const button = new QPushButton(QStringLiteral("Sample"));
        window.editor->addPreviewWidget(QStringLiteral("Last"), button);
        window.tabs->setCurrentIndex(2);
        QCOMPARE(reachedByTab(window),
                 (QStringList{QStringLiteral("Style"), QStringLiteral("Duplicate"),
                              QStringLiteral("Colours and icons"), QStringLiteral("Last tab"),
                              QStringLiteral("Last"), QStringLiteral("Sample"),
                              QStringLiteral("Apply")}));
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
        QCOMPARE(window.tree->currentIndex().data().toString(), QStringLiteral("DisabledText"));
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
        QCOMPARE(ZvStyleManager::Style(QStringLiteral("User Dark"))
                     .editorColour("Testplan", "DisabledText"),
                 QColor(Qt::red));
    }

    void pictures_data() { firstColourOnABuiltInStyleMakesACopy_data(); }

    void pictures()
    {
        QFETCH(QString, style);
        const Window window;
        window.choose(style);
        window.tree->setCurrentIndex(window.row({Brushes, 0}));
        QVERIFY(QDir().mkpath(QStringLiteral(PICTURES)));
        const QPixmap picture = window.editor->grab();
        QVERIFY(picture.save(QStringLiteral(PICTURES "/editor-%1.png").arg(style)));
    }

    void addedTabShowsInThisEditorAlone()
    {
        const Window window;
        const Window other;
        QPointer<QLabel> added = new QLabel(QStringLiteral("Added"));
        window.editor->addPreviewWidget(QStringLiteral("Mine \u00E4"), added);
        QCOMPARE(tabNames(*window.tabs),
                 (QStringList{QStringLiteral("Basic UI"), QStringLiteral("Mine \u00E4")}));
        QCOMPARE(tabNames(*other.tabs), QStringList{QStringLiteral("Basic UI")});
        const auto* const area = qobject_cast<QScrollArea*>(window.tabs->widget(1));
        QVERIFY(area && area->widgetResizable());
        QCOMPARE(area->widget(), added.data());
        QCOMPARE(window.tabs->currentIndex(), 0);
        // The tab takes part in the next change.
        QVERIFY(added->styleSheet().isEmpty());
        window.choose(QStringLiteral("Dark"));
        QVERIFY(added->styleSheet().contains(inSheet(darkPanel)));
        // No widget is an empty tab.
        window.editor->addPreviewWidget(QString(), nullptr);
        QCOMPARE(window.tabs->count(), 3);
    }

    /// The last one, since there is no way to take an entry back.
    void registeredTabShowsInLaterEditors()
    {
        const Window before;
        auto& first = ZvStyleEditor::RegisterPreviewWidget("Sample \xC3\xA4", &sampleTab);
        QVERIFY(first == &sampleTab);
        for (int i = 0; i < 1000; ++i)
            ZvStyleEditor::RegisterPreviewWidget("No more", &emptyTab) = nullptr;
        ZvStyleEditor::RegisterPreviewWidget("Empty", &emptyTab);
        QCOMPARE(tabNames(*before.tabs), QStringList{QStringLiteral("Basic UI")});

        const Window after;
        QCOMPARE(tabNames(*after.tabs),
                 (QStringList{QStringLiteral("Basic UI"), QStringLiteral("Sample \u00E4"),
                              QStringLiteral("Empty")}));
        const QWidget* const sample = qobject_cast<QScrollArea*>(after.tabs->widget(1))->widget();
        QCOMPARE(sample->property("editor").value<ZvStyleEditor*>(), after.editor.get());
        // It has been there when the first style was shown.
        QVERIFY(sample->styleSheet().contains(inSheet(lightPanel)));

        // What is returned is the entry itself.
        first = nullptr;
        const Window last;
        QCOMPARE(tabNames(*last.tabs),
                 (QStringList{QStringLiteral("Basic UI"), QStringLiteral("Empty")}));
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

    /// The names of what the tab key reaches, from the list of styles on until it comes back.
    static QStringList reachedByTab(const Window& window)
    {
        QStringList names;
        QWidget* widget = window.combo;
        widget->setFocus();
        do {
            if (qobject_cast<QTabBar*>(widget))
                names += window.tabs->tabText(window.tabs->currentIndex()) + QStringLiteral(" tab");
            else if (!widget->accessibleName().isEmpty())
                names += widget->accessibleName();
            else
                names += QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
            QTest::keyClick(widget, Qt::Key_Tab);
            widget = QApplication::focusWidget();
        } while (widget != window.combo && names.size() < 100);
        return names;
    }

    static const QGridLayout* basicGrid(const Window& window)
    {
        const QWidget* const page = qobject_cast<QScrollArea*>(window.tabs->widget(0))->widget();
        return qobject_cast<const QGridLayout*>(page->layout()->itemAt(0)->layout());
    }

    static QString label(const QGridLayout* grid, int row, int column)
    {
        const auto* const label =
            qobject_cast<const QLabel*>(grid->itemAtPosition(row, column)->widget());
        return label ? label->text() : QStringLiteral("no label");
    }

    static void expectPreview(const Window& window, const QColor& panel)
    {
        QCOMPARE(window.panelColour(), panel);
        QVERIFY(window.panel->styleSheet().contains(inSheet(panel)));
        const QWidget* const sample = basicGrid(window)->itemAtPosition(1, 1)->widget();
        QVERIFY(sample->styleSheet().contains(inSheet(panel)));
    }

    static void chooseColour(const Window& window, const QModelIndex& row, const QColor& colour)
    {
        const Colours colours(colour);
        window.enter(row);
        QCOMPARE(colours.opened, 1);
    }

    const zvtest::StyleHost m_host;
    QString m_sheet;
    int m_libraryChanges = 0;
};

QTEST_MAIN(tst_ZvStyleEditor)
#include "tst_ZvStyleEditor.moc"
