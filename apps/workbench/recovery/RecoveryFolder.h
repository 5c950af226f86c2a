#pragma once

#include <QLockFile>
#include <QString>

#include <memory>
#include <vector>

namespace workbench {

/// The folder in which one running program keeps recovery copies, for its user alone. As long as the object lives it
/// holds a lock on the folder, by which other programs know that they must leave it alone. The destructor removes
/// a folder that is empty. Any thread.
class RecoveryFolder
{
public:
    /// Makes a folder for this program. Throws `std::runtime_error` with the reason if that fails.
    static std::shared_ptr<RecoveryFolder> make();

    /// Returns the folders of programs that don't run any more; nobody else gets them while they are in use here.
    static std::vector<std::shared_ptr<RecoveryFolder>> abandoned();

    ~RecoveryFolder();

    RecoveryFolder(const RecoveryFolder&) = delete;
    RecoveryFolder& operator=(const RecoveryFolder&) = delete;

    QString path() const;

private:
    RecoveryFolder(QString path, std::unique_ptr<QLockFile> lock);

    QString m_path;
    std::unique_ptr<QLockFile> m_lock;
};

/// Returns the folder that has the folders of all programs, beside the host's options.
QString recoveryRoot();

} // namespace workbench
