// The real program is killed in the middle of work, or asked to end: what its user did is there again.

#include "recovery/RecoveryCopy.h"
#include "shell/Session.h"
#include "support/Files.h"
#include "support/Workbench.h"

#include <HostSupport/host.h>
#include <HostSupport/saving.h>

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>
#include <vector>

#include <csignal>

using workbench::RecoveryCopy;
using zvtest::contentOf;
using zvtest::longWait;

namespace {

/// How often copies are made here, in milliseconds, and how long an edit takes at least.
constexpr int interval = 500;
constexpr int pause = 5;

/// The edits that may be lost: those of the promised age, which is twice the interval at which copies are made.
constexpr int maxLost = 2 * interval / pause;

/// A program that types into three documents, and tells of each edit after it is made.
class Typist
{
public:
    Typist()
        : m_file(m_folder.filePath("kept.zvscr"))
    {
        zvtest::writeTo(m_file, "begin");
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_CONFIG_HOME", m_folder.path());
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(ZVHOST_FILE,
                        {"--load", MODULE_FILE, "--load", TYPIST_FILE, "-e",
                         QString("keep_typing(\"%1\", \"%2\", \"%3\")")
                             .arg(QString::number(interval), QString::number(pause), m_file)});
    }

    /// Waits for an edit. Returns false if it doesn't come.
    bool hasMade(int number)
    {
        while (m_last < number) {
            if (!m_process.canReadLine() && !m_process.waitForReadyRead(longWait))
                return false;
            readLines();
        }
        return true;
    }

    /// Ends the program, and reads what it has told before. Returns whether it was still there.
    bool end(int signal)
    {
        const bool wasThere = ::kill(static_cast<pid_t>(m_process.processId()), signal) == 0;
        const bool hasEnded = m_process.waitForFinished(longWait);
        readLines();
        host::setOptionsFile(m_folder.filePath("zvhost/options.ini").toStdString());
        return wasThere && hasEnded;
    }

    int lastEdit() const { return m_last; }
    const QProcess& process() const { return m_process; }
    QString file() const { return m_file; }

private:
    void readLines()
    {
        while (m_process.canReadLine())
            m_last = m_process.readLine().trimmed().toInt();
    }

    QTemporaryDir m_folder;
    const QString m_file;
    QProcess m_process;
    int m_last = 0;
};

/// The last edit that a copy has, or -1 if it isn't just the edits up to there.
int lastEditIn(const RecoveryCopy& copy)
{
    const QString text = QString::fromUtf8(contentOf(copy.contentPath()));
    if (copy.typeId == "testplan") {
        const QRegularExpressionMatch match =
            QRegularExpression("type=\"number\" value=\"(\\d+)\"").match(text);
        return text.trimmed().endsWith("</testplan>") && match.hasMatch()
            ? match.captured(1).toInt()
            : -1;
    }
    QStringList lines = text.split(QLatin1Char('\n'));
    if (!copy.file.isEmpty() && lines.takeFirst() != "begin")
        return -1;
    int number = 0;
    for (const QString& line : lines) {
        if (line != QString("edit %1.").arg(++number))
            return -1;
    }
    return number;
}

/// What is wrong with the copies after an end that may have lost so many edits; empty for nothing.
QString problemOf(const Typist& typist, int mayBeLost)
{
    const QList<RecoveryCopy> copies = RecoveryCopy::abandoned();
    if (typist.lastEdit() > mayBeLost && copies.size() != 3)
        return QString("%1 copies after edit %2").arg(copies.size()).arg(typist.lastEdit());
    for (const RecoveryCopy& copy : copies) {
        const int last = copy.isDamaged ? -1 : lastEditIn(copy);
        if (last < 0 || last < typist.lastEdit() - mayBeLost)
            return QString("“%1” has %2 of %3 edits")
                .arg(copy.title, QString::number(last), QString::number(typist.lastEdit()));
        if (copy.title == "kept.zvscr" && copy.file != typist.file())
            return QString("“%1” instead of the file").arg(copy.file);
    }
    return {};
}

} // namespace

class tst_workbench_kills : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void killsLoseTenSecondsAtMost()
    {
        constexpr int kills = 100;
        constexpr std::size_t atOnce = 4;
        constexpr int maxEdits = 3 * maxLost;
        int withPromise = 0;
        int lost = 0;
        for (int done = 0; done < kills; done += int(atOnce)) {
            std::vector<std::unique_ptr<Typist>> typists(atOnce);
            for (std::unique_ptr<Typist>& typist : typists)
                typist = std::make_unique<Typist>();
            for (const std::unique_ptr<Typist>& typist : typists) {
                QVERIFY(typist->hasMade(QRandomGenerator::global()->bounded(1, maxEdits)));
                QVERIFY(typist->end(SIGKILL));
                const QString problem = problemOf(*typist, maxLost);
                QVERIFY2(problem.isEmpty(), qPrintable(problem));
                withPromise += typist->lastEdit() > maxLost ? 1 : 0;
                for (const RecoveryCopy& copy : RecoveryCopy::abandoned())
                    lost = std::max(lost, typist->lastEdit() - lastEditIn(copy));
            }
        }
        qInfo("%d kills, %d of them with edits that had to be kept; at most %d of %d edits lost",
              kills, withPromise, lost, maxLost);
        QVERIFY(withPromise > 0);
    }

    void askedToEndNothingIsLost_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGHUP") << SIGHUP;
        QTest::newRow("SIGINT") << SIGINT;
    }

    void askedToEndNothingIsLost()
    {
        QFETCH(int, signal);
        for (const int edits : {1, 10, maxLost + 50}) {
            Typist typist;
            QVERIFY(typist.hasMade(edits));
            QVERIFY(typist.end(signal));
            QCOMPARE(typist.process().exitStatus(), QProcess::NormalExit);
            QCOMPARE(typist.process().exitCode(), 0);
            const QString problem = problemOf(typist, 0);
            QVERIFY2(problem.isEmpty(), qPrintable(problem));
            QCOMPARE(contentOf(typist.file()), QByteArray("begin"));
            const QSettings session(workbench::sessionFile(), host::settingsFormat());
            QCOMPARE(workbench::Session::restored(session).files, QStringList{typist.file()});
        }
    }
};

QTEST_GUILESS_MAIN(tst_workbench_kills)
#include "tst_workbench_kills.moc"
