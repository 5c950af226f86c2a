#include "shell/MainToolBar.h"

#include <QAction>
#include <QKeySequence>

#include <utility>

namespace workbench {

namespace {

/// Has the tool tip of \p action name its keys.
void showKeys(QAction& action)
{
    const QString keys = action.shortcut().toString(QKeySequence::NativeText);
    const QString toolTip = action.toolTip();
    if (!keys.isEmpty() && !toolTip.contains(QLatin1Char('(') + keys + QLatin1Char(')')))
        action.setToolTip(MainToolBar::tr("%1 (%2)").arg(toolTip, keys));
}

} // namespace

MainToolBar::MainToolBar(QWidget* parent)
    : QToolBar(tr("Tools"), parent)
    , m_separator(new QAction(this))
{
    setObjectName(QStringLiteral("toolBar"));
    setMovable(false);
    m_separator->setSeparator(true);
}

void MainToolBar::showActions(const QList<QAction*>& ofWindow, const QList<QAction*>& ofDocument)
{
    clear();
    addActions(ofWindow);
    if (!ofDocument.isEmpty())
        addAction(m_separator);
    addActions(ofDocument);
    for (QAction* const action : actions())
        showKeys(*action);
}

} // namespace workbench
