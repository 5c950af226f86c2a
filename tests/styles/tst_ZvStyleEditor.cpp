// The style editor as a person uses it, with keys and the mouse.

#include "StyleEditorTest.h"

#include <zvutil/ZvStyleEditor.h>

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>
#include <zvutil/ZvStyleModel.h>

#include "support/BuiltInStyles.h"
#include "support/StyleHost.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
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
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>
#include <type_traits>

using libzvutil::ZvStyleEditor;
using libzvutil::ZvStyleManager;
using zvtest::Brushes;
using zvtest::builtIn;
using zvtest::copyOfLight;
using zvtest::inSheet;
using zvtest::lightPanel;
using zvtest::setLibrary;
using zvtest::Window;

namespace {

static_assert(std::is_base_of_v<QWidget, ZvStyleEditor>);
static_assert(std::is_default_constructible_v<ZvStyleEditor>);

const QColor darkPanel(0x20, 0x20, 0x20);

QWidget* sampleTab(const ZvStyleEditor* editor)
{
    auto* const label = new QLabel("Sample");
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

class tst_ZvStyleEditor : public zvtest::StyleEditorTest
{
    Q_OBJECT

private Q_SLOTS:
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
            QCOMPARE(control->text(), QString("Label"));
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
        QCOMPARE(tabNames(*window.tabs), QStringList{"Basic UI"});
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
        QCOMPARE(header.join(QLatin1Char(' ')), QString("Type Enabled Disabled Pressed Checked"));
    }

    void startsWithTheCurrentStyle()
    {
        setLibrary({copyOfLight("Mine", Qt::red)});
        ZvStyleManager::SetStyle(ZvStyleManager::Library().style("Mine"));
        const Window window;
        QCOMPARE(window.styles(), builtIn + QStringList{"Mine"});
        QCOMPARE(window.combo->currentText(), QString("Mine"));
        QCOMPARE(window.model->style().name().toQString(), QString("Mine"));
        expectPreview(window, Qt::red);
    }

    void startsWithAStyleThatIsNotInTheLibrary()
    {
        ZvStyleManager::SetStyle(copyOfLight("Unknown", Qt::red));
        const Window window;
        QCOMPARE(window.styles(), builtIn);
        // The list has nothing else to show.
        QCOMPARE(window.combo->currentText(), QString("Light"));
        QCOMPARE(window.model->style().name().toQString(), QString("Unknown"));
        expectPreview(window, Qt::red);

        // An edit puts it into the library; the list learns of it with the next copy.
        chooseColour(window, window.row({Brushes, 0}), Qt::blue);
        QCOMPARE(window.styles(), builtIn);
        window.click(window.duplicate);
        QCOMPARE(window.styles(), (builtIn + QStringList{"Unknown", "Unknown 1"}));
        QCOMPARE(window.combo->currentText(), QString("Unknown 1"));
    }

    void previewShowsOnThePanelAlone()
    {
        const Window window;
        expectPreview(window, lightPanel);
        window.choose("Dark");
        expectPreview(window, darkPanel);
        for (const QWidget* const widget : window.panel->findChildren<QWidget*>())
            QCOMPARE(widget->styleSheet(), window.panel->styleSheet());
        QCOMPARE(window.panel->grab().toImage().pixelColor(1, 1), darkPanel);
        for (const QWidget* const widget :
             {static_cast<const QWidget*>(window.editor.get()),
              static_cast<const QWidget*>(window.tree), static_cast<const QWidget*>(window.combo),
              static_cast<const QWidget*>(window.apply)})
            QVERIFY(widget->styleSheet().isEmpty());
        window.choose("Light");
        expectPreview(window, lightPanel);
    }

    void previewHasTheUsersAdditions()
    {
        QVERIFY(m_host.write(m_host.modificationsFile(), "QLabel { color: @panel }"));
        const Window window;
        QVERIFY(window.panel->styleSheet().endsWith("QLabel { color: #fff0f0f0 }"));
        QVERIFY(QFile::remove(m_host.modificationsFile()));
    }

    void switchingStylesKeepsNothingOfABuiltInOne()
    {
        const Window window;
        QSignalSpy resets(window.model, &QAbstractItemModel::modelReset);
        window.choose("Dark");
        QCOMPARE(window.panelColour(), darkPanel);
        QCOMPARE(window.model->style().name().toQString(), QString("Dark"));
        QCOMPARE(resets.count(), 1);
        window.choose("Light");
        QCOMPARE(window.panelColour(), lightPanel);
        QCOMPARE(window.styles(), builtIn);
    }

    void nameThatTheLibraryDoesNotHaveChangesNothing()
    {
        const Window window;
        window.choose("Dark");
        window.combo->addItem("Nowhere");
        window.combo->setCurrentText("Nowhere");
        QCOMPARE(window.model->style().name().toQString(), QString("Dark"));
        window.combo->clear();
        QCOMPARE(window.model->style().name().toQString(), QString("Dark"));
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
        QTest::newRow("Light") << "Light";
        QTest::newRow("Dark") << "Dark";
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
        QCOMPARE(window->windowTitle(), QString("Style Editor"));
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
        QCOMPARE(window.combo->currentText(), QString("User Light 1"));
        QTRY_VERIFY(window.combo->width() > narrow);
        QVERIFY(window.combo->width() >= window.combo->sizeHint().width());
        QVERIFY(window.combo->width()
                > window.combo->fontMetrics().horizontalAdvance("User Light 1"));
    }

    void keysReachEveryControlInOrder()
    {
        const Window window;
        window.editor->addPreviewWidget("Added", new QPushButton);
        QCOMPARE(reachedByTab(window),
                 (QStringList{"Style", "Duplicate", "Colours and icons", "Basic UI tab", "Basic UI",
                              "Button Enabled", "Button Pressed", "Button Checked",
                              "Checkbox Enabled", "Checkbox Pressed", "Checkbox Checked",
                              "RadioButton Enabled", "ToolButton Enabled", "ToolButton Pressed",
                              "ToolButton Checked", "PartialCheckbox Enabled",
                              "PartialCheckbox Pressed", "PartialCheckbox Checked", "Apply"}));
        // With another tab in front its page takes the place of the first one's.
        auto* const button = new QPushButton("Sample");
        window.editor->addPreviewWidget("Last", button);
        window.tabs->setCurrentIndex(2);
        QCOMPARE(reachedByTab(window),
                 (QStringList{"Style", "Duplicate", "Colours and icons", "Last tab", "Last",
                              "Sample", "Apply"}));
    }

    void pictures_data() { zvtest::addStyleRows(); }

    void pictures()
    {
        QFETCH(QString, style);
        const Window window;
        window.choose(style);
        window.tree->setCurrentIndex(window.row({Brushes, 0}));
        QVERIFY(QDir().mkpath(PICTURES));
        const QPixmap picture = window.editor->grab();
        QVERIFY(picture.save(QString(PICTURES "/editor-%1.png").arg(style)));
    }

    void addedTabShowsInThisEditorAlone()
    {
        const Window window;
        const Window other;
        QPointer<QLabel> added = new QLabel("Added");
        window.editor->addPreviewWidget("Mine \u00E4", added);
        QCOMPARE(tabNames(*window.tabs), (QStringList{"Basic UI", "Mine \u00E4"}));
        QCOMPARE(tabNames(*other.tabs), QStringList{"Basic UI"});
        const auto* const area = qobject_cast<QScrollArea*>(window.tabs->widget(1));
        QVERIFY(area && area->widgetResizable());
        QCOMPARE(area->widget(), added.data());
        QCOMPARE(window.tabs->currentIndex(), 0);
        // The tab takes part in the next change.
        QVERIFY(added->styleSheet().isEmpty());
        window.choose("Dark");
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
        QCOMPARE(tabNames(*before.tabs), QStringList{"Basic UI"});

        const Window after;
        QCOMPARE(tabNames(*after.tabs), (QStringList{"Basic UI", "Sample \u00E4", "Empty"}));
        const QWidget* const sample = qobject_cast<QScrollArea*>(after.tabs->widget(1))->widget();
        QCOMPARE(sample->property("editor").value<ZvStyleEditor*>(), after.editor.get());
        // It has been there when the first style was shown.
        QVERIFY(sample->styleSheet().contains(inSheet(lightPanel)));

        // What is returned is the entry itself.
        first = nullptr;
        const Window last;
        QCOMPARE(tabNames(*last.tabs), (QStringList{"Basic UI", "Empty"}));
    }

private:
    /// The names of what the tab key reaches, from the list of styles on until it comes back.
    static QStringList reachedByTab(const Window& window)
    {
        QStringList names;
        QWidget* widget = window.combo;
        widget->setFocus();
        do {
            if (qobject_cast<QTabBar*>(widget))
                names += window.tabs->tabText(window.tabs->currentIndex()) + " tab";
            else if (!widget->accessibleName().isEmpty())
                names += widget->accessibleName();
            else
                names += QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
            QTest::keyClick(widget, Qt::Key_Tab);
            widget = QApplication::focusWidget();
        } while (widget != window.combo && names.size() < 100);
        return names;
    }

    static QString label(const QGridLayout* grid, int row, int column)
    {
        const auto* const label =
            qobject_cast<const QLabel*>(grid->itemAtPosition(row, column)->widget());
        return label ? label->text() : QString("no label");
    }
};

QTEST_MAIN(tst_ZvStyleEditor)
#include "tst_ZvStyleEditor.moc"
