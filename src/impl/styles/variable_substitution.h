#pragma once

#include <QLatin1String>
#include <QString>

#include <vector>

namespace libzvutil::impl {

struct variable
{
    QLatin1String name; ///< an at sign and letters or digits
    QString value;
};

/// Replaces each variable in \p text by its value, one variable after the other: what a replacement
/// leaves is seen by those that follow. A variable has to come before those that it begins with.
///
/// In nearly all texts no replacement makes another variable of what stands around it, and then one
/// pass over the text does it all.
QString substitute_variables(const QString& text, const std::vector<variable>& variables);

} // namespace libzvutil::impl
