#pragma once

#include "UserStyles.h"

#include <zvutil/ZvStyleEditor.h>

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>
#include <zvutil/ZvStyleModel.h>

#include "support/StyleHost.h"

#include <QAbstractButton>
#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <memory>

namespace zvtest {

enum Group { Brushes, Icons, Editors };

inline const QColor lightPanel(0xF0, 0xF0, 0xF0);

/// The light style under another name, with panels of this colour.
inline libzvutil::ZvStyle copyOfLight(const char* name, const QColor& panel)
{
    libzvutil::ZvStyle style = libzvutil::ZvStyleManager::Library().light().duplicate(name);
    style.setColour(libzvutil::ZvStyleBrush::Panel, panel);
    return style;
}

inline void setLibrary(std::initializer_list<libzvutil::ZvStyle> styles)
{
    libzvutil::ZvStyleLibrary library;
    for (const libzvutil::ZvStyle& style : styles)
        library.update(style);
    libzvutil::ZvStyleManager::SetLibrary(library);
}

/// An editor with its controls.
class Window
{
public:
    Window()
        : Window(std::make_unique<libzvutil::ZvStyleEditor>())
    {
    }

    explicit Window(std::unique_ptr<libzvutil::ZvStyleEditor> shown)
        : editor(std::move(shown))
        , combo(editor->findChild<QComboBox*>())
        , tree(editor->findChild<QTreeView*>())
        , tabs(editor->findChild<QTabWidget*>())
    {
        for (QPushButton* const button : editor->findChildren<QPushButton*>()) {
            if (button->text() == "Duplicate")
                duplicate = button;
            else if (button->text() == "Apply")
                apply = button;
        }
        model = dynamic_cast<libzvutil::ZvStyleModel*>(tree->model());
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

    QColor colour(libzvutil::ZvStyleBrush brush) const
    {
        return model->style().colour(brush).qColour();
    }
    QColor panelColour() const { return colour(libzvutil::ZvStyleBrush::Panel); }

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

    std::unique_ptr<libzvutil::ZvStyleEditor> editor;
    QComboBox* combo;
    QTreeView* tree;
    QTabWidget* tabs;
    libzvutil::ZvStyleModel* model = nullptr;
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

/// Starts each test function with the built-in library in its light style, and sees at its end that the
/// editor has neither changed the application nor saved anything.
class StyleEditorTest : public QObject
{
    Q_OBJECT

protected:
    static const QGridLayout* basicGrid(const Window& window)
    {
        const QWidget* const page = qobject_cast<QScrollArea*>(window.tabs->widget(0))->widget();
        return qobject_cast<const QGridLayout*>(page->layout()->itemAt(0)->layout());
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

    const StyleHost m_host;
    QString m_sheet;
    int m_libraryChanges = 0;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_host.isValid());
        // The platform's own dialog couldn't be driven.
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        libzvutil::ZvStyleManager::Refresh();
        m_sheet = qApp->styleSheet();
        QVERIFY(!m_sheet.isEmpty());
        connect(&libzvutil::styleManager(), &libzvutil::ZvStyleManager::styleLibraryChanged, this,
                [this] { ++m_libraryChanges; });
    }

    void init()
    {
        libzvutil::ZvStyleManager::SetLibrary(libzvutil::ZvStyleLibrary());
        libzvutil::ZvStyleManager::SetStyle(libzvutil::ZvStyleManager::Library().light());
        m_libraryChanges = 0;
    }

    void cleanup()
    {
        // Nothing that an editor does shows elsewhere or is saved.
        QCOMPARE(qApp->styleSheet(), m_sheet);
        QVERIFY(!QFile::exists(m_host.libraryFile()));
    }
};

} // namespace zvtest
