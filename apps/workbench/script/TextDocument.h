#pragma once

#include "script/EditorDocument.h"

namespace workbench {

/// A text file of any kind.
///
/// A file that isn't UTF-8 is shown and saved as Latin-1, and one with characters that the editor doesn't keep is
/// only shown; a note says so. A file with a NUL is no text, and isn't opened.
class TextDocument : public EditorDocument
{
    Q_OBJECT

public:
    TextDocument(const QString& title, QWidget* parent);

protected:
    void read(const zvutil::ZvFilePath& file) override;
    zvutil::ZvFilePath requestSavePath() const override;
};

/// Returns the type of text files, for `addDocumentType`.
const DocumentType& textType();

} // namespace workbench
