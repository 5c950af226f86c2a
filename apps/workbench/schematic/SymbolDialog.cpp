#include "schematic/SymbolDialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace workbench {

SymbolDialog::SymbolDialog(const Symbol& symbol, const QSet<QString>& taken, QWidget* parent)
    : QDialog(parent)
    , m_taken(taken)
    , m_reference(new QLineEdit(symbol.reference))
    , m_value(new QLineEdit(symbol.value))
    , m_hint(new QLabel)
{
    setObjectName(QStringLiteral("symbolDialog"));
    setWindowTitle(kindName(symbol.kind));
    m_reference->setObjectName(QStringLiteral("reference"));
    m_value->setObjectName(QStringLiteral("value"));
    m_hint->setTextFormat(Qt::PlainText);
    m_hint->setWordWrap(true);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    auto* const form = new QFormLayout(this);
    form->addRow(tr("&Reference"), m_reference);
    form->addRow(tr("&Value"), m_value);
    form->addRow(m_hint);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_reference, &QLineEdit::textChanged, this, &SymbolDialog::check);
    m_value->selectAll();
    m_value->setFocus();
    setMinimumWidth(300);
    check();
}

QString SymbolDialog::reference() const
{
    return m_reference->text().trimmed();
}

QString SymbolDialog::value() const
{
    return m_value->text().trimmed();
}

void SymbolDialog::check()
{
    const bool isTaken = m_taken.contains(reference());
    m_ok->setEnabled(!reference().isEmpty() && !isTaken);
    if (reference().isEmpty())
        m_hint->setText(tr("A symbol needs a reference."));
    else
        m_hint->setText(isTaken ? tr("Another symbol is %1 already.").arg(reference()) : QString());
}

} // namespace workbench
