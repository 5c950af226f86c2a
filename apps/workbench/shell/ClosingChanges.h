#pragma once

#include <QList>
#include <QPointer>

class QWidget;

namespace workbench {

class Document;

/// What becomes of the changes when all documents are closed. Until `settle` has returned true nothing is closed, and
/// nothing is lost.
class ClosingChanges
{
public:
    /// Commits what the user is typing. If several documents have changes then, asks which of them to save, and saves
    /// them; a single one is left to ask for itself. Returns false if the user has cancelled or something isn't
    /// saved.
    bool settle(QWidget* parent, const QList<Document*>& documents);

    /// Marks the documents that the user has given up as modified again: they stay open after all.
    void takeBack();

private:
    QList<QPointer<Document>> m_given;
};

} // namespace workbench
