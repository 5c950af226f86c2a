#pragma once

#include <HostSupport/host.h>

#include "support/Files.h"

#include <QDir>
#include <QString>
#include <QTemporaryDir>
#include <QTest>

namespace zvtest {

/// A user's directory and options of their own for the styles, for as long as the object lives.
class StyleHost
{
public:
    StyleHost()
    {
        host::setPathSymbol("ZVAPPDATAPATH", m_dir.path().toStdString());
        host::setOptionsFile(m_dir.filePath("options.ini").toStdString());
    }

    bool isValid() const { return m_dir.isValid(); }
    QString path() const { return m_dir.path(); }

    QString libraryFile() const { return m_dir.filePath("ui/styles.xml"); }
    QString modificationsFile() const { return m_dir.filePath("ui/modifications.qss"); }

    /// Writes a file of the style directory, which is made if need be.
    bool write(const QString& name, const QByteArray& bytes) const
    {
        return QDir(m_dir.path()).mkpath("ui") && writeTo(name, bytes);
    }

private:
    QTemporaryDir m_dir;
};

} // namespace zvtest
