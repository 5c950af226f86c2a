#pragma once

#include "recovery/RecoveryCopy.h"

#include <QDialog>
#include <QList>

class QPushButton;
class QTreeWidget;

namespace workbench {

/// Offers the recovery copies of programs that have ended without saving, with a tick each.
class RecoveryDialog : public QDialog
{
    Q_OBJECT

public:
    /// \p copies must not be empty.
    RecoveryDialog(const QList<RecoveryCopy>& copies, QWidget* parent);

Q_SIGNALS:
    /// Emitted when the dialog has been closed, with the copies that are ticked.
    void recoverRequested(const QList<workbench::RecoveryCopy>& copies);
    void discardRequested(const QList<workbench::RecoveryCopy>& copies);

private:
    void fill();
    QList<RecoveryCopy> ticked() const;

    QList<RecoveryCopy> m_copies;
    QTreeWidget* m_list;
    QPushButton* m_recover;
    QPushButton* m_discard;
};

} // namespace workbench
