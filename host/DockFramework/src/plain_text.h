#pragma once

class QMessageBox;

/// Makes \p box show its texts as plain text, since names may contain what looks like a tag. Call
/// after the texts have been set.
void showAsPlainText(QMessageBox& box);
