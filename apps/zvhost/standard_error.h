#pragma once

#include <QString>

/// Writes \p text and a line break to standard error; on Windows, a program that was started without
/// one shows a message box.
void writeError(const QString& text);
