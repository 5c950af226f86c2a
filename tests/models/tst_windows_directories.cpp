// What a scan makes of junctions and other reparse points, of names that are no text and of long paths on Windows.

#include "Scan.h"

#include "support/FileTree.h"
#include "support/FolderLink.h"
#include "support/ImportTable.h"
#include "support/WalkOracle.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <array>
#include <cwchar>
#include <string>

#include <windows.h>

using zvtest::FileTree;
using zvtest::FolderLink;
using zvtest::Log;
using zvtest::runLines;
using zvtest::Scan;

namespace {

/// What an entry whose name begins with "marked" pretends to be.
DWORD pretendedTag = 0;
bool pretends = false;
int marks = 0;

void mark(WIN32_FIND_DATAW& found)
{
    if (!pretends || std::wcsncmp(found.cFileName, L"marked", 6) != 0)
        return;
    found.dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
    found.dwReserved0 = pretendedTag;
    ++marks;
}

HANDLE WINAPI findFirst(LPCWSTR path, FINDEX_INFO_LEVELS level, LPVOID data,
                        FINDEX_SEARCH_OPS operation, LPVOID filter, DWORD flags)
{
    HANDLE const search = zvtest::systemFunction(&FindFirstFileExW, "FindFirstFileExW")(
        path, level, data, operation, filter, flags);
    if (search != INVALID_HANDLE_VALUE)
        mark(*static_cast<WIN32_FIND_DATAW*>(data));
    return search;
}

BOOL WINAPI findNext(HANDLE search, LPWIN32_FIND_DATAW data)
{
    const BOOL isFound = zvtest::systemFunction(&FindNextFileW, "FindNextFileW")(search, data);
    if (isFound != FALSE)
        mark(*data);
    return isFound;
}

/// The native form of a path, with the drive.
QString nativePath(const QString& path)
{
    return QDir::toNativeSeparators(QDir(path).absolutePath());
}

/// A path that the system takes at any length.
std::wstring devicePath(const QString& path)
{
    return (QStringLiteral("\\\\?\\") + nativePath(path)).toStdWString();
}

bool makeFile(const std::wstring& path)
{
    HANDLE const file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    return file != INVALID_HANDLE_VALUE && CloseHandle(file) != 0;
}

/// Directories below one another, which the ordinary functions can't remove.
class DeepFolders
{
public:
    /// Makes folders of that name until the path has \p maxLength characters or the system refuses one.
    DeepFolders(std::wstring top, const std::wstring& name, std::size_t maxLength)
        : m_path(std::move(top))
    {
        while (m_path.size() + 1 + name.size() <= maxLength
               && CreateDirectoryW((m_path + L'\\' + name).c_str(), nullptr)) {
            m_path += L'\\' + name;
            ++m_levels;
        }
        // Room for the files.
        leave();
    }

    ~DeepFolders()
    {
        while (m_levels > 0) {
            for (const wchar_t* const file : {L"\\a.txt", L"\\b.txt"})
                DeleteFileW((m_path + file).c_str());
            leave();
        }
    }

    DeepFolders(const DeepFolders&) = delete;
    DeepFolders& operator=(const DeepFolders&) = delete;

    const std::wstring& path() const { return m_path; }

private:
    void leave()
    {
        RemoveDirectoryW(m_path.c_str());
        m_path.resize(m_path.rfind(L'\\'));
        --m_levels;
    }

    std::wstring m_path;
    int m_levels = 0;
};

/// The rows without what the path of the last one is cut back to by contract.
QStringList filesOf(const Scan& scan)
{
    QStringList files = scan.rows.filter(QRegularExpression("\\.txt$"));
    files.removeDuplicates();
    files.sort();
    return files;
}

bool isScanError(const std::string& line)
{
    return line.find("rror") != std::string::npos;
}

} // namespace

class tst_windows_directories : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const std::array<zvtest::ImportReplacement, 2> ours = {{
            {"FindFirstFileExW", &findFirst},
            {"FindNextFileW", &findNext},
        }};
        zvtest::replaceImports(nullptr, ours);
    }

    void cleanup() { pretends = false; }

    void junctionsAreNotFollowed()
    {
        const FileTree tree({"files/a.txt", "files/b.txt", "one/c.txt", "one/d.txt"});
        const FolderLink link(nativePath(tree.path("one")), "link", "../files");
        if (!link.isMade())
            QSKIP("No junction can be made here");
        Log log;
        Scan scan;
        scan.add(tree.path("one"));
        QVERIFY(!scan.rows.isEmpty());
        for (const QString& row : qAsConst(scan.rows))
            QVERIFY2(row.endsWith("\\c.txt") || row.endsWith("\\d.txt"), qPrintable(row));
        QVERIFY(std::none_of(log.lines.begin(), log.lines.end(), &isScanError));
        // The same with the junction as the listed directory.
        Scan other;
        other.add(tree.path("one/link"));
        QCOMPARE(other.rows, zvtest::expectedRows({tree.path("one/link")}));
        QCOMPARE(other.rows.size(), 2);
    }

    void loopOfJunctionsEnds()
    {
        const FileTree tree({"d/a.txt", "d/b.txt"});
        const FolderLink up(nativePath(tree.path("d")), "up", "..");
        const FolderLink self(nativePath(tree.path("d")), "same", "../d");
        if (!up.isMade() || !self.isMade())
            QSKIP("No junction can be made here");
        Log log;
        Scan scan;
        scan.add(tree.path());
        QCOMPARE(filesOf(scan),
                 (QStringList{QDir::toNativeSeparators(tree.path("d/a.txt")),
                              QDir::toNativeSeparators(tree.path("d/b.txt"))}));
        QCOMPARE(scan.signalOrder, QString("(b)"));
        QCOMPARE(log.take(), runLines());
    }

    void reparsePoints_data()
    {
        QTest::addColumn<uint>("tag");
        QTest::addColumn<bool>("isWalked");
        QTest::newRow("symbolic link") << uint(IO_REPARSE_TAG_SYMLINK) << false;
        QTest::newRow("junction") << uint(IO_REPARSE_TAG_MOUNT_POINT) << false;
        QTest::newRow("of a kind that isn't told") << 0U << false;
        QTest::newRow("stored elsewhere") << uint(IO_REPARSE_TAG_HSM) << true;
        QTest::newRow("without copies") << uint(IO_REPARSE_TAG_DEDUP) << true;
        QTest::newRow("of another maker") << 0x1234U << true;
    }

    void reparsePoints()
    {
        QFETCH(uint, tag);
        QFETCH(bool, isWalked);
        const FileTree tree(
            {"d/marked folder/a.txt", "d/marked folder/b.txt", "d/marked.txt", "d/other.txt"});
        pretendedTag = tag;
        pretends = true;
        marks = 0;
        Log log;
        Scan scan;
        scan.add(tree.path());
        QVERIFY(marks >= 2);
        // A file is one, wherever it lies.
        QStringList expected = {"d/marked.txt", "d/other.txt"};
        if (isWalked)
            expected = QStringList{"d/marked folder/a.txt", "d/marked folder/b.txt"} + expected;
        for (QString& name : expected)
            name = QDir::toNativeSeparators(tree.path(name));
        QCOMPARE(filesOf(scan), expected);
        QCOMPARE(log.take(), runLines());
    }

    void formsOfDevices_data()
    {
        QTest::addColumn<QString>("device");
        QTest::newRow("without limits") << QString("\\\\?\\");
        QTest::newRow("device") << QString("\\\\.\\");
    }

    void formsOfDevices()
    {
        QFETCH(QString, device);
        const FileTree tree({"a.txt", "b.txt", "d/c.txt"});
        const QString path = device + nativePath(tree.path());
        Log log;
        Scan scan;
        scan.add(path);
        QStringList expected = zvtest::expectedRows({nativePath(tree.path())});
        for (QString& row : expected)
            row.prepend(device);
        QCOMPARE(scan.rows, expected);
        QCOMPARE(log.take(), runLines());
    }

    void namesThatAreNoText()
    {
        const FileTree tree({"d/a.txt"});
        const std::wstring name = L"x" + std::wstring(1, wchar_t(0xD800)) + L"y.txt";
        if (!makeFile(devicePath(tree.path("d")) + L'\\' + name))
            QSKIP("Such a name can't be made here");
        Log log;
        Scan scan;
        scan.add(tree.path());
        const QString row = QDir::toNativeSeparators(tree.path("d/"))
            + QString::fromUtf16(reinterpret_cast<const char16_t*>(name.c_str()));
        QVERIFY(scan.rows.contains(row));
        QCOMPARE(log.take(), runLines());
    }

    void longPaths_data()
    {
        QTest::addColumn<int>("nameLength");
        QTest::addColumn<int>("maxLength");
        QTest::addColumn<int>("minLength");
        // Wine allows as many bytes as the system below it: some 4,000.
        QTest::newRow("long names") << 200 << 32'000 << 3'000;
        // Wine looks each level up again for each call.
        QTest::newRow("many levels") << 1 << 400 << 350;
    }

    void longPaths()
    {
        QFETCH(int, nameLength);
        QFETCH(int, maxLength);
        QFETCH(int, minLength);
        const FileTree tree;
        const DeepFolders deep(devicePath(tree.path()), std::wstring(std::size_t(nameLength), L'n'),
                               std::size_t(maxLength));
        QVERIFY2(deep.path().size() > std::size_t(minLength),
                 qPrintable(QString::number(deep.path().size())));
        QVERIFY(makeFile(deep.path() + L"\\a.txt"));
        QVERIFY(makeFile(deep.path() + L"\\b.txt"));
        const QString text = QString::fromStdWString(deep.path()).mid(4);
        const QStringList files = {text + "\\a.txt", text + "\\b.txt"};
        // From above, and as the listed directory itself.
        for (const QString& listed : {nativePath(tree.path()), text}) {
            Log log;
            Scan scan;
            scan.add(listed);
            QCOMPARE(log.take(), runLines());
            for (const QString& file : files)
                QVERIFY(scan.rows.contains(file) || listed == text);
            QCOMPARE(scan.rows.size(), listed == text ? 2 : 3);
            QVERIFY(files.contains(scan.rows.first()));
        }
    }
};

QTEST_GUILESS_MAIN(tst_windows_directories)
#include "tst_windows_directories.moc"
