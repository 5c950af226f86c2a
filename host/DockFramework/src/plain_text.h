#pragma once

class QMessageBox;

/// Has a box show its texts as they are, also what looks like a tag. Names may hold anything. To be
/// called when the texts have been set.
void showAsPlainText(QMessageBox& box);
