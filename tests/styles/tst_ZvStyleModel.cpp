#include <zvutil/ZvStyleModel.h>

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>

#include "support/BuiltInStyles.h"
#include "support/LiveBlocks.h"
#include "support/StyleHost.h"
#include "support/Warnings.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QBrush>
#include <QColor>
#include <QDir>
#include <QIcon>
#include <QPersistentModelIndex>
#include <QPixmap>
#include <QPointer>
#include <QScopeGuard>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

#include <map>
#include <set>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleBrush;
using libzvutil::ZvStyleLibrary;
using libzvutil::ZvStyleManager;
using libzvutil::ZvStyleModel;
using namespace std::string_view_literals;

namespace {

static_assert(std::is_base_of_v<QAbstractItemModel, ZvStyleModel>);
static_assert(std::is_default_constructible_v<ZvStyleModel>);
static_assert(!std::is_copy_constructible_v<ZvStyleModel>);

const QModelIndex root;

constexpr const char* brushNames[] = {"Panel",
                                      "EditorEnabled",
                                      "EditorDisabled",
                                      "EditorFocus",
                                      "EditorHover",
                                      "InteractiveEnabled",
                                      "InteractiveHover",
                                      "InteractivePressed",
                                      "BorderEditorEnabled",
                                      "BorderEditorDisabled",
                                      "BorderEditorFocus",
                                      "BorderEditorHover",
                                      "BorderInteractiveEnabled",
                                      "BorderInteractiveDisabled",
                                      "BorderInteractiveHover",
                                      "BorderInteractivePressed",
                                      "Accent",
                                      "AccentL1",
                                      "AccentL2",
                                      "AccentL3",
                                      "AccentD1",
                                      "AccentD2",
                                      "AccentD3",
                                      "AccentForeground",
                                      "TextEnabled",
                                      "TextDisabled",
                                      "TextHover"};

enum Group { Brushes, Icons, Editors };

ZvStyle light()
{
    return ZvStyleLibrary().light();
}

QString text(const ZvStyleModel& model, const QModelIndex& index)
{
    return model.data(index, Qt::DisplayRole).toString();
}

QVariant decoration(const ZvStyleModel& model, const QModelIndex& index)
{
    return model.data(index, Qt::DecorationRole);
}

/// A row by the way to it from the root.
QModelIndex at(const ZvStyleModel& model, std::initializer_list<int> rows)
{
    QModelIndex index;
    for (const int row : rows)
        index = model.index(row, 0, index);
    return index;
}

/// One row of each kind, in the style "Light".
struct Kind
{
    const char* name;
    std::vector<int> rows;
    int children;
    bool hasColour;
};

const Kind kinds[] = {
    {"brushes", {Brushes}, 27, false},    {"icons", {Icons}, 4, false},
    {"editors", {Editors}, 1, false},     {"brush", {Brushes, 5}, 0, true},
    {"icon", {Icons, 2}, 0, false},       {"editor", {Editors, 0}, 8, false},
    {"colour", {Editors, 0, 3}, 0, true},
};

void addKinds()
{
    QTest::addColumn<int>("kind");
    int i = 0;
    for (const Kind& kind : kinds)
        QTest::newRow(kind.name) << i++;
}

QModelIndex at(const ZvStyleModel& model, const Kind& kind)
{
    QModelIndex index;
    for (const int row : kind.rows)
        index = model.index(row, 0, index);
    return index;
}

/// A model without the two peculiarities: icons have the parent that others expect, and an index is
/// the same at each call.
class MendedModel : public ZvStyleModel
{
public:
    MendedModel(const ZvStyle& style, QObject* parent)
        : ZvStyleModel(style, parent)
    {
        connect(this, &QAbstractItemModel::modelReset, this, [this] { m_colours.clear(); });
    }

    QModelIndex index(int row, int column, const QModelIndex& parent) const override
    {
        if (text(*this, parent) != "Testplan")
            return ZvStyleModel::index(row, column, parent);
        QModelIndex& known = m_colours[{parent.row(), row, column}];
        if (!known.isValid())
            known = ZvStyleModel::index(row, column, parent);
        return known;
    }

    QModelIndex parent(const QModelIndex& index) const override
    {
        const QModelIndex parent = ZvStyleModel::parent(index);
        return text(*this, parent) == "Icons" ? createIndex(Icons, 0, parent.internalPointer())
                                              : parent;
    }

private:
    mutable std::map<std::tuple<int, int, int>, QModelIndex> m_colours;
};

/// What the tester of models finds wrong, at first and after changes, each once.
QStringList complaints(ZvStyleModel& model)
{
    const QStringList found = zvtest::warningsOf([&model] {
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::Warning);
        for (const QModelIndex& index : {at(model, {Brushes, 0}), at(model, {Editors, 0, 0})})
            model.setData(index, QColor(Qt::red), Qt::DecorationRole);
        model.setStyle(ZvStyle(model.style()));
    });
    QStringList wrong;
    for (const QString& complaint : found) {
        if (complaint.startsWith("FAIL!"))
            wrong += complaint.section(QLatin1Char('\n'), 1, 1).section(QLatin1Char(' '), 3, 4);
        else if (!complaint.startsWith("    "))
            wrong += complaint;
    }
    wrong.removeDuplicates();
    return wrong;
}

} // namespace

class tst_ZvStyleModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_host.isValid());
        ZvStyleManager::SetStyle(ZvStyleManager::Library().light());
    }

    void hasNoMetaObjectOfItsOwn()
    {
        const ZvStyleModel model;
        QCOMPARE(model.metaObject(), &QAbstractItemModel::staticMetaObject);
    }

    void isCalledAsAnyModel()
    {
        QObject owner;
        const ZvStyleModel model(light(), &owner);
        QCOMPARE(model.parent(), &owner);
        QCOMPARE(model.rowCount(), 3);
        QCOMPARE(model.columnCount(), 1);
        const QModelIndex brushes = model.index(Brushes, 0);
        QCOMPARE(model.data(brushes), model.data(brushes, Qt::DisplayRole));
        QCOMPARE(model.data(brushes).toString(), QString("Brushes"));
        QCOMPARE(model.parent(model.index(0, 0, brushes)), brushes);
    }

    void showsACopyOfTheStyle()
    {
        QObject owner;
        ZvStyleModel current(&owner);
        QCOMPARE(current.parent(), &owner);
        QCOMPARE(current.style().name().toQString(), QString("Light"));
        QVERIFY(current.style().isDefaultStyle());

        ZvStyle style("Mine");
        style.setColour(ZvStyleBrush::Panel, Qt::red);
        ZvStyleModel model(style, &owner);
        style.setColour(ZvStyleBrush::Panel, Qt::blue);
        QCOMPARE(decoration(model, at(model, {Brushes, 0})), QVariant(QColor(Qt::red)));

        // Edits stay in the model.
        QVERIFY(model.setData(at(model, {Brushes, 0}), QColor(Qt::green), Qt::DecorationRole));
        QCOMPARE(model.style().colour(ZvStyleBrush::Panel).qColour(), QColor(Qt::green));
        QCOMPARE(style.colour(ZvStyleBrush::Panel).qColour(), QColor(Qt::blue));
        QVERIFY(current.setData(at(current, {Brushes, 0}), QColor(Qt::red), Qt::DecorationRole));
        QCOMPARE(ZvStyle::Current().colour(ZvStyleBrush::Panel).qColour(),
                 light().colour(ZvStyleBrush::Panel).qColour());
    }

    void groups()
    {
        const ZvStyleModel model(light(), nullptr);
        QCOMPARE(model.rowCount(root), 3);
        QCOMPARE(model.columnCount(root), 1);
        QVERIFY(!model.data(root, Qt::DisplayRole).isValid());
        QStringList names;
        for (int row = 0; row < 3; ++row)
            names += text(model, model.index(row, 0, root));
        QCOMPARE(names, (QStringList{"Brushes", "Icons", "Editors"}));
        // The name stands in the first column alone.
        for (int row = 0; row < 3; ++row)
            QVERIFY(!model.data(model.index(row, 1, root), Qt::DisplayRole).isValid());
    }

    void brushes_data()
    {
        QTest::addColumn<int>("row");
        int row = 0;
        for (const char* const name : brushNames)
            QTest::newRow(name) << row++;
    }

    void brushes()
    {
        QFETCH(int, row);
        for (const ZvStyle& style : {ZvStyleLibrary().light(), ZvStyleLibrary().dark()}) {
            const ZvStyleModel model(style, nullptr);
            const QModelIndex group = model.index(Brushes, 0, root);
            QCOMPARE(model.rowCount(group), 27);
            const QModelIndex index = model.index(row, 0, group);
            QCOMPARE(text(model, index), QString::fromLatin1(QTest::currentDataTag()));
            QCOMPARE(decoration(model, index).userType(), int(QMetaType::QColor));
            QCOMPARE(decoration(model, index).value<QColor>(),
                     style.colour(static_cast<ZvStyleBrush>(row)).qColour());
        }
    }

    void icons_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("path");
        int row = 0;
        for (const zvtest::BuiltInIcon& icon : zvtest::builtInIcons)
            QTest::newRow(icon.name) << row++ << QString::fromLatin1(icon.dark);
    }

    void icons()
    {
        QFETCH(int, row);
        QFETCH(QString, path);
        const ZvStyleModel model(ZvStyleLibrary().dark(), nullptr);
        const QModelIndex group = model.index(Icons, 0, root);
        QCOMPARE(model.rowCount(group), 4);
        const QModelIndex index = model.index(row, 0, group);
        QCOMPARE(text(model, index), QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(decoration(model, index).userType(), int(QMetaType::QIcon));
        const QImage shown = decoration(model, index).value<QIcon>().pixmap(20, 20).toImage();
        QVERIFY(!shown.isNull());
        QCOMPARE(shown, QIcon(path).pixmap(20, 20).toImage());
    }

    void byteOrderMarkIsPartOfAnIconsName()
    {
        const QTemporaryDir directory;
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(directory.path()));
        const auto back = qScopeGuard([&before] { QDir::setCurrent(before); });
        const QString name = QStringLiteral("\uFEFFa.png");
        QPixmap picture(7, 7);
        picture.fill(Qt::red);
        QVERIFY(picture.save(name));
        ZvStyle style = light();
        style.setIcon(libzvutil::ZvStyleIcon::Close, name);
        const ZvStyleModel model(style, nullptr);
        const int row = static_cast<int>(libzvutil::ZvStyleIcon::Close);
        const QModelIndex index = model.index(row, 0, model.index(Icons, 0, root));
        QVERIFY(!decoration(model, index).value<QIcon>().pixmap(7, 7).isNull());
    }

    void editors()
    {
        const ZvStyleModel model(light(), nullptr);
        const QModelIndex group = model.index(Editors, 0, root);
        QCOMPARE(model.rowCount(group), 1);
        const QModelIndex editor = model.index(0, 0, group);
        QCOMPARE(text(model, editor), QString("Testplan"));
        QCOMPARE(model.rowCount(editor), 8);
        int row = 0;
        for (const zvtest::NamedText& brush : zvtest::builtInEditorBrushes) {
            const QModelIndex index = model.index(row++, 0, editor);
            QCOMPARE(text(model, index), QString::fromLatin1(brush.name));
            QCOMPARE(decoration(model, index).userType(), int(QMetaType::QColor));
            QCOMPARE(decoration(model, index).value<QColor>(), QColor(brush.colour));
        }
    }

    void editorThatIsThereTwiceIsShownTwice()
    {
        ZvStyle style = light();
        style.setEditorColour("testplan", "CommentText", Qt::red);
        ZvStyleModel model(style, nullptr);
        const QModelIndex group = model.index(Editors, 0, root);
        QCOMPARE(model.rowCount(group), 2);
        QCOMPARE(text(model, at(model, {Editors, 1})), QString("testplan"));
        QCOMPARE(model.rowCount(at(model, {Editors, 1})), 1);
        QCOMPARE(decoration(model, at(model, {Editors, 1, 0})), QVariant(QColor(Qt::red)));

        // Each row changes its own.
        QVERIFY(model.setData(at(model, {Editors, 1, 0}), QColor(Qt::blue), Qt::DecorationRole));
        QCOMPARE(decoration(model, at(model, {Editors, 0, 0})), QVariant(QColor(Qt::red)));
        QCOMPARE(decoration(model, at(model, {Editors, 1, 0})), QVariant(QColor(Qt::blue)));
    }

    void namesAreUtf8()
    {
        ZvStyle style("x");
        style.setEditorColour("\xC3\xA4", "\xE2\x82\xAC", Qt::red);
        const ZvStyleModel model(style, nullptr);
        QCOMPARE(text(model, at(model, {Editors, 0})), QString("\u00E4"));
        QCOMPARE(text(model, at(model, {Editors, 0, 0})), QString("\u20AC"));
    }

    void kindsOfRows_data() { addKinds(); }

    void kindsOfRows()
    {
        QFETCH(int, kind);
        const ZvStyleModel model(light(), nullptr);
        const QModelIndex index = at(model, kinds[kind]);
        QCOMPARE(model.rowCount(index), kinds[kind].children);
        QCOMPARE(model.columnCount(index), 1);
        const bool isIcon = kinds[kind].name == "icon"sv;
        QCOMPARE(decoration(model, index).isValid(), kinds[kind].hasColour || isIcon);
        for (int role = -1; role <= Qt::UserRole + 1; ++role) {
            if (role != Qt::DisplayRole && role != Qt::DecorationRole)
                QVERIFY(!model.data(index, role).isValid());
        }
        QVERIFY(!(model.flags(index) & Qt::ItemIsEditable));
        QVERIFY(model.flags(index) & Qt::ItemIsEnabled);
    }

    void setData_data() { addKinds(); }

    void setData()
    {
        QFETCH(int, kind);
        ZvStyleModel model(light(), nullptr);
        const QModelIndex index = at(model, kinds[kind]);
        const QVariant before = decoration(model, index);
        QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
        for (int role = -1; role <= Qt::UserRole + 1; ++role) {
            if (role != Qt::DecorationRole)
                QVERIFY(!model.setData(index, QColor(1, 2, 3, 4), role));
        }
        QCOMPARE(changes.count(), 0);
        if (kinds[kind].hasColour)
            QCOMPARE(decoration(model, index), before);

        QCOMPARE(model.setData(index, QColor(1, 2, 3, 4), Qt::DecorationRole),
                 kinds[kind].hasColour);
        if (!kinds[kind].hasColour) {
            QCOMPARE(changes.count(), 0);
            return;
        }
        QCOMPARE(decoration(model, index), QVariant(QColor(1, 2, 3, 4)));
        QCOMPARE(changes.count(), 1);
        QCOMPARE(changes[0][0].toModelIndex(), index);
        QCOMPARE(changes[0][1].toModelIndex(), index);
        QCOMPARE(changes[0][2].value<QVector<int>>(), QVector<int>{1});
        // Only this one.
        const QModelIndex next = model.index(index.row() + 1, 0, model.parent(index));
        QVERIFY(next.isValid());
        QVERIFY(decoration(model, next) != QVariant(QColor(1, 2, 3, 4)));
    }

    void setDataOfNothing()
    {
        ZvStyleModel model(light(), nullptr);
        QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
        QVERIFY(!model.setData(root, QColor(Qt::red), Qt::DecorationRole));
        QVERIFY(!model.setData(model.index(3, 0, root), QColor(Qt::red), Qt::DecorationRole));
        QCOMPARE(changes.count(), 0);
    }

    void colours_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QColor>("colour");
        QTest::newRow("colour") << QVariant(QColor(1, 2, 3, 4)) << QColor(1, 2, 3, 4);
        QTest::newRow("invalid colour") << QVariant(QColor()) << QColor();
        QTest::newRow("text") << QVariant("#80ff0000") << QColor(255, 0, 0, 128);
        QTest::newRow("name") << QVariant("blue") << QColor(Qt::blue);
        QTest::newRow("brush") << QVariant(QBrush(Qt::green)) << QColor(Qt::green);
        QTest::newRow("no colour") << QVariant("ffffff") << QColor();
        QTest::newRow("number") << QVariant(7.5) << QColor();
        QTest::newRow("nothing") << QVariant() << QColor();
    }

    void colours()
    {
        QFETCH(QVariant, value);
        QFETCH(QColor, colour);
        ZvStyleModel model(light(), nullptr);
        for (const QModelIndex& index : {at(model, {Brushes, 0}), at(model, {Editors, 0, 0})}) {
            QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
            QVERIFY(model.setData(index, value, Qt::DecorationRole));
            QCOMPARE(decoration(model, index).userType(), int(QMetaType::QColor));
            QCOMPARE(decoration(model, index).value<QColor>(), colour);
            QCOMPARE(changes.count(), 1);
        }
    }

    void editingTheAccentLeavesItsShades()
    {
        ZvStyleModel model(light(), nullptr);
        std::vector<QVariant> before;
        before.reserve(27);
        for (int row = 0; row < 27; ++row)
            before.push_back(decoration(model, at(model, {Brushes, row})));
        const int accent = int(ZvStyleBrush::Accent);
        QVERIFY(model.setData(at(model, {Brushes, accent}), QColor(Qt::red), Qt::DecorationRole));
        before[std::size_t(accent)] = QColor(Qt::red);
        for (int row = 0; row < 27; ++row)
            QCOMPARE(decoration(model, at(model, {Brushes, row})), before[std::size_t(row)]);
    }

    void indexTakesAnyRowAndColumn()
    {
        const ZvStyleModel model(light(), nullptr);
        for (const Kind& kind : kinds) {
            const QModelIndex parent = at(model, kind);
            const bool hasChildren = kind.children > 0;
            const QModelIndex far = model.index(1000, 7, parent);
            QCOMPARE(far.isValid(), hasChildren);
            QCOMPARE(far.row(), hasChildren ? 1000 : -1);
            QCOMPARE(far.column(), hasChildren ? 7 : -1);
            QVERIFY(!model.index(-1, 0, parent).isValid());
            QVERIFY(!model.index(0, -1, parent).isValid());
        }
        const QModelIndex fourth = model.index(3, 0, root);
        QVERIFY(fourth.isValid());
        QCOMPARE(fourth.internalPointer(), nullptr);
        // An index without a handler is another root.
        QCOMPARE(model.rowCount(fourth), 3);
        QCOMPARE(model.columnCount(fourth), 1);
        QVERIFY(!model.data(fourth, Qt::DisplayRole).isValid());
        QVERIFY(!model.parent(fourth).isValid());
        QCOMPARE(text(model, model.index(1, 0, fourth)), QString("Icons"));
        QCOMPARE(model.rowCount(model.index(-1, 0, root)), 3);
        QCOMPARE(model.columnCount(model.index(-1, 0, root)), 1);
    }

    void rowsThatAreNotThereHaveNothing()
    {
        ZvStyleModel model(light(), nullptr);
        // The hidden entries among them.
        const QModelIndex missing[] = {at(model, {Brushes, 27}),     at(model, {Brushes, 1000}),
                                       at(model, {Icons, 4}),        at(model, {Icons, 1000}),
                                       at(model, {Editors, 1}),      at(model, {Editors, 0, 8}),
                                       at(model, {Editors, 1000, 0})};
        for (const QModelIndex& index : missing) {
            QVERIFY(index.isValid());
            QCOMPARE(model.rowCount(index), 0);
            QVERIFY(!model.data(index, Qt::DisplayRole).isValid());
            QVERIFY(!model.data(index, Qt::DecorationRole).isValid());
            QVERIFY(!model.setData(index, QColor(Qt::red), Qt::DecorationRole));
        }
        QVERIFY(!model.style().colour(ZvStyleBrush::TOTAL).qColour().isValid());
    }

    void rowsOfOneKindShareAHandler()
    {
        const ZvStyleModel model(light(), nullptr);
        std::set<void*> handlers;
        for (const Kind& kind : kinds) {
            const QModelIndex index = at(model, kind);
            handlers.insert(index.internalPointer());
            if (kind.name != "colour"sv)
                QCOMPARE(at(model, kind), index);
        }
        QCOMPARE(handlers.size(), std::size(kinds));
        QCOMPARE(at(model, {Brushes, 3}).internalPointer(),
                 at(model, {Brushes, 26}).internalPointer());
        QCOMPARE(at(model, {Icons, 0}).internalPointer(), at(model, {Icons, 3}).internalPointer());
    }

    void parents()
    {
        ZvStyle style = light();
        style.setEditorColour("Other", "x", Qt::red);
        const ZvStyleModel model(style, nullptr);
        QVERIFY(!model.parent(root).isValid());
        for (int row = 0; row < 3; ++row)
            QVERIFY(!model.parent(model.index(row, 0, root)).isValid());
        for (int row = 0; row < 27; ++row)
            QCOMPARE(model.parent(at(model, {Brushes, row})), at(model, {Brushes}));
        for (int row = 0; row < 4; ++row) {
            const QModelIndex parent = model.parent(at(model, {Icons, row}));
            QCOMPARE(parent.row(), 0);
            QCOMPARE(parent.column(), 0);
            QCOMPARE(parent.internalPointer(), at(model, {Icons}).internalPointer());
            QCOMPARE(text(model, parent), QString("Icons"));
            QCOMPARE(model.rowCount(parent), 4);
        }
        for (int row = 0; row < 2; ++row) {
            const QModelIndex editor = at(model, {Editors, row});
            QCOMPARE(model.parent(editor), at(model, {Editors}));
            QCOMPARE(model.parent(model.index(0, 5, editor)), editor);
        }
    }

    void eachIndexBelowAnEditorHasAHandlerUntilTheStyleIsSet()
    {
        if (!zvtest::countsBlocksOf([] { return ZvStyle("x"); }))
            QSKIP("An operator new that is replaced in a program doesn't reach its DLLs");
        const ZvStyle style = light();
        ZvStyleModel model(style, nullptr);
        const QModelIndex editor = at(model, {Editors, 0});
        std::vector<QModelIndex> held;
        held.reserve(1000);
        const int before = zvtest::liveBlocks;
        for (int i = 0; i < 1000; ++i)
            held.push_back(model.index(i % 8, 0, editor));
        // One each, and one for their list.
        QCOMPARE(zvtest::liveBlocks - before, 1001);
        // The first is as good as the last.
        QCOMPARE(text(model, held.front()), QString("CommentText"));
        QCOMPARE(model.parent(held.front()), editor);
        QVERIFY(held[0] != held[8]);

        // The list stays, and nothing that it held.
        model.setStyle(style);
        QCOMPARE(zvtest::liveBlocks - before, 1);
        for (int i = 0; i < 1000; ++i) {
            model.index(0, 0, editor);
            model.setStyle(style);
        }
        QCOMPARE(zvtest::liveBlocks - before, 1);
    }

    void setStyleResets()
    {
        ZvStyleModel model(light(), nullptr);
        QSignalSpy about(&model, &QAbstractItemModel::modelAboutToBeReset);
        QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
        QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
        const QPersistentModelIndex kept(at(model, {Editors, 0, 0}));
        connect(&model, &QAbstractItemModel::modelReset, &model,
                [&model] { QCOMPARE(model.style().name().toQString(), QString("Dark")); });
        model.setStyle(ZvStyleLibrary().dark());
        QCOMPARE(about.count(), 1);
        QCOMPARE(resets.count(), 1);
        QCOMPARE(changes.count(), 0);
        QVERIFY(!kept.isValid());
    }

    void setStyle()
    {
        ZvStyleModel model(light(), nullptr);
        model.setData(at(model, {Brushes, 0}), QColor(Qt::red), Qt::DecorationRole);
        model.setStyle(ZvStyle("Mine"));
        QCOMPARE(model.style().name().toQString(), QString("Mine"));
        QVERIFY(!model.style().isDefaultStyle());
        QVERIFY(!decoration(model, at(model, {Brushes, 0})).value<QColor>().isValid());
        QCOMPARE(model.rowCount(at(model, {Editors})), 0);
        // Its own.
        model.setStyle(model.style());
        QCOMPARE(model.style().name().toQString(), QString("Mine"));
    }

    void testerComplainsOfPeculiaritiesAlone()
    {
        const QStringList parentOfIcons = {"Inconsistent parent() implementation detected:",
                                           "Actual (model->parent(index))"};
        ZvStyleModel plain(ZvStyle("x"), nullptr);
        QCOMPARE(complaints(plain), parentOfIcons);

        ZvStyle style = light();
        style.setEditorColour("Testplan", "x", Qt::red);
        ZvStyleModel withEditors(style, nullptr);
        const QString otherIndexAtEachCall = "Actual (index)";
        QCOMPARE(complaints(withEditors), parentOfIcons + QStringList{otherIndexAtEachCall});

        // Nothing else hides behind these.
        MendedModel mended(style, nullptr);
        QCOMPARE(complaints(mended), QStringList());
    }

    void commandShowsTheCurrentStyle()
    {
        const QWidgetList before = QApplication::topLevelWidgets();
        host::callCommand("_s3", {"ignored"}, {}, {"test", 1});
        QPointer<QTreeView> view;
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (!before.contains(widget) && qobject_cast<QTreeView*>(widget))
                view = qobject_cast<QTreeView*>(widget);
        }
        QVERIFY(view);
        QVERIFY(view->isVisible());
        QVERIFY(view->testAttribute(Qt::WA_DeleteOnClose));
        QVERIFY(!view->parent());
        QCOMPARE(view->windowTitle(), QString("Current Style"));
        QVERIFY(view->isHeaderHidden());
        // Qt's own size has room for a dozen rows.
        const int lines = 30 * view->fontMetrics().lineSpacing();
        QVERIFY(view->height() >= qMin(lines, view->screen()->availableSize().height()));
        auto* const model = dynamic_cast<ZvStyleModel*>(view->model());
        QVERIFY(model);
        QCOMPARE(static_cast<QObject*>(model)->parent(), view.data());
        QCOMPARE(model->style().name().toQString(), QString("Light"));

        // A person opens all of it.
        view->expandAll();
        QCoreApplication::processEvents();
        QVERIFY(!view->grab().isNull());
        QVERIFY(view->visualRect(at(*model, {Icons, 3})).isValid());
        view->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!view);
    }

private:
    const zvtest::StyleHost m_host;
};

QTEST_MAIN(tst_ZvStyleModel)
#include "tst_ZvStyleModel.moc"
