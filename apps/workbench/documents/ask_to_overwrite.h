#pragma once

#include <QString>

class QWidget;

namespace workbench {

enum class OverwriteAnswer { Overwrite, SaveAs, Cancel };

/// Asks the user what to do with changes of another program to the file called \p name, which a save would
/// lose.
OverwriteAnswer askToOverwrite(QWidget* parent, const QString& name);

} // namespace workbench
