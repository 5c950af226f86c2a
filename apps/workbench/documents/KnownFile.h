#pragma once

#include "documents/FileState.h"

#include <QObject>

#include <optional>

namespace workbench {

class Document;

/// The state in which a document has last read or written its file. The document owns it as a child.
class KnownFile : public QObject
{
    Q_OBJECT

public:
    explicit KnownFile(Document* document);

    /// Returns that of \p document.
    static KnownFile& of(const Document& document);

    /// Returns nothing for a document that has neither read nor written a file.
    const std::optional<FileState>& state() const;
    void setState(const FileState& state);

    /// Returns whether \p file is there in another state than the known one. A file that is gone has lost
    /// nothing if it is written again.
    bool isChangedOutside(const QString& file) const;

private:
    std::optional<FileState> m_state;
};

} // namespace workbench
