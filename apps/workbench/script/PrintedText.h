#pragma once

#include "output/TablePages.h"

#include <QStringList>

namespace workbench {

/// A text on paper: numbered lines, which are broken where the paper ends.
class PrintedText : public PrintedTable
{
public:
    explicit PrintedText(const QString& text);

    int rowCount() const override;
    int columnCount() const override;
    QString text(int row, int column) const override;
    Look look(int row, int column) const override;
    bool isNumber(int row, int column) const override;
    bool isOneCell(int row) const override;
    QString heading(int column) const override;
    bool hasHeadings() const override;
    QFont font() const override;

private:
    QStringList m_lines;
};

} // namespace workbench
