// A scan of directories finds all files or writes into the log that it couldn't read them, whichever
// call fails, and the next one finds all. By contract it passes over a listed directory that it can't
// begin to read, without a word.

#include "Drive.h"

#include "models/Scan.h"
#include "support/Files.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using zvtest::Injected;
using zvtest::Operation;

class tst_faults_directories : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_folder.isValid());
        // Deeper than the levels that a scan keeps open.
        QString path = m_folder.path();
        for (int level = 0; level < 70; ++level) {
            QVERIFY(zvtest::writeTo(path + "/a.txt", "a"));
            path += "/d";
            QVERIFY(QDir().mkdir(path));
        }
        QVERIFY(QFile::link("a.txt", m_folder.filePath("link.txt")));
        m_files = zvtest::expectedRows({m_folder.path()});
        QVERIFY(m_files.size() >= 70); // by contract not the first entry
        m_files.sort();
    }

    void cleanupTestCase() { zvtest::Tally::print(); }

    void scan_data() { zvtest::addFaultKinds(); }

    void scan()
    {
        QFETCH(int, kind);
        zvtest::Scan scan;
        QStringList again;
        zvtest::Log log;
        bool isTold = false;
        Operation operation;
        operation.folder = m_folder.path();
        operation.isLarge = true;
        operation.prepare = [&] {
            scan.remove(m_folder.path());
            log.take();
        };
        operation.run = [&] { scan.add(m_folder.path()); };
        operation.problem = [&](const Injected& fault) {
            const zvtest::Lines lines = log.take();
            isTold = std::any_of(lines.begin(), lines.end(), &isError);
            scan.rows.sort();
            const bool isWhole = scan.rows == m_files;
            if (!isSubset(scan.rows))
                return QString("a row that is no file, or one twice");
            const bool isPassedOver = scan.rows.isEmpty() && !isTold;
            if (!isWhole && !isTold && !isPassedOver)
                return QString("files are missing without a word");
            if (isTold && fault.call.isEmpty())
                return QString("an error in the log without one");
            if (fault.call.isEmpty() && !isWhole)
                return QString("%1 of %2 files").arg(scan.rows.size()).arg(m_files.size());
            if (!scan.signalOrder.startsWith('(') || !scan.signalOrder.endsWith(')'))
                return "signals " + scan.signalOrder;
            return QString();
        };
        const QString found = zvtest::drive(operation, zvtest::faultKind(kind));
        QVERIFY2(found.isEmpty(), qPrintable(found));
    }

private:
    static bool isError(const std::string& line)
    {
        return line.find("FileView: ") == std::string::npos
            || line.find("rror") != std::string::npos;
    }

    bool isSubset(const QStringList& rows) const
    {
        return std::includes(m_files.begin(), m_files.end(), rows.begin(), rows.end());
    }

    const QTemporaryDir m_folder;
    QStringList m_files;
};

QTEST_GUILESS_MAIN(tst_faults_directories)
#include "tst_faults_directories.moc"
