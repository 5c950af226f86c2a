// Where files are saved to, and what stands in the way there.

#include "SaveFileTest.h"

#include "support/DeferredDeletes.h"
#include "support/EventLoop.h"
#include "support/Files.h"
#include "support/HeldFiles.h"
#include "support/XmlGeneration.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTest>

#include <chrono>
#include <thread>

using zvtest::contentOf;
using zvtest::declaration;
using zvtest::generationOf;
using zvtest::oldContent;
using zvtest::Saver;

namespace {

/// What a run of the helper program tells.
QStringList linesOf(const QStringList& arguments)
{
    QProcess saver;
    saver.start(QString(XML_SAVER), arguments);
    if (!saver.waitForFinished() || saver.exitStatus() != QProcess::NormalExit)
        return {"failed: " + saver.errorString()};
    const QByteArray output = saver.readAllStandardOutput().replace("\r", "");
    return QString::fromLocal8Bit(output).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

class tst_ZvBasicXMLSaveFile_targets : public zvtest::SaveFileTest
{
    Q_OBJECT

private Q_SLOTS:
    void unwritableTargets_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("missing folder") << QDir::tempPath() + "/zvutil missing/a.xml";
        QTest::newRow("folder") << QDir::tempPath();
        QTest::newRow("empty path") << QString();
        QTest::newRow("server that isn't there") << "\\\\zvutil-no-server\\share\\a.xml";
        QTest::newRow("share that isn't there") << "\\\\localhost\\zvutil-no-share\\a.xml";
        QTest::newRow("device that isn't there") << "\\\\?\\no\\a.xml";
    }

    void unwritableTargets()
    {
        QFETCH(QString, path);
        Saver<char> narrow(path);
        zvtest::writeGeneration(narrow.writer(), 1);
        QVERIFY(!narrow.commit());
        Saver<char32_t> wide(path);
        wide.writer().root_element(U"r")->text(U"t");
        wide.cancelWriting();
        QVERIFY(!wide.commit());
    }

    void readOnlyFolder()
    {
        writeOld();
        QFile::setPermissions(m_folder->path(), QFile::Permissions(0x5555));
        const QStringList result = linesOf({"unprivileged", m_target});
        QFile::setPermissions(m_folder->path(), QFile::Permissions(0x7777));
        if (result == QStringList("skip"))
            QSKIP("There are no permissions of folders here");
        QCOMPARE(result, QStringList("false"));
        QCOMPARE(contentOf(m_target), QByteArray(oldContent));
    }

    void readOnlyFile()
    {
        writeOld();
        QFile::setPermissions(m_folder->path(), QFile::Permissions(0x7777));
        QFile::setPermissions(m_target, QFile::Permissions(0x4444));
        const QStringList result = linesOf({"unprivileged", m_target});
        QFile::setPermissions(m_target, QFile::Permissions(0x6666));
        if (result == QStringList("skip"))
            QSKIP("There is no user with fewer rights here");
        QCOMPARE(result, QStringList("false"));
        QCOMPARE(contentOf(m_target), QByteArray(oldContent));
    }

    void symbolicLinks_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<bool>("exists");
        QTest::addColumn<int>("links");
        const QString same;
        QTest::newRow("to a file") << same << true << 1;
        QTest::newRow("to a file that isn't there") << same << false << 1;
        QTest::newRow("to a link to a file") << same << true << 2;
        QTest::newRow("to another file system") << "/dev/shm" << true << 1;
        QTest::newRow("to another file system, not there") << "/dev/shm" << false << 1;
    }

    void symbolicLinks()
    {
#if defined(Q_OS_UNIX)
        QFETCH(QString, folder);
        QFETCH(bool, exists);
        QFETCH(int, links);
        const QTemporaryDir away((folder.isEmpty() ? QDir::tempPath() : folder) + "/zvutil-XXXXXX");
        if (!away.isValid()
            || (!folder.isEmpty()
                && QStorageInfo(away.path()).device() == QStorageInfo(m_folder->path()).device()))
            QSKIP("There is no other file system here");
        const QString real = away.filePath("real.xml");
        if (exists)
            writeOld(real);
        QString end = real;
        for (int i = 0; i < links; ++i) {
            const QString link = i + 1 < links ? m_folder->filePath("link") : m_target;
            QVERIFY(QFile::link(end, link));
            end = link;
        }
        {
            Saver<char> given(m_target);
            zvtest::writeGeneration(given.writer(), 4);
        }
        zvtest::runEventLoop();
        QCOMPARE(contentOf(real), QByteArray(exists ? oldContent : "can't be read"));
        {
            Saver<char> file(m_target);
            zvtest::writeGeneration(file.writer(), 5);
            QVERIFY(file.commit());
        }
        zvtest::runEventLoop();
        QCOMPARE(generationOf(real), 5);
        QVERIFY(QFileInfo(m_target).isSymLink());
        QCOMPARE(zvtest::temporaryFiles(away.path(), real), QStringList());
        QFile::remove(m_folder->filePath("link"));
#else
        QSKIP("Symbolic links need privileges here");
#endif
    }

    void otherFileSystem()
    {
        const QTemporaryDir away("/dev/shm/zvutil-XXXXXX");
        if (!away.isValid()
            || QStorageInfo(away.path()).device() == QStorageInfo(QDir::tempPath()).device())
            QSKIP("There is no other file system here");
        const QString target = away.filePath("a.xml");
        writeOld(target);
        Saver<char> file(target);
        zvtest::writeGeneration(file.writer(), 39);
        QVERIFY(file.commit());
        QCOMPARE(generationOf(target), 39);
    }

    void limitedFileSize_data()
    {
        QTest::addColumn<int>("bytes");
        // Around the block in which Qt writes, and the size of the document, some 80 KB.
        for (const int bytes : {0, 1, 37, 38, 100, 4096, 16383, 16384, 16385, 32768, 65536, 70000})
            QTest::addRow("%d bytes", bytes) << bytes;
    }

    void limitedFileSize()
    {
        QFETCH(int, bytes);
        writeOld();
        const QStringList result = linesOf({"limited", m_target, QString::number(bytes)});
        QCOMPARE(result, QStringList("false"));
        QCOMPARE(contentOf(m_target), QByteArray(oldContent));
        QCOMPARE(zvtest::temporaryFiles(m_folder->path(), m_target), QStringList());
    }

    void longTextBeyondTheLimit_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("piece");
        for (const char* const type : {"char", "char16_t", "char32_t", "wchar_t"}) {
            for (const char* const piece : {"text", "attribute"})
                QTest::addRow("%s of %s", piece, type)
                    << QString::fromUtf8(type) << QString::fromUtf8(piece);
        }
    }

    void longTextBeyondTheLimit()
    {
        QFETCH(QString, type);
        QFETCH(QString, piece);
        writeOld();
        const QStringList result = linesOf({"limited", m_target, "30000", type, piece, "50000"});
        QCOMPARE(result, QStringList("false"));
        QCOMPARE(contentOf(m_target), QByteArray(oldContent));
        QCOMPARE(zvtest::temporaryFiles(m_folder->path(), m_target), QStringList());
    }

    void limitThatIsNotReached()
    {
        const QStringList result = linesOf({"limited", m_target, "1000000"});
        QCOMPARE(result, QStringList("true"));
        QCOMPARE(generationOf(m_target), 39);
    }

    void fullDisk_data()
    {
        QTest::addColumn<int>("bytes");
        for (const int pages : {2, 8, 16})
            QTest::addRow("%d pages", pages) << pages * 4096;
    }

    void fullDisk()
    {
        QFETCH(int, bytes);
        // One document that needs many blocks, and one that is written when the file is closed.
        const QStringList result = linesOf({"full", m_folder->path(), QString::number(bytes)});
        if (result == QStringList("skip"))
            QSKIP("No file system can be mounted here");
        QCOMPARE(result, (QStringList{"false", "false", "4"}));
    }

    void longTextOnAFullDisk_data()
    {
        longTextBeyondTheLimit_data();
    }

    void longTextOnAFullDisk()
    {
        QFETCH(QString, type);
        QFETCH(QString, piece);
        for (const int length : {17'000, 100'000, 300'000}) {
            const QStringList result =
                linesOf({"full", m_folder->path(), "262144", type, piece, QString::number(length)});
            if (result == QStringList("skip"))
                QSKIP("No file system can be mounted here");
            QCOMPARE(result, (QStringList{"false", "false", "4"}));
        }
    }

    void killedWhileSaving()
    {
        // Whenever it is killed, the target is the last one that was told or the one behind it.
#if defined(Q_OS_WIN)
        constexpr int rounds = 40; // starting a process takes its time
#else
        constexpr int rounds = 300;
#endif
        QRandomGenerator random(20261121);
        int killedBetween = 0;
        for (int round = 0; round < rounds; ++round) {
            writeOld();
            const int told = saveUntilKilled(random.bounded(6000));
            const int found = generationOf(m_target);
            if (told == 0 && found == -1)
                QCOMPARE(contentOf(m_target), QByteArray(oldContent));
            else
                QVERIFY2(found == told || found == told + 1, contentOf(m_target).constData());
            killedBetween += found > 0 ? 1 : 0;
        }
        QVERIFY(killedBetween > 0);
        removeTemporaryFiles();
    }

    void relativePathFollowsTheCurrentDirectory()
    {
        const QTemporaryDir other;
        const QString before = QDir::currentPath();
        const auto back = qScopeGuard([&before] { QDir::setCurrent(before); });
        QVERIFY(QDir::setCurrent(m_folder->path()));
        Saver<char> file("a.xml");
        file.writer().root_element("r");
        QVERIFY(QDir::setCurrent(other.path()));
        QVERIFY(file.commit());
        QVERIFY(!QFile::exists(m_target));
        QCOMPARE(contentOf(other.filePath("a.xml")), QByteArray(declaration) + "<r/>");
        QVERIFY(QDir::setCurrent(before));
    }

    void separatorsOfWindows()
    {
        QString path = m_target;
        Saver<char> file(path.replace(QLatin1Char('/'), QLatin1Char('\\')));
        file.writer().root_element("r");
        QVERIFY(file.commit());
        QVERIFY(QFile::exists(m_target));
    }

    void veryLongPath()
    {
        // Longer than what Windows takes as it is, shorter than what Linux takes. Read back by the library, too.
        const QString folder =
            m_folder->path() + (QLatin1Char('/') + QString(200, QLatin1Char('n'))).repeated(15);
        QVERIFY(QDir().mkpath(folder));
        const QString target = folder + "/a.xml";
        for (const int generation : {38, 39}) {
            Saver<char> file(target);
            zvtest::writeGeneration(file.writer(), generation);
            QVERIFY(file.commit());
            QCOMPARE(generationOf(target), generation);
        }
        zvtest::runEventLoop();
        QCOMPARE(zvtest::temporaryFiles(folder, target), QStringList());
    }

    void pathsWithoutLimits()
    {
#if defined(Q_OS_WIN)
        const QString mark("\\\\?\\");
        const QString folder = QDir(m_folder->path()).absolutePath();
        const QString deep =
            folder + (QLatin1Char('/') + QString(200, QLatin1Char('n'))).repeated(3);
        QVERIFY(QDir().mkpath(deep));
        int generation = 0;
        for (const QString& name : {folder + "/a.xml", deep + "/a.xml"}) {
            const QString target = mark + QDir::toNativeSeparators(name);
            Saver<char> file(target);
            zvtest::writeGeneration(file.writer(), ++generation);
            QVERIFY2(file.commit(), qPrintable(target));
            QCOMPARE(generationOf(target), generation);
            QCOMPARE(generationOf(name), generation);
        }
        // What comes after that isn't taken for a place on a drive.
        for (const char* const other :
             {"UNC\\localhost\\zvutil-no-share\\a.xml", "a.xml", "C:", ""}) {
            Saver<char> file(mark + QLatin1String(other));
            zvtest::writeGeneration(file.writer(), 1);
            QVERIFY2(!file.commit(), other);
        }
#else
        QSKIP("This form of a path is that of Windows");
#endif
    }

private:
    /// Kills a process that saves one document after the other, and returns the last that it told.
    int saveUntilKilled(int microseconds)
    {
        QProcess saver;
        saver.start(QString(XML_SAVER), {"loop", m_target});
        saver.waitForReadyRead();
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
        saver.kill();
        saver.waitForFinished();
        // What is behind the last line break isn't whole.
        const QByteArrayList lines = saver.readAllStandardOutput().split('\n');
        return lines.size() > 1 ? lines[lines.size() - 2].trimmed().toInt() : 0;
    }

    /// What a killed process leaves, if it dies between naming the temporary file and renaming it.
    void removeTemporaryFiles()
    {
        const QStringList files = zvtest::temporaryFiles(m_folder->path(), m_target);
        for (const QString& file : files)
            QFile::remove(m_folder->filePath(file));
    }
};

QTEST_GUILESS_MAIN(tst_ZvBasicXMLSaveFile_targets)
#include "tst_ZvBasicXMLSaveFile_targets.moc"
