#pragma once

#include "support/StyleHost.h"
#include "support/Workbench.h"

#include <zvworkbench/Failure.h>

#include <QObject>
#include <QTemporaryDir>
#include <QTest>

namespace zvtest {

/// Gives the test functions of a program a host in its light style, and a folder.
class DocumentTest : public QObject
{
    Q_OBJECT

protected:
    const StyleHost m_host;
    const QTemporaryDir m_dir;

private Q_SLOTS:
    void initTestCase()
    {
        qRegisterMetaType<workbench::Failure>();
        QVERIFY(m_host.isValid());
        QVERIFY(m_dir.isValid());
        showPaintedStyle("Light");
    }

    void cleanup() { closeFiles(); }
};

} // namespace zvtest
