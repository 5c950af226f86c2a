// Documents that a worker thread writes.

#include "ContentDocument.h"

#include "support/Files.h"
#include "support/WindowResponder.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <atomic>
#include <thread>

using zvtest::contentOf;
using zvtest::Document;
using zvtest::pathOf;
using zvtest::textOf;
using zvtest::writeTo;
using zvutil::ZvFilePath;

class tst_ZvContentWidget_threads : public zvtest::ContentWidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void saveFromAWorkerThread()
    {
        Document document;
        const QString file = m_dir.filePath("worker.zvsch");
        std::thread worker;
        std::atomic<bool> mayWrite{false};
        document.write = [&](const Document& self, const ZvFilePath& path) {
            worker = std::thread([&self, path, &mayWrite] {
                while (!mayWrite)
                    QThread::yieldCurrentThread();
                self.begin(path);
                self.end(writeTo(textOf(path), self.text), path);
            });
        };
        document.setModified(true);
        document.takeNotes();
        document.saveAs(pathOf(file));
        // It has returned before anything else has happened.
        QCOMPARE(document.takeNotes(),
                 (QStringList{"changes are ignored", "write " + file, "changes are heeded"}));
        mayWrite = true;
        worker.join();
        QVERIFY(document.takeNotes().isEmpty());
        QTRY_VERIFY(!document.isModified());
        QCoreApplication::processEvents();
        QStringList notes = document.takeNotes();
        // The document's own notes of the signals are delivered along with the library's.
        QCOMPARE(
            notes,
            (QStringList{"changes are ignored", "begin " + file, "changes are heeded",
                         "not watched", "not modified", "saved " + file, "ended well " + file}));
        QCOMPARE(document.getFilename(), file);
        QCOMPARE(contentOf(file), QByteArray("contents"));
    }

    void ownWritingOnAWorkerIsNotReported()
    {
        Document document;
        const QString file = m_dir.filePath("watched worker.zvsch");
        document.saveAs(pathOf(file));
        document.enableFileWatcher(true);
        const QSignalSpy changes(&document, &DockableWidgetContents::fileChangedOutside);
        std::thread worker;
        std::atomic<bool> isDone{false};
        document.write = [&](const Document& self, const ZvFilePath& path) {
            worker = std::thread([&self, path, &isDone] {
                self.begin(path);
                // In pieces, over a longer time than the watcher gathers changes.
                QFile out(textOf(path));
                bool isWritten = out.open(QIODevice::WriteOnly);
                for (int i = 0; i < 6; ++i) {
                    isWritten = isWritten && out.write("piece") == 5 && out.flush();
                    QThread::msleep(50);
                }
                out.close();
                self.end(isWritten, path);
                isDone = true;
            });
        };
        document.save();
        QTRY_VERIFY(isDone);
        worker.join();
        QTest::qWait(300);
        QCOMPARE(changes.count(), 0);
        QCOMPARE(contentOf(file), QByteArray("piece").repeated(6));
    }
};

QTEST_MAIN(tst_ZvContentWidget_threads)

#include "tst_ZvContentWidget_threads.moc"
