#pragma once

#include <zvworkbench/zvworkbench_export.h>

#include <QString>

namespace workbench {

/// Thrown when a file can't be read as the expected type of document, or can't be written.
class ZVWORKBENCH_EXPORT FileError
{
public:
    /// Creates an error. \p reason says why, in one or more sentences for the user.
    explicit FileError(const QString& reason);

    const QString& reason() const;

private:
    QString m_reason;
};

} // namespace workbench
