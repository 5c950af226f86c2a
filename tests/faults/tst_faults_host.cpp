// The options file and other files of the host are saved whole or not at all, whichever call fails.

#include "Drive.h"
#include "SavePromise.h"

#include <HostSupport/Options.h>
#include <HostSupport/host.h>
#include <HostSupport/saving.h>

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <stdexcept>

using zvtest::Injected;
using zvtest::Operation;
using zvtest::SavePromise;

namespace {

/// Whether \p work reports no failure.
template <typename Work>
bool succeeds(Work work)
{
    try {
        work();
    } catch (const std::runtime_error&) {
        return false;
    }
    return true;
}

} // namespace

class tst_faults_host : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_target = m_folder->filePath("a.ini");
        // Temporary files of the operations themselves belong to their faults.
        qputenv("TMPDIR", QFile::encodeName(m_folder->path()));
        host::setOptionsFile(m_target.toStdString());
    }

    void cleanup() { qunsetenv("TMPDIR"); }

    void cleanupTestCase() { zvtest::Tally::print(); }

    void file_data() { zvtest::addFaultKinds(); }

    void file()
    {
        drive([] {}, [this] { host::saveFile(m_target.toStdString(), std::string(100'000, 'x')); });
    }

    void option_data() { zvtest::addFaultKinds(); }

    void option()
    {
        drive([] { host::writeOption("kept", "an old value"); },
              [] { host::writeOption("new", "a new value"); });
    }

    void optionThatIsReset_data() { zvtest::addFaultKinds(); }

    void optionThatIsReset()
    {
        drive(
            [] {
                host::writeOption("kept", "an old value");
                host::writeOption("reset", "an old value");
            },
            [] { host::resetOption("reset"); });
    }

private:
    void drive(const std::function<void()>& prepare, const std::function<void()>& work)
    {
        QFETCH(int, kind);
        SavePromise promise(m_folder->path(), m_target);
        bool isSaved = false;
        Operation operation;
        operation.folder = m_folder->path();
        operation.prepare = [&] {
            removeAll();
            zvtest::writeTo(m_target, "kept=1\n");
            QFile::setPermissions(m_target, QFile::ReadOwner | QFile::WriteOwner);
            prepare();
        };
        operation.run = [&] { isSaved = succeeds(work); };
        operation.problem = [&](const Injected& fault) { return promise.problem(fault, isSaved); };
        operation.prepare();
        promise.setBefore();
        operation.run();
        promise.setAfter();
        const QString found = zvtest::drive(operation, zvtest::faultKind(kind));
        QVERIFY2(found.isEmpty(), qPrintable(found));
    }

    void removeAll() const
    {
        const QStringList entries =
            QDir(m_folder->path())
                .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
        for (const QString& entry : entries) {
            if (!QFile::remove(m_folder->filePath(entry)))
                QDir(m_folder->filePath(entry)).removeRecursively();
        }
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_target;
};

QTEST_GUILESS_MAIN(tst_faults_host)
#include "tst_faults_host.moc"
