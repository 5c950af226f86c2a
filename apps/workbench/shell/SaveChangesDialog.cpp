#include "shell/SaveChangesDialog.h"

#include "common/path_names.h"

#include <zvworkbench/Document.h>

#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace workbench {

SaveChangesDialog::SaveChangesDialog(const QList<Document*>& documents, QWidget* parent)
    : QDialog(parent)
    , m_list(new QListWidget(this))
{
    setWindowTitle(tr("Save Changes"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_list->setObjectName(QStringLiteral("documents"));
    m_list->setAccessibleName(tr("Documents with changes"));
    for (const Document* const document : documents) {
        auto* const item = new QListWidgetItem(document->shortTitle(), m_list);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Checked);
        item->setToolTip(document->filename().isEmpty()
                             ? tr("Never saved")
                             : QDir::toNativeSeparators(qtFileName(document->filename())));
    }
    auto* const text =
        new QLabel(tr("Save the changes to %n documents?", nullptr, documents.size()), this);
    auto* const note =
        new QLabel(tr("Changes to documents that aren't ticked will be lost."), this);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    QPushButton* const save =
        buttons->addButton(tr("&Save Selected"), QDialogButtonBox::AcceptRole);
    QPushButton* const discard =
        buttons->addButton(tr("&Don't Save"), QDialogButtonBox::DestructiveRole);
    save->setObjectName(QStringLiteral("saveSelected"));
    save->setDefault(true);
    discard->setObjectName(QStringLiteral("dontSave"));
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addWidget(m_list, 1);
    layout->addWidget(note);
    layout->addWidget(buttons);
    resize(420, 260);

    connect(save, &QPushButton::clicked, this, [this] {
        m_isSaving = true;
        accept();
    });
    connect(discard, &QPushButton::clicked, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

bool SaveChangesDialog::ask()
{
    return exec() == QDialog::Accepted;
}

bool SaveChangesDialog::isSelected(int index) const
{
    return m_isSaving && m_list->item(index)->checkState() == Qt::Checked;
}

} // namespace workbench
