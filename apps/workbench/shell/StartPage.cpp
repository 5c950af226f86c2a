#include "shell/StartPage.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace workbench {

namespace {

constexpr int columnWidth = 420;

QLabel* makeHeading(const QString& text, QWidget* parent)
{
    auto* const label = new QLabel(text, parent);
    label->setStyleSheet(QStringLiteral("font-size: 14pt"));
    return label;
}

/// Makes a button with a file's name and its folder.
QPushButton* makeFileButton(const QString& file, QWidget* parent)
{
    const QFileInfo info(file);
    QString text =
        info.fileName() + QStringLiteral("   –   ") + QDir::toNativeSeparators(info.absolutePath());
    text = parent->fontMetrics().elidedText(text, Qt::ElideMiddle, columnWidth - 40);
    auto* const button =
        new QPushButton(text.replace(QLatin1Char('&'), QLatin1String("&&")), parent);
    button->setObjectName(QStringLiteral("recent"));
    button->setStyleSheet(QStringLiteral("text-align: left"));
    button->setToolTip(QDir::toNativeSeparators(file));
    return button;
}

} // namespace

StartPage::StartPage(QWidget* parent)
    : ContentWidget(QStringLiteral("Start"), parent, true)
{
    setObjectName(QStringLiteral("startPage"));
    auto* const column = new QWidget(this);
    column->setFixedWidth(columnWidth);
    auto* const rows = new QVBoxLayout(column);
    rows->setSpacing(6);
    rows->addWidget(makeHeading(tr("Begin"), column));
    for (const DocumentType* const type : documentTypes()) {
        auto* const button = new QPushButton(tr("New %1").arg(type->name.toLower()), column);
        button->setObjectName(QStringLiteral("new:") + type->id);
        connect(button, &QPushButton::clicked, this, [this, type] { Q_EMIT newRequested(*type); });
        rows->addWidget(button);
    }
    auto* const open = new QPushButton(tr("Open…"), column);
    open->setObjectName(QStringLiteral("open"));
    connect(open, &QPushButton::clicked, this, &StartPage::openRequested);
    rows->addWidget(open);
    rows->addSpacing(18);
    m_recentFiles = new QVBoxLayout;
    rows->addLayout(m_recentFiles);
    rows->addStretch(1);

    auto* const area = new QScrollArea(this);
    area->setAccessibleName(shortTitle());
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setAlignment(Qt::AlignHCenter);
    auto* const page = new QWidget(area);
    auto* const centred = new QHBoxLayout(page);
    centred->setContentsMargins(24, 32, 24, 24);
    centred->addWidget(column, 0, Qt::AlignHCenter);
    area->setWidget(page);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(area);
}

void StartPage::showRecentFiles(const QStringList& files)
{
    while (const std::unique_ptr<QLayoutItem> item{m_recentFiles->takeAt(0)})
        item->widget()->deleteLater();
    if (files.isEmpty())
        return;
    m_recentFiles->addWidget(makeHeading(tr("Open again"), this));
    for (const QString& file : files) {
        QPushButton* const button = makeFileButton(file, this);
        connect(button, &QPushButton::clicked, this, [this, file] { Q_EMIT fileRequested(file); });
        m_recentFiles->addWidget(button);
    }
}

} // namespace workbench
