#pragma once

#include <QDialog>
#include <QString>

#include <vector>

class QDialogButtonBox;
class QGridLayout;
class QLabel;

namespace workbench {

class OptionEditor;

/// Shows all options of the host, to be changed or reset.
class OptionsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit OptionsDialog(QWidget* parent = nullptr);

    /// Writes the changed options. If one can't be written, shows a message and returns false.
    bool apply();

Q_SIGNALS:
    /// Emitted after `apply` has written options, but not if the first of them can't be written.
    void applied();

private:
    struct Row
    {
        QString name;
        QString written; ///< the host's present value
        QString byDefault;
        OptionEditor* editor;
        bool isReset; ///< the user wants the default, whatever its value
    };

    QWidget* makeRows();
    void addRow(QGridLayout& layout, const QString& name, const QString& byDefault);
    void reset(std::size_t row);
    bool write(Row& row);
    void judge();

    std::vector<Row> m_rows;
    QLabel* m_problem;
    QDialogButtonBox* m_buttons;
};

} // namespace workbench
