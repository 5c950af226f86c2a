#pragma once

#include <zv_logging/host.h>

#include <QTemporaryDir>
#include <QTest>

namespace zvtest {

/// Starts each test function with the settings of a fresh process and a log file.
class LogTest : public QObject
{
    Q_OBJECT

protected:
    QString file() const { return m_directory.filePath("zv.log"); }

    QTemporaryDir m_directory;

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_directory.isValid());
        zvutil::logging::host::reset();
        zvutil::logging::host::setLogFile(file().toStdString());
    }

    void cleanupTestCase() { zvutil::logging::host::reset(); }
};

} // namespace zvtest
