#pragma once

#include "recovery/RecoveryCopy.h"

#include <QList>
#include <QObject>

class QTimer;

namespace workbench {

class DocumentOpener;
class RecoveryKeeper;
class Workbench;

/// Keeps recovery copies of the documents of a window, and offers those of programs that have ended without
/// saving.
class DocumentRecovery : public QObject
{
    Q_OBJECT

public:
    /// Opens documents by \p opener, which must outlive the object.
    DocumentRecovery(Workbench& window, DocumentOpener& opener);
    ~DocumentRecovery() override;

    RecoveryKeeper& keeper();

    /// Opens a dialog with the copies of others, if there are any, and returns at once.
    void offer();

private:
    void recover(const QList<RecoveryCopy>& copies);
    void discard(const QList<RecoveryCopy>& copies);
    void removeRecovered();

    Workbench& m_window;
    DocumentOpener& m_opener;
    RecoveryKeeper* m_keeper; // owned as a child
    QTimer* m_timer; // owned as a child; removes what is in use yet
    QList<RecoveryCopy> m_recovered;
};

} // namespace workbench
