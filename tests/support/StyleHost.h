#pragma once

#include <HostSupport/host.h>

#include <QDir>
#include <QFile>
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
        host::setOptionsFile(m_dir.filePath(QStringLiteral("options.ini")).toStdString());
    }

    bool isValid() const { return m_dir.isValid(); }
    QString path() const { return m_dir.path(); }

    QString libraryFile() const { return m_dir.filePath(QStringLiteral("ui/styles.xml")); }
    QString modificationsFile() const
    {
        return m_dir.filePath(QStringLiteral("ui/modifications.qss"));
    }

    /// Writes a file of the style directory, which is made if need be.
    bool write(const QString& name, const QByteArray& bytes) const
    {
        QFile file(name);
        return QDir(m_dir.path()).mkpath(QStringLiteral("ui")) && file.open(QIODevice::WriteOnly)
            && file.write(bytes) == bytes.size();
    }

    static QByteArray read(const QString& name)
    {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("can't be read");
    }

private:
    QTemporaryDir m_dir;
};

} // namespace zvtest
