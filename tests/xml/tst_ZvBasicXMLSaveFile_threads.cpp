// Copies of a file that is saved, on several threads.

#include "SaveFileTest.h"

#include "support/EventLoop.h"
#include "support/Files.h"
#include "support/XmlGeneration.h"

#include <QFile>
#include <QTest>

#include <memory>
#include <thread>

using zvtest::contentOf;
using zvtest::generationOf;
using zvtest::oldContent;
using zvtest::Saver;

class tst_ZvBasicXMLSaveFile_threads : public zvtest::SaveFileTest
{
    Q_OBJECT

private Q_SLOTS:
    void copyMayDieOnAnotherThread_data()
    {
        QTest::addColumn<bool>("commit");
        QTest::addColumn<bool>("otherIsLast");
        QTest::newRow("committed, other thread last") << true << true;
        QTest::newRow("committed, this thread last") << true << false;
        QTest::newRow("abandoned, other thread last") << false << true;
        QTest::newRow("abandoned, this thread last") << false << false;
    }

    void copyMayDieOnAnotherThread()
    {
        QFETCH(bool, commit);
        QFETCH(bool, otherIsLast);
        writeOld();
        auto file = std::make_unique<Saver<char>>(m_target);
        zvtest::writeGeneration(file->writer(), 3);
        if (commit)
            QVERIFY(file->commit());
        auto copy = std::make_unique<Saver<char>>(*file);
        if (otherIsLast)
            file.reset();
        std::thread([&copy] { copy.reset(); }).join();
        file.reset();
        // The file itself stays with this thread.
        if (!commit)
            QCOMPARE(contentOf(m_target), QByteArray(oldContent));
        else
            QCOMPARE(generationOf(m_target), 3);
    }

    void copyDiesWhileTheEventLoopRuns()
    {
        // What is written last is written before the event loop deletes the file.
        for (int round = 0; round < 200; ++round) {
            auto file = std::make_unique<Saver<char32_t>>(m_target);
            auto root = file->writer().root_element(U"r");
            std::thread other([&] {
                root->text(U"t");
                file.reset();
                root.reset();
            });
            zvtest::runEventLoop();
            other.join();
            zvtest::runEventLoop();
        }
        QVERIFY(!QFile::exists(m_target));
    }
};

QTEST_GUILESS_MAIN(tst_ZvBasicXMLSaveFile_threads)
#include "tst_ZvBasicXMLSaveFile_threads.moc"
