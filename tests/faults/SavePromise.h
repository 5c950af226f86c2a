#pragma once

#include "Drive.h"

#include "support/Files.h"
#include "support/HeldFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QString>

namespace zvtest {

/// What a save may change of a file.
struct FileState
{
    QByteArray content;
    QFile::Permissions permissions;

    /// Blanks in the content what \p dates find.
    static FileState of(const QString& path, const QRegularExpression& dates)
    {
        QByteArray content = QFile::exists(path) ? contentOf(path) : QByteArray();
        if (!dates.pattern().isEmpty())
            content = QString::fromLatin1(content).remove(dates).toLatin1();
        return {content, QFile::permissions(path)};
    }

    friend bool operator==(const FileState& a, const FileState& b)
    {
        return a.content == b.content && a.permissions == b.permissions;
    }
};

/// What saves promise: the target is as it was or as it was meant to be, the caller is told which, and
/// nothing else is left in the folder.
class SavePromise
{
public:
    enum class Report {
        Result, ///< the caller is told whether it worked
        Cautious, ///< the same, but a save that works in the end may be told as failed
        None, ///< nobody is told
    };

    /// Files named \p others belong into the folder as well.
    SavePromise(QString folder, QString target, QStringList others = {},
                Report report = Report::Result)
        : m_folder(std::move(folder))
        , m_target(std::move(target))
        , m_others(std::move(others))
        , m_report(report)
    {
    }

    /// Whether the bytes must be on the disk before they are in the target's place.
    void setSynced(bool isSynced) { m_isSynced = isSynced; }

    /// Lets what \p dates find in the target differ each time.
    void setDates(const QRegularExpression& dates) { m_dates = dates; }

    /// Looks at the target before and after a save without faults.
    void setBefore() { m_before = FileState::of(m_target, m_dates); }
    void setAfter() { m_after = FileState::of(m_target, m_dates); }

    QString problem(const Injected& fault, bool isSaved) const
    {
        const FileState now = FileState::of(m_target, m_dates);
        if (!(now == m_before) && !(now == m_after))
            return QString("neither old nor new: %1 bytes, permissions %2")
                .arg(now.content.size())
                .arg(static_cast<int>(now.permissions), 0, 16);
        if (m_report != Report::None && isSaved && !(now == m_after))
            return "told as saved, but it is the old file";
        if (m_report == Report::Result && !isSaved && now == m_after)
            return "told as failed, but it is the new file";
        if (fault.call.isEmpty() && !(now == m_after))
            return "not saved";
        if (m_isSynced && now == m_after && zv_faults_syncs() == 0)
            return "replaced before its bytes were on the disk";
        // Nothing helps where the removal itself fails.
        if (fault.call.startsWith("unlink") || fault.call == "rmdir")
            return {};
        QStringList temporary = temporaryFiles(m_folder, m_target);
        for (const QString& other : m_others)
            temporary.removeAll(QFileInfo(other).fileName());
        return temporary.isEmpty() ? QString() : "left behind: " + temporary.join(", ");
    }

private:
    QString m_folder;
    QString m_target;
    QStringList m_others;
    Report m_report;
    bool m_isSynced = true;
    QRegularExpression m_dates;
    FileState m_before;
    FileState m_after;
};

} // namespace zvtest
