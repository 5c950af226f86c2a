#pragma once

#include <QDialog>
#include <QList>

class QListWidget;

namespace workbench {

class Document;

/// Asks about several documents with changes at once: which of them to save before they are closed.
class SaveChangesDialog : public QDialog
{
    Q_OBJECT

public:
    SaveChangesDialog(const QList<Document*>& documents, QWidget* parent);

    /// Returns whether the user wants the documents closed; `isSelected` says which to save before.
    bool ask();
    /// Returns whether the user wants the document at \p index saved.
    bool isSelected(int index) const;

private:
    QListWidget* m_list;
    bool m_isSaving = false;
};

} // namespace workbench
