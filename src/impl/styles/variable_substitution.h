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

/// Replaces each variable in \p text by its value, one variable after the other: the later ones see
/// the results of earlier replacements. A variable has to come before those that are its beginning.
///
/// In nearly all texts no replacement makes another variable, and then one pass over the text is
/// enough.
QString substitute_variables(const QString& text, const std::vector<variable>& variables);

} // namespace libzvutil::impl
