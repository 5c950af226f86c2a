// Directories of file systems that don't tell the types of their entries. A program of its own, since it
// stands before the system's function that reads them.

#include "support/FileTree.h"

#include "impl/models/ZvMultiDirectoryListModelProcess.h"

#include <QTest>

#include <dirent.h>
#include <dlfcn.h>

using zvtest::FileTree;

namespace {

bool areTypesHidden = false;
int hiddenTypes = 0;

QStringList rowsOf(const QString& directory)
{
    ZvMultiDirectoryListModelProcess process(1000);
    QStringList rows;
    QObject::connect(&process, &ZvMultiDirectoryListModelProcess::nextBatch,
                     [&rows](const QVariantList& batch) {
                         for (const QVariant& row : batch)
                             rows.append(row.toString());
                     });
    process.addDirectory(directory.toStdWString());
    return rows;
}

} // namespace

extern "C" dirent* readdir(DIR* directory)
{
    using Read = dirent* (*)(DIR*);
    static const auto read = reinterpret_cast<Read>(dlsym(RTLD_NEXT, "readdir"));
    dirent* const entry = read(directory);
    if (entry && areTypesHidden) {
        entry->d_type = DT_UNKNOWN;
        ++hiddenTypes;
    }
    return entry;
}

class tst_entries_without_types : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { areTypesHidden = false; }

    // NOLINTNEXTLINE(readability-convert-member-functions-to-static): a slot
    void areListedAsOthers()
    {
        const FileTree tree({"first/a.txt", "second/below/b.txt", "c.txt", "third/",
                             "elsewhere/d.txt", "elsewhere/e.txt"});
        tree.link("link to a file", tree.path("c.txt"));
        tree.link("link to a folder", tree.path("third"));
        tree.link("dangling", "/no/such/file");
        const QStringList expected = rowsOf(tree.path());
        QVERIFY(expected.size() >= 5);
        areTypesHidden = true;
        QCOMPARE(rowsOf(tree.path()), expected);
        QVERIFY(hiddenTypes > expected.size());
    }
};

QTEST_GUILESS_MAIN(tst_entries_without_types)
#include "tst_entries_without_types.moc"
