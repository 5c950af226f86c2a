// Documents of the workbench are saved, exported and imported whole or not at all, and read whole or
// with an error, whichever call on a file fails.

#include "Drive.h"
#include "SavePromise.h"

#include "common/path_names.h"
#include "documents/CompressionRequest.h"
#include "documents/EditedContent.h"
#include "output/export_file.h"
#include "recovery/RecoveryCopy.h"
#include "recovery/RecoveryRequest.h"
#include "recovery/RecoverySlot.h"
#include "search/SearchRequest.h"
#include "shell/Session.h"
#include "shell/document_types.h"

#include <HostSupport/host.h>
#include <HostSupport/saving.h>

#include "support/EventLoop.h"
#include "support/Files.h"
#include "support/Process.h"
#include "support/StyleHost.h"
#include "support/Workbench.h"

#include <zvworkbench/Document.h>
#include <zvworkbench/DocumentType.h>
#include <zvworkbench/Failure.h>
#include <zvworkbench/FileError.h>

#include <QDir>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

using workbench::CompressionRequest;
using workbench::Document;
using zvtest::contentOf;
using zvtest::Injected;
using zvtest::Operation;
using zvtest::SavePromise;

namespace {

const QStringList typeIds = {"testplan", "schematic", "script"};

/// A document that tells whether it has failed.
class Opened
{
public:
    explicit Opened(const QString& typeId)
        : m_document(workbench::documentTypeOf(typeId)->make("new", nullptr))
        , m_failures(m_document.get(), &Document::failed)
    {
    }

    Document* operator->() const { return m_document.get(); }
    bool load(const QString& file) { return m_document->load(workbench::filePath(file)); }

    /// Whether no failure was told of.
    bool save(const QString& file)
    {
        m_failures.clear();
        // The file is put back before each run, about which a document that knows it would ask.
        m_document->setFilename({});
        m_document->writeFile(workbench::filePath(file));
        zvtest::closeFiles();
        return m_failures.isEmpty();
    }

private:
    std::unique_ptr<Document> m_document;
    QSignalSpy m_failures;
};

/// A request that runs on this thread.
template <typename Request>
class Run : public Request
{
public:
    using Request::Request;

    bool succeeds()
    {
        QSignalSpy failures(this, &Request::failed);
        this->perform();
        zvtest::closeFiles();
        return failures.isEmpty();
    }
};

} // namespace

class tst_faults_workbench : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qRegisterMetaType<workbench::Failure>();
        workbench::addOwnDocumentTypes();
        QVERIFY(m_host.isValid());
        zvtest::showStyle("Light");
        for (const QString& id : typeIds)
            QVERIFY(QFile::exists(exampleOf(id)));
    }

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_file = m_folder->filePath("file");
    }

    void cleanup()
    {
        m_report = SavePromise::Report::Result;
        m_dates.setPattern(QString());
        qunsetenv("TMPDIR");
    }

    void cleanupTestCase() { zvtest::Tally::print(); }

    void save_data() { addTypesAndKinds(); }

    void save()
    {
        QFETCH(QString, type);
        Opened document(type);
        QVERIFY(document.load(exampleOf(type)));
        driveSave([&] { return document.save(m_file); });
    }

    void load_data() { addTypesAndKinds(); }

    void load()
    {
        QFETCH(QString, type);
        QFETCH(int, kind);
        QVERIFY(QFile::copy(exampleOf(type), m_file));
        const QString copy = m_host.path() + "/copy";
        QVERIFY(Opened(type).save(copy));
        const QByteArray empty = contentOf(copy);
        QByteArray whole;
        {
            Opened document(type);
            QVERIFY(document.load(m_file));
            QVERIFY(document.save(copy));
            whole = contentOf(copy);
        }
        std::unique_ptr<Opened> document;
        bool isLoaded = false;
        Operation operation;
        operation.folder = m_folder->path();
        operation.prepare = [&] { document = std::make_unique<Opened>(type); };
        operation.run = [&] {
            isLoaded = document->load(m_file);
            zvtest::closeFiles();
        };
        const bool mustSucceed = zvtest::faultKind(kind).isHarmless;
        operation.problem = [&](const Injected& fault) {
            if (!isLoaded && (mustSucceed || fault.call.isEmpty()))
                return QString("not loaded");
            if (!document->save(copy))
                return QString("can't be saved afterwards");
            if (contentOf(copy) != (isLoaded ? whole : empty))
                return QString(isLoaded ? "told as loaded, but not whole"
                                        : "told as not loaded, but changed");
            return QString();
        };
        const QString found = zvtest::drive(operation, zvtest::faultKind(kind));
        QVERIFY2(found.isEmpty(), qPrintable(found));
    }

    void session_data() { zvtest::addFaultKinds(); }

    // A session may be in the file although it was told as not kept: settings try again when they are
    // destroyed.
    void session()
    {
        qputenv("TMPDIR", QFile::encodeName(m_folder->path()));
        m_report = SavePromise::Report::Cautious;
        driveSave([&] {
            workbench::Session session;
            session.files = QStringList{"/a.zvscr", "/b.zvscr"};
            session.layout = QByteArray(5'000, 'x');
            QSettings settings(m_file, host::settingsFormat());
            session.saveTo(settings);
            return host::write(settings);
        });
    }

    void exportDocument_data() { zvtest::addFaultKinds(); }

    void exportDocument()
    {
        const QString source = exampleOf("testplan");
        driveSave([&] { return transferred(CompressionRequest::Direction::Compress, source); });
    }

    void exportForOtherPrograms_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<int>("kind");
        const QList<QPair<QString, QString>> formats = {
            {"testplan", ".pdf"},  {"testplan", ".csv"},  {"schematic", ".pdf"},
            {"schematic", ".svg"}, {"schematic", ".png"}, {"script", ".pdf"}};
        for (const auto& [type, extension] : formats) {
            for (int kind = 0; kind < zvtest::faultKindCount(); ++kind)
                QTest::addRow("%s as %s, %s", qPrintable(type), qPrintable(extension),
                              zvtest::faultKind(kind).name)
                    << type << extension << kind;
        }
    }

    void exportForOtherPrograms()
    {
        QFETCH(QString, type);
        QFETCH(QString, extension);
        Opened document(type);
        QVERIFY(document.load(exampleOf(type)));
        m_file += extension;
        // A PDF file tells when it was made.
        m_dates.setPattern("/CreationDate \\([^)]*\\)");
        driveSave([&] {
            try {
                workbench::exportFile(*document.operator->(), workbench::filePath(m_file),
                                      [](int, int) { return true; });
                return true;
            } catch (const workbench::FileError&) {
                return false;
            }
        });
    }

    void importDocument_data() { zvtest::addFaultKinds(); }

    void importDocument()
    {
        const QString packed = m_host.path() + "/packed";
        {
            Run<CompressionRequest> request(CompressionRequest::Direction::Compress,
                                            workbench::filePath(exampleOf("testplan")),
                                            workbench::filePath(packed));
            QVERIFY(request.succeeds());
        }
        driveSave([&] { return transferred(CompressionRequest::Direction::Decompress, packed); });
    }

    void recoveryCopy_data() { addTypesAndKinds(); }

    // The copy before or the new one, never a damaged one, and its owner is told which.
    void recoveryCopy()
    {
        QFETCH(QString, type);
        QFETCH(int, kind);
        const std::string options = host::optionsFile();
        const auto restore = qScopeGuard([&options] { host::setOptionsFile(options); });
        host::setOptionsFile(m_folder->filePath("options.ini").toStdString());
        Opened document(type);
        QVERIFY(document.load(exampleOf(type)));
        const workbench::ContentWriter writer =
            dynamic_cast<const workbench::EditedContent&>(*document.operator->()).snapshot();
        std::unique_ptr<workbench::RecoverySlot> slot;
        bool isWritten = false;
        Operation operation;
        operation.folder = m_folder->path();
        operation.prepare = [&] {
            slot = std::make_unique<workbench::RecoverySlot>(workbench::RecoveryFolder::make(), 1);
            slot->write(
                {}, ".copy",
                [](const zvutil::ZvFilePath& file, const workbench::Progress&) {
                    zvtest::writeTo(workbench::qtFileName(file), "old");
                },
                1);
        };
        operation.run = [&] {
            isWritten = workbench::RecoveryRequest::reasonOf([&] {
                            slot->write({}, ".copy", writer, 2);
                        }).isEmpty();
            zvtest::closeFiles();
        };
        operation.problem = [&](const Injected& fault) {
            slot.reset();
            const QList<workbench::RecoveryCopy> copies = workbench::RecoveryCopy::abandoned();
            if (copies.size() != 1 || copies.constFirst().isDamaged)
                return QString("%1 copies, or damaged").arg(copies.size());
            const bool isNew = contentOf(copies.constFirst().contentPath()) != "old";
            copies.constFirst().remove();
            if (isNew != isWritten)
                return QString(isNew ? "told as failed, but new" : "told as written, but old");
            return !isWritten && fault.call.isEmpty() ? QString("not written") : QString();
        };
        const QString found = zvtest::drive(operation, zvtest::faultKind(kind));
        QVERIFY2(found.isEmpty(), qPrintable(found));
    }

    void findInFiles_data() { zvtest::addFaultKinds(); }

    // Each file and folder is searched or told to be unreadable.
    void findInFiles()
    {
        QFETCH(int, kind);
        QVERIFY(QDir(m_folder->path()).mkdir("inner"));
        // Several reads for each file, with the text in the last one.
        const QByteArray content = QByteArray("hay\n").repeated(100'000) + "a needle\n";
        for (const char* const name : {"a.txt", "b.txt", "inner/c.txt", "inner/d.txt"})
            QVERIFY(zvtest::writeTo(m_folder->filePath(name), content));
        workbench::SearchQuery query;
        query.text = "needle";
        query.folders = QStringList(m_folder->path());
        int hits = 0;
        int unreadable = 0;
        Operation operation;
        operation.folder = m_folder->path();
        operation.prepare = [&] { hits = unreadable = 0; };
        operation.run = [&] {
            Run<workbench::SearchRequest> request(query);
            connect(&request, &workbench::SearchRequest::found,
                    [&](const QVector<workbench::SearchHit>& found) { hits += found.size(); });
            connect(&request, &workbench::SearchRequest::unreadable,
                    [&](const QStringList& paths) { unreadable += paths.size(); });
            request.succeeds();
        };
        operation.problem = [&](const Injected& fault) {
            if (hits > 4 || (hits < 4 && unreadable == 0))
                return QString("%1 of 4 hits, %2 unreadable").arg(hits).arg(unreadable);
            if (fault.call.isEmpty() && unreadable > 0)
                return QString("unreadable without a fault");
            return QString();
        };
        const QString found = zvtest::drive(operation, zvtest::faultKind(kind));
        QVERIFY2(found.isEmpty(), qPrintable(found));
    }

private:
    static void addTypesAndKinds()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<int>("kind");
        for (const QString& type : typeIds) {
            for (int kind = 0; kind < zvtest::faultKindCount(); ++kind)
                QTest::addRow("%s, %s", qPrintable(type), zvtest::faultKind(kind).name)
                    << type << kind;
        }
    }

    static QString exampleOf(const QString& typeId)
    {
        const QString name = typeId == "script" ? "currents" : "amplifier";
        return EXAMPLES "/workbench/" + name + workbench::documentTypeOf(typeId)->extension;
    }

    bool transferred(CompressionRequest::Direction direction, const QString& source) const
    {
        Run<CompressionRequest> request(direction, workbench::filePath(source),
                                        workbench::filePath(m_file));
        return request.succeeds();
    }

    void driveSave(const std::function<bool()>& work)
    {
        QFETCH(int, kind);
        SavePromise promise(m_folder->path(), m_file, {}, m_report);
        promise.setDates(m_dates);
        bool isSaved = false;
        Operation operation;
        operation.folder = m_folder->path();
        operation.prepare = [&] {
            // A lock that couldn't be removed holds up the next run.
            QFile::remove(m_file + ".lock");
            zvtest::writeTo(m_file, "old=1\n");
            QFile::setPermissions(m_file, QFile::ReadOwner | QFile::WriteOwner);
        };
        operation.run = [&] { isSaved = work(); };
        operation.problem = [&](const Injected& fault) { return promise.problem(fault, isSaved); };
        operation.prepare();
        promise.setBefore();
        operation.run();
        QVERIFY(isSaved);
        promise.setAfter();
        const QString found = zvtest::drive(operation, zvtest::faultKind(kind));
        QVERIFY2(found.isEmpty(), qPrintable(found));
    }

    const zvtest::StyleHost m_host;
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_file;
    SavePromise::Report m_report = SavePromise::Report::Result;
    QRegularExpression m_dates; // in the file
};

QTEST_MAIN(tst_faults_workbench)
#include "tst_faults_workbench.moc"
