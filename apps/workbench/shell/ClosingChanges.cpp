#include "shell/ClosingChanges.h"

#include "documents/EditedContent.h"
#include "shell/SaveChangesDialog.h"

#include <zvworkbench/Document.h>

namespace workbench {

namespace {

void finishTyping(const QList<Document*>& documents)
{
    for (const Document* const document : documents) {
        if (const auto* const content = dynamic_cast<const EditedContent*>(document))
            content->finishTyping();
    }
}

} // namespace

bool ClosingChanges::settle(QWidget* parent, const QList<Document*>& documents)
{
    finishTyping(documents);
    QList<Document*> changed;
    QList<QPointer<Document>> alive;
    for (Document* const document : documents) {
        if (document->isModified()) {
            changed.append(document);
            alive.append(document);
        }
    }
    if (changed.size() < 2)
        return true;
    SaveChangesDialog dialog(changed, parent);
    if (!dialog.ask())
        return false;
    for (int i = 0; i < alive.size(); ++i) {
        if (!alive.at(i) || !dialog.isSelected(i))
            continue;
        alive.at(i)->save();
        if (alive.at(i) && alive.at(i)->isModified())
            return false;
    }
    for (int i = 0; i < alive.size(); ++i) {
        if (!alive.at(i) || dialog.isSelected(i))
            continue;
        // Without the mark it doesn't ask again when it is closed.
        alive.at(i)->setModified(false);
        m_given.append(alive.at(i));
    }
    return true;
}

void ClosingChanges::takeBack()
{
    for (const QPointer<Document>& document : m_given) {
        if (document)
            document->setModified(true);
    }
    m_given.clear();
}

} // namespace workbench
