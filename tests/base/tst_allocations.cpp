// Counts allocations, in a program of its own since it replaces operator new for the whole process.

#include <zvutil/ZvBasicString.h>
#include <zvutil/ZvClipboardData.h>
#include <zvutil/ZvCompression.h>
#include <zvutil/ZvFilePath.h>
#include <zvutil/ZvString.h>
#include <zvutil/ZvTable.h>
#include <zvutil/ZvURI.h>
#include <zvutil/ZvUUID.h>
#include <zvutil/ZvVariant.h>
#include <zvutil/ZvWString.h>
#include <zvutil/ZvXMLReadFile.h>
#include <zvutil/uri.h>

#include "support/StdString.h"
#include "support/Tables.h"

#include <zv_logging/host.h>

#include <QByteArray>
#include <QFile>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>
#include <QVariant>

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace {

std::atomic<int> allocations{0};
std::atomic<std::size_t> largestBlock{std::numeric_limits<std::size_t>::max()};

void* allocate(std::size_t size)
{
    ++allocations;
    void* const memory = size <= largestBlock ? std::malloc(size > 0 ? size : 1) : nullptr;
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

template <typename Work>
int allocationsOf(Work work)
{
    const int before = allocations;
    work();
    return allocations - before;
}

/// As long as it lives, there is no memory for a larger block than this.
class ScarceMemory
{
public:
    explicit ScarceMemory(std::size_t largest) { largestBlock = largest; }
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;
    ~ScarceMemory() { largestBlock = std::numeric_limits<std::size_t>::max(); }
};

/// Whether the replaced operator serves the library as well.
bool countsInTheLibrary()
{
    return allocationsOf([] { const zvutil::ZvBasicString<char> text; }) > 0;
}

} // namespace

void* operator new(std::size_t size)
{
    return allocate(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}

using zvtest::hasStorage;
using zvutil::ZvBasicString;
using zvutil::ZvFilePath;

class tst_allocations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!countsInTheLibrary())
            QSKIP("An operator new that is replaced in a program doesn't reach its DLLs");
    }

    void strings()
    {
        stringsOf<char>();
        stringsOf<char16_t>();
        stringsOf<char32_t>();
        stringsOf<wchar_t>();
    }

    void paths()
    {
        const std::wstring units = L"C:\\" + std::wstring(100, L'x') + L"\\name";
        const std::string bytes(units.begin(), units.end());
        ZvFilePath text(units);
        QCOMPARE(allocationsOf([] { const ZvFilePath made; }), 1);
        QCOMPARE(allocationsOf([&] { const ZvFilePath made(units); }), 1);
        QCOMPARE(allocationsOf([&] { const ZvFilePath made(bytes); }), 1);
        QCOMPARE(allocationsOf([&] { const ZvFilePath copy(text); }), 1);
        QCOMPARE(allocationsOf([&] { (void)text.parentPath(); }), 1);

        ZvFilePath other(text);
        QCOMPARE(allocationsOf([&] {
                     ZvFilePath moved(std::move(other));
                     other = std::move(moved);
                 }),
                 0);
        QCOMPARE(allocationsOf([&] { QVERIFY(text == other && !(text < other)); }), 0);
        QCOMPARE(allocationsOf([&] { QVERIFY(!text.isDescendant(other)); }), 0);
    }

    void clipboardTableThatFindsNoMemory_data()
    {
        QTest::addColumn<int>("megabytes");
        // Of about a million cells.
        QTest::newRow("for its texts") << 1;
        QTest::newRow("for itself") << 12;
    }

    void clipboardTableThatFindsNoMemory()
    {
        QFETCH(int, megabytes);
        // A long record and many short ones, in a few thousand bytes.
        QMimeData data;
        data.setData("text/csv", QByteArray("a,").repeated(999) + QByteArray("\na").repeated(1000));
        const ZvClipboardData view(&data);
        QVERIFY(hasStorage(view.csvData()));
        std::vector<std::string> log;
        zvutil::logging::host::setObserver(
            [&log](const std::string& call) { log.push_back(call); });
        bool isTable = true;
        {
            const ScarceMemory scarce(std::size_t(megabytes) << 20);
            isTable = hasStorage(view.csvData());
        }
        zvutil::logging::host::setObserver({});
        QVERIFY(!isTable);
        QCOMPARE(
            log,
            std::vector<std::string>{std::string("write 4 ") + std::bad_alloc().what() + ": "});
    }

    void uris()
    {
        const std::string bytes = "http://srv/" + std::string(100, 'x');
        QCOMPARE(allocationsOf([] { const zvutil::uri made; }), 1);
        QCOMPARE(allocationsOf([&] { const zvutil::uri made(bytes); }), 2);
        zvutil::uri source(bytes);
        QCOMPARE(allocationsOf([&] { const zvutil::uri moved(std::move(source)); }), 0);
    }

    void uriHandles()
    {
        // The handle's, the URI's and the text's.
        const std::string bytes = "http://srv/" + std::string(100, 'x');
        ZvURI source(bytes);
        QCOMPARE(allocationsOf([] { const ZvURI made; }), 2);
        QCOMPARE(allocationsOf([&] { const ZvURI copy(source); }), 4);
        QCOMPARE(allocationsOf([&] { source.set("x"); }), 1);
        QCOMPARE(allocationsOf([&] { const ZvURI moved(std::move(source)); }), 0);
    }

    void identifiers()
    {
        zvutil::ZvUUID source;
        QCOMPARE(allocationsOf([] { const zvutil::uuid made; }), 1);
        QCOMPARE(allocationsOf([] { const zvutil::ZvUUID made; }), 2);
        QCOMPARE(allocationsOf([&] { const zvutil::ZvUUID copy(source); }), 2);
        QCOMPARE(allocationsOf([&] { const zvutil::ZvUUID moved(std::move(source)); }), 0);
    }

    void appendableStrings()
    {
        const std::string bytes(100, 'x');
        const std::wstring units(100, L'x');
        libzvutil::ZvString narrow(bytes.c_str());
        libzvutil::ZvWString wide(units);
        QCOMPARE(allocationsOf([] { const libzvutil::ZvString made; }), 1);
        QCOMPARE(allocationsOf([] { const libzvutil::ZvWString made; }), 1);
        QCOMPARE(allocationsOf([&] { const libzvutil::ZvString copy(narrow); }), 2);
        QCOMPARE(allocationsOf([&] { const libzvutil::ZvWString copy(wide); }), 2);
        QCOMPARE(allocationsOf([&] { QCOMPARE(narrow.compare(bytes.c_str()), 0); }), 0);
        QCOMPARE(allocationsOf([&] {
                     libzvutil::ZvString moved(std::move(narrow));
                     narrow = std::move(moved);
                 }),
                 0);
    }

    void variants()
    {
        libzvutil::ZvVariant source(1);
        QCOMPARE(allocationsOf([] { const libzvutil::ZvVariant made(1.5); }), 1);
        QCOMPARE(allocationsOf([&] { const libzvutil::ZvVariant copy(source); }), 1);
        QCOMPARE(allocationsOf([&] { source = libzvutil::ZvVariant(source); }), 1);
        QCOMPARE(allocationsOf([&] { const libzvutil::ZvVariant moved(std::move(source)); }), 0);
    }

    void tables()
    {
        // The implementation, the grid, and each cell; the value that fills it isn't counted.
        const libzvutil::ZvVariant fill(1);
        ZvTable source(2, 3, fill);
        QCOMPARE(allocationsOf([] { const ZvTable none; }), 0);
        QCOMPARE(allocationsOf([&] { const ZvTable made(2, 3, fill); }), 2 + 6);
        QCOMPARE(allocationsOf([&] { const ZvTable empty(0, 3, fill); }), 1);
        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
        QCOMPARE(allocationsOf([&] { const ZvTable copy(source); }), 2 + 6);
        QCOMPARE(allocationsOf([&] { source.value(0, 0) = QVariant(2); }), 0);
        QCOMPARE(allocationsOf([&] { const ZvTable moved(std::move(source)); }), 0);
    }

    void compression()
    {
        ZvCompression source;
        QCOMPARE(allocationsOf([] { const ZvCompression made; }), 1);
        QCOMPARE(allocationsOf([&] { const ZvCompression copy(source); }), 1);
        QCOMPARE(allocationsOf([&] { const ZvCompression moved(std::move(source)); }), 0);
    }

    void xmlElements()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath("a.xml"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<r><a/><b x='1' y='2'/><c><d/><d/><d/></c><e>text</e><f/></r>");
        file.close();
        XMLFile document(file.fileName().toStdWString());
        const auto root = document.reader().root_element();
        const auto next = [&root] { root->next_child(); };
        // The reader, what it shares with its parent, and its attributes if it has any.
        QCOMPARE(allocationsOf(next), 2);
        QCOMPARE(allocationsOf(next), 3);
        // What is skipped takes none.
        QCOMPARE(allocationsOf(next), 2);
        const auto element = root->next_child();
        QCOMPARE(allocationsOf([&element] { QVERIFY(*element->name() == 'e'); }), 0);
        QCOMPARE(allocationsOf([&element] { QVERIFY(*element->text() == 't'); }), 0);
        QCOMPARE(allocationsOf(next), 2);
        QCOMPARE(allocationsOf(next), 0);
    }

private:
    class XMLFile : public ZvXMLReadFile
    {
    public:
        using ZvXMLReadFile::reader;
        using ZvXMLReadFile::ZvXMLReadFile;
    };

    template <typename C>
    static void stringsOf()
    {
        // One for the implementation, one for a text that doesn't lie in it.
        const std::basic_string<C> units(100, C('x'));
        const ZvBasicString<C> empty;
        const ZvBasicString<C> brief(std::basic_string<C>(3, C('x')));
        ZvBasicString<C> text(units);
        QCOMPARE(allocationsOf([] { ZvBasicString<C>(); }), 1);
        QCOMPARE(allocationsOf([&] { ZvBasicString<C>{units}; }), 2);
        QCOMPARE(allocationsOf([&] { ZvBasicString<C>{units.c_str()}; }), 2);
        QCOMPARE(allocationsOf([&] { ZvBasicString<C>{brief}; }), 1);
        QCOMPARE(allocationsOf([&] { ZvBasicString<C>{text}; }), 2);
        QCOMPARE(allocationsOf([&] { text.appended(text); }), 2);

        ZvBasicString<C> target;
        QCOMPARE(allocationsOf([&] { target = text; }), 1);
        QCOMPARE(allocationsOf([&] { target = text; }), 0);
        QCOMPARE(allocationsOf([&] {
                     ZvBasicString<C> moved(std::move(target));
                     target = std::move(moved);
                 }),
                 0);
        QCOMPARE(allocationsOf([&] { QVERIFY(target == text && target == units); }), 0);

        QCOMPARE(allocationsOf([&] { text.toStdString(); }), 1);
        QCOMPARE(allocationsOf([&] { text.toString(); }), 2);
        QCOMPARE(allocationsOf([&] { text.toWString(); }), 2);
        QCOMPARE(allocationsOf([&] { text.toU16String(); }), 2);
        QCOMPARE(allocationsOf([&] { text.toU32String(); }), 2);
        QCOMPARE(allocationsOf([&] { empty.toU32String(); }), 1);
    }
};

QTEST_APPLESS_MAIN(tst_allocations)
#include "tst_allocations.moc"
