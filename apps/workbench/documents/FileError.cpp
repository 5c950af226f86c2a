#include <zvworkbench/FileError.h>

namespace workbench {

FileError::FileError(const QString& reason)
    : m_reason(reason)
{
}

const QString& FileError::reason() const
{
    return m_reason;
}

} // namespace workbench
