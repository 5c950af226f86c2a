#include "CompressionFiles.h"

#include <zvutil/ZvCompression.h>

#include <zvutil/ZvFileException.h>
#include <zvutil/ZvFilePath.h>

#include "support/Files.h"
#include "support/Process.h"
#include "support/RefusedWrite.h"
#include "support/StdString.h"
#include "support/Threads.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QScopeGuard>
#include <QTest>
#include <QtEndian>

#include <cstring>
#include <string>
#include <type_traits>
#include <utility>

#if defined(Q_OS_UNIX)
#include <sys/resource.h>
#include <sys/stat.h>

#endif

using zvtest::contentOf;
using zvtest::path;
using zvtest::randomBytes;
using zvtest::writeTo;
using zvtest::Zlib;
using zvutil::ZvFileException;
using zvutil::ZvFilePath;
using namespace std::string_literals;

namespace {

static_assert(sizeof(ZvCompression) == 2 * sizeof(void*));
static_assert(!std::is_polymorphic_v<ZvCompression>);
static_assert(std::is_enum_v<ZvCompressionType> && int(Zlib) == 0);
static_assert(std::is_nothrow_move_constructible_v<ZvCompression>);
static_assert(std::is_nothrow_move_assignable_v<ZvCompression>);

/// The message and the path that \p work throws, or "nothing" if it throws nothing.
template <typename Work>
std::string failure(Work work)
{
    try {
        work();
    } catch (const ZvFileException& error) {
        return error.what() + " | "s + error.path().toQString().toStdString();
    }
    return "nothing";
}

std::string compressFailure(const QString& source, const QString& target)
{
    return failure([&] { ZvCompression::compress(path(source), path(target), Zlib, -1); });
}

std::string decompressFailure(const QString& source, const QString& target)
{
    return failure([&] { ZvCompression::decompress(path(source), path(target), Zlib); });
}

std::string cannotRead(const QString& name)
{
    return "Cannot open file for reading: " + name.toStdString() + " | " + name.toStdString();
}

std::string cannotWrite(const QString& name)
{
    return "Cannot open file for writing: " + name.toStdString() + " | " + name.toStdString();
}

std::string tooLarge(const QString& name)
{
    return "File too large: " + name.toStdString() + " | " + name.toStdString();
}

/// A file that takes no room on disk.
bool makeSparse(const QString& name, qint64 size)
{
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.resize(size);
}

} // namespace

class tst_ZvCompression : public zvtest::CompressionTest
{
    Q_OBJECT

private Q_SLOTS:
    void objectsHaveNoState()
    {
        ZvCompression source;
        const ZvCompression copy(source);
        ZvCompression moved(std::move(source));
        // A moved-from object may be the target of a copy and of a move.
        source = copy; // NOLINT(bugprone-use-after-move)
        source = std::move(moved);
        moved = source; // NOLINT(bugprone-use-after-move)
        const ZvCompression& self = moved;
        moved = self;
    }

    void byteOrderMarksArePartOfAName_data()
    {
        QTest::addColumn<QChar>("mark");
        QTest::newRow("mark") << QChar(u'\uFEFF');
        QTest::newRow("swapped mark") << QChar(u'\uFFFE');
    }

    void byteOrderMarksArePartOfAName()
    {
        QFETCH(QChar, mark);
        // In front of the whole path, so it is a relative one.
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_dir->path()));
        const auto back = qScopeGuard([&before] { QDir::setCurrent(before); });
        const QString marked = mark + QString("\u00E4.txt");
        const QString packed = "packed";
        const QString unpacked = "unpacked";
        QVERIFY(writeTo("\u00E4.txt", "other"));
        QVERIFY(writeTo(marked, "marked"));
        ZvCompression::compress(path(marked), path(mark + packed), Zlib, 9);
        QCOMPARE(contentOf(mark + packed), qCompress(QByteArray("marked"), 9));
        ZvCompression::decompress(path(mark + packed), path(mark + unpacked), Zlib);
        QCOMPARE(contentOf(mark + unpacked), QByteArray("marked"));
        QVERIFY(!QFile::exists(packed) && !QFile::exists(unpacked));
    }

    void roundTrip_data()
    {
        QTest::addColumn<int>("level");
        QTest::addColumn<QByteArray>("bytes");
        const struct
        {
            const char* name;
            QByteArray bytes;
        } contents[] = {
            {"empty", QByteArray()},
            {"one byte", QByteArray("x")},
            {"one NUL", QByteArray(1, '\0')},
            {"incompressible", randomBytes(300'000)},
            {"zeros", QByteArray(300'000, '\0')},
            {"line ends", QByteArray("a\r\nb\nc\r").repeated(1000)},
        };
        for (int level = -1; level <= 9; ++level) {
            for (const auto& c : contents)
                QTest::addRow("%s, level %d", c.name, level) << level << c.bytes;
        }
        // Taken for the default.
        QTest::newRow("level below the lowest") << -2 << QByteArray("text").repeated(100);
        QTest::newRow("level above the highest") << 10 << QByteArray("text").repeated(100);
    }

    void roundTrip()
    {
        QFETCH(int, level);
        QFETCH(QByteArray, bytes);
        QVERIFY(writeTo(file("source"), bytes));
        ZvCompression::compress(path(file("source")), path(file("packed")), Zlib, level);
        QCOMPARE(contentOf(file("packed")), qCompress(bytes, level));
        ZvCompression::decompress(path(file("packed")), path(file("target")), Zlib);
        QCOMPARE(contentOf(file("target")), bytes);
        QCOMPARE(contentOf(file("source")), bytes);
    }

    void largeRoundTrip_data()
    {
        QTest::addColumn<int>("level");
        for (int level = -1; level <= 9; ++level)
            QTest::addRow("level %d", level) << level;
    }

    void largeRoundTrip()
    {
        QFETCH(int, level);
        const QByteArray block = randomBytes(4096) + QByteArray(60 * 1024, 'x');
        QFile source(file("source"));
        QVERIFY(source.open(QIODevice::ReadWrite));
        for (int i = 0; i < 4096; ++i)
            QCOMPARE(source.write(block), qint64(block.size()));
        QVERIFY(source.seek(0));
        QCOMPARE(source.size(), qint64(256) << 20);

        ZvCompression::compress(path(file("source")), path(file("packed")), Zlib, level);
        ZvCompression::decompress(path(file("packed")), path(file("target")), Zlib);
        QFile target(file("target"));
        QVERIFY(target.open(QIODevice::ReadOnly));
        QCOMPARE(target.size(), source.size());
        while (!source.atEnd())
            QVERIFY(source.read(block.size()) == target.read(block.size()));
    }

    void format()
    {
        QVERIFY(writeTo(file("source"), QByteArray("hello hello hello")));
        ZvCompression::compress(path(file("source")), path(file("packed")), Zlib, -1);
        const QByteArray packed = contentOf(file("packed"));
        QCOMPARE(packed.left(4), QByteArray("\0\0\0\x11", 4));
        // A zlib stream: deflate with a window of 32 KB, and a header that is a multiple of 31.
        QCOMPARE(packed[4], '\x78');
        QCOMPARE((quint8(packed[4]) * 256 + quint8(packed[5])) % 31, 0);
        // The checksum of the content ends it: Adler-32 of 17 bytes.
        QCOMPARE(packed.right(4).toHex(), QByteArray("3a2e067d"));

        QVERIFY(writeTo(file("source"), QByteArray()));
        ZvCompression::compress(path(file("source")), path(file("packed")), Zlib, -1);
        QCOMPARE(contentOf(file("packed")), QByteArray(4, '\0'));
    }

    void levelsAreHandedOn()
    {
        const QByteArray bytes = QByteArray("some text, ").repeated(1000);
        QVERIFY(writeTo(file("source"), bytes));
        const auto packedSize = [&](int level) {
            ZvCompression::compress(path(file("source")), path(file("packed")), Zlib, level);
            return contentOf(file("packed")).size();
        };
        QVERIFY(packedSize(0) > bytes.size());
        QVERIFY(packedSize(1) > packedSize(9));
        QCOMPARE(packedSize(-1), packedSize(6));
    }

    void exchangeWithAnotherProgram()
    {
        const QByteArray bytes = randomBytes(10'000) + QByteArray("text\r\n").repeated(10'000);
        QVERIFY(writeTo(file("source"), bytes));
        QCOMPARE(runPeer("pack", file("source"), file("packed")), 0);
        ZvCompression::decompress(path(file("packed")), path(file("target")), Zlib);
        QVERIFY(contentOf(file("target")) == bytes);

        ZvCompression::compress(path(file("source")), path(file("ours")), Zlib, 9);
        QCOMPARE(runPeer("unpack", file("ours"), file("theirs")), 0);
        QVERIFY(contentOf(file("theirs")) == bytes);
    }

    void otherTypesDoNothing()
    {
        for (const int value : {1, -1, 2'000'000'000}) {
            const auto other = static_cast<ZvCompressionType>(value);
            QVERIFY(writeTo(file("source"), QByteArray("text")));
            ZvCompression::compress(path(file("source")), path(file("target")), other, -1);
            ZvCompression::decompress(path(file("source")), path(file("target")), other);
            QVERIFY(!QFile::exists(file("target")));
            // Not even the source is looked at.
            ZvCompression::compress(path(file("none")), path(file("target")), other, -1);
            ZvCompression::decompress(path(file("none")), path(file("target")), other);
            // And a target that is there stays.
            ZvCompression::compress(path(file("none")), path(file("source")), other, -1);
            QCOMPARE(contentOf(file("source")), QByteArray("text"));
        }
    }

    void unreadableSource_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("missing") << "none";
        QTest::newRow("directory") << "folder";
        QTest::newRow("below a missing folder") << "none/file";
        QTest::newRow("name beyond ASCII") << "\u00E4\u20AC";
    }

    void unreadableSource()
    {
        QFETCH(QString, name);
        QVERIFY(QDir(m_dir->path()).mkdir("folder"));
        QVERIFY(writeTo(file("target"), QByteArray("old")));
        const QString source = m_dir->filePath(name);
        QCOMPARE(compressFailure(source, file("target")), cannotRead(source));
        QCOMPARE(decompressFailure(source, file("target")), cannotRead(source));
        QCOMPARE(contentOf(file("target")), QByteArray("old"));
        QCOMPARE(compressFailure(source, file("new")), cannotRead(source));
        QVERIFY(!QFile::exists(file("new")));
    }

    void veryLongPaths()
    {
        // Longer than what Windows takes as it is, shorter than what Linux takes.
        const QString folder = m_dir->path() + ("/" + QString(200, QLatin1Char('n'))).repeated(15);
        QVERIFY(QDir().mkpath(folder));
        const QString source = folder + "/source";
        QVERIFY(writeTo(source, QByteArray("text")));
        ZvCompression::compress(path(source), path(folder + "/packed"), Zlib, -1);
        ZvCompression::decompress(path(folder + "/packed"), path(folder + "/target"), Zlib);
        QCOMPARE(contentOf(folder + "/target"), QByteArray("text"));
        QCOMPARE(compressFailure(folder + "/none", source), cannotRead(folder + "/none"));
    }

    void emptyPaths()
    {
        QVERIFY(writeTo(file("source"), QByteArray("text")));
        QTest::ignoreMessage(QtWarningMsg, "QFSFileEngine::open: No file name specified");
        QCOMPARE(compressFailure(QString(), file("target")), cannotRead(QString()));
        QTest::ignoreMessage(QtWarningMsg, "QFSFileEngine::open: No file name specified");
        QCOMPARE(compressFailure(file("source"), QString()), cannotWrite(QString()));
    }

    void unwritableTarget_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("directory") << "folder";
        QTest::newRow("below a missing folder") << "none/file";
        QTest::newRow("below a file") << "source/file";
    }

    void unwritableTarget()
    {
        QFETCH(QString, name);
        QVERIFY(QDir(m_dir->path()).mkdir("folder"));
        QVERIFY(writeTo(file("source"), QByteArray("text")));
        const QString target = m_dir->filePath(name);
        QCOMPARE(compressFailure(file("source"), target), cannotWrite(target));
        QCOMPARE(decompressFailure(file("source"), target), cannotWrite(target));
        QCOMPARE(contentOf(file("source")), QByteArray("text"));
    }

    void withoutPermission()
    {
#if defined(Q_OS_UNIX)
        QVERIFY(writeTo(file("source"), QByteArray("text")));
        QVERIFY(writeTo(file("secret"), QByteArray("text")));
        QVERIFY(writeTo(file("kept"), QByteArray("old")));
        QCOMPARE(chmod(qPrintable(m_dir->path()), 0755), 0);
        QCOMPARE(chmod(qPrintable(file("source")), 0444), 0);
        QCOMPARE(chmod(qPrintable(file("secret")), 0), 0);
        QCOMPARE(chmod(qPrintable(file("kept")), 0444), 0);
        QVERIFY(zvtest::holdsForOrdinaryUser([this] {
            return compressFailure(file("secret"), file("kept")) == cannotRead(file("secret"))
                && decompressFailure(file("secret"), file("kept")) == cannotRead(file("secret"))
                && compressFailure(file("source"), file("kept")) == cannotWrite(file("kept"))
                && decompressFailure(file("source"), file("kept")) == cannotWrite(file("kept"));
        }));
        QCOMPARE(contentOf(file("kept")), QByteArray("old"));
#else
        QSKIP("Made with the permissions of POSIX");
#endif
    }

    void fullDisk()
    {
#if defined(Q_OS_LINUX)
        QVERIFY(writeTo(file("source"), randomBytes(1'000'000)));
        QCOMPARE(compressFailure(file("source"), "/dev/full"), "nothing"s);
        ZvCompression::compress(path(file("source")), path(file("packed")), Zlib, -1);
        QCOMPARE(decompressFailure(file("packed"), "/dev/full"), "nothing"s);
#else
        QSKIP("There is no /dev/full");
#endif
    }

    void limitedDisk()
    {
        QVERIFY(writeTo(file("source"), randomBytes(1'000'000)));
        {
            const zvtest::RefusedWrite refused(100'000);
            QCOMPARE(compressFailure(file("source"), file("short")), "nothing"s);
        }
        const QByteArray all = qCompress(randomBytes(1'000'000));
        QCOMPARE(contentOf(file("short")), all.left(100'000));
        QCOMPARE(decompressFailure(file("short"), file("target")), "nothing"s);
        QCOMPARE(contentOf(file("target")), QByteArray());
    }

    void targetIsTruncated()
    {
        QVERIFY(writeTo(file("source"), QByteArray("text")));
        QVERIFY(writeTo(file("target"), randomBytes(10'000)));
        ZvCompression::compress(path(file("source")), path(file("target")), Zlib, -1);
        QCOMPARE(contentOf(file("target")), qCompress(QByteArray("text")));
        QVERIFY(writeTo(file("restored"), randomBytes(10'000)));
        ZvCompression::decompress(path(file("target")), path(file("restored")), Zlib);
        QCOMPARE(contentOf(file("restored")), QByteArray("text"));
    }

    void sameFileLosesItsContent()
    {
        QVERIFY(writeTo(file("file"), QByteArray("text")));
        QCOMPARE(compressFailure(file("file"), file("file")), "nothing"s);
        QCOMPARE(contentOf(file("file")), QByteArray(4, '\0'));
        QVERIFY(writeTo(file("file"), qCompress(QByteArray("text"))));
        QCOMPARE(decompressFailure(file("file"), file("file")), "nothing"s);
        QCOMPARE(contentOf(file("file")), QByteArray());
    }

    void foreignBytes_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray packed = qCompress(QByteArray("some content").repeated(10));
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("length alone") << packed.left(4);
        QTest::newRow("text") << QByteArray("This was never compressed.");
        QTest::newRow("random") << randomBytes(10'000);
        QTest::newRow("without the length") << packed.mid(4);
        QTest::newRow("one bit in the stream") << flipped(packed, 10);
        QTest::newRow("one bit in the checksum") << flipped(packed, packed.size() - 1);
        for (const quint32 length : {0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU, 0x10000000U}) {
            QByteArray claim(4, '\0');
            qToBigEndian(length, claim.data());
            QTest::addRow("%08x claimed over nothing", length) << claim;
            QTest::addRow("%08x claimed over a few bytes", length) << claim + "abc";
            QTest::addRow("%08x claimed over a broken stream", length)
                << claim + packed.mid(4, packed.size() / 2);
        }
    }

    void foreignBytes()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(writeTo(file("foreign"), bytes));
        QVERIFY(writeTo(file("target"), QByteArray("old")));
        QCOMPARE(decompressFailure(file("foreign"), file("target")), "nothing"s);
        QCOMPARE(contentOf(file("target")), QByteArray());
    }

    void claimsNeedNoMemory()
    {
#if defined(ZV_SANITIZED)
        QSKIP("A sanitizer needs more address space than there is to be");
#elif defined(Q_OS_LINUX)
        const QByteArray packed = qCompress(QByteArray("some content").repeated(10));
        for (const quint32 length : {0x40000000U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
            QByteArray claim = packed.left(30);
            qToBigEndian(length, claim.data());
            QVERIFY(writeTo(file("foreign"), claim));
            QVERIFY(zvtest::holdsInChild([this] {
                const rlimit limit = {400U << 20, 400U << 20};
                return setrlimit(RLIMIT_AS, &limit) == 0
                    && decompressFailure(file("foreign"), file("target")) == "nothing";
            }));
            QCOMPARE(contentOf(file("target")), QByteArray());
        }
#else
        QSKIP("Made with a resource limit of Linux");
#endif
    }

    void everyTruncation()
    {
        const QByteArray bytes = QByteArray("some content").repeated(20) + randomBytes(50);
        const QByteArray packed = qCompress(bytes);
        for (int size = 0; size < packed.size(); ++size) {
            QVERIFY(writeTo(file("foreign"), packed.left(size)));
            QCOMPARE(decompressFailure(file("foreign"), file("target")), "nothing"s);
            QVERIFY2(contentOf(file("target")).isEmpty(), qPrintable(QString::number(size)));
        }
    }

    void wrongLengthIsForgiven_data()
    {
        QTest::addColumn<quint32>("length");
        QTest::newRow("nothing") << 0U;
        QTest::newRow("less") << 5U;
        QTest::newRow("more") << 5'000U;
    }

    void wrongLengthIsForgiven()
    {
        // The length is what is allocated at first; the stream tells how much there is.
        QFETCH(quint32, length);
        const QByteArray bytes = QByteArray("some content").repeated(10);
        QByteArray packed = qCompress(bytes);
        qToBigEndian(length, packed.data());
        QVERIFY(writeTo(file("packed"), packed));
        ZvCompression::decompress(path(file("packed")), path(file("target")), Zlib);
        QCOMPARE(contentOf(file("target")), bytes);
    }

    void whatFollowsTheStreamIsIgnored()
    {
        QVERIFY(writeTo(file("packed"), qCompress(QByteArray("text")) + "more"));
        ZvCompression::decompress(path(file("packed")), path(file("target")), Zlib);
        QCOMPARE(contentOf(file("target")), QByteArray("text"));
    }

    void tooLargeSource()
    {
        QVERIFY(writeTo(file("target"), QByteArray("old")));
        for (const qint64 size : {qint64(2126221301), qint64(1) << 31, qint64(5'000'000'000)}) {
            if (!makeSparse(file("source"), size))
                QSKIP("There are no files of this size here");
            QCOMPARE(compressFailure(file("source"), file("target")), tooLarge(file("source")));
        }
        for (const qint64 size : {(qint64(1) << 31) - 64, qint64(1) << 31, qint64(5'000'000'000)}) {
            QVERIFY(makeSparse(file("source"), size));
            QCOMPARE(decompressFailure(file("source"), file("target")), tooLarge(file("source")));
        }
        QCOMPARE(contentOf(file("target")), QByteArray("old"));
    }

    void pathsHaveTheRulesOfTheLibrary()
    {
        QVERIFY(QDir(m_dir->path()).mkdir("folder"));
        QVERIFY(writeTo(file("folder/\u00E4 source"), QByteArray("text")));
        ZvFilePath source = path(m_dir->path());
        source /= ZvFilePath(L"folder");
        source /= ZvFilePath(L"\u00E4 source");
        ZvFilePath target = path(m_dir->path());
        target /= ZvFilePath(L"folder\\packed");
        ZvCompression::compress(source, target, Zlib, -1);
        QCOMPARE(contentOf(file("folder/packed")), qCompress(QByteArray("text")));
    }

    void pathsEndAtTheFirstNul()
    {
        QVERIFY(writeTo(file("source"), QByteArray("text")));
        const std::wstring source = file("source").toStdWString() + L"\0x"s;
        const std::wstring target = file("target").toStdWString() + L"\0y"s;
        ZvCompression::compress(ZvFilePath(source.data(), source.size()),
                                ZvFilePath(target.data(), target.size()), Zlib, -1);
        QCOMPARE(contentOf(file("target")), qCompress(QByteArray("text")));
    }

private:
    static QByteArray flipped(QByteArray bytes, int position)
    {
        bytes[position] = char(bytes[position] ^ 1);
        return bytes;
    }

    static int runPeer(const QString& what, const QString& input, const QString& output)
    {
        QProcess peer;
        peer.setStandardInputFile(input);
        peer.setStandardOutputFile(output);
        peer.start(PEER_FILE, {what});
        return peer.waitForFinished() ? peer.exitCode() : -1;
    }
};

QTEST_GUILESS_MAIN(tst_ZvCompression)
#include "tst_ZvCompression.moc"
