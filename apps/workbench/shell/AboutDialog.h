#pragma once

#include <QDialog>

namespace workbench {

/// Tells which version of the program this is, and what it consists of under which licences.
class AboutDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AboutDialog(QWidget* parent);
};

} // namespace workbench
