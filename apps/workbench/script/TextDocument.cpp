#include "script/TextDocument.h"

#include "common/path_names.h"
#include "documents/save_file_name.h"
#include "script/CodeEditor.h"

#include <zvworkbench/FileError.h>

#include <QFileInfo>
#include <QVBoxLayout>

namespace workbench {

const DocumentType& textType()
{
    static const DocumentType type = {QStringLiteral("text"), TextDocument::tr("Text file"),
                                      TextDocument::tr("Text files"), QStringLiteral(".txt"),
                                      [](const QString& title, QWidget* parent) -> Document* {
                                          return new TextDocument(title, parent);
                                      }};
    return type;
}

TextDocument::TextDocument(const QString& title, QWidget* parent)
    : EditorDocument(textType(), title, parent, *new CodeEditor(nullptr, CodeEditor::Content::Text))
{
    editor().setObjectName(QStringLiteral("text"));
    editor().setAccessibleName(tr("Text"));
    addEditActions();
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(&page());
}

void TextDocument::read(const zvutil::ZvFilePath& file)
{
    const TextContent content = contentOfFile(file);
    if (content.text.contains(QChar::Null))
        throw FileError(tr("It is not a text: it contains a NUL."));
    setContent(content);
}

zvutil::ZvFilePath TextDocument::requestSavePath() const
{
    const QFileInfo file(qtFileName(filename()));
    if (filename().isEmpty() || file.suffix().isEmpty())
        return EditorDocument::requestSavePath();
    const QString chosen = saveFileName(window(), tr("Save Text File As"), file.absolutePath(),
                                        type().pluralName, QLatin1Char('.') + file.suffix());
    return chosen.isEmpty() ? zvutil::ZvFilePath() : filePath(chosen);
}

} // namespace workbench
