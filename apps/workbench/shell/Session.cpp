#include "shell/Session.h"

#include <HostSupport/host.h>

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace workbench {

namespace {

QString filesKey()
{
    return QStringLiteral("Session/files");
}

QString currentKey()
{
    return QStringLiteral("Session/current");
}

QString geometryKey()
{
    return QStringLiteral("Session/geometry");
}

QString layoutKey()
{
    return QStringLiteral("Session/layout");
}

} // namespace

Session Session::restored(const QSettings& settings)
{
    return {settings.value(filesKey()).toStringList(), settings.value(currentKey()).toString(),
            settings.value(geometryKey()).toByteArray(), settings.value(layoutKey()).toByteArray()};
}

void Session::saveTo(QSettings& settings) const
{
    settings.setValue(filesKey(), files);
    settings.setValue(currentKey(), current);
    settings.setValue(geometryKey(), geometry);
    settings.setValue(layoutKey(), layout);
}

QString sessionFile()
{
    const QFileInfo options(QString::fromStdString(host::optionsFile()));
    return options.dir().filePath(QStringLiteral("workbench.ini"));
}

} // namespace workbench
