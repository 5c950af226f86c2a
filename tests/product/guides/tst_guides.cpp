// What the guides show does what they say.

#include "RowCount.h"
#include "Settings.h"
#include "SizeRequest.h"

#include "support/Background.h"
#include "support/Files.h"

#include <zvutil/ZvFilePath.h>
#include <zvutil/libzvutil/BackgroundRequestManager.h>
#include <zvutil/libzvutil/abstract_response.h>
#include <zvutil/stop_source.h>
#include <zvutil/uri.h>

#include <QLabel>
#include <QSignalSpy>
#include <QStringListModel>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <thread>

using zvtest::contentOf;
using zvtest::writeTo;

namespace {

/// Shows the size of files, measured in the background.
class SizeLabel : public QLabel
{
public:
    explicit SizeLabel(zvutil::libzvutil::BackgroundRequestManager& manager)
        : m_manager(manager)
    {
    }

    void measure(const QStringList& files)
    {
        using zvutil::libzvutil::abstract_response;
        setText("Measuring…");
        const auto request = std::make_shared<SizeRequest>(files);
        // The response is made before the request goes to the worker thread.
        m_response = std::make_unique<abstract_response>(request.get());
        connect(request.get(), &SizeRequest::measured, this,
                [this](qint64 bytes) { setText(QString("%1 bytes").arg(bytes)); });
        connect(m_response.get(), &abstract_response::failed, this,
                [this](const std::string& message) { setText(QString::fromStdString(message)); });
        // The token comes last: a stop that was requested before fails the request at once.
        m_response->attachStopToken(m_stop.get_token());
        m_manager.add(request);
    }

    void stop() { m_stop.request_stop(); }

private:
    zvutil::libzvutil::BackgroundRequestManager& m_manager;
    std::unique_ptr<zvutil::libzvutil::abstract_response> m_response;
    zvutil::stop_source m_stop;
};

zvutil::ZvFilePath pathOf(const QString& name)
{
    return zvutil::ZvFilePath(name.toStdWString());
}

} // namespace

class tst_guides : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void aRequestMeasuresFiles()
    {
        QVERIFY(writeTo(m_folder->filePath("a"), "12345"));
        QVERIFY(writeTo(m_folder->filePath("b"), "678"));
        zvtest::ManagerWithWorker worker;
        SizeLabel label(worker.manager());
        label.measure({m_folder->filePath("a"), m_folder->filePath("b")});
        QCOMPARE(label.text(), QString("Measuring…"));
        QTRY_COMPARE(label.text(), QString("8 bytes"));
    }

    void aRequestIsStopped()
    {
        zvtest::ManagerWithWorker worker;
        SizeLabel label(worker.manager());
        label.stop();
        label.measure({m_folder->path()});
        QCOMPARE(label.text(), QString("abort requested"));
    }

    void aTokenStopsAThreadOfOnesOwn()
    {
        const zvutil::stop_source source;
        std::thread worker([token = source.get_token()] {
            while (!token.stop_requested())
                std::this_thread::yield(); // a step of the work
        });
        source.request_stop();
        worker.join();
        QVERIFY(source.stop_requested());
    }

    void aProcessWorksInSteps()
    {
        QStringList rows;
        for (int row = 0; row < 2'500; ++row)
            rows.append(QString::number(row));
        const QStringListModel model(rows);
        RowCount process(model, "99");
        int count = -1;
        connect(&process, &ZvAbstractIterativeProcess::finished, this,
                [&] { count = process.count(); });
        process.start();
        QCOMPARE(count, -1);
        QTRY_COMPARE(count, rows.filter("99").size());
    }

    void aFileIsSavedWholeOrNotAtAll()
    {
        const QString file = m_folder->filePath("settings.xml");
        const Settings settings = {{"colour", "red & <blue>"}, {"size", "12"}};
        QVERIFY(SettingsWriter(pathOf(file)).save(settings));
        QVERIFY(SettingsReader(pathOf(file)).read() == settings);

        // Given up on the way: the file is what it was.
        const QByteArray before = contentOf(file);
        {
            SettingsWriter writer(pathOf(file));
            writer.cancelWriting();
            QVERIFY(!writer.save({{"colour", "green"}}));
        }
        QCOMPARE(contentOf(file), before);
        QVERIFY(!SettingsWriter(pathOf(m_folder->filePath("missing/settings.xml"))).save(settings));

        // A file that breaks off is told from one that is whole.
        QVERIFY(writeTo(file, before.left(before.lastIndexOf("<setting"))));
        QVERIFY(!SettingsReader(pathOf(file)).read());
        QVERIFY(!SettingsReader(pathOf(m_folder->filePath("missing.xml"))).read());
        QVERIFY(writeTo(file, "<settings/>"));
        QVERIFY(!SettingsReader(pathOf(file)).read());
    }

    void pathsOfWindowsAreReadEverywhere()
    {
        const zvutil::ZvFilePath board(L"C:\\boards\\amplifier.zvsch");
        QCOMPARE(board.filename(), zvutil::ZvFilePath(L"amplifier.zvsch"));
        QCOMPARE(board.parentPath(), zvutil::ZvFilePath(L"C:\\boards"));
        QVERIFY(board == zvutil::ZvFilePath(L"C:/boards/amplifier.zvsch"));
        QVERIFY(board != zvutil::ZvFilePath(L"c:\\boards\\amplifier.zvsch"));

        zvutil::ZvFilePath plan = board.parentPath();
        plan /= L"tests";
        plan /= L"noise.testplan";
        QCOMPARE(plan.toQString(), QString("C:\\boards\\tests\\noise.testplan"));
        QCOMPARE(plan.lexicallyRelative(L"C:\\boards"),
                 zvutil::ZvFilePath(L"tests\\noise.testplan"));
        QVERIFY(zvutil::ZvFilePath::Directory(L"C:\\boards").isDescendant(plan));

        const zvutil::ZvFilePath share(L"\\\\server\\share\\a.testplan");
        QCOMPARE(share.parentPath(), zvutil::ZvFilePath(L"\\\\server\\share"));

        const zvutil::uri uri("file:///C:/my boards/a.zvsch");
        QCOMPARE(uri.text(), std::string("file:///C:/my%20boards/a.zvsch"));
    }

    void namesOfThePlatformGoInAndOut()
    {
        const QString name = m_folder->filePath("Verstärker ж.zvsch");
        QVERIFY(writeTo(name, "x"));
        const zvutil::ZvFilePath path(name.toStdWString());
        QVERIFY(std::filesystem::exists(path.toStdFilePath()));
        QCOMPARE(path.toQString(), name);
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(tst_guides)

#include "tst_guides.moc"
