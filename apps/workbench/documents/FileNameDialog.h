#pragma once

#include <QDialog>
#include <QString>

class QDialogButtonBox;
class QLabel;
class QLineEdit;

namespace workbench {

/// Asks for the name of a file in a folder, and says at once why a name can't be used.
class FileNameDialog : public QDialog
{
    Q_OBJECT

public:
    /// Creates the dialog with \p proposal as the name; the part before its extension is selected.
    /// If there is a file of this name, that file is to be renamed, so its name may change in case
    /// alone. Names have to end in \p extension.
    FileNameDialog(QWidget* parent, const QString& title, const QString& folder,
                   const QString& proposal, const QString& extension = QString());

    /// Returns the full path, with Qt's separators.
    QString file() const;

    /// Lets the user name a file in \p folder, in an event loop. Returns the full path, with Qt's
    /// separators, or an empty text if the user has cancelled.
    static QString ask(QWidget* parent, const QString& title, const QString& folder,
                       const QString& proposal, const QString& extension = QString());

    /// Returns why a file in \p folder can't be called \p name, or an empty text. \p present is the
    /// name that the file has now.
    static QString problemWith(const QString& name, const QString& folder, const QString& present);

    /// Returns why no file can be called \p name, in whatever folder, or an empty text.
    static QString problemWithText(const QString& name);

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
