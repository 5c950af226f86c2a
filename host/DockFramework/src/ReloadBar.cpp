#include "ReloadBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

ReloadBar::ReloadBar(QWidget* parent)
    : QFrame(parent)
    , m_label(new QLabel(this))
    , m_reloadButton(new QPushButton(tr("Reload"), this))
{
    setObjectName(QStringLiteral("reloadBar"));
    m_label->setWordWrap(true);
    auto* const dismissButton = new QPushButton(tr("Ignore"), this);
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 3, 6, 3);
    layout->addWidget(m_label, 1);
    layout->addWidget(m_reloadButton);
    layout->addWidget(dismissButton);
    connect(m_reloadButton, &QPushButton::clicked, this, [this] {
        hide();
        Q_EMIT reloadRequested();
    });
    connect(dismissButton, &QPushButton::clicked, this, &QWidget::hide);
    hide();
}

void ReloadBar::offer(bool exists, bool canReload, bool losesChanges)
{
    QString text = exists ? tr("The file has been changed by another program.")
                          : tr("The file has been removed or renamed.");
    const bool reloads = exists && canReload;
    if (reloads && losesChanges)
        text += QLatin1Char(' ') + tr("Reloading discards your changes.");
    m_label->setText(text);
    m_reloadButton->setVisible(reloads);
    show();
}
