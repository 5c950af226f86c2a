// A process that is killed while it saves leaves the old file or the new one, never a part of one, and
// the next process saves as if nothing had happened.

#include "Drive.h"
#include "ForkedRun.h"

#include <zvutil/ZvBasicXMLSaveFile.h>
#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleLibrary.h>

#include <HostSupport/host.h>
#include <HostSupport/saving.h>

#include "support/EventLoop.h"
#include "support/Files.h"
#include "support/XmlGeneration.h"

#include "shell/Session.h"

#include <QDateTime>
#include <QDir>
#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>
#include <string>
#include <vector>

using zvtest::contentOf;
using zvtest::ForkedRun;

namespace {

/// Saves one of two contents to a file. \return whether that is reported to have worked
using Save = bool (*)(const QString& file, int content);

class XmlFile : public ZvBasicXMLSaveFile<char>
{
public:
    using ZvBasicXMLSaveFile::writer;
    using ZvBasicXMLSaveFile::ZvBasicXMLSaveFile;
};

bool saveXml(const QString& file, int content)
{
    bool isSaved = false;
    {
        XmlFile document(file.toStdWString());
        zvtest::writeGeneration(document.writer(), 20 + content);
        isSaved = document.commit();
    }
    zvtest::runEventLoop();
    return isSaved;
}

bool saveXmlText(const QString& file, int content)
{
    bool isSaved = false;
    {
        XmlFile document(file.toStdWString());
        document.writer().root_element("root")->text(
            std::string(150'000, content == 0 ? 'a' : 'b').c_str());
        isSaved = document.commit();
    }
    zvtest::runEventLoop();
    return isSaved;
}

bool saveStyles(const QString& file, int content)
{
    libzvutil::ZvStyleLibrary library;
    for (int i = 0; i < 5 + content; ++i)
        library.update(libzvutil::ZvStyle(("User " + std::to_string(i)).c_str()));
    library.save(file.toStdWString());
    zvtest::runEventLoop();
    return true;
}

bool saveOption(const QString& file, int content)
{
    host::setOptionsFile(file.toStdString());
    host::writeOption("name", content == 0 ? "one value" : "another value");
    return true;
}

bool saveSession(const QString& file, int content)
{
    workbench::Session session;
    session.files = QStringList{"/a.zvscr", content == 0 ? "/b.zvscr" : "/c.zvscr"};
    session.layout = QByteArray(20'000, content == 0 ? 'a' : 'b');
    QSettings settings(file, host::settingsFormat());
    session.saveTo(settings);
    settings.sync();
    return host::isRead(settings);
}

bool saveText(const QString& file, int content)
{
    host::saveFile(file.toStdString(), std::string(100'000, content == 0 ? 'a' : 'b'));
    return true;
}

} // namespace

Q_DECLARE_METATYPE(Save)

class tst_faults_kills : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        QVERIFY(QDir(m_folder->path()).mkdir("tmp"));
        qputenv("TMPDIR", QFile::encodeName(m_folder->filePath("tmp")));
        m_file = m_folder->filePath("file");
    }

    void cleanup() { qunsetenv("TMPDIR"); }

    void cleanupTestCase()
    {
        zvtest::Tally::print();
        qInfo("%d kills", m_kills);
    }

    void eachCall_data() { addSaves(); }

    void eachCall()
    {
        QFETCH(Save, save);
        for (const zv_fault_action action : {zv_fault_kill, zv_fault_tear}) {
            ForkedRun run;
            int number = 0;
            do {
                ++number;
                prepare(save);
                QVERIFY(!QTest::currentTestFailed());
                run = zvtest::runInChild(m_folder->path(), {number, action, 0, 0},
                                         [this, save] { return save(m_file, 1) ? 0 : 1; });
                m_kills += run.isKilled ? 1 : 0;
                const QString found = problem(save);
                QVERIFY2(found.isEmpty(),
                         qPrintable(QString("killed at call %1: %2").arg(number).arg(found)));
            } while (run.isKilled || run.calls >= number);
            QCOMPARE(run.result, 0);
        }
    }

    void anyMoment_data() { addSaves(); }

    void anyMoment()
    {
        QFETCH(Save, save);
#if defined(ZV_SANITIZED)
        constexpr int rounds = 20; // a kill is one with a sanitizer or without
#else
        constexpr int rounds = 170; // more than 1,000 with all kinds of files
#endif
        QRandomGenerator random(1);
        prepare(save);
        for (int round = 0; round < rounds; ++round) {
            const pid_t child = fork();
            if (child == 0) {
                for (int content = 1;; content = 1 - content)
                    save(m_file, content);
            }
            QVERIFY(child > 0);
            usleep(random.bounded(4'000U));
            kill(child, SIGKILL);
            int status = 0;
            QCOMPARE(waitpid(child, &status, 0), child);
            ++m_kills;
            const QString found = problem(save);
            QVERIFY2(found.isEmpty(), qPrintable(found));
        }
    }

private:
    static void addSaves()
    {
        QTest::addColumn<Save>("save");
        QTest::newRow("XML of many elements") << Save(&saveXml);
        QTest::newRow("XML of one text") << Save(&saveXmlText);
        QTest::newRow("styles") << Save(&saveStyles);
        QTest::newRow("options") << Save(&saveOption);
        QTest::newRow("session") << Save(&saveSession);
        QTest::newRow("text") << Save(&saveText);
    }

    /// Has the file hold the first content.
    void prepare(Save save)
    {
        for (int content : {1, 0}) {
            // In a child as well: settings remember what they have written.
            const ForkedRun run = zvtest::runInChild(m_folder->path(), {},
                                                     [&] { return save(m_file, content) ? 0 : 1; });
            QCOMPARE(run.result, 0);
            m_contents[content] = contentOf(m_file);
        }
        QVERIFY(m_contents[0] != m_contents[1]);
    }

    /// What is wrong with the file, or with the save after it.
    QString problem(Save save) const
    {
        const QByteArray now = contentOf(m_file);
        if (now != m_contents[0] && now != m_contents[1])
            return QString("a torn file of %1 bytes").arg(now.size());
        const QStringList left = leftBehind();
        if (left.size() > 1)
            return "left behind: " + left.join(", ");
        ageLock();
        // A process that is killed can't remove its temporary folders, for which the system has a place.
        QDir(m_folder->filePath("tmp")).removeRecursively();
        QDir(m_folder->path()).mkdir("tmp");
        for (int content : {1, 0}) {
            const ForkedRun run = zvtest::runInChild(m_folder->path(), {},
                                                     [&] { return save(m_file, content) ? 0 : 1; });
            if (run.result != 0 || contentOf(m_file) != m_contents[content])
                return "the next save failed";
        }
        for (const QString& name : left)
            QFile::remove(m_folder->filePath(name));
        return leftBehind().isEmpty() ? QString() : "left behind: " + leftBehind().join(", ");
    }

    /// A lock whose owner was killed before its number was written is taken over after 30 seconds.
    void ageLock() const
    {
        QFile lock(m_file + ".lock");
        if (lock.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
            lock.setFileTime(QDateTime::currentDateTime().addSecs(-60),
                             QFileDevice::FileModificationTime);
    }

    /// The temporary files beside the file. The lock of settings is taken over by whoever comes next.
    QStringList leftBehind() const
    {
        QStringList names = QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden);
        names.removeAll("file");
        names.removeAll("file.lock");
        return names;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_file;
    QByteArray m_contents[2];
    int m_kills = 0;
};

QTEST_GUILESS_MAIN(tst_faults_kills)
#include "tst_faults_kills.moc"
