// Files of the docking framework's documents: dropped, watched and read again.

#include "DockContents.h"

#include <DockFramework/DockFrame.h>
#include <DockFramework/DockableWidget.h>

#include "support/Files.h"
#include "support/WindowResponder.h"

#include <QAbstractButton>
#include <QAction>
#include <QDragEnterEvent>
#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QSaveFile>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

#include <algorithm>

using zvtest::child;
using zvtest::Document;
using zvtest::WindowResponder;
using zvtest::writeTo;

class tst_DockFramework_files : public zvtest::DockFrameworkTest
{
    Q_OBJECT

private Q_SLOTS:
    void droppedFiles()
    {
        Document document("a");
        document.setAttribute(Qt::WA_DeleteOnClose, false);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile("/a b"), QUrl("http://x/")});
        const auto enter = [&] {
            QDragEnterEvent event(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton,
                                  Qt::NoModifier);
            event.setAccepted(false);
            QCoreApplication::sendEvent(&document, &event);
            return event.isAccepted();
        };
        QVERIFY(!enter());
        const QSignalSpy dropped(&document, &DockableWidgetContents::filesDropped);
        QVERIFY(enter());
        QDropEvent event(QPointF(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&document, &event);
        QCOMPARE(dropped.count(), 1);
        QCOMPARE(dropped.at(0).at(0).toStringList(), QStringList{"/a b"});
        data.setUrls({QUrl("http://x/")});
        QVERIFY(!enter());
    }

    void outsideChangesAreReported_data()
    {
        QTest::addColumn<int>("change");
        QTest::addColumn<bool>("exists");
        QTest::newRow("written") << 0 << true;
        QTest::newRow("replaced") << 1 << true;
        QTest::newRow("removed") << 2 << false;
    }

    void outsideChangesAreReported()
    {
        QFETCH(int, change);
        QFETCH(bool, exists);
        Document document("a");
        document.filename = m_dir.filePath(QString("watched %1").arg(change));
        QVERIFY(writeTo(document.filename, "1"));
        document.enableFileWatcher(true);
        QVERIFY(document.isFileWatcherEnabled());
        const QSignalSpy changes(&document, &DockableWidgetContents::fileChangedOutside);
        // Twice: what is replaced has to be watched anew.
        for (int round = 1; round <= 2; ++round) {
            if (change == 0) {
                QVERIFY(writeTo(document.filename, QByteArray(round + 1, 'x')));
            } else if (change == 1) {
                QSaveFile file(document.filename);
                QVERIFY(file.open(QIODevice::WriteOnly)
                        && file.write(QByteArray(round + 1, 'x')) > 0 && file.commit());
            } else {
                QVERIFY(QFile::remove(document.filename));
            }
            QTRY_COMPARE(changes.count(), change == 2 ? 2 * round - 1 : round);
            QCOMPARE(changes.constLast().at(0).toBool(), exists);
            if (change == 2) {
                QVERIFY(writeTo(document.filename, "back"));
                QTRY_COMPARE(changes.count(), 2 * round);
                QCOMPARE(changes.constLast().at(0).toBool(), true);
            }
        }
        document.enableFileWatcher(false);
        QVERIFY(!document.isFileWatcherEnabled());
        const int last = changes.count();
        QVERIFY(writeTo(document.filename, "unseen"));
        QTest::qWait(300);
        QCOMPARE(changes.count(), last);
    }

    void ignoredChangesAreKnownAfterwards()
    {
        Document document("a");
        document.filename = m_dir.filePath("ignored");
        QVERIFY(writeTo(document.filename, "1"));
        document.enableFileWatcher(true);
        const QSignalSpy changes(&document, &DockableWidgetContents::fileChangedOutside);
        document.fileWatcherIgnoreChanges(true);
        document.fileWatcherIgnoreChanges(true);
        QVERIFY(writeTo(document.filename, "22"));
        QTest::qWait(300);
        QCOMPARE(changes.count(), 0);
        // Not counted.
        document.fileWatcherIgnoreChanges(false);
        QTest::qWait(300);
        QCOMPARE(changes.count(), 0);
        QVERIFY(writeTo(document.filename, "333"));
        QTRY_COMPARE(changes.count(), 1);
    }

    void changeOfBeforeIsReportedWhenTheIgnoringBegins()
    {
        Document document("a");
        document.filename = m_dir.filePath("before");
        QVERIFY(writeTo(document.filename, ""));
        document.enableFileWatcher(true);
        const QSignalSpy changes(&document, &DockableWidgetContents::fileChangedOutside);
        // Between the notice and the end of the time in which others are gathered; often tried, since
        // nobody tells when the notice comes.
        bool isReported = false;
        for (int size = 1; size <= 100 && !isReported; ++size) {
            QVERIFY(writeTo(document.filename, QByteArray(size, 'x')));
            QTest::qWait(20);
            const int before = changes.count();
            document.fileWatcherIgnoreChanges(true);
            isReported = changes.count() > before;
            document.fileWatcherIgnoreChanges(false);
        }
        QVERIFY(isReported);
    }

    void nothingIsWatchedWithoutAName()
    {
        Document document("a");
        document.enableFileWatcher(true);
        QVERIFY(!document.isFileWatcherEnabled());
        document.fileWatcherIgnoreChanges(true);
        document.fileWatcherIgnoreChanges(false);
    }

    void reloadAsksBeforeChangesAreLost()
    {
        DockFrame frame;
        auto* const document = new Document("a");
        auto* const window = frame.addContents(document);
        frame.show();
        const QList<QAction*> actions = window->findChildren<QAction*>();
        const auto reload = std::find_if(actions.begin(), actions.end(), [](const QAction* action) {
            return action->text() == "&Reload";
        });
        QVERIFY(reload != actions.end());
        const auto answer = [](const QString& text) {
            return WindowResponder<QMessageBox>([text](QMessageBox& box) {
                for (QAbstractButton* const button : box.buttons()) {
                    if (button->text().remove(QLatin1Char('&')) == text)
                        button->click();
                }
            });
        };
        document->calls.clear();
        (*reload)->trigger();
        QCOMPARE(document->calls, QStringList{"reload"});
        document->setModified(true);
        document->calls.clear();
        {
            const WindowResponder<QMessageBox> cancel = answer("Cancel");
            (*reload)->trigger();
            QCOMPARE(cancel.count, 1);
            QVERIFY(!document->calls.contains("reload"));
        }
        const WindowResponder<QMessageBox> agree = answer("Reload");
        (*reload)->trigger();
        QCOMPARE(agree.count, 1);
        QVERIFY(document->calls.contains("reload"));
        document->setModified(false);
    }

    void questionsShowNamesAsTheyAre()
    {
        Document document("<b>a</b>");
        document.setModified(true);
        QList<Qt::TextFormat> formats;
        const WindowResponder<QMessageBox> answer([&formats](QMessageBox& box) {
            for (const QLabel* const label : box.findChildren<QLabel*>()) {
                if (!label->text().isEmpty())
                    formats.append(label->textFormat());
            }
            box.button(QMessageBox::Cancel)->click();
        });
        document.close();
        QCOMPARE(formats, (QList<Qt::TextFormat>{Qt::PlainText, Qt::PlainText}));
        document.setModified(false);
    }

    void reloadIsOffered()
    {
        DockFrame frame;
        frame.show();
        auto* const document = new Document("a");
        document->filename = m_dir.filePath("offered");
        QVERIFY(writeTo(document->filename, "1"));
        auto* const window = frame.addContents(document);
        document->enableFileWatcher(true);
        auto* const bar = child<QWidget>(*window, "reloadBar");
        QVERIFY(bar && !bar->isVisible());
        const auto button = [bar](const QString& text) -> QPushButton* {
            for (QPushButton* const found : bar->findChildren<QPushButton*>()) {
                if (found->text() == text && found->isVisible())
                    return found;
            }
            return nullptr;
        };
        const auto* const label = bar->findChild<QLabel*>();
        QVERIFY(writeTo(document->filename, "22"));
        QTRY_VERIFY(bar->isVisible());
        QVERIFY(!label->text().contains("discards"));
        button("Reload")->click();
        QVERIFY(!bar->isVisible());
        QVERIFY(document->calls.contains("reload"));
        document->setModified(true);
        QVERIFY(writeTo(document->filename, "333"));
        QTRY_VERIFY(bar->isVisible());
        QVERIFY(label->text().contains("discards"));
        button("Ignore")->click();
        QVERIFY(!bar->isVisible());
        // Saving it makes the offer void, unless that fails.
        QVERIFY(writeTo(document->filename, "4444"));
        QTRY_VERIFY(bar->isVisible());
        document->fileWatcherIgnoreChanges(true);
        document->fileWatcherIgnoreChanges(false);
        QVERIFY(bar->isVisible());
        document->setModified(false);
        document->fileWatcherIgnoreChanges(true);
        document->fileWatcherIgnoreChanges(false);
        QVERIFY(!bar->isVisible());
        // So does reading it by another way.
        QVERIFY(writeTo(document->filename, "55555"));
        QTRY_VERIFY(bar->isVisible());
        document->enableFileWatcher(true);
        QVERIFY(!bar->isVisible());
        QVERIFY(QFile::remove(document->filename));
        QTRY_VERIFY(bar->isVisible());
        QVERIFY(!button("Reload"));
        document->setModified(false);
    }
};

QTEST_MAIN(tst_DockFramework_files)

#include "tst_DockFramework_files.moc"
