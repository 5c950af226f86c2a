#include "shell/OptionsDialog.h"

#include "common/style_options.h"
#include "common/tell.h"
#include "shell/OptionEditor.h"

#include <HostSupport/host.h>

#include <QDialogButtonBox>
#include <QFont>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>

#include <exception>

namespace workbench {

namespace {

QLabel* plainLabel(const QString& text)
{
    auto* const label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    return label;
}

/// Returns what users call an option; a module's option keeps its name.
QString wordsFor(const QString& option)
{
    if (option == QLatin1String("ZvStyle"))
        return OptionsDialog::tr("Style");
    if (option == QLatin1String("ZvStyleAccent"))
        return OptionsDialog::tr("Accent colour");
    return option;
}

} // namespace

OptionsDialog::OptionsDialog(QWidget* parent)
    : QDialog(parent)
    , m_problem(plainLabel(QString()))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel
                                     | QDialogButtonBox::Apply))
{
    setWindowTitle(tr("Options"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto* const area = new QScrollArea;
    area->setAccessibleName(windowTitle());
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(makeRows());
    m_problem->setObjectName(QStringLiteral("problem"));
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(area, 1);
    layout->addWidget(m_problem);
    layout->addWidget(m_buttons);
    resize(640, 240);

    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_buttons, &QDialogButtonBox::accepted, this, [this] {
        if (apply())
            accept();
    });
    connect(m_buttons->button(QDialogButtonBox::Apply), &QPushButton::clicked, this,
            &OptionsDialog::apply);
    judge();
}

bool OptionsDialog::apply()
{
    bool areAllWritten = true;
    bool isAnyWritten = false;
    for (auto row = m_rows.begin(); areAllWritten && row != m_rows.end(); ++row) {
        const bool isChanged = row->isReset || row->editor->value() != row->written;
        areAllWritten = !isChanged || write(*row);
        isAnyWritten = isAnyWritten || (isChanged && areAllWritten);
    }
    judge();
    if (areAllWritten || isAnyWritten)
        Q_EMIT applied();
    return areAllWritten;
}

QWidget* OptionsDialog::makeRows()
{
    auto* const rows = new QWidget;
    auto* const layout = new QGridLayout(rows);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setHorizontalSpacing(12);
    const QStringList titles = {tr("Option"), tr("Value"), tr("Default")};
    for (int column = 0; column < titles.size(); ++column) {
        auto* const title = plainLabel(titles[column]);
        QFont bold = title->font();
        bold.setBold(true);
        title->setFont(bold);
        layout->addWidget(title, 0, column);
    }
    for (const host::OptionInfo& option : host::options())
        addRow(*layout, QString::fromStdString(option.name),
               QString::fromStdString(option.defaultValue));
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(layout->rowCount(), 1);
    return rows;
}

void OptionsDialog::addRow(QGridLayout& layout, const QString& name, const QString& byDefault)
{
    const std::size_t index = m_rows.size();
    const QString written = optionText(name);
    OptionEditor* const editor = OptionEditor::make(name, written);
    editor->setObjectName(name);
    editor->setAccessibleName(wordsFor(name));
    // The field within it has the focus, and says what it edits.
    for (QWidget* const field : editor->findChildren<QWidget*>()) {
        if (field->accessibleName().isEmpty())
            field->setAccessibleName(wordsFor(name));
    }
    m_rows.push_back({name, written, byDefault, editor, false});
    connect(editor, &OptionEditor::changed, this, [this, index] {
        m_rows[index].isReset = false;
        judge();
    });
    auto* const resetButton = new QToolButton;
    resetButton->setObjectName(QStringLiteral("reset ") + name);
    resetButton->setText(tr("Reset"));
    resetButton->setToolTip(tr("Reset to the default"));
    connect(resetButton, &QToolButton::clicked, this, [this, index] { reset(index); });
    const int row = layout.rowCount();
    QLabel* const label = plainLabel(wordsFor(name));
    label->setToolTip(name);
    layout.addWidget(label, row, 0);
    layout.addWidget(editor, row, 1);
    layout.addWidget(plainLabel(byDefault), row, 2);
    layout.addWidget(resetButton, row, 3);
}

void OptionsDialog::reset(std::size_t row)
{
    m_rows[row].editor->setValue(m_rows[row].byDefault);
    m_rows[row].isReset = true;
    judge();
}

bool OptionsDialog::write(Row& row)
{
    const QString value = row.editor->value();
    try {
        if (row.isReset)
            host::resetOption(row.name.toStdString());
        else
            host::writeOption(row.name.toStdString(), value.toStdString());
    } catch (const std::exception& error) {
        tell(this,
             {tr("The option “%1” was not saved.").arg(row.name), QString::fromUtf8(error.what()),
              tr("Check that you may write to this file, and apply again.")});
        return false;
    }
    row.written = value;
    row.isReset = false;
    return true;
}

void OptionsDialog::judge()
{
    QString problem;
    bool isChanged = false;
    for (const Row& row : m_rows) {
        if (problem.isEmpty())
            problem = row.editor->problem();
        isChanged = isChanged || row.isReset || row.editor->value() != row.written;
    }
    m_problem->setText(problem);
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(problem.isEmpty());
    m_buttons->button(QDialogButtonBox::Apply)->setEnabled(problem.isEmpty() && isChanged);
}

} // namespace workbench
