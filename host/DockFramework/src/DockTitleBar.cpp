#include "DockTitleBar.h"

#include "ElidedLabel.h"

#include <QAction>
#include <QHBoxLayout>
#include <QMenu>
#include <QStyle>
#include <QToolButton>

namespace {

QToolButton* addButton(QHBoxLayout& layout, const char* objectName, const QString& name)
{
    auto* const button = new QToolButton;
    button->setObjectName(QString::fromLatin1(objectName));
    button->setAccessibleName(name);
    button->setToolTip(name);
    button->setFixedSize(18, 18);
    layout.addWidget(button);
    return button;
}

} // namespace

DockTitleBar::DockTitleBar(QWidget* parent)
    : QWidget(parent)
    , m_label(new ElidedLabel(this))
{
    setObjectName(QStringLiteral("dockWidgetTitleBar"));
    setAttribute(Qt::WA_StyledBackground);
    m_label->setObjectName(QStringLiteral("TitleBarLabel"));
    m_label->setProperty("highlight", false);

    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 2, 3, 2);
    layout->setSpacing(2);
    layout->addWidget(m_label, 1);

    auto* const options = addButton(*layout, "toolButton_DockWidgetOptions", tr("Window options"));
    m_menu = new QMenu(options);
    m_floatAction = m_menu->addAction(QString(), this, &DockTitleBar::floatRequested);
    m_reloadAction = m_menu->addAction(tr("&Reload"), this, &DockTitleBar::reloadRequested);
    m_menu->addAction(tr("&Close"), this, &DockTitleBar::closeRequested);
    connect(m_menu, &QMenu::aboutToShow, this, &DockTitleBar::aboutToShowMenu);
    connect(options, &QToolButton::clicked, this,
            [this, options] { showMenu(options->mapToGlobal(QPoint(0, options->height()))); });

    auto* const close = addButton(*layout, "toolButton_DockWidgetClose", tr("Close"));
    connect(close, &QToolButton::clicked, this, &DockTitleBar::closeRequested);
    setState(false, false);
}

void DockTitleBar::setTitles(const QString& title, const QString& toolTip)
{
    m_label->setFullText(title);
    m_label->setToolTip(toolTip);
}

void DockTitleBar::setHighlighted(bool highlighted)
{
    m_label->setProperty("highlight", highlighted);
    // Polish the label again: a style sheet doesn't notice changes of properties.
    m_label->style()->unpolish(m_label);
    m_label->style()->polish(m_label);
}

void DockTitleBar::setState(bool floating, bool canReload)
{
    m_floatAction->setText(floating ? tr("&Dock") : tr("&Float"));
    m_reloadAction->setVisible(canReload);
}

void DockTitleBar::setCollapsed(bool collapsed)
{
    if (m_isCollapsed == collapsed)
        return;
    m_isCollapsed = collapsed;
    setVisible(!collapsed);
    updateGeometry();
}

void DockTitleBar::showMenu(const QPoint& screenPosition)
{
    m_menu->popup(screenPosition);
}

QSize DockTitleBar::sizeHint() const
{
    // The dock's layout asks a hidden title bar, too.
    return m_isCollapsed ? QSize(0, 0) : QWidget::sizeHint();
}

QSize DockTitleBar::minimumSizeHint() const
{
    return m_isCollapsed ? QSize(0, 0) : QWidget::minimumSizeHint();
}
