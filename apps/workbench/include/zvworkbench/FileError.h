#pragma once

#include <zvworkbench/zvworkbench_export.h>

#include <QString>

namespace workbench {

/// Thrown when a file can't be read as the expected type of document, or can't be written.
/// @since 0.2 @ingroup workbench
class ZVWORKBENCH_EXPORT FileError
{
public:
    /// Creates an error.
    /// @param reason why, in one or more sentences for the user
    explicit FileError(const QString& reason);

    /// @return the reason; valid as long as this object.
    const QString& reason() const;

private:
    QString m_reason;
};

} // namespace workbench
