#pragma once

#include <QDir>
#include <QString>

#include <windows.h>

namespace zvtest {

/// While it lives nobody else can open the file, in this process or in another one.
class ExclusiveFile
{
public:
    explicit ExclusiveFile(const QString& name)
        : m_handle(CreateFileW(QDir::toNativeSeparators(name).toStdWString().c_str(), GENERIC_READ,
                               0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr))
    {
    }

    ~ExclusiveFile()
    {
        if (isOpen())
            CloseHandle(m_handle);
    }

    ExclusiveFile(const ExclusiveFile&) = delete;
    ExclusiveFile& operator=(const ExclusiveFile&) = delete;

    bool isOpen() const { return m_handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE m_handle;
};

} // namespace zvtest
