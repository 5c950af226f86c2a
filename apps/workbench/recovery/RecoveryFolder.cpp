#include "recovery/RecoveryFolder.h"

#include "common/private_files.h"

#include <HostSupport/host.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QUuid>

#include <stdexcept>
#include <utility>

namespace workbench {

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(workbench::RecoveryFolder)
};

/// Returns the lock of a folder, which lies beside it, so that it can be taken before the folder is made.
std::unique_ptr<QLockFile> lockOf(const QString& folder)
{
    auto lock = std::make_unique<QLockFile>(folder + QStringLiteral(".lock"));
    // A lock of a running program never becomes stale, however long it runs and whatever the clock says.
    lock->setStaleLockTime(0);
    return lock;
}

} // namespace

QString recoveryRoot()
{
    const QFileInfo options(QString::fromStdString(host::optionsFile()));
    return options.absoluteDir().filePath(QStringLiteral("recovery"));
}

std::shared_ptr<RecoveryFolder> RecoveryFolder::make()
{
    const QString root = recoveryRoot();
    if (!makePrivateFolder(root))
        throw std::runtime_error(Texts::tr("The folder “%1” can't be made.")
                                     .arg(QDir::toNativeSeparators(root))
                                     .toStdString());
    const QString path = QDir(root).filePath(QUuid::createUuid().toString(QUuid::WithoutBraces));
    auto lock = lockOf(path);
    if (!lock->tryLock(0) || !makePrivateFolder(path))
        throw std::runtime_error(Texts::tr("The folder “%1” can't be written.")
                                     .arg(QDir::toNativeSeparators(root))
                                     .toStdString());
    return std::shared_ptr<RecoveryFolder>(new RecoveryFolder(path, std::move(lock)));
}

std::vector<std::shared_ptr<RecoveryFolder>> RecoveryFolder::abandoned()
{
    std::vector<std::shared_ptr<RecoveryFolder>> folders;
    const QDir root(recoveryRoot());
    for (const QString& name : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QString path = root.filePath(name);
        auto lock = lockOf(path);
        // A full disk takes no lock, but no other program holds one. Another one may have recovered and removed the
        // folder just now.
        const bool isHeld = !lock->tryLock(0) && lock->error() == QLockFile::LockFailedError;
        if (!isHeld && QFileInfo(path).isDir())
            folders.push_back(
                std::shared_ptr<RecoveryFolder>(new RecoveryFolder(path, std::move(lock))));
    }
    return folders;
}

RecoveryFolder::RecoveryFolder(QString path, std::unique_ptr<QLockFile> lock)
    : m_path(std::move(path))
    , m_lock(std::move(lock))
{
}

RecoveryFolder::~RecoveryFolder()
{
    // A folder with copies stays: QDir removes none that has files.
    QDir().rmdir(m_path);
}

QString RecoveryFolder::path() const
{
    return m_path;
}

} // namespace workbench
