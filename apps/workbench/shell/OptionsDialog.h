#pragma once

#include <QDialog>
#include <QString>

#include <vector>

class QDialogButtonBox;
class QGridLayout;
class QLabel;

namespace workbench {

class OptionEditor;

/// All options of the host, to be changed and to be reset.
class OptionsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit OptionsDialog(QWidget* parent = nullptr);

    /// Writes what was changed. False, and the user is told, if an option can't be written.
    bool apply();

Q_SIGNALS:
    /// Options have been written.
    void applied();

private:
    struct Row
    {
        QString name;
        QString written; ///< what the host says now
        QString byDefault;
        OptionEditor* editor;
        bool isReset; ///< the user wants the default, whatever that is
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
