#pragma once

#include "schematic/Schematic.h"

#include <QDialog>
#include <QSet>

class QLabel;
class QLineEdit;
class QPushButton;

namespace workbench {

/// Asks for the reference and the value of a symbol.
class SymbolDialog : public QDialog
{
    Q_OBJECT

public:
    /// Creates the dialog. \p taken are the references of all other symbols, which can't be used
    /// again.
    SymbolDialog(const Symbol& symbol, const QSet<QString>& taken, QWidget* parent);

    QString reference() const;
    QString value() const;

private:
    void check();

    QSet<QString> m_taken;
    QLineEdit* m_reference;
    QLineEdit* m_value;
    QLabel* m_hint;
    QPushButton* m_ok = nullptr;
};

} // namespace workbench
