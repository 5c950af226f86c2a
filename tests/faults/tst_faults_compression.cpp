// Compression isn't atomic: its target is truncated when it is opened, and a write that fails isn't
// reported. What remains of a promise is looked at here, whichever call on a file fails.

#include "Drive.h"

#include <zvutil/ZvCompression.h>
#include <zvutil/ZvFileException.h>
#include <zvutil/ZvFilePath.h>

#include "support/Files.h"
#include "support/HeldFiles.h"

#include <QTemporaryDir>
#include <QTest>

#include <string>

using zvtest::contentOf;
using zvtest::Injected;
using zvtest::Operation;

class tst_faults_compression : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_folder.isValid());
        QVERIFY(zvtest::writeTo(m_source, m_content));
        ZvCompression::compress(path(m_source), path(m_packed), ZvCompressionType::Zlib, -1);
        QVERIFY(QFile::exists(m_packed));
    }

    void cleanupTestCase() { zvtest::Tally::print(); }

    void compress_data() { zvtest::addFaultKinds(); }

    void compress()
    {
        drive(m_source, contentOf(m_packed), [this] {
            ZvCompression::compress(path(m_source), path(m_target), ZvCompressionType::Zlib, -1);
        });
    }

    void decompress_data() { zvtest::addFaultKinds(); }

    void decompress()
    {
        drive(m_packed, m_content, [this] {
            ZvCompression::decompress(path(m_packed), path(m_target), ZvCompressionType::Zlib);
        });
    }

private:
    static zvutil::ZvFilePath path(const QString& name) { return name.toStdWString(); }

    enum class Told {
        Nothing,
        CannotRead,
        CannotWrite,
        Other,
    };

    static Told toldBy(const std::function<void()>& work)
    {
        try {
            work();
        } catch (const zvutil::ZvFileException& exception) {
            const std::string text = exception.what();
            return text.find("read") != std::string::npos ? Told::CannotRead : Told::CannotWrite;
        } catch (...) {
            return Told::Other;
        }
        return Told::Nothing;
    }

    void drive(const QString& source, const QByteArray& result, const std::function<void()>& work)
    {
        QFETCH(int, kind);
        const QByteArray before = contentOf(source);
        Told told = Told::Nothing;
        Operation operation;
        operation.folder = m_folder.path();
        operation.prepare = [this] { zvtest::writeTo(m_target, "old"); };
        operation.run = [&] { told = toldBy(work); };
        operation.problem = [&](const Injected& fault) {
            if (contentOf(source) != before)
                return QString("the source has changed");
            const QByteArray now = contentOf(m_target);
            if (told == Told::Other)
                return QString("another exception");
            if (told != Told::Nothing && now != "old")
                return QString("a file that can't be opened has lost its content");
            if (told == Told::Nothing && !result.startsWith(now)
                && !fault.call.toLower().startsWith("read"))
                return QString("the target isn't the beginning of the result");
            if (fault.call.isEmpty() && now != result)
                return QString("the target isn't the result");
            QStringList others = zvtest::temporaryFiles(m_folder.path(), m_target);
            others.removeAll("source");
            others.removeAll("packed");
            return others.isEmpty() ? QString() : "left: " + others.join(", ");
        };
        const QString found = zvtest::drive(operation, zvtest::faultKind(kind));
        QVERIFY2(found.isEmpty(), qPrintable(found));
    }

    const QTemporaryDir m_folder;
    const QString m_source = m_folder.filePath("source");
    const QString m_packed = m_folder.filePath("packed");
    const QString m_target = m_folder.filePath("target");
    const QByteArray m_content = QByteArray("a text to pack ").repeated(10'000);
};

QTEST_GUILESS_MAIN(tst_faults_compression)
#include "tst_faults_compression.moc"
