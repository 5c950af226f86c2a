#pragma once

#include <QDialog>
#include <QString>

class QDialogButtonBox;
class QLabel;
class QLineEdit;

namespace workbench {

/// Asks for the name of a file in a folder, and tells at once why a name won't do.
class FileNameDialog : public QDialog
{
    Q_OBJECT

public:
    /// The part of \p proposal before its extension is selected. If there is a file of this name, it is
    /// the one that gets another. Names have to end in \p extension.
    FileNameDialog(QWidget* parent, const QString& title, const QString& folder,
                   const QString& proposal, const QString& extension = QString());

    /// The full path, with Qt's separators.
    QString file() const;

    /// Lets the user name a file in \p folder. Empty if the user has cancelled.
    static QString ask(QWidget* parent, const QString& title, const QString& folder,
                       const QString& proposal, const QString& extension = QString());

    /// Why a file in \p folder can't get this name, or nothing. \p present is the name that it has.
    static QString problemWith(const QString& name, const QString& folder, const QString& present);

private:
    void judge();
    void tellProblem(const QString& problem);

    QString m_folder;
    QString m_proposal;
    QString m_extension;
    QLineEdit* m_name;
    QLabel* m_problem;
    QDialogButtonBox* m_buttons;
};

} // namespace workbench
