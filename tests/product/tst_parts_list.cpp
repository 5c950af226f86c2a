// Runs the example program that keeps a document format of its own.

#include "support/Files.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

struct Result
{
    int code;
    QByteArray output;
    QByteArray errors;
};

Result run(const QStringList& arguments)
{
    QProcess process;
    process.start(PARTS_LIST, arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
        return {-1, {}, process.errorString().toUtf8()};
    return {process.exitCode(), process.readAllStandardOutput().replace("\r", ""),
            process.readAllStandardError().replace("\r", "")};
}

} // namespace

class tst_parts_list : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_file = m_folder->filePath("list.xml");
    }

    void keepsAList()
    {
        QCOMPARE(run({m_file}).output, QByteArray());
        QCOMPARE(run({m_file, "R1", "2"}).output, QByteArray("2 x R1\n"));
        const QByteArray both = "2 x R1\n1 x <C&1> (0.1 \"W\")\n";
        QCOMPARE(run({m_file, "<C&1>", "1", "0.1 \"W\""}).output, both);
        QCOMPARE(run({m_file}).output, both);
        QCOMPARE(content(),
                 QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?><parts version=\"1\">"
                            "<part name=\"R1\" quantity=\"2\"/>"
                            "<part name=\"&lt;C&amp;1&gt;\" quantity=\"1\">"
                            "<note>0.1 &quot;W&quot;</note></part></parts>"));
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList("list.xml"));
    }

    void readsWhatALaterVersionHasWritten()
    {
        write("<parts version='2'><unknown><part name='no'/></unknown><part name='yes'>"
              "<deep><note>no</note></deep><note>a<!-- c -->b</note></part></parts>");
        QCOMPARE(run({m_file}).output, QByteArray("1 x yes (ab)\n"));
    }

    void failures_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("empty") << QByteArray() << QByteArray("This file is no list of parts\n");
        QTest::newRow("other root")
            << QByteArray("<part/>") << QByteArray("This file is no list of parts\n");
        QTest::newRow("no name") << QByteArray("<parts><part/></parts>")
                                 << QByteArray("A part has no name\n");
    }

    void failures()
    {
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, message);
        write(content);
        const Result result = run({m_file, "R1", "2"});
        QCOMPARE(result.code, 1);
        QCOMPARE(result.errors, message);
        QCOMPARE(this->content(), content);
    }

    void missingFolder()
    {
        const Result result = run({m_folder->filePath("none/list.xml"), "R1", "2"});
        QCOMPARE(result.code, 1);
        QVERIFY(result.errors.endsWith("The list can't be saved\n"));
    }

    void usage()
    {
        QCOMPARE(run({}).code, 1);
        QVERIFY(run({}).errors.startsWith("Usage: "));
        QCOMPARE(run({}).code, 1);
        QVERIFY(run({"--help"}).output.startsWith("Usage: "));
        QCOMPARE(run({"--help"}).code, 0);
        QVERIFY(!QFile::exists("--help"));
    }

private:
    void write(const QByteArray& bytes) { QVERIFY(zvtest::writeTo(m_file, bytes)); }

    QByteArray content() const { return zvtest::contentOf(m_file); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_file;
};

QTEST_GUILESS_MAIN(tst_parts_list)
#include "tst_parts_list.moc"
