// Where memory is short, styles, tables of the clipboard and models throw std::bad_alloc, and can be
// assigned to, used and destroyed afterwards.

#include "MemoryDrive.h"

#include <zvutil/ZvChildProxyModel.h>
#include <zvutil/ZvClipboardData.h>
#include <zvutil/ZvEditorStyle.h>
#include <zvutil/ZvFilePath.h>
#include <zvutil/ZvMultiDirectoryListModel.h>
#include <zvutil/ZvNamedColour.h>
#include <zvutil/ZvNamedIcon.h>
#include <zvutil/ZvString.h>
#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleBrush.h>
#include <zvutil/ZvStyleIcon.h>
#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleModel.h>
#include <zvutil/ZvTable.h>

#include "support/EventLoop.h"
#include "support/Files.h"

#include <QColor>
#include <QMimeData>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>

#include <string>
#include <utility>

using libzvutil::ZvEditorStyle;
using libzvutil::ZvNamedColour;
using libzvutil::ZvNamedIcon;
using libzvutil::ZvStyle;
using libzvutil::ZvStyleBrush;
using libzvutil::ZvStyleIcon;
using libzvutil::ZvStyleLibrary;
using libzvutil::ZvStyleModel;
using zvtest::MemoryCase;
using zvtest::ShortOfMemory;

namespace {

constexpr char longName[] = "a name that no small buffer holds, so that it needs memory";

QString styleFile()
{
    static const QTemporaryDir folder;
    return folder.filePath("styles.xml");
}

const char* colour(ShortOfMemory& shortOfMemory)
{
    const ZvNamedColour other(longName, "#123456");
    ZvNamedColour colour;
    shortOfMemory([] { const ZvNamedColour made(longName, "#123456"); });
    shortOfMemory([&] { const ZvNamedColour copy(other); });
    shortOfMemory([&] { colour = other; });
    shortOfMemory([&] { other.colourString(); });
    colour = other;
    return colour.qColour() == other.qColour() ? nullptr : "a copy differs";
}

const char* icon(ShortOfMemory& shortOfMemory)
{
    const ZvNamedIcon other(longName, longName);
    ZvNamedIcon icon;
    shortOfMemory([&] { const ZvNamedIcon copy(other); });
    shortOfMemory([&] { icon.setPath(longName); });
    shortOfMemory([&] { icon.setPath(QString::fromLatin1(longName)); });
    shortOfMemory([&] { icon = other; });
    icon = other;
    return icon.path().compare(longName) == 0 ? nullptr : "a copy differs";
}

const char* editor(ShortOfMemory& shortOfMemory)
{
    ZvEditorStyle other(longName);
    other.setBrush(longName, QColor(1, 2, 3));
    ZvEditorStyle editor(longName);
    shortOfMemory([&] { editor.setBrush("another name that needs memory", QColor(4, 5, 6)); });
    shortOfMemory([&] { editor.setBrush(ZvNamedColour(longName, "#010203")); });
    shortOfMemory([&] { const ZvEditorStyle copy(other); });
    shortOfMemory([&] { editor = other; });
    editor = other;
    return editor.brush(longName) == QColor(1, 2, 3) ? nullptr : "a copy differs";
}

const char* style(ShortOfMemory& shortOfMemory)
{
    ZvStyle other(longName);
    other.setEditorColour(longName, longName, QColor(1, 2, 3));
    ZvStyle style(longName);
    shortOfMemory([] { const ZvStyle made(longName); });
    shortOfMemory([&] { style.setColour(ZvStyleBrush::Panel, QColor(4, 5, 6)); });
    shortOfMemory([&] { style.setAccent(QColor(4, 5, 6)); });
    shortOfMemory([&] { style.setIcon(ZvStyleIcon::CheckboxTick, QString::fromLatin1(longName)); });
    shortOfMemory([&] { style.addEditor(ZvEditorStyle(longName)); });
    shortOfMemory([&] { style.setEditorColour(longName, longName, QColor(7, 8, 9)); });
    shortOfMemory([&] { style.editorStyle(longName); });
    shortOfMemory([&] { other.duplicate(longName); });
    shortOfMemory([&] { const ZvStyle copy(other); });
    shortOfMemory([&] { style = other; });
    style = other;
    return style.editorColour(longName, longName) == QColor(1, 2, 3) ? nullptr : "a copy differs";
}

const char* changedLibrary(ShortOfMemory& shortOfMemory)
{
    ZvStyleLibrary other;
    other.update(ZvStyle(longName));
    ZvStyleLibrary library;
    const QStringList before = library.names();
    const bool isUpdated = shortOfMemory([&] { library.update(ZvStyle(longName)); });
    if (library.names().size() != before.size() + (isUpdated ? 1 : 0))
        return "a style is in the library although an exception was thrown, or isn't without one";
    shortOfMemory([&] { library.add(other); });
    shortOfMemory([&] { const ZvStyleLibrary copy(other); });
    shortOfMemory([&] { library = other; });
    shortOfMemory([&] { library.names(); });
    library = other;
    return library.names() == other.names() ? nullptr : "a copy differs";
}

const char* builtInLibrary(ShortOfMemory& shortOfMemory)
{
    shortOfMemory([] { const ZvStyleLibrary library; });
    zvtest::runEventLoop();
    return nullptr;
}

const char* libraryFile(ShortOfMemory& shortOfMemory)
{
    const ZvStyleLibrary library;
    library.save(styleFile().toStdWString());
    zvtest::runEventLoop();
    shortOfMemory([&] { library.save(styleFile().toStdWString()); });
    zvtest::runEventLoop();
    if (ZvStyleLibrary(styleFile().toStdWString()).names() != library.names())
        return "the file is not what it was";
    shortOfMemory([] { const ZvStyleLibrary loaded(styleFile().toStdWString()); });
    zvtest::runEventLoop();
    return nullptr;
}

const char* styleModel(ShortOfMemory& shortOfMemory)
{
    const ZvStyle style(longName);
    shortOfMemory([&] { const ZvStyleModel model(style, nullptr); });
    ZvStyleModel model(style, nullptr);
    const QModelIndex group = model.index(0, 0, {});
    const QModelIndex row = model.index(0, 0, group);
    shortOfMemory([&] { model.data(row, Qt::DisplayRole); });
    shortOfMemory([&] { model.setData(row.siblingAtColumn(1), QColor(1, 2, 3), Qt::EditRole); });
    shortOfMemory([&] { model.setStyle(style); });
    model.setStyle(style);
    return model.rowCount(group) > 0 ? nullptr : "the model is empty";
}

const char* clipboardTable(ShortOfMemory& shortOfMemory)
{
    QMimeData data;
    data.setText("a,b,1\n\"c \"\"d\"\"\",,2.5\n");
    data.setData("text/csv", data.text().toUtf8());
    shortOfMemory([&] {
        const ZvClipboardData clipboard(&data);
        static_cast<void>(clipboard.hasTableData());
        clipboard.tableData();
        clipboard.csvData();
    });
    const ZvClipboardData clipboard(&data);
    return clipboard.csvData().rows() == 2 ? nullptr : "the table can't be read again";
}

const char* childProxy(ShortOfMemory& shortOfMemory)
{
    QStandardItemModel source;
    source.appendRow(new QStandardItem("branch"));
    for (int row = 0; row < 3; ++row)
        source.item(0)->appendRow(new QStandardItem(QString::number(row)));
    ZvChildProxyModel proxy;
    shortOfMemory([&] { proxy.setSourceModel(&source); });
    proxy.setSourceModel(&source);
    shortOfMemory([&] { proxy.setRootModelIndex(source.index(0, 0)); });
    proxy.setRootModelIndex(source.index(0, 0));
    shortOfMemory([&] { proxy.index(1, 0, {}).data(); });
    return proxy.rowCount({}) == 3 ? nullptr : "the branch is not shown";
}

const char* listModel(ShortOfMemory& shortOfMemory)
{
    const QTemporaryDir folder;
    const QString path = folder.path();
    // Two files, as the scan passes over the first one.
    if (!zvtest::writeTo(path + "/a.txt", "a") || !zvtest::writeTo(path + "/b.txt", "b"))
        return "no files";
    ZvMultiDirectoryListModel model;
    shortOfMemory([] { const ZvMultiDirectoryListModel made; });
    shortOfMemory([&] { model.addDirectory(path.toStdWString().c_str()); });
    shortOfMemory([&] { model.setAllowedFileTypes({".txt", ".csv"}); });
    shortOfMemory([&] { model.setFilterFixedString("txt"); });
    shortOfMemory([&] { model.removeDirectory(path); });
    shortOfMemory([&] { model.reloadPaths(); });
    model.removeDirectory(path);
    model.addDirectory(path);
    const auto shows = [&model] {
        return model.rowCount({}) > 0 && model.data(model.index(0), Qt::DisplayRole).isValid();
    };
    return QTest::qWaitFor(shows, 60'000) ? nullptr : "no file is listed";
}

} // namespace

class tst_faults_memory_gui : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanupTestCase() { zvtest::Tally::print(); }

    void eachAllocation_data()
    {
        QTest::addColumn<MemoryCase>("work");
        QTest::addColumn<bool>("losesInQt");
        QTest::newRow("colour") << MemoryCase(&colour) << true;
        QTest::newRow("icon") << MemoryCase(&icon) << false;
        QTest::newRow("editor style") << MemoryCase(&editor) << false;
        QTest::newRow("style") << MemoryCase(&style) << false;
        QTest::newRow("changed library") << MemoryCase(&changedLibrary) << false;
        QTest::newRow("built-in library") << MemoryCase(&builtInLibrary) << true;
        QTest::newRow("library file") << MemoryCase(&libraryFile) << true;
        QTest::newRow("style model") << MemoryCase(&styleModel) << false;
        QTest::newRow("clipboard table") << MemoryCase(&clipboardTable) << false;
        QTest::newRow("list of directories") << MemoryCase(&listModel) << true;
        QTest::newRow("child proxy") << MemoryCase(&childProxy) << true;
    }

    void eachAllocation()
    {
        QFETCH(MemoryCase, work);
        QFETCH(bool, losesInQt);
        const QString problem =
            zvtest::driveMemory(work, losesInQt ? zvtest::Losses::InQt : zvtest::Losses::None);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
};

QTEST_MAIN(tst_faults_memory_gui)
#include "tst_faults_memory_gui.moc"
