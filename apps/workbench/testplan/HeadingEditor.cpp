#include "testplan/HeadingEditor.h"

#include <QLineEdit>
#include <QShortcut>

#include <algorithm>
#include <utility>

namespace workbench {

namespace {

constexpr int minWidth = 64;

} // namespace

HeadingEditor::HeadingEditor(QHeaderView& header)
    : m_header(header)
{
}

void HeadingEditor::edit(int section, const QString& name)
{
    end(true);
    m_section = section;
    m_field = new QLineEdit(m_header.viewport());
    m_field->setObjectName(QStringLiteral("headingField"));
    m_field->setStyleSheet(QStringLiteral("padding: 0 2px; font-size: 9pt;"));
    m_field->setText(name);
    m_field->selectAll();
    m_field->setGeometry(m_header.sectionViewportPosition(section), 0,
                         std::max(m_header.sectionSize(section), minWidth), m_header.height());
    connect(m_field, &QLineEdit::editingFinished, this, [this] { end(true); });
    auto* const cancel = new QShortcut(Qt::Key_Escape, m_field);
    cancel->setContext(Qt::WidgetShortcut);
    connect(cancel, &QShortcut::activated, this, [this] { end(false); });
    m_field->show();
    m_field->setFocus();
}

void HeadingEditor::end(bool isKept)
{
    // QLineEdit emits editingFinished() a second time when the closed field loses the focus.
    QLineEdit* const field = std::exchange(m_field, nullptr);
    if (!field)
        return;
    field->hide();
    field->deleteLater();
    Q_EMIT ended();
    if (isKept)
        Q_EMIT renamed(m_section, field->text());
}

} // namespace workbench
