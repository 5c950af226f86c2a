#include "recovery/RecoveryKeeper.h"

#include "common/path_names.h"
#include "common/request_manager.h"
#include "documents/KnownFile.h"
#include "recovery/RecoveryRequest.h"
#include "recovery/RecoverySlot.h"

#include <zvworkbench/Document.h>
#include <zvworkbench/DocumentType.h>

#include <zvutil/libzvutil/BackgroundRequestManager.h>
#include <zvutil/libzvutil/abstract_response.h>

#include <QFileInfo>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <functional>
#include <stdexcept>
#include <vector>

namespace workbench {

using zvutil::libzvutil::abstract_response;

namespace {

/// Half of the age that a copy may have: the other half is left for writing.
constexpr std::chrono::seconds lookingInterval{5};

const EditedContent* contentOf(const Document& document)
{
    return dynamic_cast<const EditedContent*>(&document);
}

/// Returns the revision of a document, or nothing for one of a module, which doesn't tell.
std::optional<quint64> revisionOf(const Document& document)
{
    const EditedContent* const content = contentOf(document);
    return content ? std::make_optional(content->revision()) : std::nullopt;
}

/// Returns whether a crash would lose something of \p document.
bool hasChanges(const Document& document)
{
    const EditedContent* const content = contentOf(document);
    return document.isModified() || (content && content->isTyping());
}

ContentWriter writerOf(Document& document)
{
    if (const EditedContent* const content = contentOf(document))
        return content->snapshot();
    return [&document](const zvutil::ZvFilePath& file, const Progress& /*progress*/) {
        const QFileInfo info(qtFileName(file));
        document.saveSessionBackup(info.path(), info.fileName());
    };
}

} // namespace

/// A copy that is being written.
struct RecoveryKeeper::Job
{
    std::shared_ptr<RecoverySlot> slot;
    std::optional<quint64> revision;
    std::function<void()> write;
};

RecoveryKeeper::RecoveryKeeper(QObject* parent)
    : QObject(parent)
    , m_timer(new QTimer(this))
{
    m_timer->setObjectName(QStringLiteral("recoveryTimer"));
    m_timer->setInterval(lookingInterval);
    connect(m_timer, &QTimer::timeout, this, &RecoveryKeeper::look);
}

RecoveryKeeper::~RecoveryKeeper()
{
    for (const auto& [document, entry] : m_entries) {
        document->disconnect(this);
        if (entry.slot)
            entry.slot->close();
    }
}

void RecoveryKeeper::watch(Document& document)
{
    m_entries[&document];
    connect(&document, &DockableWidgetContents::modifiedChanged, this,
            [this, &document](bool isModified) {
                if (!isModified)
                    release(document);
            });
    connect(&document, &QObject::destroyed, this, [this, address = &document] { forget(address); });
    if (!m_timer->isActive())
        m_timer->start();
}

bool RecoveryKeeper::writeAll()
{
    // A commit may change what is followed.
    std::vector<Document*> documents;
    for (const auto& [document, entry] : m_entries)
        documents.push_back(document);
    return std::count_if(documents.begin(), documents.end(),
                         [this](Document* document) { return !write(*document); })
        == 0;
}

bool RecoveryKeeper::write(Document& document)
{
    if (const EditedContent* const content = contentOf(document))
        content->finishTyping();
    Entry& entry = m_entries.at(&document);
    if (!document.isModified() || (entry.copied && entry.copied == revisionOf(document)))
        return true;
    if (!makeSlot(document, entry))
        return false;
    const Job job = begin(document, entry);
    const QString reason = RecoveryRequest::reasonOf(job.write);
    end(&document, job, reason);
    return reason.isEmpty();
}

void RecoveryKeeper::discardAll()
{
    m_timer->stop();
    for (auto& [document, entry] : m_entries) {
        document->disconnect(this);
        if (!entry.slot)
            continue;
        // The program may end soon, before the writer could remove what it is writing.
        entry.slot->discard();
        entry.slot->close();
        entry.slot->discard();
    }
    m_entries.clear();
    m_folder.reset();
}

/// Removes the copy of a document that has nothing to lose.
void RecoveryKeeper::release(Document& document)
{
    Entry& entry = m_entries.at(&document);
    if (entry.slot)
        entry.slot->discard();
    entry = {};
    m_failing.erase(&document);
}

void RecoveryKeeper::forget(Document* document)
{
    const auto found = m_entries.find(document);
    if (found->second.slot)
        found->second.slot->discard();
    m_entries.erase(found);
    m_failing.erase(document);
    if (m_entries.empty())
        m_timer->stop();
}

void RecoveryKeeper::look()
{
    for (auto& [document, entry] : m_entries) {
        if (!hasChanges(*document)) {
            release(*document);
            continue;
        }
        const bool isCopied = entry.copied && entry.copied == revisionOf(*document);
        if (!entry.isWriting && !isCopied && makeSlot(*document, entry))
            writeInBackground(*document, entry);
    }
}

RecoveryKeeper::Job RecoveryKeeper::begin(Document& document, Entry& entry)
{
    RecoveryCopy copy;
    copy.title = document.shortTitle();
    copy.typeId = document.type().id;
    copy.file = qtFileName(document.filename());
    copy.base = KnownFile::of(document).state();
    copy.written = QDateTime::currentDateTimeUtc();
    Job job{entry.slot, revisionOf(document), {}};
    job.write = [slot = entry.slot, copy, extension = document.type().extension,
                 content = writerOf(document),
                 order = ++entry.order] { slot->write(copy, extension, content, order); };
    return job;
}

void RecoveryKeeper::writeInBackground(Document& document, Entry& entry)
{
    const Job job = begin(document, entry);
    if (!job.revision) {
        end(&document, job, RecoveryRequest::reasonOf(job.write));
        return;
    }
    entry.isWriting = true;
    const auto request = std::make_shared<RecoveryRequest>(job.write);
    auto* const response = new abstract_response(request.get());
    response->setParent(this);
    // Only what is compared goes into the slots: the content must not wait for them.
    const Job compared{job.slot, job.revision, {}};
    connect(response, &abstract_response::completed, this,
            [this, response, compared, address = &document] {
                response->deleteLater();
                end(address, compared, {});
            });
    connect(response, &abstract_response::failed, this,
            [this, response, compared, address = &document](const std::string& reason) {
                response->deleteLater();
                end(address, compared, QString::fromStdString(reason));
            });
    recoveryManager().add(request);
}

/// Notes that a copy of \p document, which may have been destroyed meanwhile, is written or why not.
void RecoveryKeeper::end(Document* document, const Job& job, const QString& reason)
{
    const auto found = m_entries.find(document);
    if (found == m_entries.end() || found->second.slot != job.slot)
        return;
    found->second.isWriting = false;
    if (!reason.isEmpty()) {
        complain(*document, reason);
        return;
    }
    found->second.copied = job.revision;
    m_failing.erase(document);
}

/// Returns whether there is a place for the document's copy. If it can't be made, tells so.
bool RecoveryKeeper::makeSlot(Document& document, Entry& entry)
{
    if (entry.slot)
        return true;
    try {
        if (!m_folder)
            m_folder = RecoveryFolder::make();
        entry.slot = std::make_shared<RecoverySlot>(m_folder, ++m_slots);
        return true;
    } catch (const std::runtime_error& error) {
        complain(document, QString::fromUtf8(error.what()));
        return false;
    }
}

void RecoveryKeeper::complain(Document& document, const QString& reason)
{
    const bool isFirst = m_failing.empty();
    m_failing.insert(&document);
    if (isFirst)
        Q_EMIT failed(tr("“%1” would be lost in a crash, as it can't be copied: %2")
                          .arg(document.shortTitle(), reason));
}

} // namespace workbench
