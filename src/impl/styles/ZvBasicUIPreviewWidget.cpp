#include "impl/styles/ZvBasicUIPreviewWidget.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QString>
#include <QToolButton>
#include <QVBoxLayout>

namespace libzvutil {

namespace {

constexpr const char* states[] = {"Enabled", "Disabled", "Pressed", "Checked"};

void addHeader(QGridLayout& grid)
{
    grid.addWidget(new QLabel(QStringLiteral("Type")), 0, 0);
    int column = 0;
    for (const char* const state : states)
        grid.addWidget(new QLabel(QString::fromLatin1(state)), 0, ++column);
}

/// Adds a row with one control for each state; \p prepare is called with each before.
template <typename Control, typename Prepare>
void addRow(QGridLayout& grid, int row, const QString& type, Prepare prepare)
{
    grid.addWidget(new QLabel(type), row, 0);
    Control* controls[4];
    for (int i = 0; i < 4; ++i) {
        controls[i] = new Control;
        controls[i]->setText(QStringLiteral("Label"));
        controls[i]->setAccessibleName(type + QLatin1Char(' ') + QString::fromLatin1(states[i]));
        prepare(*controls[i]);
        grid.addWidget(controls[i], row, i + 1);
    }
    controls[1]->setDisabled(true);
    controls[2]->setDown(true);
    // By contract: setChecked() is called on every control of the column, also on buttons, which
    // can't be checked, and on boxes that are partially checked. All controls get the same calls.
    controls[3]->setChecked(true);
}

template <typename Control>
void addRow(QGridLayout& grid, int row, const QString& type)
{
    addRow<Control>(grid, row, type, [](const Control&) {});
}

} // namespace

ZvBasicUIPreviewWidget::ZvBasicUIPreviewWidget(QWidget* parent)
    : QWidget(parent)
{
    auto* const layout = new QVBoxLayout(this);
    auto* const grid = new QGridLayout;
    layout->addLayout(grid);
    layout->addStretch();
    addHeader(*grid);
    addRow<QPushButton>(*grid, 1, QStringLiteral("Button"));
    addRow<QCheckBox>(*grid, 2, QStringLiteral("Checkbox"));
    addRow<QRadioButton>(*grid, 3, QStringLiteral("RadioButton"));
    addRow<QToolButton>(*grid, 4, QStringLiteral("ToolButton"));
    addRow<QCheckBox>(*grid, 5, QStringLiteral("PartialCheckbox"),
                      [](QCheckBox& box) { box.setCheckState(Qt::PartiallyChecked); });
}

ZvBasicUIPreviewWidget::~ZvBasicUIPreviewWidget() = default;

} // namespace libzvutil
