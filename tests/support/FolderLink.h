#pragma once

#include <QDir>
#include <QFileInfo>
#include <QString>
#include <QTest>

#include <cstring>
#include <string>
#include <vector>

#include <windows.h>

#include <winioctl.h>

namespace zvtest {

/// A junction, or under Wine, which makes none, a symbolic link of the system below it. It goes before the tree in which
/// it is made, whose removal might follow it.
class FolderLink
{
public:
    /// The link \p name in \p folder, an absolute path, leads to \p target, a path relative to it.
    FolderLink(const QString& folder, const QString& name, const QString& target)
        : m_folder(QDir::toNativeSeparators(folder))
        , m_name(name)
    {
        const QString end = QDir::toNativeSeparators(QDir::cleanPath(folder + '/' + target));
        m_isMade = makeJunction(end.toStdWString())
            || (runUnder("ln -s " + target + ' ' + name) && waitFor(true));
    }

    ~FolderLink()
    {
        if (m_isMade && !RemoveDirectoryW(path().c_str()) && runUnder("rm " + m_name))
            waitFor(false);
    }

    FolderLink(const FolderLink&) = delete;
    FolderLink& operator=(const FolderLink&) = delete;

    bool isMade() const { return m_isMade; }

private:
    std::wstring path() const { return (m_folder + '\\' + m_name).toStdWString(); }

    bool waitFor(bool exists) const
    {
        return QTest::qWaitFor([&] {
            const DWORD attributes = GetFileAttributesW(path().c_str());
            return (attributes != INVALID_FILE_ATTRIBUTES) == exists;
        });
    }

    bool makeJunction(const std::wstring& end) const
    {
        struct MountPoint
        {
            ULONG tag;
            USHORT length;
            USHORT reserved;
            USHORT realBegin;
            USHORT realLength;
            USHORT shownBegin;
            USHORT shownLength;
        };
        const std::wstring real = L"\\??\\" + end;
        const auto bytes = static_cast<USHORT>(real.size() * sizeof(wchar_t));
        constexpr USHORT places = 4 * sizeof(USHORT);
        constexpr USHORT ends = 2 * sizeof(wchar_t); // both texts end with a NUL
        const MountPoint head = {IO_REPARSE_TAG_MOUNT_POINT,
                                 static_cast<USHORT>(places + bytes + ends),
                                 0,
                                 0,
                                 bytes,
                                 static_cast<USHORT>(bytes + sizeof(wchar_t)),
                                 0};
        std::vector<unsigned char> data(sizeof(head) + bytes + ends);
        std::memcpy(data.data(), &head, sizeof(head));
        std::memcpy(data.data() + sizeof(head), real.data(), bytes);

        if (!CreateDirectoryW(path().c_str(), nullptr))
            return false;
        HANDLE const folder =
            CreateFileW(path().c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                        FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
        DWORD unused = 0;
        const bool isJunction =
            DeviceIoControl(folder, FSCTL_SET_REPARSE_POINT, data.data(),
                            static_cast<DWORD>(data.size()), nullptr, 0, &unused, nullptr)
            != 0;
        CloseHandle(folder);
        if (!isJunction)
            RemoveDirectoryW(path().c_str());
        return isJunction;
    }

    /// Runs a command of the system below Wine in the folder. \return whether there is one
    bool runUnder(const QString& command) const
    {
        const QString program = "Z:\\bin\\" + command.section(' ', 0, 0);
        std::wstring line = command.toStdWString();
        STARTUPINFOW start = {};
        start.cb = sizeof(start);
        PROCESS_INFORMATION process = {};
        const bool runs = QFileInfo::exists(program)
            && CreateProcessW(program.toStdWString().c_str(), line.data(), nullptr, nullptr, FALSE,
                              0, nullptr, m_folder.toStdWString().c_str(), &start, &process)
                != 0;
        if (process.hProcess)
            CloseHandle(process.hProcess);
        if (process.hThread)
            CloseHandle(process.hThread);
        return runs;
    }

    QString m_folder;
    QString m_name;
    bool m_isMade = false;
};

} // namespace zvtest
