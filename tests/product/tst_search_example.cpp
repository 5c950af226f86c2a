#include "support/Files.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

#ifdef Q_OS_UNIX
#include <csignal>
#include <unistd.h>
#else
#include "support/ExclusiveFile.h"
#endif

namespace {

struct Outcome
{
    int status = -1;
    QStringList hits; ///< sorted
    QString messages;
};

Outcome outcomeOf(QProcess& process)
{
    Outcome outcome;
    if (!process.waitForFinished(120'000) || process.exitStatus() != QProcess::NormalExit)
        return outcome;
    outcome.status = process.exitCode();
    outcome.hits = QString::fromUtf8(process.readAllStandardOutput())
                       .remove(QLatin1Char('\r'))
                       .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    outcome.hits.sort();
    outcome.messages = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

Outcome run(const QStringList& arguments)
{
    QProcess process;
    process.start(SEARCH_FILE, arguments);
    return outcomeOf(process);
}

} // namespace

/// Runs the example program on files.
class tst_search_example : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        QVERIFY(m_directory->isValid());
    }

    void findsAllHits()
    {
        write("a.txt", "nothing\nthe needle here\nand a needle there\n");
        write("below/b.cpp", "needle");
        write("below/it/.hidden", "\r\n  needle  \r\n");
        write("other.txt", "Needle\nneed\nle\n");
        write("long.txt", QByteArray(200'000, 'x') + " needle\nneedle\n");
        const Outcome outcome = run({"needle", m_directory->path()});
        QCOMPARE(outcome.status, 0);
        QStringList expected{
            path("a.txt") + ":2: the needle here", path("a.txt") + ":3: and a needle there",
            path("below/b.cpp") + ":1: needle",    path("below/it/.hidden") + ":2: needle",
            path("long.txt") + ":2: needle",
        };
        expected.sort();
        QStringList hits = outcome.hits;
        const auto longLine = std::find_if(
            hits.begin(), hits.end(), [](const QString& hit) { return hit.endsWith("xx needle"); });
        QVERIFY(longLine != hits.end());
        QVERIFY(longLine->startsWith(path("long.txt") + ":1: "));
        hits.erase(longLine);
        QCOMPARE(hits, expected);
        QVERIFY2(outcome.messages.contains("\r5 files searched, 0 unreadable, 6 hits"),
                 qPrintable(outcome.messages));
    }

    void findsNothing()
    {
        write("a.txt", "hay\n");
        const Outcome outcome = run({"needle", m_directory->path()});
        QCOMPARE(outcome.status, 1);
        QVERIFY(outcome.hits.isEmpty());
    }

    void findsNothingInNoFile()
    {
        const Outcome outcome = run({"needle", m_directory->path()});
        QCOMPARE(outcome.status, 1);
        QVERIFY(outcome.messages.contains("0 files searched"));
    }

    void passesOverWhatIsNoText()
    {
        write("a.bin", QByteArray("needle\0needle", 13));
        const Outcome outcome = run({"needle", m_directory->path()});
        QCOMPARE(outcome.status, 1);
        QVERIFY(outcome.messages.contains("1 files searched, 0 unreadable"));
    }

    void countsWhatCannotBeRead()
    {
        write("a.txt", "needle\n");
#ifdef Q_OS_UNIX
        if (::geteuid() == 0)
            QSKIP("root reads any file");
        QVERIFY(QFile::setPermissions(path("a.txt"), QFileDevice::WriteOwner));
#else
        const zvtest::ExclusiveFile held(path("a.txt"));
        QVERIFY(held.isOpen());
#endif
        const Outcome outcome = run({"needle", m_directory->path()});
        QCOMPARE(outcome.status, 1);
        QVERIFY(outcome.messages.contains("0 files searched, 1 unreadable"));
    }

    void tellsThatThereIsNoDirectory()
    {
        const Outcome outcome = run({"needle", path("missing")});
        QCOMPARE(outcome.status, 2);
        QVERIFY(outcome.messages.contains("there is no directory " + path("missing")));
    }

    void refusesBadArguments_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("none") << QStringList();
        QTest::newRow("one") << QStringList{"needle"};
        QTest::newRow("empty text") << QStringList{QString(), "."};
        QTest::newRow("no number") << QStringList{"--cancel-after", "x", "needle", "."};
        QTest::newRow("negative number") << QStringList{"--cancel-after=-1", "needle", "."};
    }

    void refusesBadArguments()
    {
        QFETCH(QStringList, arguments);
        const Outcome outcome = run(arguments);
        QCOMPARE(outcome.status, 2);
        QVERIFY(outcome.messages.contains("Usage"));
    }

    void isCancelledBeforeItStarts()
    {
        write("a.txt", "needle\n");
        const Outcome outcome = run({"--cancel-after", "0", "needle", m_directory->path()});
        QCOMPARE(outcome.status, 3);
        QVERIFY(outcome.hits.isEmpty());
        QVERIFY(outcome.messages.contains("abort requested"));
    }

    void isCancelledAtAHit()
    {
        writeEndlessFile();
        const Outcome outcome = run({"--cancel-after", "1", "needle", m_directory->path()});
        QCOMPARE(outcome.status, 3);
        QCOMPARE(outcome.hits, QStringList{path("endless") + ":1: needle"});
        QVERIFY2(outcome.messages.contains("\ncancelled"), qPrintable(outcome.messages));
    }

    void isCancelledByAnInterrupt()
    {
#ifdef Q_OS_UNIX
        writeEndlessFile();
        QProcess process;
        process.start(SEARCH_FILE, {"needle", m_directory->path()});
        // Its first hit tells that it is at work.
        QVERIFY(process.waitForReadyRead(120'000));
        ::kill(static_cast<pid_t>(process.processId()), SIGINT);
        const Outcome outcome = outcomeOf(process);
        QCOMPARE(outcome.status, 3);
        QVERIFY(outcome.messages.contains("\ncancelled"));
#else
        QSKIP("No program can send another one an interrupt here");
#endif
    }

private:
    QString path(const char* name) const
    {
        return m_directory->filePath(QString::fromLatin1(name));
    }

    void write(const char* name, const QByteArray& content)
    {
        QVERIFY(QDir().mkpath(QFileInfo(path(name)).path()));
        QVERIFY(zvtest::writeTo(path(name), content));
    }

    /// A file with one hit that takes minutes to read and no room on the disc.
    void writeEndlessFile()
    {
        write("endless", "needle\n" + QByteArray(10'000, 'x'));
        QVERIFY(QFile::resize(path("endless"), qint64(1) << 38));
    }

    std::unique_ptr<QTemporaryDir> m_directory;
};

QTEST_GUILESS_MAIN(tst_search_example)
#include "tst_search_example.moc"
