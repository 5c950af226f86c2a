#pragma once

#include "documents/ProgressBox.h"

#include <zvutil/ZvFilePath.h>

#include <functional>

namespace workbench {

class Document;

/// Writes a content to a file, on any thread. Throws `FileError`, and `Stopped` if the progress returns false; then
/// the file is as it was.
using ContentWriter = std::function<void(const zvutil::ZvFilePath& file, const Progress& progress)>;

/// What the workbench's own documents offer so that they can be copied while the user works on. GUI thread.
class EditedContent
{
public:
    /// Returns what writes the content as it is now, with what is being typed.
    virtual ContentWriter snapshot() const = 0;

    /// Returns a number that is another one after each change of the content.
    virtual quint64 revision() const = 0;

    /// Has the content differ from that of any file, also after all is undone.
    virtual void markUnsaved() = 0;

    /// Returns whether the user is typing something that a commit would change the content by.
    virtual bool isTyping() const { return false; }

    /// Commits what the user is typing. Does nothing in the base class.
    virtual void finishTyping() const { }

protected:
    ~EditedContent() = default;
};

/// Commits what the user is typing into \p document, if it is one of the workbench's own.
void finishTyping(const Document& document);

} // namespace workbench
