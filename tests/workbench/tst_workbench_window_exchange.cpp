// Exporting and importing compressed files in the workbench's window.

#include "WindowTest.h"

#include "common/path_names.h"
#include "common/request_manager.h"
#include "documents/CompressionTask.h"
#include "documents/FileNameDialog.h"
#include "shell/Workbench.h"
#include "support/Files.h"

#include <support/Background.h>
#include <support/RefusedWrite.h>
#include <support/StyleHost.h>
#include <support/WindowResponder.h>
#include <support/Workbench.h>

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QPointer>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <future>
#include <memory>
#include <optional>

using zvtest::actionOf;
using zvtest::chooseFile;
using zvtest::longWait;
using zvtest::namesOf;
using zvtest::Window;
using namespace workbench;

class tst_workbench_window_exchange : public zvtest::WindowTest
{
    Q_OBJECT

    /// Whether there is nothing whose name begins with that of the target.
    static bool leavesNothingBeside(const QString& target)
    {
        const QFileInfo file(target);
        return file.dir()
            .entryList({file.fileName() + ".*"},
                       QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)
            .isEmpty();
    }

private Q_SLOTS:
    void exportsAndImports()
    {
        const QString file = script("plan.zvscr", "print('as it was')");
        const QString compressed = m_folder->filePath("plan.zvscr.z");
        const QString restored = m_folder->filePath("copy.zvscr");
        const Window window;
        window->openFile(file);
        {
            const zvtest::WindowResponder<QFileDialog> answer = chooseFile(compressed);
            actionOf(*window, "export")->trigger();
            QCOMPARE(answer.count, 1);
        }
        QTRY_COMPARE_WITH_TIMEOUT(zvtest::contentOf(compressed),
                                  qCompress(QByteArray("print('as it was')")), longWait);
        QString proposed;
        std::optional<zvtest::WindowResponder<FileNameDialog>> name;
        const zvtest::WindowResponder<QFileDialog> answer([&](QFileDialog& dialog) {
            name.emplace([&proposed](FileNameDialog& nameDialog) {
                auto* const edit = nameDialog.findChild<QLineEdit*>();
                proposed = edit->text();
                edit->setText("copy.zvscr");
                nameDialog.accept();
            });
            dialog.findChild<QLineEdit*>("fileNameEdit")->setText(compressed);
            QMetaObject::invokeMethod(&dialog, "accept");
        });
        actionOf(*window, "import")->trigger();
        QVERIFY(QTest::qWaitFor([&] { return window->documents().size() == 2; }, longWait));
        QCOMPARE(proposed, QString("plan.zvscr"));
        QCOMPARE(zvtest::contentOf(restored), QByteArray("print('as it was')"));
        QCOMPARE(window->currentDocument()->shortTitle(), QString("copy.zvscr"));
        QVERIFY(leavesNothingBeside(restored));
    }

    void compressionFails_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<bool>("compresses");
        QTest::addColumn<QString>("target");
        QTest::newRow("broken") << qCompress(QByteArray(1'000, 'a')).left(15) << false << "t.zvscr";
        QTest::newRow("not compressed") << QByteArray("just a text") << false << "t.zvscr";
        QTest::newRow("too short") << QByteArray("ab") << false << "t.zvscr";
        QTest::newRow("no folder") << QByteArray("a") << true << "no/such/t.z";
        QTest::newRow("target is a folder") << QByteArray("a") << true << ".";
    }

    void compressionFails()
    {
        QFETCH(QByteArray, source);
        QFETCH(bool, compresses);
        QFETCH(QString, target);
        using Direction = CompressionRequest::Direction;
        const QString file = script("source", source);
        const QString old = script("t.zvscr", "what was there");
        QWidget parent;
        QPointer<CompressionTask> task(
            new CompressionTask(compresses ? Direction::Compress : Direction::Decompress,
                                filePath(file), filePath(m_folder->filePath(target)), &parent));
        QSignalSpy failed(task, &CompressionTask::failed);
        QSignalSpy completed(task, &CompressionTask::completed);
        QVERIFY(QTest::qWaitFor([&] { return task.isNull(); }, longWait));
        QCOMPARE(failed.size(), 1);
        QCOMPARE(completed.size(), 0);
        const auto failure = failed.at(0).at(0).value<Failure>();
        QVERIFY(failure.what.contains("source"));
        QVERIFY(!failure.reason.isEmpty());
        QVERIFY(!failure.advice.isEmpty());
        QCOMPARE(zvtest::contentOf(old), QByteArray("what was there"));
        QVERIFY(leavesNothingBeside(m_folder->filePath(target)));
    }

    void emptyFilesAreExchanged()
    {
        using Direction = CompressionRequest::Direction;
        const QString file = script("empty.zvscr", "");
        const QString compressed = m_folder->filePath("empty.z");
        const QString restored = m_folder->filePath("again.zvscr");
        QWidget parent;
        for (const Direction direction : {Direction::Compress, Direction::Decompress}) {
            const bool compresses = direction == Direction::Compress;
            QPointer<CompressionTask> task(
                new CompressionTask(direction, filePath(compresses ? file : compressed),
                                    filePath(compresses ? compressed : restored), &parent));
            QSignalSpy completed(task, &CompressionTask::completed);
            QVERIFY(QTest::qWaitFor([&] { return task.isNull(); }, longWait));
            QCOMPARE(completed.size(), 1);
        }
        QCOMPARE(zvtest::contentOf(restored), QByteArray());
    }

    void filesOfTheUserAreNotInTheWay()
    {
        using Direction = CompressionRequest::Direction;
        const QString file = script("plan.zvscr");
        const QString other = script("plan.z.part", "something else");
        QWidget parent;
        QPointer<CompressionTask> task(new CompressionTask(
            Direction::Compress, filePath(file), filePath(m_folder->filePath("plan.z")), &parent));
        QSignalSpy completed(task, &CompressionTask::completed);
        QVERIFY(QTest::qWaitFor([&] { return task.isNull(); }, longWait));
        QCOMPARE(completed.size(), 1);
        QCOMPARE(zvtest::contentOf(other), QByteArray("something else"));
        QCOMPARE(
            QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name),
            (QStringList{"plan.z", "plan.z.part", "plan.zvscr"}));
    }

    void cancelledExportsLeaveNothing()
    {
        using Direction = CompressionRequest::Direction;
        const QString file = script("plan.zvscr");
        const QString target = m_folder->filePath("plan.z");
        // It waits behind another one until it is cancelled.
        std::promise<void> isCancelled;
        const std::shared_future<void> end = isCancelled.get_future().share();
        requestManager().add(std::make_shared<zvtest::Request>([end](zvtest::Request& request) {
            end.wait();
            Q_EMIT request.completed();
        }));
        QWidget parent;
        parent.show();
        QPointer<CompressionTask> task(
            new CompressionTask(Direction::Compress, filePath(file), filePath(target), &parent));
        QSignalSpy cancelled(task, &CompressionTask::cancelled);
        auto* const dialog = parent.findChild<QProgressDialog*>();
        QVERIFY(dialog);
        dialog->findChild<QPushButton*>()->click();
        isCancelled.set_value();
        QVERIFY(QTest::qWaitFor([&] { return task.isNull(); }, longWait));
        QCOMPARE(cancelled.size(), 1);
        QVERIFY(!QFile::exists(target));
        QVERIFY(leavesNothingBeside(target));
    }

    void compressionsAbortedOnTheWayLeaveNothing()
    {
        using Direction = CompressionRequest::Direction;
        const QString file = script("plan.zvscr");
        const QString target = m_folder->filePath("plan.z");
        CompressionRequest request(Direction::Compress, filePath(file), filePath(target));
        QSignalSpy completed(&request, &CompressionRequest::completed);
        QSignalSpy failed(&request, &CompressionRequest::failed);
        // From another thread it comes as an event, too.
        connect(&request, &CompressionRequest::started, &request, &CompressionRequest::abort,
                Qt::QueuedConnection);
        request.start();
        QCOMPARE(completed.size(), 0);
        QCOMPARE(failed.size(), 1);
        QVERIFY(request.abort_requested());
        QVERIFY(!QFile::exists(target));
        QVERIFY(leavesNothingBeside(target));
    }

    void windowMayGoWhileItCompresses()
    {
        const QString file = script("large", QByteArray(30'000'000, 'a'));
        auto parent = std::make_unique<QWidget>();
        parent->show();
        const QPointer<CompressionTask> task(
            new CompressionTask(CompressionRequest::Direction::Compress, filePath(file),
                                filePath(m_folder->filePath("large.z")), parent.get()));
        parent->findChild<QProgressDialog*>()->show();
        parent.reset();
        QVERIFY(task.isNull());
        // The request goes on, and the next one comes behind it.
        QWidget other;
        const QPointer<CompressionTask> next(
            new CompressionTask(CompressionRequest::Direction::Compress, filePath(file),
                                filePath(m_folder->filePath("next.z")), &other));
        QVERIFY(QTest::qWaitFor([&next] { return next.isNull(); }, longWait));
        QVERIFY(QFile::exists(m_folder->filePath("large.z")));
        QVERIFY(QFile::exists(m_folder->filePath("next.z")));
    }

    void windowClosesWhenAnExportHasEnded()
    {
        const QString source = script("a.zvscr");
        const QString target = m_folder->filePath("a.zvscr.z");
        const QPointer<Workbench> window(new Workbench);
        window->show();
        QVERIFY(window->openFile(source));
        for (const QString& file : {target, m_folder->filePath("b.z")})
            new CompressionTask(CompressionRequest::Direction::Compress, filePath(source),
                                filePath(file), window);
        // They can't have ended before events are handled. Nobody is that patient.
        QVERIFY(!window->close());
        QVERIFY(!window->close());
        QVERIFY(window->isVisible());
        const auto* const dialog = window->findChild<QProgressDialog*>();
        QVERIFY(dialog && dialog->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(!window, zvtest::longWait);
        QVERIFY(QFile::exists(target));
        QVERIFY(leavesNothingBeside(target));
        // The session is kept once.
        const Window next;
        QCOMPARE(namesOf(*next), QStringList{"a.zvscr"});
    }
};

QTEST_MAIN(tst_workbench_window_exchange)
#include "tst_workbench_window_exchange.moc"
