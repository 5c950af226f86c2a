#include <zvutil/ZvBasicXMLSaveFile.h>
#include <zvutil/ZvXMLReadFile.h>

#include "support/DeferredDeletes.h"
#include "support/EventLoop.h"
#include "support/HeldFiles.h"
#include "support/StdString.h"
#include "support/XmlGeneration.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QSaveFile>
#include <QScopeGuard>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTest>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <type_traits>
#include <utility>

/// Does something with the file of this name.
using Action = bool (*)(const QString& path);
Q_DECLARE_METATYPE(Action)

namespace {

template <typename C>
class Saver : public ZvBasicXMLSaveFile<C>
{
public:
    explicit Saver(const QString& path)
        : ZvBasicXMLSaveFile<C>(path.toStdWString())
    {
    }

    using ZvBasicXMLSaveFile<C>::writer;
};

class Reader : public ZvXMLReadFile
{
public:
    explicit Reader(const QString& path)
        : ZvXMLReadFile(path.toStdWString())
    {
    }

    using ZvXMLReadFile::reader;
};

constexpr char declaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
constexpr char oldContent[] = "the old content";

template <typename C>
constexpr bool
    isHandle = sizeof(ZvBasicXMLSaveFile<C>) == 3 * sizeof(void*)
    && std::has_virtual_destructor_v<ZvBasicXMLSaveFile<C>>&& std::is_copy_constructible_v<
                   ZvBasicXMLSaveFile<C>>&& std::is_copy_assignable_v<ZvBasicXMLSaveFile<C>>;

static_assert(isHandle<char> && isHandle<char16_t> && isHandle<char32_t> && isHandle<wchar_t>);

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
}

int generationOf(const QString& path)
{
    const int generation = [&path] {
        Reader file(path);
        return zvtest::readGeneration(file.reader());
    }();
    zvtest::runEventLoop();
    return generation;
}

/// A text of plain and other characters in the units of \p C.
template <typename C>
std::basic_string<C> textOf()
{
    const QString text = QString::fromUtf8("plain \xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E <&>\"' end");
    if constexpr (std::is_same_v<C, char>)
        return text.toStdString();
    else if constexpr (std::is_same_v<C, char16_t>)
        return text.toStdU16String();
    else if constexpr (std::is_same_v<C, char32_t>)
        return text.toStdU32String();
    else
        return text.toStdWString();
}

template <typename C>
std::basic_string<C> units(std::string_view text)
{
    return {text.begin(), text.end()};
}

/// A document with all that a writer can write.
template <typename C>
bool saveText(const QString& path)
{
    Saver<C> file(path);
    const std::basic_string<C> text = textOf<C>();
    {
        const auto root = file.writer().root_element(units<C>("root").c_str());
        root->attribute(units<C>("name").c_str(), text.c_str());
        root->attribute(units<C>("part").c_str(), text.c_str(), 5);
        root->child(units<C>("empty").c_str());
        const auto child = root->child(units<C>("child").c_str());
        child->text(text.c_str());
    }
    return file.commit();
}

/// What a run of the helper program tells.
QStringList linesOf(const QStringList& arguments)
{
    QProcess saver;
    saver.start(QStringLiteral(XML_SAVER), arguments);
    if (!saver.waitForFinished() || saver.exitStatus() != QProcess::NormalExit)
        return {QStringLiteral("failed: ") + saver.errorString()};
    const QByteArray output = saver.readAllStandardOutput().replace("\r", "");
    return QString::fromLocal8Bit(output).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

class tst_ZvBasicXMLSaveFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_target = m_folder->filePath(QStringLiteral("a.xml"));
    }

    void cleanup()
    {
        // Whatever the test has done: nothing is left once the event loop has run.
        zvtest::runEventLoop();
        QCOMPARE(zvtest::temporaryFiles(m_folder->path(), m_target), QStringList());
    }

    void commitMakesTheFile()
    {
        Saver<char> file(m_target);
        file.writer().root_element("r")->attribute("x", "1");
        QVERIFY(!QFile::exists(m_target));
        QVERIFY(file.commit());
        QCOMPARE(contentOf(m_target), QByteArray(declaration) + "<r x=\"1\"/>");
    }

    void commitReplacesTheFileAtOnce()
    {
        writeOld();
        QFile before(m_target);
        QVERIFY(before.open(QIODevice::ReadOnly));
        Saver<char> file(m_target);
        zvtest::writeGeneration(file.writer(), 7);
        QCOMPARE(contentOf(m_target), QByteArray(oldContent));
#if defined(Q_OS_WIN)
        before.close();
        QVERIFY(file.commit());
#else
        QVERIFY(file.commit());
        // Who had it open reads the old content on.
        QCOMPARE(before.readAll(), QByteArray(oldContent));
#endif
        QCOMPARE(generationOf(m_target), 7);
    }

    void thereIsNoLineBreakAtTheEnd()
    {
        {
            Saver<char> file(m_target);
            file.writer().root_element("r");
            QVERIFY(file.commit());
        }
        zvtest::runEventLoop();
        QVERIFY(contentOf(m_target).endsWith("<r/>"));
    }

    void elementOpenAtCommitHasNoEndTag()
    {
        {
            Saver<char> file(m_target);
            const auto root = file.writer().root_element("r");
            root->child("a")->text("t");
            QVERIFY(file.commit());
            root->child("too late");
        }
        zvtest::runEventLoop();
        QCOMPARE(contentOf(m_target), QByteArray(declaration) + "<r><a>t</a>");
    }

    void startTagOpenAtCommitIsNotClosed()
    {
        Saver<char> file(m_target);
        const auto root = file.writer().root_element("r");
        QVERIFY(file.commit());
        QCOMPARE(contentOf(m_target), QByteArray(declaration) + "<r");
    }

    void fileWithoutElementsIsTheDeclarationAlone()
    {
        {
            Saver<char> file(m_target);
            QVERIFY(file.commit());
        }
        zvtest::runEventLoop();
        QCOMPARE(contentOf(m_target), QByteArray(declaration));
        Reader reader(m_target);
        QVERIFY(!reader.reader().root_element());
    }

    void givenUp_data()
    {
        QTest::addColumn<Action>("giveUp");
        const auto row = [](const char* name, Action giveUp) { QTest::newRow(name) << giveUp; };
        row("abandoned at once", [](const QString& path) {
            const Saver<char> file(path);
            return true;
        });
        row("abandoned after writing", [](const QString& path) {
            Saver<char> file(path);
            zvtest::writeGeneration(file.writer(), 39);
            return true;
        });
        row("abandoned with open elements", [](const QString& path) {
            auto file = std::make_unique<Saver<char32_t>>(path);
            const auto root = file->writer().root_element(U"r");
            const auto child = root->child(U"c");
            file.reset();
            child->text(U"t");
            return true;
        });
        row("abandoned by an exception", [](const QString& path) {
            try {
                Saver<char> file(path);
                const auto root = file.writer().root_element("r");
                throw std::runtime_error("no more");
            } catch (const std::runtime_error&) {
                return true;
            }
        });
        row("cancelled", [](const QString& path) {
            Saver<char> file(path);
            zvtest::writeGeneration(file.writer(), 39);
            file.cancelWriting();
            return true;
        });
        row("cancelled at once, then written and committed", [](const QString& path) {
            Saver<char> file(path);
            file.cancelWriting();
            zvtest::writeGeneration(file.writer(), 39);
            return !file.commit();
        });
        row("cancelled after writing, then committed twice", [](const QString& path) {
            Saver<char> file(path);
            zvtest::writeGeneration(file.writer(), 39);
            file.cancelWriting();
            file.cancelWriting();
            return !file.commit() && !file.commit();
        });
        row("cancelled through the writer", [](const QString& path) {
            Saver<wchar_t> file(path);
            file.writer().root_element(L"r");
            file.writer().cancel_writing();
            return !file.commit();
        });
        row("cancelled through a copy", [](const QString& path) {
            Saver<char> file(path);
            Saver<char> copy(file);
            copy.cancelWriting();
            return !file.commit() && !copy.commit();
        });
    }

    void givenUp()
    {
        QFETCH(Action, giveUp);
        writeOld();
        QVERIFY(giveUp(m_target));
        QCOMPARE(contentOf(m_target), QByteArray(oldContent));
        zvtest::runEventLoop();
        QCOMPARE(contentOf(m_target), QByteArray(oldContent));
        QCOMPARE(zvtest::temporaryFiles(m_folder->path(), m_target), QStringList());

        const QString missing = m_folder->filePath(QStringLiteral("missing.xml"));
        QVERIFY(giveUp(missing));
        zvtest::runEventLoop();
        QVERIFY(!QFile::exists(missing));
    }

    void secondCommitFailsAndChangesNothing()
    {
        Saver<char> file(m_target);
        file.writer().root_element("r");
        QVERIFY(file.commit());
        QVERIFY(!file.commit());
        file.cancelWriting();
        QVERIFY(!file.commit());
        QVERIFY(contentOf(m_target).endsWith("<r/>"));
    }

    void copiesShareOneFile()
    {
        writeOld();
        {
            Saver<char> file(m_target);
            const auto root = file.writer().root_element("r");
            Saver<char> copy(file);
            QCOMPARE(&copy.writer(), &file.writer());
            // The element is open in both.
            copy.writer().root_element("within");
            root->attribute("none", "");
        }
        writeOld();
        {
            Saver<char> file(m_target);
            file.writer().root_element("r");
            Saver<char> copy(file);
            copy.writer().root_element("s");
            QVERIFY(copy.commit());
            QVERIFY(!file.commit());
        }
        zvtest::runEventLoop();
        QCOMPARE(contentOf(m_target), QByteArray(declaration) + "<r/><s/>");
    }

    void lastHandleEndsTheFile()
    {
        auto first = std::make_unique<Saver<char>>(m_target);
        Saver<char> second(*first);
        first.reset();
        zvtest::runEventLoop();
        second.writer().root_element("r");
        QVERIFY(second.commit());
        QVERIFY(contentOf(m_target).endsWith("<r/>"));
    }

    void fileIsNeverDeletedAtOnce()
    {
        // What a document writes at its end goes to a device that must be there yet.
        zvtest::DeferredDeletes<QSaveFile> deletes;
        {
            Saver<char> abandoned(m_target);
            abandoned.writer().root_element("r");
            Saver<char32_t> cancelled(m_target);
            cancelled.cancelWriting();
            Saver<wchar_t> committed(m_target);
            QVERIFY(committed.commit());
            const Saver<char16_t> unwritable(m_folder->filePath(QStringLiteral("missing/a.xml")));
        }
        QCOMPARE(deletes.count, 0);
        zvtest::runEventLoop();
        QCOMPARE(deletes.count, 4);
    }

    void assignmentSharesTheOthersFileAndLetsItsOwnGo()
    {
        const QString other = m_folder->filePath(QStringLiteral("other.xml"));
        {
            Saver<char> file(m_target);
            Saver<char> target(other);
            target.writer().root_element("lost");
            Saver<char>& result = target = file;
            QCOMPARE(&result, &target);
            target.writer().root_element("r");
            const Saver<char>& same = target;
            target = same;
            QVERIFY(target.commit());
        }
        zvtest::runEventLoop();
        QVERIFY(!QFile::exists(other));
        QVERIFY(contentOf(m_target).endsWith("<r/>"));
    }

    void copyMayDieOnAnotherThread_data()
    {
        QTest::addColumn<bool>("commit");
        QTest::addColumn<bool>("otherIsLast");
        QTest::newRow("committed, other thread last") << true << true;
        QTest::newRow("committed, this thread last") << true << false;
        QTest::newRow("abandoned, other thread last") << false << true;
        QTest::newRow("abandoned, this thread last") << false << false;
    }

    void copyMayDieOnAnotherThread()
    {
        QFETCH(bool, commit);
        QFETCH(bool, otherIsLast);
        writeOld();
        auto file = std::make_unique<Saver<char>>(m_target);
        zvtest::writeGeneration(file->writer(), 3);
        if (commit)
            QVERIFY(file->commit());
        auto copy = std::make_unique<Saver<char>>(*file);
        if (otherIsLast)
            file.reset();
        std::thread([&copy] { copy.reset(); }).join();
        file.reset();
        // The file itself stays with this thread.
        if (!commit)
            QCOMPARE(contentOf(m_target), QByteArray(oldContent));
        else
            QCOMPARE(generationOf(m_target), 3);
    }

    void copyDiesWhileTheEventLoopRuns()
    {
        // What is written last is written before the event loop deletes the file.
        for (int round = 0; round < 200; ++round) {
            auto file = std::make_unique<Saver<char32_t>>(m_target);
            auto root = file->writer().root_element(U"r");
            std::thread other([&] {
                root->text(U"t");
                file.reset();
                root.reset();
            });
            zvtest::runEventLoop();
            other.join();
            zvtest::runEventLoop();
        }
        QVERIFY(!QFile::exists(m_target));
    }

    void unwritableTargets_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("missing folder")
            << QDir::tempPath() + QStringLiteral("/zvutil missing/a.xml");
        QTest::newRow("folder") << QDir::tempPath();
        QTest::newRow("empty path") << QString();
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
        const QStringList result = linesOf({QStringLiteral("unprivileged"), m_target});
        QFile::setPermissions(m_folder->path(), QFile::Permissions(0x7777));
        if (result == QStringList(QStringLiteral("skip")))
            QSKIP("There are no permissions of folders here");
        QCOMPARE(result, QStringList(QStringLiteral("false")));
        QCOMPARE(contentOf(m_target), QByteArray(oldContent));
    }

    void readOnlyFile()
    {
        writeOld();
        QFile::setPermissions(m_folder->path(), QFile::Permissions(0x7777));
        QFile::setPermissions(m_target, QFile::Permissions(0x4444));
        const QStringList result = linesOf({QStringLiteral("unprivileged"), m_target});
        QFile::setPermissions(m_target, QFile::Permissions(0x6666));
        if (result == QStringList(QStringLiteral("skip")))
            QSKIP("There is no user with fewer rights here");
        QCOMPARE(result, QStringList(QStringLiteral("false")));
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
        QTest::newRow("to another file system") << QStringLiteral("/dev/shm") << true << 1;
        QTest::newRow("to another file system, not there")
            << QStringLiteral("/dev/shm") << false << 1;
    }

    void symbolicLinks()
    {
#if defined(Q_OS_UNIX)
        QFETCH(QString, folder);
        QFETCH(bool, exists);
        QFETCH(int, links);
        const QTemporaryDir away((folder.isEmpty() ? QDir::tempPath() : folder)
                                 + QStringLiteral("/zvutil-XXXXXX"));
        if (!away.isValid()
            || (!folder.isEmpty()
                && QStorageInfo(away.path()).device() == QStorageInfo(m_folder->path()).device()))
            QSKIP("There is no other file system here");
        const QString real = away.filePath(QStringLiteral("real.xml"));
        if (exists)
            writeOld(real);
        QString end = real;
        for (int i = 0; i < links; ++i) {
            const QString link =
                i + 1 < links ? m_folder->filePath(QStringLiteral("link")) : m_target;
            QVERIFY(QFile::link(end, link));
            end = link;
        }
        {
            Saver<char> given(m_target);
            zvtest::writeGeneration(given.writer(), 4);
        }
        zvtest::runEventLoop();
        QCOMPARE(contentOf(real), QByteArray(exists ? oldContent : "missing"));
        {
            Saver<char> file(m_target);
            zvtest::writeGeneration(file.writer(), 5);
            QVERIFY(file.commit());
        }
        zvtest::runEventLoop();
        QCOMPARE(generationOf(real), 5);
        QVERIFY(QFileInfo(m_target).isSymLink());
        QCOMPARE(zvtest::temporaryFiles(away.path(), real), QStringList());
        QFile::remove(m_folder->filePath(QStringLiteral("link")));
#else
        QSKIP("Symbolic links need privileges here");
#endif
    }

    void otherFileSystem()
    {
        const QTemporaryDir away(QStringLiteral("/dev/shm/zvutil-XXXXXX"));
        if (!away.isValid()
            || QStorageInfo(away.path()).device() == QStorageInfo(QDir::tempPath()).device())
            QSKIP("There is no other file system here");
        const QString target = away.filePath(QStringLiteral("a.xml"));
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
        const QStringList result =
            linesOf({QStringLiteral("limited"), m_target, QString::number(bytes)});
        if (result == QStringList(QStringLiteral("skip")))
            QSKIP("The size of files can't be limited here");
        QCOMPARE(result, QStringList(QStringLiteral("false")));
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
        const QStringList result =
            linesOf({QStringLiteral("limited"), m_target, QStringLiteral("30000"), type, piece,
                     QStringLiteral("50000")});
        if (result == QStringList(QStringLiteral("skip")))
            QSKIP("The size of files can't be limited here");
        QCOMPARE(result, QStringList(QStringLiteral("false")));
        QCOMPARE(contentOf(m_target), QByteArray(oldContent));
        QCOMPARE(zvtest::temporaryFiles(m_folder->path(), m_target), QStringList());
    }

    void limitThatIsNotReached()
    {
        const QStringList result =
            linesOf({QStringLiteral("limited"), m_target, QStringLiteral("1000000")});
        if (result == QStringList(QStringLiteral("skip")))
            QSKIP("The size of files can't be limited here");
        QCOMPARE(result, QStringList(QStringLiteral("true")));
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
        const QStringList result =
            linesOf({QStringLiteral("full"), m_folder->path(), QString::number(bytes)});
        if (result == QStringList(QStringLiteral("skip")))
            QSKIP("No file system can be mounted here");
        QCOMPARE(
            result,
            (QStringList{QStringLiteral("false"), QStringLiteral("false"), QStringLiteral("4")}));
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
                linesOf({QStringLiteral("full"), m_folder->path(), QStringLiteral("262144"), type,
                         piece, QString::number(length)});
            if (result == QStringList(QStringLiteral("skip")))
                QSKIP("No file system can be mounted here");
            QCOMPARE(result,
                     (QStringList{QStringLiteral("false"), QStringLiteral("false"),
                                  QStringLiteral("4")}));
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

    void writtenInFourEncodingsAndReadBack_data()
    {
        QTest::addColumn<Action>("save");
        QTest::addColumn<QString>("encoding");
        QTest::newRow("char") << Action(&saveText<char>) << QStringLiteral("utf-8");
        QTest::newRow("char16_t") << Action(&saveText<char16_t>) << QStringLiteral("utf-16-le");
        QTest::newRow("char32_t") << Action(&saveText<char32_t>) << QStringLiteral("utf-32-le");
        QTest::newRow("wchar_t") << Action(&saveText<wchar_t>) << QStringLiteral("utf-16-le");
    }

    void writtenInFourEncodingsAndReadBack()
    {
        QFETCH(Action, save);
        QVERIFY(save(m_target));
        const std::string text = textOf<char>();
        Reader file(m_target);
        const auto root = file.reader().root_element();
        QVERIFY(root);
        QCOMPARE(root->name(), "root");
        QCOMPARE(std::string(root->attribute("name")), text);
        QCOMPARE(std::string(root->attribute("part")), text.substr(0, 5));
        QCOMPARE(root->next_child()->name(), "empty");
        const auto child = root->next_child();
        QCOMPARE(child->name(), "child");
        QCOMPARE(std::string(child->text()), text);
        QVERIFY(!root->next_child());
    }

    void readByAnotherParser_data()
    {
        writtenInFourEncodingsAndReadBack_data();
    }

    void readByAnotherParser()
    {
        QFETCH(Action, save);
        QFETCH(QString, encoding);
        const QString python = QStandardPaths::findExecutable(QStringLiteral("python3"));
        if (python.isEmpty())
            QSKIP("There is no python3 here");
        QVERIFY(save(m_target));
        // Python's parser doesn't know UTF-32, so it gets text, and the declaration is looked at.
        const QString script =
            QStringLiteral("import sys, xml.etree.ElementTree as tree\n"
                           "text = open(sys.argv[1], 'rb').read().decode(sys.argv[2])\n"
                           "start = '<?xml version=\"1.0\" encoding=\"' + "
                           "sys.argv[2].upper().replace('-LE', '') + '\"?>'\n"
                           "assert text.startswith(start), text\n"
                           "root = tree.fromstring(text[len(start):])\n"
                           "assert [e.tag for e in root.iter()] == ['root', 'empty', 'child']\n"
                           "assert list(root.attrib) == ['name', 'part']\n"
                           "out = [root.attrib['name'], root.attrib['part'], root[1].text]\n"
                           "sys.stdout.buffer.write('\\n'.join(out).encode('utf-8'))\n");
        QProcess process;
        process.start(python, {QStringLiteral("-c"), script, m_target, encoding});
        QVERIFY(process.waitForFinished());
        const QByteArray text = QByteArray::fromStdString(textOf<char>());
        QCOMPARE(process.readAllStandardError(), QByteArray());
        QCOMPARE(process.readAllStandardOutput(), text + "\nplain\n" + text);
    }

    void relativePathFollowsTheCurrentDirectory()
    {
        const QTemporaryDir other;
        const QString before = QDir::currentPath();
        const auto back = qScopeGuard([&before] { QDir::setCurrent(before); });
        QVERIFY(QDir::setCurrent(m_folder->path()));
        Saver<char> file(QStringLiteral("a.xml"));
        file.writer().root_element("r");
        QVERIFY(QDir::setCurrent(other.path()));
        QVERIFY(file.commit());
        QVERIFY(!QFile::exists(m_target));
        QCOMPARE(contentOf(other.filePath(QStringLiteral("a.xml"))),
                 QByteArray(declaration) + "<r/>");
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

private:
    void writeOld()
    {
        writeOld(m_target);
    }

    static void writeOld(const QString& path)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(oldContent);
    }

    /// Kills a process that saves one document after the other, and returns the last that it told.
    int saveUntilKilled(int microseconds)
    {
        QProcess saver;
        saver.start(QStringLiteral(XML_SAVER), {QStringLiteral("loop"), m_target});
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

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_target;
};

QTEST_GUILESS_MAIN(tst_ZvBasicXMLSaveFile)
#include "tst_ZvBasicXMLSaveFile.moc"
