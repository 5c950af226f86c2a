#pragma once

#include <zvutil/ZvBasicXMLSaveFile.h>
#include <zvutil/ZvXMLReadFile.h>

#include "support/EventLoop.h"
#include "support/Files.h"
#include "support/HeldFiles.h"
#include "support/XmlGeneration.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace zvtest {

template <typename C>
class Saver : public ZvBasicXMLSaveFile<C>
{
public:
    explicit Saver(const QString& path)
        : ZvBasicXMLSaveFile<C>(path.toStdWString())
    {
    }

    using ZvBasicXMLSaveFile<C>::writer;
};

class Reader : public ZvXMLReadFile
{
public:
    explicit Reader(const QString& path)
        : ZvXMLReadFile(path.toStdWString())
    {
    }

    using ZvXMLReadFile::reader;
};

inline constexpr char declaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

inline constexpr char oldContent[] = "the old content";

inline int generationOf(const QString& path)
{
    const int generation = [&path] {
        Reader file(path);
        return readGeneration(file.reader());
    }();
    runEventLoop();
    return generation;
}

/// Gives each test function a target in a folder of its own, and sees at its end that no temporary file
/// is left there.
class SaveFileTest : public QObject
{
    Q_OBJECT

protected:
    void writeOld() { writeOld(m_target); }

    static void writeOld(const QString& path) { QVERIFY(writeTo(path, oldContent)); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_target;

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_target = m_folder->filePath("a.xml");
    }

    void cleanup()
    {
        // Whatever the test has done: nothing is left once the event loop has run.
        runEventLoop();
        QCOMPARE(temporaryFiles(m_folder->path(), m_target), QStringList());
    }
};

} // namespace zvtest
