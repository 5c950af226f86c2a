#pragma once

#include <QDir>
#include <QFileInfo>
#include <QString>
#include <QStringList>

namespace zvtest {

/// The files in \p folder but for \p target, and those that this process holds open in it. A
/// temporary file needn't have a name on every platform.
inline QStringList temporaryFiles(const QString& folder, const QString& target)
{
    QStringList files = QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System);
    files.removeAll(QFileInfo(target).fileName());
#if defined(Q_OS_LINUX)
    const QDir descriptors("/proc/self/fd");
    const QString real = QFileInfo(folder).canonicalFilePath() + QLatin1Char('/');
    const QFileInfoList links = descriptors.entryInfoList(QDir::AllEntries | QDir::System);
    for (const QFileInfo& link : links) {
        if (link.symLinkTarget().startsWith(real))
            files.append(link.symLinkTarget());
    }
#endif
    return files;
}

} // namespace zvtest
