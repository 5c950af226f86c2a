#pragma once

#include <QString>

namespace workbench {

/// Thrown where a file can't be read as what it should be, or can't be written.
class FileError
{
public:
    /// \p reason tells why, as one or more sentences.
    explicit FileError(const QString& reason);

    const QString& reason() const;

private:
    QString m_reason;
};

} // namespace workbench
