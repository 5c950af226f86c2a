#include <zvutil/ZvXMLReadFile.h>

#include "support/DeferredDeletes.h"
#include "support/EventLoop.h"
#include "support/Files.h"
#include "support/HeldFiles.h"
#include "support/Process.h"
#include "support/StdString.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <string>
#include <type_traits>

#if defined(Q_OS_UNIX)
#include <sys/resource.h>
#endif

using namespace std::string_literals;
using namespace zvutil::experimental::xml;

namespace {

class File : public ZvXMLReadFile
{
public:
    explicit File(const QString& path)
        : ZvXMLReadFile(path.toStdWString())
    {
    }

    using ZvXMLReadFile::reader;
};

std::string rootOf(const QString& path)
{
    File file(path);
    const auto root = file.reader().root_element();
    return root ? root->name() : "none";
}

#if defined(__has_feature)
#define ZV_HAS_FEATURE(feature) __has_feature(feature)
#else
#define ZV_HAS_FEATURE(feature) 0
#endif
#if defined(__SANITIZE_ADDRESS__) || ZV_HAS_FEATURE(address_sanitizer)
constexpr bool keepsFreedMemory = true;
#else
constexpr bool keepsFreedMemory = false;
#endif

static_assert(sizeof(ZvXMLReadFile) == 3 * sizeof(void*));
static_assert(std::has_virtual_destructor_v<ZvXMLReadFile>);
static_assert(!std::is_copy_constructible_v<ZvXMLReadFile>);
static_assert(!std::is_move_constructible_v<ZvXMLReadFile>);
static_assert(!std::is_copy_assignable_v<ZvXMLReadFile>);
static_assert(std::is_constructible_v<ZvXMLReadFile, const zvutil::ZvFilePath&>);

} // namespace

class tst_ZvXMLReadFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void readsAFile()
    {
        const QString path = write("a.xml", "<r x='1'><a>t</a></r>");
        File file(path);
        const auto root = file.reader().root_element();
        QCOMPARE(root->attribute("x"), "1");
        QCOMPARE(root->next_child()->text(), "t");
        QVERIFY(!root->next_child());
        QVERIFY(!file.reader().root_element());
    }

    void unreadable_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("missing") << m_missing;
        QTest::newRow("missing folder") << m_missing + "/a.xml";
        QTest::newRow("folder") << QDir::tempPath();
        QTest::newRow("empty path") << QString();
    }

    void unreadable()
    {
        QFETCH(QString, path);
        File file(path);
        QVERIFY(!file.reader().root_element());
        QVERIFY(!file.reader().next_element());
    }

    void missingFileIsNotMade()
    {
        const QString path = m_folder->filePath("a.xml");
        QCOMPARE(rootOf(path), std::string("none"));
        QVERIFY(!QFile::exists(path));
    }

    void emptyFile() { QCOMPARE(rootOf(write("a.xml", "")), std::string("none")); }

    void separatorsOfWindows()
    {
        const QString path = write("a.xml", "<r/>");
        QCOMPARE(
            rootOf(QDir::toNativeSeparators(path).replace(QLatin1Char('/'), QLatin1Char('\\'))),
            std::string("r"));
    }

    void pathBeyondTheCodePage()
    {
        const QString name = QString::fromUtf8("\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E.xml");
#if defined(Q_OS_UNIX)
        if (QFile::decodeName(QFile::encodeName(name)) != name)
            QSKIP("Qt can't write such a name in this locale");
#endif
        QCOMPARE(rootOf(write(name.toUtf8().constData(), "<r/>")), std::string("r"));
    }

    void eventLoopClosesTheFile()
    {
        const QString path = write("a.xml", "<r><a/></r>");
        {
            File file(path);
            const auto root = file.reader().root_element();
#if defined(Q_OS_LINUX)
            QCOMPARE(zvtest::temporaryFiles(m_folder->path(), path).size(), 1);
#endif
        }
        zvtest::runEventLoop();
        QCOMPARE(zvtest::temporaryFiles(m_folder->path(), path), QStringList());
        QVERIFY(QFile::remove(path));
    }

    void fileIsNeverDeletedAtOnce()
    {
        zvtest::DeferredDeletes<QFile> deletes;
        {
            File file(write("a.xml", "<r/>"));
            QVERIFY(file.reader().root_element());
            const File missing(m_missing);
        }
        QCOMPARE(deletes.count, 0);
        zvtest::runEventLoop();
        QCOMPARE(deletes.count, 2);
    }

    void elementsKeepTheFileOpen()
    {
        // More than is read ahead.
        const QString path = write(
            "a.xml",
            "<r><a/>" + QByteArray("<!-- more than a block -->").repeated(10'000) + "<b/></r>");
        auto file = std::make_unique<File>(path);
        auto root = file->reader().root_element();
        QCOMPARE(root->next_child()->name(), "a");
        file.reset();
        zvtest::runEventLoop();
        QCOMPARE(root->next_child()->name(), "b");
        root.reset();
        zvtest::runEventLoop();
        QVERIFY(QFile::remove(path));
    }

    void filesOfOneTurnOfTheEventLoopAreLimited()
    {
#if defined(Q_OS_UNIX)
        const QString name = write("a.xml", "<r/>");
        QVERIFY(zvtest::holdsInChild([&name] {
            constexpr rlim_t descriptors = 100;
            const rlimit limit{descriptors, descriptors};
            if (setrlimit(RLIMIT_NOFILE, &limit) != 0)
                return false;
            int found = 0;
            for (rlim_t i = 0; i < descriptors; ++i)
                found += rootOf(name) == "r" ? 1 : 0;
            const bool isCutOff = found > 0 && found < int(descriptors) && rootOf(name) == "none";
            zvtest::runEventLoop();
            return isCutOff && rootOf(name) == "r";
        }));
#else
        QSKIP("Files are limited by memory alone");
#endif
    }

    void invalidBytesLoseTheirBlock()
    {
        QCOMPARE(rootOf(write("a.xml", "<r><a/>\xFF<b/></r>")), "none"s);
        QByteArray children;
        while (children.size() < 100'000)
            children += "<a/>";
        File file(write("b.xml", "<r>" + children + '\xFF' + children + "</r>"));
        const auto root = file.reader().root_element();
        QVERIFY(root);
        int count = 0;
        while (root->next_child())
            ++count;
        // Some in front of the byte are lost as well, but not all.
        QVERIFY(count > children.size() / 4 / 2 && count < children.size() / 4);
    }

    void memoryStaysFlat()
    {
        if (keepsFreedMemory)
            QSKIP("The sanitizer keeps what has been freed");
        // Not a measurement: a file of some 30 MB is walked where 8 MB would be too little for it.
        const QString path = m_folder->filePath("a.xml");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<r>");
        for (int i = 0; i < 300'000; ++i)
            file.write("<child name='a name' value='some value'>and a text, which is left</child>");
        file.write("</r>");
        file.close();
        const qint64 before = residentBytes();
        if (before == 0)
            QSKIP("This platform doesn't tell how much memory a process takes");
        File document(path);
        const auto root = document.reader().root_element();
        int count = 0;
        while (root->next_child())
            ++count;
        QCOMPARE(count, 300'000);
        QVERIFY(residentBytes() - before < 8'000'000);
    }

private:
    QString write(const char* name, const QByteArray& content)
    {
        const QString path = m_folder->filePath(QString::fromUtf8(name));
        return zvtest::writeTo(path, content) ? path : QString();
    }

    /// 0 where that can't be told.
    static qint64 residentBytes()
    {
        QFile status("/proc/self/statm");
        if (!status.open(QIODevice::ReadOnly))
            return 0;
        return status.readAll().split(' ').value(1).toLongLong() * 4096;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    const QString m_missing = QDir::tempPath() + "/zvutil missing";
};

QTEST_GUILESS_MAIN(tst_ZvXMLReadFile)
#include "tst_ZvXMLReadFile.moc"
