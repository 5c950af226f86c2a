#include "shell/DocumentRecovery.h"

#include "recovery/RecoveryDialog.h"
#include "recovery/RecoveryKeeper.h"
#include "shell/DocumentOpener.h"
#include "shell/Workbench.h"

#include <QDir>
#include <QStatusBar>
#include <QTimer>

#include <algorithm>
#include <chrono>

namespace workbench {

namespace {

constexpr std::chrono::seconds removingInterval{1};

} // namespace

DocumentRecovery::DocumentRecovery(Workbench& window, DocumentOpener& opener)
    : QObject(&window)
    , m_window(window)
    , m_opener(opener)
    , m_keeper(new RecoveryKeeper(this))
    , m_timer(new QTimer(this))
{
    m_timer->setInterval(removingInterval);
    connect(m_timer, &QTimer::timeout, this, &DocumentRecovery::removeRecovered);
    // The text stays until there is another one: it must not be missed, and no box may interrupt the work for it.
    connect(m_keeper, &RecoveryKeeper::failed, this,
            [this](const QString& text) { m_window.statusBar()->showMessage(text); });
}

DocumentRecovery::~DocumentRecovery()
{
    removeRecovered();
}

RecoveryKeeper& DocumentRecovery::keeper()
{
    return *m_keeper;
}

void DocumentRecovery::offer()
{
    const QList<RecoveryCopy> copies = RecoveryCopy::abandoned();
    if (copies.isEmpty())
        return;
    auto* const dialog = new RecoveryDialog(copies, &m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &RecoveryDialog::recoverRequested, this, &DocumentRecovery::recover);
    connect(dialog, &RecoveryDialog::discardRequested, this, &DocumentRecovery::discard);
    dialog->open();
}

void DocumentRecovery::recover(const QList<RecoveryCopy>& copies)
{
    int count = 0;
    bool areAllCopied = true;
    for (const RecoveryCopy& copy : copies) {
        Document* const document = m_opener.recover(copy);
        if (!document)
            continue;
        ++count;
        // Another crash must find the changes again, so they are copied before the old copy goes.
        if (m_keeper->write(*document))
            m_recovered.append(copy);
        else
            areAllCopied = false;
    }
    removeRecovered();
    // The other message says what is wrong.
    if (count > 0 && areAllCopied)
        m_window.showMessage(tr("%n documents recovered", nullptr, count));
}

/// Removes the copies that aren't needed any more. On Windows those are still open that have just been read: the
/// reader closes them in the event loop.
void DocumentRecovery::removeRecovered()
{
    m_recovered.erase(std::remove_if(m_recovered.begin(), m_recovered.end(),
                                     [](const RecoveryCopy& copy) { return copy.remove(); }),
                      m_recovered.end());
    if (m_recovered.isEmpty())
        m_timer->stop();
    else if (!m_timer->isActive())
        m_timer->start();
}

void DocumentRecovery::discard(const QList<RecoveryCopy>& copies)
{
    for (const RecoveryCopy& copy : copies) {
        if (!copy.remove())
            m_window.showFailure(
                {tr("The recovery copy of “%1” was not removed.").arg(copy.title),
                 tr("“%1” can't be written.").arg(QDir::toNativeSeparators(copy.folder->path())),
                 tr("It is offered again at the next start.")});
    }
}

} // namespace workbench
