#include "impl/styles/StyleModifier.h"

#include <zvutil/ZvFilePath.h>
#include <zvutil/ZvStyleManager.h>

#include "impl/paths/path_text.h"
#include "impl/styles/text_file.h"

#include <QHBoxLayout>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace libzvutil {

namespace {

QString modificationsFile()
{
    return zvutil::impl::native_file_name(ZvStyleManager::StyleModificationsPath().c_str());
}

} // namespace

StyleModifier::StyleModifier(QWidget* parent)
    : QWidget(parent)
{
    auto* const layout = new QVBoxLayout(this);
    m_textEditor = new QPlainTextEdit(impl::read_text_file(modificationsFile()), this);
    auto* const previewButton = new QPushButton(QStringLiteral("Preview"), this);
    m_applyButton = new QPushButton(QStringLiteral("Apply"), this);
    m_applyButton->setEnabled(false);

    layout->addWidget(m_textEditor);
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(previewButton);
    buttons->addWidget(m_applyButton);
    layout->addLayout(buttons);

    connect(previewButton, &QPushButton::clicked, this, &StyleModifier::previewModifications);
    connect(m_applyButton, &QPushButton::clicked, this, &StyleModifier::applyModifications);
    connect(m_textEditor, &QPlainTextEdit::textChanged, m_applyButton,
            [this] { m_applyButton->setEnabled(true); });
}

StyleModifier::~StyleModifier() = default;

void StyleModifier::closeEvent(QCloseEvent* /*event*/)
{
    if (!m_applyButton->isEnabled())
        return;
    const QMessageBox::StandardButton answer = QMessageBox::question(
        this, QStringLiteral("Style modified"),
        QStringLiteral("Style modifications have been made, apply the style before closing?"),
        QMessageBox::Yes | QMessageBox::No);
    if (answer == QMessageBox::Yes)
        applyModifications();
    else if (answer == QMessageBox::No)
        ZvStyleManager::Refresh();
}

void StyleModifier::previewModifications()
{
    ZvStyleManager::CurrentStyle().apply(m_textEditor->toPlainText());
}

void StyleModifier::applyModifications()
{
    // By contract: a failure isn't reported to the user. The button stays enabled, so that closing
    // asks.
    if (!impl::write_text_file(modificationsFile(), m_textEditor->toPlainText()))
        return;
    ZvStyleManager::Refresh();
    m_applyButton->setEnabled(false);
}

} // namespace libzvutil
