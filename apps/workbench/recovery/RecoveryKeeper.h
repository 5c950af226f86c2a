#pragma once

#include "documents/EditedContent.h"
#include "recovery/RecoveryCopy.h"

#include <QObject>
#include <QString>

#include <map>
#include <memory>
#include <optional>
#include <set>

class QTimer;

namespace workbench {

class Document;
class RecoverySlot;

/// Keeps a recovery copy of each document that has changes, or is being typed into, and removes it when they are saved,
/// undone or given up.
///
/// A look at all of them each five seconds copies those that have changed since, in the background where the type
/// of document allows that, so that a copy is ten seconds old at most, unless writing takes longer than the rest.
/// GUI thread.
class RecoveryKeeper : public QObject
{
    Q_OBJECT

public:
    explicit RecoveryKeeper(QObject* parent);
    /// Leaves the copies of documents that still have changes.
    ~RecoveryKeeper() override;

    /// Follows a document until it is destroyed.
    void watch(Document& document);

    /// Commits what the user is typing, and writes all copies that are missing or old, before it returns. Returns
    /// whether each document with changes has its copy.
    bool writeAll();
    /// The same for one document.
    bool write(Document& document);

    /// Removes all copies: the user has decided on all documents.
    void discardAll();

Q_SIGNALS:
    /// Emitted when a copy can't be written, once until all copies can be written again.
    void failed(const QString& text);

private:
    struct Entry
    {
        std::shared_ptr<RecoverySlot> slot; ///< null while the document has no changes
        std::optional<quint64> copied; ///< revision that the copy has
        quint64 order = 0; ///< of the last copy that was begun
        bool isWriting = false;
    };
    struct Job;

    void release(Document& document);
    void forget(Document* document);
    void look();
    Job begin(Document& document, Entry& entry);
    void writeInBackground(Document& document, Entry& entry);
    void end(Document* document, const Job& job, const QString& reason);
    bool makeSlot(Document& document, Entry& entry);
    void complain(Document& document, const QString& reason);

    std::map<Document*, Entry> m_entries;
    std::shared_ptr<RecoveryFolder> m_folder;
    QTimer* m_timer; // owned as a child
    int m_slots = 0;
    std::set<const Document*> m_failing; ///< those whose last copy couldn't be written
};

} // namespace workbench
