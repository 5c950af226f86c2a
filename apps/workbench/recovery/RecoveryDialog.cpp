#include "recovery/RecoveryDialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace workbench {

RecoveryDialog::RecoveryDialog(const QList<RecoveryCopy>& copies, QWidget* parent)
    : QDialog(parent)
    , m_copies(copies)
    , m_list(new QTreeWidget(this))
{
    setWindowTitle(tr("Recover Documents"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto* const text = new QLabel(tr("The workbench ended before these changes were saved."), this);
    text->setWordWrap(true);
    auto* const note =
        new QLabel(tr("Documents that aren't ticked are offered again at the next start."), this);
    note->setWordWrap(true);
    m_list->setObjectName(QStringLiteral("copies"));
    m_list->setAccessibleName(tr("Documents with unsaved changes"));
    m_list->setHeaderLabels({tr("Document"), tr("Last change kept"), tr("Folder")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    auto* const buttons = new QDialogButtonBox(this);
    m_recover = buttons->addButton(tr("&Recover"), QDialogButtonBox::AcceptRole);
    m_discard = buttons->addButton(tr("&Discard"), QDialogButtonBox::DestructiveRole);
    buttons->addButton(tr("&Later"), QDialogButtonBox::RejectRole);
    m_recover->setDefault(true);
    m_recover->setObjectName(QStringLiteral("recover"));
    m_discard->setObjectName(QStringLiteral("discard"));
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addWidget(m_list, 1);
    layout->addWidget(note);
    layout->addWidget(buttons);
    resize(640, 280);

    connect(m_recover, &QPushButton::clicked, this, [this] {
        const QList<RecoveryCopy> chosen = ticked();
        accept();
        Q_EMIT recoverRequested(chosen);
    });
    connect(m_discard, &QPushButton::clicked, this, [this] {
        const QList<RecoveryCopy> chosen = ticked();
        accept();
        Q_EMIT discardRequested(chosen);
    });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_list, &QTreeWidget::itemChanged, this, [this] {
        const bool isAnyTicked = !ticked().isEmpty();
        m_recover->setEnabled(isAnyTicked);
        m_discard->setEnabled(isAnyTicked);
    });
    fill();
}

void RecoveryDialog::fill()
{
    for (const RecoveryCopy& copy : m_copies) {
        const QString name = copy.isDamaged ? tr("%1 (damaged)").arg(copy.title) : copy.title;
        const QString folder = copy.file.isEmpty()
            ? tr("Never saved")
            : QDir::toNativeSeparators(QFileInfo(copy.file).path());
        auto* const item = new QTreeWidgetItem(
            m_list, {name, QLocale().toString(copy.written, QLocale::ShortFormat), folder});
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(0, Qt::Checked);
        item->setToolTip(0, QDir::toNativeSeparators(copy.file));
        item->setToolTip(2, folder);
    }
    for (int column = 0; column < m_list->columnCount(); ++column)
        m_list->resizeColumnToContents(column);
    m_list->setCurrentItem(m_list->topLevelItem(0));
}

QList<RecoveryCopy> RecoveryDialog::ticked() const
{
    QList<RecoveryCopy> copies;
    for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
        if (m_list->topLevelItem(row)->checkState(0) == Qt::Checked)
            copies.append(m_copies.at(row));
    }
    return copies;
}

} // namespace workbench
