#include "documents/KnownFile.h"

#include <zvworkbench/Document.h>

namespace workbench {

KnownFile::KnownFile(Document* document)
    : QObject(document)
{
}

KnownFile& KnownFile::of(const Document& document)
{
    return *document.findChild<KnownFile*>(QString(), Qt::FindDirectChildrenOnly);
}

const std::optional<FileState>& KnownFile::state() const
{
    return m_state;
}

void KnownFile::setState(const FileState& state)
{
    m_state = state;
}

bool KnownFile::isChangedOutside(const QString& file) const
{
    if (!m_state)
        return false;
    const FileState now = FileState::of(file);
    return now.exists && now != *m_state;
}

} // namespace workbench
